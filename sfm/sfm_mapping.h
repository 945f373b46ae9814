//===- sfm/sfm_mapping.h - The record of a file's mapped view ------------===//
#ifndef BFC_SFM_MAPPING_H
#define BFC_SFM_MAPPING_H

#include "plat/plat_map.h"

/// A file's view, held while it is mapped.
struct SFM_Mapping {
  plat::MappedView view;
};

#endif
