//===- tools/mdbc/main.cpp - The message catalogue tool ------------------===//
//
// mdbc compiles a catalogue's text source into the ".mdb" form, writes a
// compiled catalogue back as source, looks texts up and counts what a
// catalogue holds. Errors go to standard error; the exit status is 0 on
// success, 1 on a failure of the work and 2 for a wrong command line.
//
//===------------------------------------------------------------------===//
#include "mdbc_source.h"
#include "sfm.h"
#include "sfm_msgdb.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <strings.h>
#include <vector>

namespace {

char const kUsage[] =
    "usage: mdbc COMMAND ARGS...\n"
    "  compile SRC -o OUT.mdb   compile a text source\n"
    "  decompile IN.mdb [-o OUT] write a compiled catalogue back as text source\n"
    "  lookup DB KEY            print the text of KEY: a number, or SECTION:NUMBER\n"
    "  stats DB                 count the sections, messages and bytes\n"
    "Each command takes --help. DB is compiled when its name ends in \".mdb\".\n";

struct Command {
  char const *name;
  char const *help;
  int arguments;  // besides the options
  int (*run)(std::vector<std::string> const &arguments, std::string const &output);
};

int diagnostics = 0;

void printDiagnostic(char const *file, int line, char const *message, char const *text) {
  ++diagnostics;
  if (text != nullptr)
    std::fprintf(stderr, "%s:%d: %s: \"%s\"\n", file, line, message, text);
  else
    std::fprintf(stderr, "%s:%d: %s\n", file, line, message);
}

/// Prints the file manager's error events, which carry the system's reason.
int reportFileError(int code, SFM_EventData *data) {
  if (code > 150) std::fprintf(stderr, "mdbc: %s\n", static_cast<char const *>(data->GetText()));
  return 0;
}

bool isCompiled(std::string const &name) {
  return name.size() >= 4 && strcasecmp(name.c_str() + name.size() - 4, ".mdb") == 0;
}

/// The database `name` in the form its extension names, or null with the reason printed.
std::unique_ptr<SFM_MessageDB> open(std::string const &name) {
  std::unique_ptr<SFM_MessageDB> db(isCompiled(name) ? new SFM_MessageDB(name.c_str())
                                                     : new SFM_MessageDB(name.c_str(), 0));
  if (!db->GetError().IsEmpty()) {
    std::fprintf(stderr, "mdbc: %s\n", static_cast<char const *>(db->GetError()));
    return nullptr;
  }
  if (!db->IsLoaded()) return nullptr;  // the open failure is reported already
  return db;
}

int compile(std::vector<std::string> const &arguments, std::string const &output) {
  if (output.empty()) {
    std::fprintf(stderr, "mdbc compile: -o OUT.mdb is required\n");
    return 2;
  }
  std::unique_ptr<SFM_MessageDB> db(new SFM_MessageDB(arguments[0].c_str(), 0));
  if (!db->IsLoaded()) return 1;  // the open failure is reported already
  if (diagnostics > 0) {
    std::fprintf(stderr, "mdbc: %d error%s, %s not written\n", diagnostics, diagnostics == 1 ? "" : "s",
                 output.c_str());
    return 1;
  }
  if (!db->Save(output.c_str())) {
    std::fprintf(stderr, "mdbc: %s\n", static_cast<char const *>(db->GetError()));
    return 1;
  }
  return 0;
}

int decompile(std::vector<std::string> const &arguments, std::string const &output) {
  std::unique_ptr<SFM_MessageDB> db = open(arguments[0]);
  if (!db) return 1;
  std::string source, error;
  if (!WriteMessageSource(*db, source, error)) {
    std::fprintf(stderr, "mdbc: %s: %s\n", arguments[0].c_str(), error.c_str());
    return 1;
  }
  std::FILE *const out = output.empty() ? stdout : std::fopen(output.c_str(), "wb");
  bool written = out != nullptr && std::fwrite(source.data(), 1, source.size(), out) == source.size();
  if (out != nullptr) written = (out == stdout ? std::fflush(out) : std::fclose(out)) == 0 && written;
  if (!written) std::fprintf(stderr, "mdbc: %s: cannot be written\n", output.empty() ? "output" : output.c_str());
  return written ? 0 : 1;
}

int lookup(std::vector<std::string> const &arguments, std::string const &) {
  std::unique_ptr<SFM_MessageDB> db = open(arguments[0]);
  if (!db) return 1;
  std::string const &key = arguments[1];
  std::size_t const colon = key.rfind(':');
  char *end = nullptr;
  long const number = std::strtol(key.c_str() + (colon == std::string::npos ? 0 : colon + 1), &end, 10);
  if (*end != '\0' || end == key.c_str() + (colon == std::string::npos ? 0 : colon + 1)) {
    std::fprintf(stderr, "mdbc lookup: \"%s\" is neither a number nor SECTION:NUMBER\n", key.c_str());
    return 2;
  }
  long full = number;
  if (colon != std::string::npos) {
    long const base = db->GetSectionBase(key.substr(0, colon).c_str());
    if (base < 0) {
      std::fprintf(stderr, "mdbc: no section \"%s\"\n", key.substr(0, colon).c_str());
      return 1;
    }
    full = base + number;
  }
  std::vector<int> const keys = db->GetKeys();
  if (full < -2147483647L - 1 || full > 2147483647L ||
      !std::binary_search(keys.begin(), keys.end(), static_cast<int>(full))) {
    std::fprintf(stderr, "mdbc: no text under %s\n", key.c_str());
    return 1;
  }
  std::printf("%s\n", static_cast<char const *>(db->getTxt(full)));
  return 0;
}

int stats(std::vector<std::string> const &arguments, std::string const &) {
  std::unique_ptr<SFM_MessageDB> db = open(arguments[0]);
  if (!db) return 1;
  long sections = 0, messages = 0, bytes = 0;
  for (int const key : db->GetKeys()) {
    ++(key < 0 ? sections : messages);
    bytes += db->GetStoredText(key).GetLength();
  }
  std::printf("sections: %ld\nmessages: %ld\ntext bytes: %ld\n", sections, messages, bytes);
  return 0;
}

Command const kCommands[] = {
    {"compile", "usage: mdbc compile SRC -o OUT.mdb\n"
                "Compiles the text source SRC. Malformed lines are printed as FILE:LINE: MESSAGE;\n"
                "any of them fails the command and nothing is written.\n", 1, &compile},
    {"decompile", "usage: mdbc decompile IN.mdb [-o OUT]\n"
                  "Writes the catalogue back as text source (to standard output without -o).\n"
                  "Compiling that source gives IN.mdb again, byte for byte.\n", 1, &decompile},
    {"lookup", "usage: mdbc lookup DB KEY\n"
               "Prints the text stored under KEY: a key number, or SECTION:NUMBER for a\n"
               "message's number within a section (names match in any case).\n", 2, &lookup},
    {"stats", "usage: mdbc stats DB\n"
              "Prints the number of sections and messages and the bytes of their texts.\n", 1, &stats},
};

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
    std::fputs(kUsage, argc < 2 ? stderr : stdout);
    return argc < 2 ? 2 : 0;
  }
  Command const *command = nullptr;
  for (Command const &candidate : kCommands)
    if (std::strcmp(argv[1], candidate.name) == 0) command = &candidate;
  if (command == nullptr) {
    std::fprintf(stderr, "mdbc: unknown command \"%s\"\n%s", argv[1], kUsage);
    return 2;
  }
  std::vector<std::string> arguments;
  std::string output;
  for (int i = 2; i < argc; ++i) {
    if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
      std::fputs(command->help, stdout);
      return 0;
    }
    if (std::strcmp(argv[i], "-o") == 0 && i + 1 < argc)
      output = argv[++i];
    else
      arguments.push_back(argv[i]);
  }
  if (static_cast<int>(arguments.size()) != command->arguments) {
    std::fputs(command->help, stderr);
    return 2;
  }
  SFM manager;
  SFM_EventHook hook(&reportFileError);
  manager.GetEvent().Insert(hook);
  SFM_MessageDB::SetDiagnosticSink(&printDiagnostic);
  return command->run(arguments, output);
}
