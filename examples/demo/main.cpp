//===- examples/demo/main.cpp - The demo host ---------------------------===//
//
// A stand-in for the board-design application: it links the library and uses
// its classes directly, section by section.
//
//===------------------------------------------------------------------===//
#include "demo.h"

int main() {
  std::printf("BFC demo host\n");
  demoText();
  demoGeometry();
  demoUnits();
  demoEvents();
  demoPatterns();
  demoDrawing();
  demoArrays();
  demoAssertions();
  demoFiles();
  demoMessages();
  demoCollections();
  demoProperties();
  std::printf("\nDemo finished.\n");
  return 0;
}
