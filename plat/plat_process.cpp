//===- plat/plat_process.cpp - Starting programs without a shell ---------===//
#include "plat/plat_process.h"

#include "plat/plat_fault_gate.h"
#include "plat_error.h"

#include <cerrno>
#include <cstdlib>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char **environ;

namespace plat {

namespace {

/// The program `name` stands for, as posix_spawnp would find it: the name itself when it
/// holds a "/", else the first executable file of that name on PATH; empty when there is
/// none. Looked up before the start so that a missing program is told apart the same way
/// everywhere, also where the start cannot report a failed exec (under an emulator).
std::string findProgram(std::string const &name) {
  auto const runnable = [](std::string const &path) { return ::access(path.c_str(), X_OK) == 0; };
  if (name.find('/') != std::string::npos) return runnable(name) ? name : std::string();
  char const *const path = std::getenv("PATH");
  std::string const folders = path != nullptr ? path : "/usr/local/bin:/bin:/usr/bin";
  for (std::size_t start = 0; start <= folders.size();) {
    std::size_t end = folders.find(':', start);
    if (end == std::string::npos) end = folders.size();
    std::string const folder = end == start ? "." : folders.substr(start, end - start);
    if (runnable(folder + "/" + name)) return folder + "/" + name;
    start = end + 1;
  }
  return std::string();
}

}  // namespace

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
  std::string const program = findProgram(arguments[0]);
  if (program.empty()) {
    errno = ENOENT;
    PLAT_SetLastErrorFromErrno();
    return false;
  }
  std::vector<char *> argv;
  for (std::string &argument : arguments) argv.push_back(&argument[0]);
  argv.push_back(nullptr);
  pid_t child = 0;
  int const error = posix_spawnp(&child, program.c_str(), nullptr, nullptr, argv.data(), environ);
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
