//===- examples/demo/demo_text.cpp - Text: parsing, ordering, searching --===//
#include "demo.h"

#include "bfc.h"

void demoText() {
  demoHeading("Text");
  SYS_String s("R10");
  std::printf("%s\n", static_cast<char const *>(s));
}
