//===- plat/plat_string_store.h - Lookup in the host's tables of texts ---===//
//
// The library's view of the host's numbered texts: the program's table (read
// on first use, which is while the library loads) and the run-time table.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_STRING_STORE_H
#define BFC_PLAT_STRING_STORE_H

namespace plat {

/// The program's text with number `id`, or null when there is none.
char const *findProgramString(int id);

/// The run-time table's text with number `id`, or null when there is none.
char const *findRegisteredString(int id);

}  // namespace plat

#endif
