//===- sfm/sfmmsgdb.cpp - Message lookup --------------------------------===//
//
// TR is how the library and its host turn a message reference into text.
//
//===------------------------------------------------------------------===//
#include "sfm_tr.h"

#include "plat/plat_mbcs.h"
#include "plat/plat_string_store.h"

#include <cstring>

namespace {

/// The program's texts are read through a buffer of this many bytes, the NUL included.
constexpr int kProgramTextBuffer = 1000;

/// The byte length of `text` cut to fit the buffer without splitting a character.
int fittedLength(char const *text) {
  constexpr int room = kProgramTextBuffer - 1;
  // A character is at most 4 bytes: looking 3 bytes past the room is enough to judge the last.
  char const *const end = text + strnlen(text, room + 3);
  char const *p = text;
  while (p < end) {
    int const n = plat::charLength(p, end);
    if (p + n > text + room) break;
    p += n;
  }
  return static_cast<int>(p - text);
}

}  // namespace

SYS_String TR(int id) {
  SYS_String result;
  if (char const *const text = plat::findProgramString(id)) {
    int const length = fittedLength(text);
    if (length > 0) return SYS_String(text, length);
  }
  result.LoadString(static_cast<unsigned int>(id));
  return result;
}

SYS_String TR(char const *text) { return SYS_String(text); }
