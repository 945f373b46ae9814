//===- plat/plat_mbcs.cpp - UTF-16 to the multibyte code page -----------===//
#include "plat/plat_mbcs.h"

namespace plat {

void appendCodePoint(std::string &out, unsigned long cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

void appendUtf16AsUtf8(std::string &out, unsigned short const *wide) {
  constexpr unsigned long replacement = 0xFFFD;
  for (; *wide != 0; ++wide) {
    unsigned long const unit = *wide;
    if (unit >= 0xD800 && unit <= 0xDBFF && wide[1] >= 0xDC00 && wide[1] <= 0xDFFF) {
      appendCodePoint(out, 0x10000 + ((unit - 0xD800) << 10) + (wide[1] - 0xDC00));
      ++wide;
    } else if (unit >= 0xD800 && unit <= 0xDFFF) {
      appendCodePoint(out, replacement);
    } else {
      appendCodePoint(out, unit);
    }
  }
}

}  // namespace plat
