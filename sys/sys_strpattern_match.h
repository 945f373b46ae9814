//===- sys/sys_strpattern_match.h - Running pattern byte code on text ---===//
//
// A backtracking interpreter over the byte code of sys_strpattern_code.h.
// It recurses along the structure of the pattern only: repetitions iterate
// over their occurrences and alternations over their alternatives, so the
// stack depth does not grow with the text.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_STRPATTERN_MATCH_H
#define BFC_SYS_STRPATTERN_MATCH_H

#include "sys/sys_strpattern_code.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace sys::pattern {

/// Finds matches of one compiled pattern. Build one per search, or per run of searches as
/// Substitute does: it learns where matches can start once, and keeps scratch space.
class Matcher {
public:
  /// `code` is a non-empty compiled form that outlives the matcher.
  explicit Matcher(SYS_String const &code);

  /// The byte offset of the leftmost match in NUL-terminated `text` and its length in
  /// `*length` (which may be null); -1 and length 0 when there is none. Attempts start at
  /// every character but the final NUL.
  int find(char const *text, int *length);

private:
  /// Where matching goes on once the current stretch of code is used up: the code
  /// [pc, end), then `next`. An alternation's continuation finds its `pc`, the end of its
  /// list, only when an alternative first gets there (walking on from `walkFrom`).
  struct Continuation {
    mutable Byte const *pc;
    Byte const *end;
    Continuation const *next;
    mutable Byte const *walkFrom;
    Byte const *resume() const {
      if (pc == nullptr) pc = skipList(walkFrom);
      return pc;
    }
  };

  /// A run of `count` successive occurrences of a repetition, each `step` bytes long.
  struct Run {
    std::ptrdiff_t step;
    std::ptrdiff_t count;
  };

  /// The older runs of the repetitions under way, innermost last; a repetition keeps its
  /// latest run to itself and pops its older ones before it returns. A run of one short
  /// occurrence takes one byte, so even text of mixed character widths costs at most about
  /// a byte per occurrence.
  class RunLog {
  public:
    size_t size() const { return m_Bytes.size(); }
    void truncate(size_t size) { m_Bytes.resize(size); }
    void push(Run const &run) {
      if (run.count == 1 && run.step > 0 && run.step < kLong) {
        m_Bytes.push_back(static_cast<unsigned char>(run.step));
        return;
      }
      auto const *const raw = reinterpret_cast<unsigned char const *>(&run);
      m_Bytes.insert(m_Bytes.end(), raw, raw + sizeof run);
      m_Bytes.push_back(kLong);
    }
    Run pop() {
      unsigned char const tag = m_Bytes.back();
      m_Bytes.pop_back();
      if (tag != kLong) return Run{tag, 1};
      Run run;
      std::memcpy(&run, m_Bytes.data() + m_Bytes.size() - sizeof run, sizeof run);
      m_Bytes.resize(m_Bytes.size() - sizeof run);
      return run;
    }

  private:
    static constexpr unsigned char kLong = 0x80;  // ends a whole Run record
    std::vector<unsigned char> m_Bytes;
  };

  /// The ASCII members of one set as a 128-bit table.
  struct SetTable {
    Byte const *set;
    std::uint64_t bits[2];
    bool asciiOnly;  // no member has a byte of 0x80 or above
    bool has(unsigned char b) const { return (bits[b >> 6] >> (b & 63)) & 1; }
  };

  // Matching (sys_strpattern_match.cpp).
  char const *attempt(char const *at);
  /// The end of a match of the code [pc, end) followed by `next`, starting at `tp`; null
  /// when there is none.
  char const *run(Byte const *pc, Byte const *end, Continuation const *next, char const *tp);
  char const *alternation(Byte const *pc, Byte const *end, Continuation const *next, char const *tp);
  char const *longestFirst(Byte const *pc, Byte const *end, Continuation const *next, char const *tp);
  char const *shortestFirst(Byte const *pc, Byte const *end, Continuation const *next, char const *tp);
  /// One occurrence of the atom of the repeated item at `pc`, matched on its own.
  char const *occurrence(Byte const *pc, char const *tp);
  /// The one-position atom at `pc` at `tp`: the end of what it takes, or null.
  char const *step(Byte const *pc, char const *tp);

  // What is learnt of the pattern before searching (sys_strpattern_start.cpp).
  void learn();
  bool addFirstBytes(Byte const *pc, Byte const *end);
  void addFirstByte(unsigned char b) { m_FirstBytes[b >> 6] |= std::uint64_t{1} << (b & 63); }
  bool isFirstByte(unsigned char b) const { return (m_FirstBytes[b >> 6] >> (b & 63)) & 1; }
  void learnRequiredByte();
  /// The table of the set at `set` when one was built, else null.
  SetTable const *knownSetTable(Byte const *set) const;
  /// The table of the set at `set`, built now if need be; null when every table is taken
  /// (the members are then searched).
  SetTable const *setTable(Byte const *set);

  Byte const *m_Code;
  Byte const *m_CodeEnd;
  char const *m_Text = nullptr;     // the text given to find
  char const *m_Attempt = nullptr;  // where the current match attempt started
  RunLog m_Runs;

  static constexpr int kSetTables = 8;
  SetTable m_SetTables[kSetTables];
  int m_SetTableCount = 0;

  // Where a match can start: only at the start of the text; at any character; or only at
  // a character whose first byte is in m_FirstBytes.
  bool m_Anchored = false;
  bool m_AnyFirst = false;
  bool m_AsciiFirst = true;  // m_FirstBytes has no byte of 0x80 or above
  std::uint64_t m_FirstBytes[4] = {0, 0, 0, 0};
  // For ASCII first bytes: how many there are (counted up to one more than kFewFirstBytes)
  // and, when they are few, the bytes themselves as a NUL-terminated text.
  static constexpr int kFewFirstBytes = 4;
  int m_FirstByteCount = 0;
  char m_FewFirstBytes[kFewFirstBytes + 1] = {};
  // An ASCII byte that every match contains after its start (NUL when none is known);
  // learnt on first need.
  bool m_RequiredByteKnown = false;
  char m_RequiredByte = 0;
};

}  // namespace sys::pattern

#endif
