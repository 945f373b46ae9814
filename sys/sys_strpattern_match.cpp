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

namespace sys::pattern {
namespace {

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

/// The ASCII byte that the code at `pc` must match first when it starts with a plain
/// character (within [pc, end)), else NUL: a quick test that spares running code that
/// must fail.
char leadingLiteral(Byte const *pc, Byte const *end) {
  return pc < end && pc[0] == kChar && pc[1] < 0x80 ? static_cast<char>(pc[1]) : '\0';
}

}  // namespace

Matcher::Matcher(SYS_String const &code)
    : m_Code(reinterpret_cast<Byte const *>(static_cast<char const *>(code))),
      m_CodeEnd(m_Code + code.GetLength()) {
  learn();
}

int Matcher::find(char const *text, int *length) {
  if (length != nullptr) *length = 0;
  if (text == nullptr || *text == '\0') return -1;
  m_Text = text;
  char const *at = text;
  char const *end = nullptr;
  // No attempt can match from where the rest of the text lacks the required byte on. It
  // is learnt once an attempt has failed: only then can it save work.
  bool firstAttempt = true;
  char const *required = nullptr;  // the next required byte at or after `at`
  auto const mayMatch = [&](char const *from) {
    if (firstAttempt) {
      firstAttempt = false;
      return true;
    }
    if (!m_RequiredByteKnown) learnRequiredByte();
    if (m_RequiredByte == '\0' || (required != nullptr && required >= from)) return true;
    required = std::strchr(from, m_RequiredByte);
    return required != nullptr;
  };
  if (m_Anchored) {
    if (mayMatch(at)) end = attempt(at);
  } else if (m_AnyFirst) {
    for (; *at != '\0' && mayMatch(at); at = plat::nextChar(at)) {
      if ((end = attempt(at)) != nullptr) break;
    }
  } else if (m_FirstByteCount == 1) {
    // An ASCII byte found by a byte search is always the start of a character.
    for (; (at = std::strchr(at, m_FewFirstBytes[0])) != nullptr && mayMatch(at); ++at) {
      if ((end = attempt(at)) != nullptr) break;
    }
  } else if (m_FirstByteCount <= kFewFirstBytes && m_AsciiFirst) {
    for (; (at = std::strpbrk(at, m_FewFirstBytes)) != nullptr && mayMatch(at); ++at) {
      if ((end = attempt(at)) != nullptr) break;
    }
  } else if (m_AsciiFirst) {
    for (; *at != '\0'; ++at) {
      if (!isFirstByte(static_cast<unsigned char>(*at))) continue;
      if (!mayMatch(at)) break;
      if ((end = attempt(at)) != nullptr) break;
    }
  } else {
    for (; *at != '\0'; at = plat::nextChar(at)) {
      if (!isFirstByte(static_cast<unsigned char>(*at))) continue;
      if (!mayMatch(at)) break;
      if ((end = attempt(at)) != nullptr) break;
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
      pc = next->resume();
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
      case kChar:
        if (pc[1] < 0x80) {  // a plain ASCII character, the most common atom
          if (*tp != static_cast<char>(pc[1])) return nullptr;
          ++tp;
          pc += 2;
          break;
        }
        [[fallthrough]];
      default:
        tp = step(pc, tp);
        if (tp == nullptr) return nullptr;
        pc = skipAtom(pc);
        break;
    }
  }
}

// Every alternative is followed by what comes after the whole list; the match that ends
// furthest wins, and one that reaches the end of the text cannot be beaten.
char const *Matcher::alternation(Byte const *pc, Byte const *end, Continuation const *next, char const *tp) {
  Continuation const after{nullptr, end, next, nullptr};
  char const *best = nullptr;
  while (*pc == kAlternation) {
    Byte const *const stop = skipSequence(pc + 1);
    after.walkFrom = stop + 1;
    char const literal = leadingLiteral(pc + 1, stop);
    if (literal == '\0' || literal == *tp) {
      char const *const found = run(pc + 1, stop, &after, tp);
      if (found != nullptr && (best == nullptr || found > best)) {
        if (*found == '\0') return found;
        best = found;
      }
    }
    pc = stop + 1;
  }
  // The last alternative runs straight on into the rest.
  char const *const found = run(pc, end, next, tp);
  return found != nullptr && (best == nullptr || found > best) ? found : best;
}

char const *Matcher::occurrence(Byte const *pc, char const *tp) {
  Byte const *const atom = pc + 2;
  return *atom == kGroup ? run(atom, atom + pc[1], nullptr, tp) : step(atom, tp);
}

char const *Matcher::step(Byte const *pc, char const *tp) {
  auto const b = static_cast<unsigned char>(*tp);
  if ((*pc == kSet || *pc == kNotSet) && b != 0 && b < 0x80) {
    if (SetTable const *const table = knownSetTable(pc)) return table->has(b) == (*pc == kSet) ? tp + 1 : nullptr;
  }
  return stepAtom(pc, tp);
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
    // A set tests ASCII characters in a table once the run is long enough to pay for it.
    bool const isSet = atom[0] == kSet || atom[0] == kNotSet;
    bool const inSet = atom[0] == kSet;
    SetTable const *table = isSet ? knownSetTable(atom) : nullptr;
    for (int taken = 1;; ++taken) {
      if (isSet && table == nullptr && taken == 8) table = setTable(atom);
      auto const b = static_cast<unsigned char>(*at);
      char const *following;
      if (table != nullptr && b != 0 && b < 0x80) {
        following = table->has(b) == inSet ? at + 1 : nullptr;
      } else {
        following = occurrence(pc, at);
      }
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

  // When the rest starts with a plain character, only ends of occurrences followed by it
  // are worth a try; in a run of one-byte steps a byte search finds them.
  char const literal = leadingLiteral(rest, end);
  for (;;) {
    bool worthTrying = true;
    if (literal != '\0' && latest.step == 1) {
      char const *const low = at - (latest.count - 1);
      auto const *const hit = static_cast<char const *>(memrchr(low, literal, static_cast<size_t>(at - low) + 1));
      if (hit == nullptr) {
        latest.count = 1;
        at = low;
        worthTrying = false;
      } else {
        latest.count -= at - hit;
        at = hit;
      }
    } else if (literal != '\0') {
      worthTrying = *at == literal;
    }
    if (worthTrying) {
      if (char const *const found = run(rest, end, next, at)) {
        m_Runs.truncate(mark);
        return found;
      }
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
  char const literal = leadingLiteral(rest, end);
  for (;;) {
    if (literal == '\0' || *at == literal) {
      if (char const *const found = run(rest, end, next, at)) return found;
    }
    char const *const following = occurrence(pc, at);
    if (following == nullptr || following == at) return nullptr;
    at = following;
  }
}

}  // namespace sys::pattern
