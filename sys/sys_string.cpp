//===- sys/sys_string.cpp - String buffers, construction and appends ----===//
//
// The shared, reference-counted buffer behind SYS_String. Counts are plain
// integers: strings are used from one thread at a time.
//
//===------------------------------------------------------------------===//
#include "sys_string.h"

#include "plat/plat_mbcs.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

SYS_String::Data const SYS_String::s_Empty[2] = {{0, 0, 0}, {0, 0, 0}};

namespace {

int textLength(char const *text) {
  if (text == nullptr) return 0;
  size_t const n = std::strlen(text);
  if (n > static_cast<size_t>(INT_MAX)) throw std::bad_alloc();
  return static_cast<int>(n);
}

}  // namespace

void SYS_String::release() noexcept {
  if (isEmptyBuffer()) return;
  Data *const d = data();
  if (d->refs == kLocked || --d->refs == 0) std::free(d);
  m_pchData = emptyText();
}

// Gives the string a private buffer with room for `length` bytes. Growth is geometric so
// that appends are amortised constant time.
void SYS_String::prepareWrite(int length) {
  if (length < 0) throw std::bad_alloc();
  Data *const d = data();
  bool const isPrivate = !isEmptyBuffer() && (d->refs == 1 || d->refs == kLocked);
  if (isPrivate && length <= d->capacity) return;

  int capacity = length;
  if (isPrivate || length > d->length) {
    long long const grown = static_cast<long long>(d->capacity) + d->capacity / 2;
    if (grown > capacity) capacity = grown > INT_MAX - 64 ? INT_MAX - 64 : static_cast<int>(grown);
    if (capacity < 15) capacity = 15;
  }
  if (capacity < length) throw std::bad_alloc();
  auto *const fresh = static_cast<Data *>(std::malloc(sizeof(Data) + static_cast<size_t>(capacity) + 1));
  if (fresh == nullptr) throw std::bad_alloc();
  int const kept = d->length < length ? d->length : length;
  fresh->refs = d->refs == kLocked ? kLocked : 1;
  fresh->length = kept;
  fresh->capacity = capacity;
  std::memcpy(fresh->text(), m_pchData, static_cast<size_t>(kept));
  fresh->text()[kept] = '\0';
  if (isPrivate) {
    std::free(d);
  } else if (!isEmptyBuffer()) {
    --d->refs;
  }
  m_pchData = fresh->text();
}

void SYS_String::assign(char const *text, int length) {
  if (length <= 0) {
    Empty();
    return;
  }
  // `text` may point into this string's own buffer: copy before the old buffer goes.
  if (text >= m_pchData && text <= m_pchData + GetLength()) {
    SYS_String const copy(text, length);
    *this = copy;
    return;
  }
  Data *const d = data();
  if (!isEmptyBuffer() && d->refs != 1 && d->refs != kLocked) release();
  if (!isEmptyBuffer() && data()->capacity >= length) {
    std::memmove(m_pchData, text, static_cast<size_t>(length));
  } else {
    release();
    prepareWrite(length);
    std::memcpy(m_pchData, text, static_cast<size_t>(length));
  }
  setLength(length);
}

void SYS_String::append(char const *text, int length) {
  if (length <= 0) return;
  int const old = GetLength();
  if (length > INT_MAX - old) throw std::bad_alloc();
  // `text` may point into this string's own buffer, which prepareWrite may move.
  std::ptrdiff_t const inside = text - m_pchData;
  bool const aliased = inside >= 0 && inside <= old;
  prepareWrite(old + length);
  if (aliased) text = m_pchData + inside;
  std::memmove(m_pchData + old, text, static_cast<size_t>(length));
  setLength(old + length);
}

SYS_String::SYS_String(char ch, int count) : m_pchData(emptyText()) {
  if (count < 1) return;
  prepareWrite(count);
  std::memset(m_pchData, static_cast<unsigned char>(ch), static_cast<size_t>(count));
  setLength(count);
}

SYS_String::SYS_String(char const *text) : m_pchData(emptyText()) {
  append(text, textLength(text));
}

SYS_String::SYS_String(unsigned char const *text)
    : SYS_String(reinterpret_cast<char const *>(text)) {}

SYS_String::SYS_String(char const *text, int length) : m_pchData(emptyText()) {
  if (text != nullptr) append(text, length);
}

SYS_String::SYS_String(unsigned short const *wide) : m_pchData(emptyText()) {
  *this = wide;
}

SYS_String::SYS_String(SYS_String const &other) : m_pchData(other.m_pchData) {
  if (isEmptyBuffer()) return;
  if (data()->refs == kLocked) {
    // A buffer out through GetBuffer is never shared: the copy takes its own.
    m_pchData = emptyText();
    append(other.m_pchData, other.GetLength());
    return;
  }
  ++data()->refs;
}

SYS_String const &SYS_String::operator=(SYS_String const &other) {
  if (m_pchData == other.m_pchData) return *this;
  SYS_String copy(other);
  std::swap(m_pchData, copy.m_pchData);
  return *this;
}

SYS_String const &SYS_String::operator=(SYS_String &&other) noexcept {
  if (this != &other) {
    release();
    m_pchData = other.m_pchData;
    other.m_pchData = emptyText();
  }
  return *this;
}

SYS_String const &SYS_String::operator=(char const *text) {
  assign(text, textLength(text));
  return *this;
}

SYS_String const &SYS_String::operator=(unsigned char const *text) {
  return *this = reinterpret_cast<char const *>(text);
}

SYS_String const &SYS_String::operator=(unsigned short const *wide) {
  std::string converted;
  if (wide != nullptr) plat::appendUtf16AsUtf8(converted, wide);
  if (converted.size() > static_cast<size_t>(INT_MAX)) throw std::bad_alloc();
  assign(converted.data(), static_cast<int>(converted.size()));
  return *this;
}

SYS_String const &SYS_String::operator=(char ch) {
  assign(&ch, ch == '\0' ? 0 : 1);
  return *this;
}

SYS_String const &SYS_String::operator+=(char const *text) {
  append(text, textLength(text));
  return *this;
}

SYS_String const &SYS_String::operator+=(SYS_String const &other) {
  if (IsEmpty() && data()->refs != kLocked) return *this = other;
  append(other.m_pchData, other.GetLength());
  return *this;
}

namespace {

/// Writes the decimal digits of `value` so that they end at `end`; returns their start.
char *decimalDigits(unsigned int value, char *end) {
  do {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  return end;
}

}  // namespace

SYS_String &SYS_String::operator<<(int value) {
  char buffer[16];
  char *const end = buffer + sizeof buffer;
  // The magnitude in unsigned arithmetic, so that INT_MIN has one too.
  unsigned int const magnitude = value < 0 ? 0u - static_cast<unsigned int>(value) : static_cast<unsigned int>(value);
  char *first = decimalDigits(magnitude, end);
  if (value < 0) *--first = '-';
  append(first, static_cast<int>(end - first));
  return *this;
}

SYS_String &SYS_String::operator<<(unsigned int value) {
  char buffer[16];
  char *const end = buffer + sizeof buffer;
  char *const first = decimalDigits(value, end);
  append(first, static_cast<int>(end - first));
  return *this;
}

SYS_String &SYS_String::operator<<(double value) {
  char small[64];
  int const n = std::snprintf(small, sizeof small, "%f", value);
  if (n < static_cast<int>(sizeof small)) {
    append(small, n);
  } else {
    // Large magnitudes print every integer digit (up to 309 of them).
    std::string big(static_cast<size_t>(n) + 1, '\0');
    std::snprintf(&big[0], big.size(), "%f", value);
    append(big.data(), n);
  }
  return *this;
}

void SYS_String::Empty() { release(); }

void SYS_String::SetAt(int index, char ch) {
  prepareWrite(GetLength());
  m_pchData[index] = ch;
}

char *SYS_String::GetBuffer(int minLength) {
  int const length = GetLength();
  prepareWrite(minLength > length ? minLength : length);
  data()->refs = kLocked;
  return m_pchData;
}

char *SYS_String::GetBufferSetLength(int length) {
  if (length < 0) length = 0;
  GetBuffer(length);
  setLength(length);
  return m_pchData;
}

void SYS_String::ReleaseBuffer(int newLength) {
  if (isEmptyBuffer()) return;
  Data *const d = data();
  if (newLength < 0) newLength = static_cast<int>(strnlen(m_pchData, static_cast<size_t>(d->capacity)));
  if (newLength > d->capacity) newLength = d->capacity;
  if (d->refs == kLocked) d->refs = 1;
  setLength(newLength);
}

void SYS_String::MakeLower() {
  prepareWrite(GetLength());
  for (char *p = m_pchData, *end = p + GetLength(); p < end; ++p)
    if (*p >= 'A' && *p <= 'Z') *p = static_cast<char>(*p + ('a' - 'A'));
}

void SYS_String::MakeUpper() {
  prepareWrite(GetLength());
  for (char *p = m_pchData, *end = p + GetLength(); p < end; ++p)
    if (*p >= 'a' && *p <= 'z') *p = static_cast<char>(*p - ('a' - 'A'));
}

void SYS_String::FormatV(char const *format, va_list args) {
  if (format == nullptr) {
    Empty();
    return;
  }
  va_list probe;
  va_copy(probe, args);
  char small[256];
  int const n = std::vsnprintf(small, sizeof small, format, probe);
  va_end(probe);
  if (n < 0) {
    Empty();
    return;
  }
  if (n < static_cast<int>(sizeof small)) {
    assign(small, n);
    return;
  }
  SYS_String result;
  result.prepareWrite(n);
  std::vsnprintf(result.m_pchData, static_cast<size_t>(n) + 1, format, args);
  result.setLength(n);
  *this = std::move(result);
}

void SYS_String::Format(char const *format, ...) {
  va_list args;
  va_start(args, format);
  FormatV(format, args);
  va_end(args);
}

SYS_String operator+(SYS_String const &a, SYS_String const &b) {
  SYS_String result(a);
  result += b;
  return result;
}

SYS_String operator+(SYS_String const &a, char const *b) {
  SYS_String result(a);
  result += b;
  return result;
}

SYS_String operator+(char const *a, SYS_String const &b) {
  SYS_String result(a);
  result += b;
  return result;
}

SYS_String operator+(SYS_String const &a, char b) {
  SYS_String result(a);
  result += b;
  return result;
}

SYS_String operator+(char a, SYS_String const &b) {
  SYS_String result(&a, a == '\0' ? 0 : 1);
  result += b;
  return result;
}
