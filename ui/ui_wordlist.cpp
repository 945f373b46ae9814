//===- ui/ui_wordlist.cpp - Growth of the word list -------------------===//
//
// Words are trivially copyable, so the block lives in malloc'd memory and grows
// with realloc, which can often extend it without copying.
//
//===------------------------------------------------------------------===//
#include "ui_wordlist.h"

#include <climits>
#include <cstdlib>
#include <new>

UI_WordList::~UI_WordList() { std::free(m_Words); }

void UI_WordList::grow(int count) {
  if (count < 0 || count > INT_MAX - m_Size) throw std::bad_alloc();
  int const needed = m_Size + count;
  // Doubling keeps appends amortised constant; 64 words hold a few commands at once.
  int capacity = m_Capacity < 64 ? 64 : m_Capacity;
  while (capacity < needed) capacity = capacity > INT_MAX / 2 ? INT_MAX : capacity * 2;
  size_t const bytes = sizeof(int32_t) * static_cast<size_t>(capacity);
  if (bytes / sizeof(int32_t) != static_cast<size_t>(capacity)) throw std::bad_alloc();
  void *const block = std::realloc(m_Words, bytes);
  if (block == nullptr) throw std::bad_alloc();
  m_Words = static_cast<int32_t *>(block);
  m_Capacity = capacity;
}
