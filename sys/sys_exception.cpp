//===- sys/sys_exception.cpp - The library's exception with a text -------===//
#include "sys_exception.h"

SYS_Exception::SYS_Exception(char const *format, ...) {
  va_list args;
  va_start(args, format);
  m_Text.FormatV(format, args);
  va_end(args);
}

SYS_Exception::SYS_Exception(int, ...) {}
