//===- scc/scc_variant_texts.h - The host's texts of the variant --------===//
#ifndef BFC_SCC_VARIANT_TEXTS_H
#define BFC_SCC_VARIANT_TEXTS_H

#include "sys_string.h"

namespace scc_detail {

/// The numbered texts of the variant.
enum VariantText {
  kNotANumber = 45062,   ///< a string that is not a number
  kOutOfRange = 45063,   ///< a number beyond the 32-bit range
  kNotInRange = 45064,   ///< a failed range validation: %c, two doubles, %c
};

/// The host's text `id`, or the library's own English one when the host has none, so
/// that a failure is never shown as an empty text.
SYS_String variantText(VariantText id);

}  // namespace scc_detail

#endif
