//===- plat/plat_map.h - Private read-only views of whole files ----------===//
#ifndef BFC_PLAT_MAP_H
#define BFC_PLAT_MAP_H

#include <cstddef>

namespace plat {

/// A mapped view: the bytes of a whole file, readable and writable by the process, and
/// never written back (a private copy-on-write mapping).
struct MappedView {
  void *address = nullptr;
  std::size_t length = 0;
};

/// Maps all of `name`. False on failure (last-error set); an empty file succeeds with a
/// null address, as it has no bytes to show. Files beyond 2 GiB - 1 fail with EFBIG.
bool mapFile(char const *name, MappedView &view);

/// Releases a view made by mapFile (a null view succeeds); false on failure.
bool unmapFile(MappedView &view);

}  // namespace plat

#endif
