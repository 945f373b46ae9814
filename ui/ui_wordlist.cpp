//===- ui/ui_wordlist.cpp - Growth and copies of the word list ----------===//
//
// Words are trivially copyable, so the block lives in malloc'd memory and grows
// with realloc, which can often extend it without copying.
//
//===------------------------------------------------------------------===//
#include "ui_wordlist.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

UI_WordList::UI_WordList(UI_WordList const &other) : UI_WordList() {
  if (other.m_Size == 0) return;
  m_Words = static_cast<int32_t *>(std::malloc(sizeof(int32_t) * static_cast<size_t>(other.m_Size)));
  if (m_Words == nullptr) throw std::bad_alloc();
  std::memcpy(m_Words, other.m_Words, sizeof(int32_t) * static_cast<size_t>(other.m_Size));
  m_Size = m_Capacity = other.m_Size;
}

UI_WordList &UI_WordList::operator=(UI_WordList const &other) {
  if (&other != this) {
    UI_WordList copy(other);
    *this = std::move(copy);
  }
  return *this;
}

UI_WordList::UI_WordList(UI_WordList &&other) noexcept
    : m_Words(other.m_Words), m_Size(other.m_Size), m_Capacity(other.m_Capacity) {
  other.m_Words = nullptr;
  other.m_Size = other.m_Capacity = 0;
}

UI_WordList &UI_WordList::operator=(UI_WordList &&other) noexcept {
  if (&other != this) {
    std::free(m_Words);
    m_Words = other.m_Words;
    m_Size = other.m_Size;
    m_Capacity = other.m_Capacity;
    other.m_Words = nullptr;
    other.m_Size = other.m_Capacity = 0;
  }
  return *this;
}

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
