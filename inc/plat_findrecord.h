//===- inc/plat_findrecord.h - What a directory search tells of an entry -===//
#ifndef BFC_PLAT_FINDRECORD_H
#define BFC_PLAT_FINDRECORD_H

#include "sys_base.h"

/// One entry found by a wildcard search of a directory.
struct PLAT_FindRecord {
  static constexpr unsigned kSubdirectory = 0x10;  ///< the entry is a directory
  static constexpr unsigned kReadOnly = 0x01;      ///< the owner may not write it
  static constexpr int kNameSize = 260;

  unsigned attrib = 0;    ///< kSubdirectory, kReadOnly
  int time_create = 0;    ///< status change time, seconds since 1970 (2038 and later: INT_MAX)
  int time_access = 0;    ///< last access
  int time_write = 0;     ///< last write
  long size = 0;          ///< bytes; -1 beyond 2 GiB - 1, never a wrapped value
  char name[kNameSize] = {};  ///< the entry's name, NUL-terminated
};

#endif
