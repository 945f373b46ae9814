//===- inc/sys_base.h - Export macro and the handle type ---------------===//
//
// Included by every public header. BFC_API marks what the shared library
// exports; everything else stays hidden (-fvisibility=hidden).
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_BASE_H
#define BFC_SYS_BASE_H

#include <cstdint>

// On ELF the same attribute serves the library and its users.
#define BFC_API __attribute__((visibility("default")))

/// An item handle, or an integer that carries an address: a signed integer as wide as a
/// pointer (`int` on i386, `long` on x86_64). 0 means no item.
typedef std::intptr_t SYS_Handle;

static_assert(sizeof(SYS_Handle) == sizeof(void *), "a handle holds an address");
static_assert(sizeof(int) == 4, "int is 32 bits in both data models");

/// An iterator or position that stands nowhere.
constexpr int SYS_Nowhere = 0x7FFFFFFF;

#endif
