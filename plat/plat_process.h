//===- plat/plat_process.h - Starting programs without a shell -----------===//
//
// A command line is split the way the board-design platform's programs split
// theirs: blanks and tabs separate arguments, double quotes group them, and a
// backslash escapes a double quote (2n backslashes before a quote give n and
// the quote groups; 2n + 1 give n and a literal quote; other backslashes stand
// as they are). The program starts through posix_spawnp: no shell ever reads
// the line, so no file name in it can run a command.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_PROCESS_H
#define BFC_PLAT_PROCESS_H

#include "sys_base.h"

#include <string>
#include <vector>

namespace plat {

/// The arguments of `commandLine`.
BFC_API std::vector<std::string> splitCommandLine(char const *commandLine);

/// `argument` as it must be written in a command line to come back whole from
/// splitCommandLine: as it is when it holds no blank, tab or quote, else quoted.
BFC_API std::string quoteArgument(std::string const &argument);

/// Starts the program that `commandLine` names (found on PATH unless it holds a "/")
/// with the line's arguments, and does not wait for it; its exit is collected in the
/// background. False (last-error set) when it could not be started or the line is empty.
BFC_API bool startProgram(char const *commandLine);

}  // namespace plat

#endif
