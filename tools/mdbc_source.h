//===- tools/mdbc_source.h - A message database written back as source ---===//
//
// The text source is not kept in a compiled database, but everything that
// decides the compiled bytes is: the keys, the texts, the section bases and
// each section's largest number. A source is rebuilt that gives all of them
// again, so that compiling it reproduces the database byte for byte.
//
//===------------------------------------------------------------------===//
#ifndef BFC_TOOLS_MDBC_SOURCE_H
#define BFC_TOOLS_MDBC_SOURCE_H

#include "sfm_msgdb.h"

#include <string>

/// Writes `db` as text source into `source`. False, with the reason in `error`, for a
/// database no source can give (a negative message key, a text with a line end or a
/// trailing blank, a section name the head syntax cannot carry, bases out of order).
bool WriteMessageSource(SFM_MessageDB &db, std::string &source, std::string &error);

#endif
