//===- sys/sys_strpattern_match.cpp - Running pattern byte code on text -===//
//
// Alternation keeps the longest of its alternatives' matches (each followed by
// the rest of the pattern); greedy repetitions take every occurrence and give
// back all but the first one by one; shortest repetitions take one more only
// while the rest fails. Repeated atoms match on their own, without the rest.
//
//===------------------------------------------------------------------===//
#include "sys/sys_strpattern_match.h"

#include "sys_strutil.h"

#include <cstring>

namespace sys::pattern {
namespace {

bool isDigit(unsigned char b) { return b >= '0' && b <= '9'; }
bool isLower(unsigned char b) { return b >= 'a' && b <= 'z'; }
bool isUpper(unsigned char b) { return b >= 'A' && b <= 'Z'; }
bool isAlpha(unsigned char b) { return isLower(b) || isUpper(b); }
bool isHexDigit(unsigned char b) { return isDigit(b) || (b >= 'a' && b <= 'f') || (b >= 'A' && b <= 'F'); }
bool isSpace(unsigned char b) { return b == ' ' || (b >= '\t' && b <= '\r'); }

/// Whether the byte is in the one-character class `letter`; ASCII only, so a byte of 0x80
/// or above (and the NUL) is in none.
bool inClass(Byte letter, unsigned char b) {
  switch (letter) {
    case 'a': return isAlpha(b) || isDigit(b);
    case 'b': return isSpace(b);
    case 'c': return isAlpha(b);
    case 'd': return isDigit(b);
    case 'l': return isLower(b);
    case 'u': return isUpper(b);
    default: return isHexDigit(b);  // 'x'
  }
}

/// Whether the character of `length` bytes at `ch` is among the `count` member bytes.
bool isMember(Byte const *members, int count, char const *ch, int length) {
  auto const b = static_cast<unsigned char>(*ch);
  // An ASCII byte is always a whole character, in the text and among the members alike.
  if (b < 0x80) return std::memchr(members, b, static_cast<size_t>(count)) != nullptr;
  auto const *const text = reinterpret_cast<Byte const *>(ch);
  char const *const end = reinterpret_cast<char const *>(members + count);
  for (Byte const *m = members; m < members + count;) {
    int const n = plat::charLength(reinterpret_cast<char const *>(m), end);
    if (n == length) {
      int i = 0;
      while (i < n && m[i] == text[i]) ++i;
      if (i == n) return true;
    }
    m += n;
  }
  return false;
}

/// Matches the one-position atom at `pc` ("c", ".", "$", ":" or a set) at `tp`: the end of
/// what it takes, or null.
char const *stepAtom(Byte const *pc, char const *tp) {
  auto const b = static_cast<unsigned char>(*tp);
  switch (*pc) {
    case kChar: {
      Byte const *const ch = pc + 1;
      if (b != *ch) return nullptr;
      if (b < 0x80) return tp + 1;
      int const n = codeCharLength(ch);
      if (n == 1) return plat::nextChar(tp) == tp + 1 ? tp + 1 : nullptr;  // an invalid byte
      // A valid multibyte character has no NUL, so the text ends no earlier than a mismatch.
      for (int i = 1; i < n; ++i) {
        if (static_cast<Byte>(tp[i]) != ch[i]) return nullptr;
      }
      return tp + n;
    }
    case kAny:
      return b == 0 ? nullptr : plat::nextChar(tp);
    case kEnd:
      return b == 0 ? tp : nullptr;
    case kClass:
      switch (pc[1]) {
        case 'h': return getinteger(tp, 3);
        case 'n': return getdouble(tp, 1);
        case 'z': return getinteger(tp, 1);
        default: return inClass(pc[1], b) ? tp + 1 : nullptr;
      }
    default: {  // kSet, kNotSet
      if (b == 0) return nullptr;
      char const *const next = b < 0x80 ? tp + 1 : plat::nextChar(tp);
      bool const member = isMember(pc + 2, pc[1], tp, static_cast<int>(next - tp));
      return member == (*pc == kSet) ? next : nullptr;
    }
  }
}

/// The ASCII bytes a match of class `letter` can start with, as two 64-bit words.
std::uint64_t const *classFirstBytes(Byte letter) {
  struct Table {
    std::uint64_t bytes[128][2] = {};
    Table() {
      for (char const letter : {'a', 'b', 'c', 'd', 'h', 'l', 'n', 'u', 'x', 'z'}) {
        for (int b = 1; b < 0x80; ++b) {
          auto const c = static_cast<unsigned char>(b);
          bool const sign = c == '+' || c == '-';
          bool starts;
          switch (letter) {
            case 'h': starts = sign || isHexDigit(c); break;
            case 'n': starts = sign || c == '.' || isDigit(c); break;
            case 'z': starts = sign || isDigit(c); break;
            default: starts = inClass(static_cast<Byte>(letter), c); break;
          }
          if (starts) bytes[static_cast<int>(letter)][b >> 6] |= std::uint64_t{1} << (b & 63);
        }
      }
    }
  };
  static Table const table;
  return table.bytes[letter & 0x7F];
}

}  // namespace

Matcher::Matcher(SYS_String const &code)
    : m_Code(reinterpret_cast<Byte const *>(static_cast<char const *>(code))),
      m_CodeEnd(m_Code + code.GetLength()) {
  learnFirstBytes();
}

int Matcher::find(char const *text, int *length) {
  if (length != nullptr) *length = 0;
  if (text == nullptr || *text == '\0') return -1;
  m_Text = text;
  char const *at = text;
  char const *end = nullptr;
  if (m_Anchored) {
    end = attempt(at);
  } else if (m_AnyFirst) {
    for (; *at != '\0'; at = plat::nextChar(at)) {
      if ((end = attempt(at)) != nullptr) break;
    }
  } else if (m_FirstByteCount == 1 && m_AsciiFirst) {
    // An ASCII byte found by a byte search is always the start of a character.
    for (; (at = std::strchr(at, m_OnlyFirstByte)) != nullptr; ++at) {
      if ((end = attempt(at)) != nullptr) break;
    }
  } else if (m_AsciiFirst) {
    for (; *at != '\0'; ++at) {
      if (isFirstByte(static_cast<unsigned char>(*at)) && (end = attempt(at)) != nullptr) break;
    }
  } else {
    for (; *at != '\0'; at = plat::nextChar(at)) {
      if (isFirstByte(static_cast<unsigned char>(*at)) && (end = attempt(at)) != nullptr) break;
    }
  }
  if (end == nullptr) return -1;
  if (length != nullptr) *length = static_cast<int>(end - at);
  return static_cast<int>(at - text);
}

char const *Matcher::attempt(char const *at) {
  m_Attempt = at;
  return run(m_Code, m_CodeEnd, nullptr, at);
}

char const *Matcher::run(Byte const *pc, Byte const *end, Continuation const *next, char const *tp) {
  for (;;) {
    if (pc == end) {
      if (next == nullptr) return tp;
      pc = next->pc;
      end = next->end;
      next = next->next;
      continue;
    }
    switch (*pc) {
      case kGroup:
      case kEndOfAlternative:  // only the last alternative's end is met here
        ++pc;
        break;
      case kStart:
        if (m_Attempt != m_Text) return nullptr;
        ++pc;
        break;
      case kAlternation:
        return alternation(pc, end, next, tp);
      case kOptional:
        // The atom runs on into the rest of the pattern, which directly follows it.
        if (char const *const taken = run(pc + 2, end, next, tp)) return taken;
        pc += 2 + pc[1];
        break;
      case kStar:
      case kPlus:
        return longestFirst(pc, end, next, tp);
      case kShortest:
      case kShortestOrNone:
        return shortestFirst(pc, end, next, tp);
      default:
        tp = stepAtom(pc, tp);
        if (tp == nullptr) return nullptr;
        pc = skipAtom(pc);
        break;
    }
  }
}

// Every alternative is followed by what comes after the whole list; the match that ends
// furthest wins, and one that reaches the end of the text cannot be beaten.
char const *Matcher::alternation(Byte const *pc, Byte const *end, Continuation const *next, char const *tp) {
  Continuation const after{skipList(pc), end, next};
  char const *best = nullptr;
  while (*pc == kAlternation) {
    Byte const *const stop = skipSequence(pc + 1);
    char const *const found = run(pc + 1, stop, &after, tp);
    if (found != nullptr && (best == nullptr || found > best)) {
      if (*found == '\0') return found;
      best = found;
    }
    pc = stop + 1;
  }
  // The last alternative runs straight on into the rest.
  char const *const found = run(pc, end, next, tp);
  return found != nullptr && (best == nullptr || found > best) ? found : best;
}

char const *Matcher::occurrence(Byte const *pc, char const *tp) {
  Byte const *const atom = pc + 2;
  return *atom == kGroup ? run(atom, atom + pc[1], nullptr, tp) : stepAtom(atom, tp);
}

// "*" and "+": take occurrences while the atom matches (an empty one ends the repetition),
// then try the rest after the last, the one before, ... down to after the first, which is
// never given back. Zero occurrences only where the atom does not match at all.
char const *Matcher::longestFirst(Byte const *pc, Byte const *end, Continuation const *next, char const *tp) {
  Byte const *const rest = pc + 2 + pc[1];
  char const *const first = occurrence(pc, tp);
  if (first == nullptr) return *pc == kStar ? run(rest, end, next, tp) : nullptr;
  if (first == tp) return run(rest, end, next, tp);

  size_t const mark = m_Runs.size();
  Run latest{first - tp, 1};
  char const *at = first;
  Byte const *const atom = pc + 2;
  if (atom[0] == kChar && atom[1] < 0x80) {
    // One ASCII byte: the occurrences are a plain byte run.
    char const *stop = at;
    while (*stop == static_cast<char>(atom[1])) ++stop;
    latest.count += stop - at;
    at = stop;
  } else {
    for (;;) {
      char const *const following = occurrence(pc, at);
      if (following == nullptr || following == at) break;
      if (following - at == latest.step) {
        ++latest.count;
      } else {
        m_Runs.push(latest);
        latest = Run{following - at, 1};
      }
      at = following;
    }
  }

  for (;;) {
    if (char const *const found = run(rest, end, next, at)) {
      m_Runs.truncate(mark);
      return found;
    }
    at -= latest.step;
    if (--latest.count == 0) {
      if (m_Runs.size() == mark) return nullptr;  // back at the start: the first stays taken
      latest = m_Runs.pop();
    }
  }
}

// "#" and "@": one occurrence, then the rest is tried after each occurrence before one more
// is taken. "@" takes none only where the atom does not match at all.
char const *Matcher::shortestFirst(Byte const *pc, Byte const *end, Continuation const *next, char const *tp) {
  Byte const *const rest = pc + 2 + pc[1];
  char const *at = occurrence(pc, tp);
  if (at == nullptr) return *pc == kShortestOrNone ? run(rest, end, next, tp) : nullptr;
  for (;;) {
    if (char const *const found = run(rest, end, next, at)) return found;
    char const *const following = occurrence(pc, at);
    if (following == nullptr || following == at) return nullptr;
    at = following;
  }
}

// Where a match can start, learnt once from the code: lets find skip positions whose first
// byte no match can begin with, and stop after the first attempt when every alternative is
// anchored.
void Matcher::learnFirstBytes() {
  m_Anchored = true;
  for (Byte const *pc = m_Code;;) {
    bool const last = *pc != kAlternation;
    Byte const *const start = last ? pc : pc + 1;
    if (*start != kStart) m_Anchored = false;
    if (last) break;
    pc = skipSequence(start) + 1;
  }
  if (addFirstBytes(m_Code, m_CodeEnd)) m_AnyFirst = true;  // a match can be empty
  m_AsciiFirst = (m_FirstBytes[2] | m_FirstBytes[3]) == 0;
  for (int word = 0; word < 4; ++word) {
    if (m_FirstBytes[word] == 0) continue;
    m_FirstByteCount += __builtin_popcountll(m_FirstBytes[word]);
    m_OnlyFirstByte = static_cast<unsigned char>(word * 64 + __builtin_ctzll(m_FirstBytes[word]));
  }
}

// Adds the first bytes of what the code [pc, end) can match; true when it can match the
// empty string, so that what follows it counts too.
bool Matcher::addFirstBytes(Byte const *pc, Byte const *end) {
  while (pc < end) {
    switch (*pc) {
      case kGroup:
      case kEndOfAlternative:
      case kStart:
        ++pc;
        break;
      case kAlternation: {
        Byte const *const after = skipList(pc);
        bool empty = false;
        while (*pc == kAlternation) {
          Byte const *const stop = skipSequence(pc + 1);
          empty |= addFirstBytes(pc + 1, stop);
          pc = stop + 1;
        }
        empty |= addFirstBytes(pc, after);
        if (!empty) return false;
        pc = after;
        break;
      }
      case kStar:
      case kPlus:
      case kOptional:
      case kShortest:
      case kShortestOrNone: {
        Byte const *const rest = pc + 2 + pc[1];
        bool const empty = addFirstBytes(pc + 2, rest);
        if (!empty && (*pc == kPlus || *pc == kShortest)) return false;
        pc = rest;
        break;
      }
      case kChar:
        addFirstByte(pc[1]);
        return false;
      case kEnd:
        return false;  // the end of the text is never where an attempt starts
      case kClass: {
        std::uint64_t const *const bytes = classFirstBytes(pc[1]);
        m_FirstBytes[0] |= bytes[0];
        m_FirstBytes[1] |= bytes[1];
        return false;
      }
      case kSet: {
        char const *const members = reinterpret_cast<char const *>(pc + 2);
        char const *const stop = members + pc[1];
        for (char const *m = members; m < stop; m += plat::charLength(m, stop)) addFirstByte(static_cast<unsigned char>(*m));
        return false;
      }
      default:  // ".", "]"
        m_AnyFirst = true;
        return false;
    }
  }
  return true;
}

}  // namespace sys::pattern
