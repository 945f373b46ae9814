//===- inc/sys_string.h - The string of the whole library --------------===//
//
// SYS_String is a value: bytes in the multibyte code page (UTF-8) with an
// explicit length, always followed by a NUL the length does not count.
// Lengths and positions are byte counts. Copies share one reference-counted
// buffer; the first write gives the string a private buffer (copy on write).
// A null `char const *` argument counts as empty text everywhere.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_STRING_H
#define BFC_SYS_STRING_H

#include "sys_base.h"

#include <cstdarg>
#include <cstring>

/// The one string type of the library: positioned, multibyte-aware searches,
/// in-place editing, trimming, numeric parsing and stream-style appends.
class BFC_API SYS_String {
public:
  // Construction and assignment.
  SYS_String() noexcept : m_pchData(emptyText()) {}
  /// `count` copies of `ch`; empty when `count` is below 1.
  SYS_String(char ch, int count);
  SYS_String(char const *text);
  SYS_String(unsigned char const *text);
  /// Exactly the first `length` bytes of `text` (NUL bytes included); empty for length < 1.
  SYS_String(char const *text, int length);
  /// NUL-terminated UTF-16 text, converted to UTF-8.
  SYS_String(unsigned short const *wide);
  SYS_String(SYS_String const &other);
  SYS_String(SYS_String &&other) noexcept : m_pchData(other.m_pchData) {
    other.m_pchData = emptyText();
  }
  ~SYS_String() { release(); }

  SYS_String const &operator=(SYS_String const &other);
  SYS_String const &operator=(SYS_String &&other) noexcept;
  SYS_String const &operator=(char const *text);
  SYS_String const &operator=(unsigned char const *text);
  SYS_String const &operator=(unsigned short const *wide);
  /// A one-character string; the NUL character gives the empty string.
  SYS_String const &operator=(char ch);

  // Appending. A NUL character appends nothing.
  SYS_String const &operator+=(char const *text);
  SYS_String const &operator+=(char ch) {
    if (ch != '\0') appendChar(ch);
    return *this;
  }
  SYS_String const &operator+=(SYS_String const &other);

  SYS_String &operator<<(char const *text) { return (*this += text), *this; }
  SYS_String &operator<<(char ch) { return (*this += ch), *this; }
  SYS_String &operator<<(SYS_String const &other) { return (*this += other), *this; }
  /// Decimal form: optional "-", digits, no padding.
  SYS_String &operator<<(int value);
  SYS_String &operator<<(unsigned int value);
  /// `long` and `unsigned long` append as the 32-bit `int` and `unsigned int` they are
  /// on the 32-bit model (the value is cut to 32 bits on LP64).
  SYS_String &operator<<(long value) { return *this << static_cast<int>(value); }
  SYS_String &operator<<(unsigned long value) { return *this << static_cast<unsigned int>(value); }
  /// printf "%f": fixed notation, six digits after the point.
  SYS_String &operator<<(double value);
  SYS_String &operator<<(float value) { return *this << static_cast<double>(value); }

  // Access.
  /// The string's own NUL-terminated text; valid until the string is next modified.
  operator char const *() const noexcept { return m_pchData; }
  int GetLength() const noexcept { return data()->length; }
  int IsEmpty() const noexcept { return data()->length == 0; }
  /// Makes the string empty.
  void Empty();
  /// The byte at `index`, which is in [0, length]; the byte at length is the NUL.
  char GetAt(int index) const { return m_pchData[index]; }
  char operator[](int index) const { return m_pchData[index]; }
  /// Replaces the byte at `index`, which is in [0, length).
  void SetAt(int index, char ch);

  // Numbers. Each parses from the first byte as strtol/strtoul/strtod of the 32-bit model
  // (leading white space, a sign, decimal digits; out-of-range values saturate at the 32-bit
  // limits), stores the value in `*out` (0 when no number is read) and returns it. `*end`,
  // when `end` is not null, receives the first byte not used (the start when nothing was read).
  short Value(short *out, char const **end = nullptr) const;
  int Value(int *out, char const **end = nullptr) const;
  /// As the 32-bit strtoul: a negative text is negated modulo 2^32.
  unsigned int Value(unsigned int *out, char const **end = nullptr) const;
  /// The parsed double narrowed to float.
  float Value(float *out, char const **end = nullptr) const;
  double Value(double *out, char const **end = nullptr) const;

  // Comparison.
  /// Numeric-aware order (digit runs compare by value): negative, 0 or positive.
  int CompareAlNum(char const *other) const;
  /// Byte order as strcmp: negative, 0 or positive.
  int Compare(char const *other) const;
  /// Byte order with A-Z folded to a-z.
  int CompareNoCase(char const *other) const;

  // Extraction: new strings; positions are clamped, never an error.
  SYS_String Mid(int first) const;
  SYS_String Mid(int first, int count) const;
  SYS_String Left(int count) const;
  SYS_String Right(int count) const;
  /// The longest prefix made only of characters of `set`.
  SYS_String SpanIncluding(char const *set) const;
  /// The longest prefix containing no character of `set`.
  SYS_String SpanExcluding(char const *set) const;

  // Search: byte index of the match, -1 when nothing is found. Multibyte-aware: a match
  // starts on a character and never splits one; a byte of 0x80 or above matches only where it
  // is a character of its own (an invalid byte).
  /// -1 for start < 0 or start > length; the NUL character is found at the length.
  int Find(char ch, int start = 0) const;
  /// -1 for start < 0 or start >= length; an empty `sub` is found at `start`.
  int Find(char const *sub, int start = 0) const;
  /// -1 for start < 0 or start > length.
  int FindOneOf(char const *set, int start = 0) const;
  /// Last occurrence at or before `start`; -2 as start means from the last byte. The NUL
  /// character is found (at the length) only from start -2 or the length.
  int ReverseFind(char ch, int start = -2) const;
  /// Last character of `set` at or before `start`; -2 as start means from the last byte.
  int ReverseFindOneOf(char const *set, int start = -2) const;

  // Editing in place.
  /// Inserts before the byte at `pos`; past the end the string is first padded with spaces.
  void Insert(int pos, char const *text);
  /// Removes `count` bytes at `pos`; a count of 0, or one reaching past the end, removes the
  /// whole tail from `pos`. Nothing happens when pos >= length.
  void Delete(int pos, int count);
  /// Delete(pos, count) then Insert(pos, text): a count of 0 replaces the whole tail.
  void Replace(int pos, int count, char const *text);
  /// Trims white space (0x09-0x0D, 0x20) when `target` is empty or null, otherwise the run of
  /// the first character of `target` (the rest of `target` is ignored).
  SYS_String &TrimRight(char const *target = "");
  SYS_String &TrimLeft(char const *target = "");
  SYS_String &AllTrim(char const *target = "");
  /// A-Z to a-z and back; other bytes (multibyte characters included) are unchanged.
  void MakeLower();
  void MakeUpper();

  // Formatting: printf conventions; the result replaces the whole content.
  void Format(char const *format, ...) __attribute__((format(printf, 2, 3)));
  void FormatV(char const *format, va_list args);

  // Resources.
  /// Replaces the content with the host's numbered text `id`, looked up in the table the host
  /// registered at run time and then in the program's table (inc/plat_strings.h). Returns
  /// non-zero when a non-empty text was found; otherwise the string becomes empty and 0 is
  /// returned.
  int LoadString(unsigned int id);

  // Buffer access.
  /// A writable buffer of at least `minLength` bytes plus the NUL, content kept (the whole
  /// text, even when `minLength` is below the length). Until ReleaseBuffer the buffer is the
  /// string's alone: copies made meanwhile take their own.
  char *GetBuffer(int minLength);
  /// A writable buffer whose length is set to `length` (content kept up to there).
  char *GetBufferSetLength(int length);
  /// Ends buffer access: the length becomes `newLength`, or the position of the first NUL
  /// when it is -1.
  void ReleaseBuffer(int newLength = -1);

private:
  // The buffer is a header followed by the text. m_pchData points at the text.
  // refs >= 1: that many strings share the buffer; refs == kLocked: a buffer handed out by
  // GetBuffer, owned by one string and never shared. The empty buffer is static.
  struct Data {
    int refs;
    int length;
    int capacity;  // bytes available for text, not counting the NUL
    char *text() { return reinterpret_cast<char *>(this + 1); }
  };
  static constexpr int kLocked = -1;

  Data *data() const noexcept { return reinterpret_cast<Data *>(m_pchData) - 1; }
  // The empty buffer: a header with refs 0 followed by a zero header whose first byte is the
  // NUL of the empty text. It is never written.
  static Data const s_Empty[2];
  static char *emptyText() noexcept {
    return const_cast<char *>(reinterpret_cast<char const *>(s_Empty + 1));
  }
  bool isEmptyBuffer() const noexcept { return m_pchData == emptyText(); }

  void release() noexcept;
  /// Makes the buffer private and able to hold `length` bytes; keeps the first
  /// min(length, old length) bytes. Does not change the recorded length.
  void prepareWrite(int length);
  /// Sets the content to the given bytes.
  void assign(char const *text, int length);
  void append(char const *text, int length);
  void appendChar(char ch) {
    Data *const d = data();
    if (d->refs == 1 && d->length < d->capacity) {
      m_pchData[d->length] = ch;
      m_pchData[++d->length] = '\0';
    } else {
      append(&ch, 1);
    }
  }
  void setLength(int length) {
    data()->length = length;
    m_pchData[length] = '\0';
  }

  char *m_pchData;
};

// Concatenation: the left operand's text followed by the right one's.
BFC_API SYS_String operator+(SYS_String const &a, SYS_String const &b);
BFC_API SYS_String operator+(SYS_String const &a, char const *b);
BFC_API SYS_String operator+(char const *a, SYS_String const &b);
BFC_API SYS_String operator+(SYS_String const &a, char b);
BFC_API SYS_String operator+(char a, SYS_String const &b);

// Byte-order comparisons (strcmp); a null `char const *` counts as empty.
/// Equal lengths and equal bytes, embedded NULs included.
inline bool operator==(SYS_String const &a, SYS_String const &b) {
  return a.GetLength() == b.GetLength() &&
         std::memcmp(static_cast<char const *>(a), static_cast<char const *>(b), static_cast<size_t>(a.GetLength())) == 0;
}
inline bool operator==(SYS_String const &a, char const *b) { return a.Compare(b) == 0; }
inline bool operator==(char const *a, SYS_String const &b) { return b.Compare(a) == 0; }
inline bool operator!=(SYS_String const &a, SYS_String const &b) { return !(a == b); }
inline bool operator!=(SYS_String const &a, char const *b) { return !(a == b); }
inline bool operator!=(char const *a, SYS_String const &b) { return !(a == b); }
inline bool operator<(SYS_String const &a, SYS_String const &b) { return a.Compare(b) < 0; }
inline bool operator<(SYS_String const &a, char const *b) { return a.Compare(b) < 0; }
inline bool operator<(char const *a, SYS_String const &b) { return b.Compare(a) > 0; }
inline bool operator>(SYS_String const &a, SYS_String const &b) { return a.Compare(b) > 0; }
inline bool operator>(SYS_String const &a, char const *b) { return a.Compare(b) > 0; }
inline bool operator>(char const *a, SYS_String const &b) { return b.Compare(a) < 0; }
inline bool operator<=(SYS_String const &a, SYS_String const &b) { return a.Compare(b) <= 0; }
inline bool operator<=(SYS_String const &a, char const *b) { return a.Compare(b) <= 0; }
inline bool operator<=(char const *a, SYS_String const &b) { return b.Compare(a) >= 0; }
inline bool operator>=(SYS_String const &a, SYS_String const &b) { return a.Compare(b) >= 0; }
inline bool operator>=(SYS_String const &a, char const *b) { return a.Compare(b) >= 0; }
inline bool operator>=(char const *a, SYS_String const &b) { return b.Compare(a) <= 0; }

#endif
