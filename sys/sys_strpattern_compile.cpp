//===- sys/sys_strpattern_compile.cpp - Pattern text to byte code -------===//
//
// Recursive descent over the pattern text, one character at a time. Any
// failure leaves no code at all: a pattern either compiles whole or not.
//
//===------------------------------------------------------------------===//
#include "plat/plat_mbcs.h"
#include "sys/sys_strpattern_code.h"

#include <algorithm>
#include <climits>
#include <string>

namespace sys::pattern {
namespace {

constexpr size_t kMaxAtomBytes = 255;  // what a length or count byte holds

bool endsSequence(char c) {
  switch (c) {
    case '\0': case '#': case ')': case '*': case '+': case '?': case '@': case ']': case '^': case '|':
      return true;
    default:
      return false;
  }
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// The code point of one valid character (ASCII or a valid UTF-8 sequence), or -1 for an
/// invalid byte, which is a character of its own but has no place among the code points.
long codePoint(std::string const &ch) {
  auto const b0 = static_cast<unsigned char>(ch[0]);
  if (ch.size() == 1) return b0 < 0x80 ? b0 : -1;
  static constexpr unsigned char kLeadMask[] = {0, 0, 0x1F, 0x0F, 0x07};
  long cp = b0 & kLeadMask[ch.size()];
  for (size_t i = 1; i < ch.size(); ++i) cp = (cp << 6) | (static_cast<unsigned char>(ch[i]) & 0x3F);
  return cp;
}

/// Adds the characters after `from` up to `to` inclusive. Two one-byte characters span byte
/// values (unsigned, so invalid bytes of 0x80 and above order after ASCII); two valid
/// characters span code points (so "[a-é]" and "[α-ω]" work in UTF-8); an invalid byte and a
/// multibyte character span nothing. False when the set grows past what its count holds.
bool addRange(std::string &members, std::string const &from, std::string const &to) {
  if (from.size() == 1 && to.size() == 1) {
    for (unsigned b = static_cast<unsigned char>(from[0]) + 1u; b <= static_cast<unsigned char>(to[0]); ++b) {
      members += static_cast<char>(b);
      if (members.size() > kMaxAtomBytes) return false;
    }
    return true;
  }
  long const first = codePoint(from);
  long const last = codePoint(to);
  if (first < 0 || last < 0) return true;
  for (long cp = first + 1; cp <= last; ++cp) {
    if (cp >= 0xD800 && cp <= 0xDFFF) continue;  // surrogates are no characters
    plat::appendCodePoint(members, static_cast<unsigned long>(cp));
    if (members.size() > kMaxAtomBytes) return false;
  }
  return true;
}

/// Compiles one pattern text. Each step returns false when the text does not compile;
/// depths count the matcher's recursion (see kMaxDepth).
class Compiler {
public:
  explicit Compiler(char const *pattern) : m_Pos(pattern) {}

  bool compile(std::string &code) {
    int depth = 0;
    if (!list(depth, 0) || *m_Pos != '\0') return false;
    code.swap(m_Code);
    return true;
  }

private:
  // An alternation list; the "|" of every alternative but the last goes in front of its code
  // once the next "|" shows that another one follows.
  bool list(int &depth, int nesting) {
    depth = 0;
    bool alternatives = false;
    for (;;) {
      size_t const start = m_Code.size();
      int sequenceDepth = 0;
      if (!sequence(sequenceDepth, nesting)) return false;
      depth = std::max(depth, sequenceDepth);
      m_Code += static_cast<char>(kEndOfAlternative);
      if (*m_Pos != '|') break;
      m_Code.insert(start, 1, static_cast<char>(kAlternation));
      alternatives = true;
      ++m_Pos;
    }
    if (alternatives) ++depth;
    return depth <= kMaxDepth;
  }

  // An empty sequence (as in "a|", "()" or a lone "^") is refused.
  bool sequence(int &depth, int nesting) {
    if (*m_Pos == '^') {
      m_Code += static_cast<char>(kStart);
      ++m_Pos;
    }
    depth = 0;
    bool any = false;
    while (!endsSequence(*m_Pos)) {
      int itemDepth = 0;
      if (!item(itemDepth, nesting)) return false;
      depth += itemDepth;
      if (depth > kMaxDepth) return false;
      any = true;
    }
    return any;
  }

  bool item(int &depth, int nesting) {
    size_t const start = m_Code.size();
    depth = 0;
    switch (*m_Pos) {
      case '.':
      case '$':
        m_Code += *m_Pos++;
        break;
      case '(': {
        if (nesting >= kMaxDepth) return false;
        m_Code += static_cast<char>(kGroup);
        ++m_Pos;
        int inner = 0;
        if (!list(inner, nesting + 1) || *m_Pos != ')') return false;
        ++m_Pos;
        depth = inner + 1;
        break;
      }
      case ':':
        if (isClassLetter(m_Pos[1])) {
          m_Code += static_cast<char>(kClass);
          m_Code += m_Pos[1];
          m_Pos += 2;
        } else {
          m_Code += static_cast<char>(kChar);
          m_Code += *m_Pos++;  // a plain colon; the next character starts the next item
        }
        break;
      case '[':
        ++m_Pos;
        if (!set()) return false;
        break;
      default: {
        std::string ch;
        if (!character(ch)) return false;
        m_Code += static_cast<char>(kChar);
        m_Code += ch;
        break;
      }
    }
    if (isRepeatOperator(static_cast<Byte>(*m_Pos))) {
      size_t const length = m_Code.size() - start;
      if (length > kMaxAtomBytes) return false;
      char const header[2] = {*m_Pos++, static_cast<char>(length)};
      m_Code.insert(start, header, 2);
      ++depth;
    }
    return true;
  }

  // After "[": members up to the closing "]", which is skipped. A "-" that follows a member
  // and does not stand right before "]" starts a range from after the last member added.
  bool set() {
    bool const negated = *m_Pos == '^';
    if (negated) ++m_Pos;
    std::string members;
    std::string last;
    while (*m_Pos != '\0' && *m_Pos != ']') {
      if (*m_Pos == '-' && !last.empty() && m_Pos[1] != ']') {
        ++m_Pos;
        std::string to;
        if (!character(to)) return false;
        size_t const before = members.size();
        if (!addRange(members, last, to)) return false;
        if (members.size() != before) last = to;
        continue;
      }
      if (!character(last)) return false;
      members += last;
      if (members.size() > kMaxAtomBytes) return false;
    }
    if (*m_Pos != ']') return false;
    ++m_Pos;
    m_Code += static_cast<char>(negated ? kNotSet : kSet);
    m_Code += static_cast<char>(members.size());
    m_Code += members;
    return true;
  }

  // One character, plain or escaped, with every byte of a multibyte character.
  bool character(std::string &ch) {
    if (*m_Pos == '\\') {
      ++m_Pos;
      return escape(ch);
    }
    if (*m_Pos == '\0') return false;
    char const *const next = plat::nextChar(m_Pos);
    ch.assign(m_Pos, next);
    m_Pos = next;
    return true;
  }

  // The character after a backslash. A backslash at the end of the text is refused, as is
  // "\x" without a hexadecimal digit or with the value 0 (no pattern can hold a NUL).
  bool escape(std::string &ch) {
    char control = 0;
    switch (*m_Pos) {
      case '\0': return false;
      case 'b': control = '\b'; break;
      case 'f': control = '\f'; break;
      case 'n': control = '\n'; break;
      case 'r': control = '\r'; break;
      case 't': control = '\t'; break;
      case 'x': {
        int value = 0;
        int digits = 0;
        char const *p = m_Pos + 1;
        for (; digits < 2 && hexValue(*p) >= 0; ++p, ++digits) value = value * 16 + hexValue(*p);
        if (digits == 0 || value == 0) return false;
        ch.assign(1, static_cast<char>(value));
        m_Pos = p;
        return true;
      }
      default: {
        char const *const next = plat::nextChar(m_Pos);
        ch.assign(m_Pos, next);
        m_Pos = next;
        return true;
      }
    }
    ch.assign(1, control);
    ++m_Pos;
    return true;
  }

  char const *m_Pos;   // the next character of the pattern text
  std::string m_Code;  // the code emitted so far
};

}  // namespace

SYS_String compile(char const *pattern) {
  if (pattern == nullptr || *pattern == '\0') return SYS_String();
  std::string code;
  if (!Compiler(pattern).compile(code) || code.size() > static_cast<size_t>(INT_MAX)) return SYS_String();
  return SYS_String(code.data(), static_cast<int>(code.size()));
}

}  // namespace sys::pattern
