//===- plat/plat_process.cpp - Starting programs without a shell ---------===//
#include "plat/plat_process.h"

#include "plat/plat_fault_gate.h"
#include "plat_error.h"

#include <cerrno>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>

extern char **environ;

namespace plat {

std::vector<std::string> splitCommandLine(char const *commandLine) {
  std::vector<std::string> arguments;
  if (commandLine == nullptr) return arguments;
  char const *p = commandLine;
  for (;;) {
    while (*p == ' ' || *p == '\t') ++p;
    if (*p == '\0') return arguments;
    std::string argument;
    bool quoted = false;
    for (; *p != '\0' && (quoted || (*p != ' ' && *p != '\t')); ++p) {
      if (*p == '\\') {
        std::size_t slashes = 0;
        while (p[slashes] == '\\') ++slashes;
        if (p[slashes] != '"') {
          argument.append(slashes, '\\');
          p += slashes - 1;
          continue;
        }
        argument.append(slashes / 2, '\\');
        p += slashes;
        if (slashes % 2 == 1) {
          argument += '"';
          continue;
        }
      }
      if (*p == '"')
        quoted = !quoted;
      else
        argument += *p;
    }
    arguments.push_back(argument);
  }
}

std::string quoteArgument(std::string const &argument) {
  if (!argument.empty() && argument.find_first_of(" \t\"") == std::string::npos) return argument;
  std::string quoted = "\"";
  std::size_t slashes = 0;
  for (char const ch : argument) {
    if (ch == '\\') {
      ++slashes;
      continue;
    }
    // Backslashes before a quote are doubled, and the quote gets one of its own.
    quoted.append(ch == '"' ? 2 * slashes + 1 : slashes, '\\');
    slashes = 0;
    quoted += ch;
  }
  quoted.append(2 * slashes, '\\');  // so the closing quote stays a quote
  return quoted + '"';
}

bool startProgram(char const *commandLine) {
  std::vector<std::string> arguments = splitCommandLine(commandLine);
  if (arguments.empty()) {
    errno = EINVAL;
    PLAT_SetLastErrorFromErrno();
    return false;
  }
  if (failsNow(PLAT_CallSpawn)) return PLAT_SetLastErrorFromErrno(), false;
  std::vector<char *> argv;
  for (std::string &argument : arguments) argv.push_back(&argument[0]);
  argv.push_back(nullptr);
  pid_t child = 0;
  int const error = posix_spawnp(&child, argv[0], nullptr, nullptr, argv.data(), environ);
  if (error != 0) {
    errno = error;
    PLAT_SetLastErrorFromErrno();
    return false;
  }
  // The program runs on its own; a waiting thread keeps it from staying a zombie.
  std::thread([child] {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
  }).detach();
  return true;
}

}  // namespace plat
