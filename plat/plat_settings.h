//===- plat/plat_settings.h - The host's settings in an INI file ---------===//
//
// Settings live in a plain INI file: "[section]" heads and "entry=value"
// lines; ";" and "#" start comment lines, which a rewrite keeps. Section and
// entry names compare without regard to ASCII case; names and values are read
// without their surrounding blanks. Every change rewrites the whole file into
// a temporary file beside it and renames that over the old one, so a process
// killed at any moment leaves either the old file or the new one, never half.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_SETTINGS_H
#define BFC_PLAT_SETTINGS_H

#include "sys_base.h"

#include <string>

namespace plat {

/// The file used when the host names none: $XDG_CONFIG_HOME/<program>/settings.ini, with
/// $HOME/.config standing in for an unset, empty or relative XDG_CONFIG_HOME.
BFC_API std::string defaultSettingsPath();

/// The value of `entry` in `section` of the file `path`; false when the file, the section
/// or the entry is missing.
BFC_API bool readSetting(std::string const &path, char const *section, char const *entry, std::string &value);

/// Sets `entry` of `section` to `value`, creating the file, its folders, the section and
/// the entry as needed. A null `value` removes the entry, a null `entry` the whole section.
/// False (last-error set) when the file cannot be written, or for a name holding a line
/// end, "]" or "=" (a section name may hold "="), or a value holding a line end (EINVAL):
/// the file is then left as it was.
BFC_API bool writeSetting(std::string const &path, char const *section, char const *entry, char const *value);

}  // namespace plat

#endif
