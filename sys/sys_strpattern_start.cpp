//===- sys/sys_strpattern_start.cpp - Where pattern matches can start ---===//
//
// Learnt from the byte code before a search, so that the search skips text
// where no match can begin: the bytes a match can start with, whether every
// alternative is anchored, and a byte that every match must contain. Sets get
// bit tables here too.
//
//===------------------------------------------------------------------===//
#include "sys/sys_strpattern_match.h"

namespace sys::pattern {
namespace {

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

void Matcher::learn() {
  // Anchored when every alternative starts with "^"; the walk is needed only when the
  // first one does.
  if (*m_Code == kStart) {
    m_Anchored = true;
  } else if (*m_Code == kAlternation && m_Code[1] == kStart) {
    m_Anchored = true;
    Byte const *pc = m_Code;
    for (; *pc == kAlternation && m_Anchored; pc = skipSequence(pc + 1) + 1) m_Anchored = pc[1] == kStart;
    m_Anchored = m_Anchored && *pc == kStart;
  }
  if (addFirstBytes(m_Code, m_CodeEnd)) m_AnyFirst = true;  // a match can be empty

  m_AsciiFirst = (m_FirstBytes[2] | m_FirstBytes[3]) == 0;
  if (m_AnyFirst || !m_AsciiFirst) return;
  // Up to four first bytes are searched for together.
  for (int word = 0; word < 2; ++word) {
    for (std::uint64_t bits = m_FirstBytes[word]; bits != 0 && m_FirstByteCount <= kFewFirstBytes; bits &= bits - 1) {
      if (m_FirstByteCount < kFewFirstBytes) m_FewFirstBytes[m_FirstByteCount] = static_cast<char>(word * 64 + __builtin_ctzll(bits));
      ++m_FirstByteCount;
    }
  }
  if (m_FirstByteCount <= kFewFirstBytes) m_FewFirstBytes[m_FirstByteCount] = '\0';
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
        bool empty = false;
        while (*pc == kAlternation) {
          Byte const *const stop = skipSequence(pc + 1);
          empty |= addFirstBytes(pc + 1, stop);
          pc = stop + 1;
        }
        Byte const *const after = skipSequence(pc) + 1;
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
        SetTable const *const table = setTable(pc);
        if (table != nullptr) {
          m_FirstBytes[0] |= table->bits[0];
          m_FirstBytes[1] |= table->bits[1];
          if (table->asciiOnly) return false;
        }
        // The first bytes of multibyte members and invalid bytes (of all when no table).
        char const *const members = reinterpret_cast<char const *>(pc + 2);
        char const *const stop = members + pc[1];
        for (char const *m = members; m < stop;) {
          auto const b = static_cast<unsigned char>(*m);
          if (b < 0x80) {
            if (table == nullptr) addFirstByte(b);
            ++m;
          } else {
            addFirstByte(b);
            m += plat::charLength(m, stop);
          }
        }
        return false;
      }
      default:  // ".", "]"
        m_AnyFirst = true;
        return false;
    }
  }
  return true;
}

// An ASCII character that every match of the one alternative contains: the last plain
// character outside optional repetitions, preferring one that cannot also be the first
// byte (an attempt starts at that byte anyway).
void Matcher::learnRequiredByte() {
  m_RequiredByteKnown = true;
  if (*m_Code == kAlternation) return;
  Byte const *pc = m_Code;
  if (*pc == kStart) ++pc;
  for (; *pc != kEndOfAlternative; pc = skipItem(pc)) {
    Byte const *atom = pc;
    if (isRepeatOperator(*pc)) {
      if (*pc != kPlus && *pc != kShortest) continue;
      atom = pc + 2;
    }
    if (atom[0] != kChar || atom[1] >= 0x80) continue;
    bool const firstAnyway = m_FirstByteCount == 1 && atom[1] == static_cast<Byte>(m_FewFirstBytes[0]);
    if (!firstAnyway || m_RequiredByte == '\0') m_RequiredByte = static_cast<char>(atom[1]);
  }
  if (m_FirstByteCount == 1 && m_RequiredByte == m_FewFirstBytes[0]) m_RequiredByte = '\0';
}

Matcher::SetTable const *Matcher::knownSetTable(Byte const *set) const {
  for (int i = 0; i < m_SetTableCount; ++i) {
    if (m_SetTables[i].set == set) return &m_SetTables[i];
  }
  return nullptr;
}

Matcher::SetTable const *Matcher::setTable(Byte const *set) {
  if (SetTable const *const known = knownSetTable(set)) return known;
  if (m_SetTableCount == kSetTables) return nullptr;
  SetTable &table = m_SetTables[m_SetTableCount++];
  table.set = set;
  // Bytes of 0x80 and above belong to multibyte members or are invalid bytes, which no
  // ASCII character equals.
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  unsigned above = 0;
  for (Byte const *m = set + 2, *const stop = set + 2 + set[1]; m < stop; ++m) {
    unsigned const b = *m;
    if (b < 64) {
      low |= std::uint64_t{1} << b;
    } else if (b < 128) {
      high |= std::uint64_t{1} << (b - 64);
    } else {
      above = 1;
    }
  }
  table.bits[0] = low;
  table.bits[1] = high;
  table.asciiOnly = above == 0;
  return &table;
}

}  // namespace sys::pattern
