//===- inc/ui_wordlist.h - A growable array of 32-bit words -------------===//
//
// The command list of the dynamic drawing layer: words are appended in runs
// (one run per recorded command, one capacity check per run) and the list is
// emptied often, keeping its capacity so that a drag reuses the same block.
//
//===------------------------------------------------------------------===//
#ifndef BFC_UI_WORDLIST_H
#define BFC_UI_WORDLIST_H

#include "sys_base.h"

#include <cstdint>

/// A growable array of signed 32-bit words with append, clear and indexed reads.
///
/// Invariant: 0 <= m_Size <= m_Capacity; m_Words is null exactly when m_Capacity is 0.
class BFC_API UI_WordList {
public:
  UI_WordList() noexcept : m_Words(nullptr), m_Size(0), m_Capacity(0) {}
  /// The list of a layer is the layer's own: it is neither copied nor moved.
  UI_WordList(UI_WordList const &) = delete;
  UI_WordList &operator=(UI_WordList const &) = delete;
  ~UI_WordList();

  int GetSize() const { return m_Size; }
  int IsEmpty() const { return m_Size == 0; }
  /// The words; null while nothing was ever stored. Valid until the next append.
  int32_t const *GetData() const { return m_Words; }
  /// The word at `index`, which must be in [0, GetSize()).
  int32_t operator[](int index) const { return m_Words[index]; }

  void Append(int32_t word) { *Extend(1) = word; }
  /// Makes room for `count` more words at the end and returns where they go; the caller
  /// writes all of them before the list is read. Throws std::bad_alloc when the list
  /// cannot grow (also when the size would pass the range of an int).
  int32_t *Extend(int count) {
    // Unsigned, so that a negative count takes the throwing path too.
    if (static_cast<unsigned>(count) > static_cast<unsigned>(m_Capacity - m_Size)) grow(count);
    int32_t *const at = m_Words + m_Size;
    m_Size += count;
    return at;
  }
  /// Empties the list and keeps its memory.
  void RemoveAll() { m_Size = 0; }

private:
  void grow(int count);

  int32_t *m_Words;  // owned; from malloc, so that growing may extend in place
  int m_Size;
  int m_Capacity;
};

#endif
