//===- examples/demo/demo.h - Sections of the demo host -----------------===//
//
// Each section shows one subsystem the way the board-design host uses it and
// prints what happens. main.cpp runs them in order.
//
//===------------------------------------------------------------------===//
#ifndef BFC_DEMO_H
#define BFC_DEMO_H

#include <cstdio>
#include <string>

/// Prints a section heading.
inline void demoHeading(char const *title) { std::printf("\n== %s ==\n", title); }
/// Removes a scratch folder with everything in it.
void removeTree(std::string const &root);

void demoText();
void demoGeometry();
void demoUnits();
void demoEvents();
void demoPatterns();
void demoDrawing();
void demoArrays();
void demoAssertions();
void demoFiles();
void demoMessages();
void demoCollections();
void demoProperties();

#endif
