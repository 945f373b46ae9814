//===- inc/sfm_tr.h - Message references turned into display text -------===//
//
// Literal and numbered texts go through one entry point, so a message can be
// given either way. The numbered texts are the host's (inc/plat_strings.h).
//
//===------------------------------------------------------------------===//
#ifndef BFC_SFM_TR_H
#define BFC_SFM_TR_H

#include "sys_base.h"
#include "sys_string.h"

/// The host's text with number `id`; the empty string when there is none. The program's
/// table is searched first, through a buffer of 1000 bytes (a longer text is cut to at most
/// 999 bytes, never inside a character); when it has no non-empty text, the string is loaded
/// as SYS_String::LoadString does (run-time table, then the program's table uncut).
BFC_API SYS_String TR(int id);

/// A copy of `text`, placeholders and all; empty for null.
BFC_API SYS_String TR(char const *text);

#endif
