//===- tests/plat_strings_test.cpp - The host's numbered texts and TR ---===//
//
// What the library reads at load can only be seen in a fresh process: the load tests start this binary again as a
// probe, with the host's texts given one way or another, and read what the probe prints.
//
//===------------------------------------------------------------------===//
#include "plat_strings.h"
#include "sfm_tr.h"
#include "sys_convert.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

char const kProbeVariable[] = "BFC_TEST_LOAD_PROBE";

/// In a probe, prints what the library found while it loaded, then what TR gives once a
/// run-time table is registered, and exits before any test runs.
int runLoadProbe() {
  if (std::getenv(kProbeVariable) == nullptr) return 0;
  std::printf("file=%s\n", static_cast<char const *>(PLAT_GetProgramStringFile()));
  for (int t = 0; t < SYS_UnitTypeCount; ++t)
    std::printf("unit%d=%s\n", t, SYS_Convert::GetUnitName(static_cast<SYS_UnitType>(t)));
  SYS_String loaded;
  loaded.LoadString(500);
  std::printf("cut=%d uncut=%d multibyte=%d\n", TR(500).GetLength(), loaded.GetLength(), TR(501).GetLength());
  PLAT_StringEntry const runTime[] = {{45104, "MIL"}, {600, "run time"}, {45110, "filled in"}};
  PLAT_RegisterStrings(runTime, 3);
  std::printf("45104=%s 600=%s 45110=%s\n", static_cast<char const *>(TR(45104)),
              static_cast<char const *>(TR(600)), static_cast<char const *>(TR(45110)));
  std::fflush(stdout);
  std::exit(0);
}
int const g_LoadProbe = runLoadProbe();

std::string selfPath() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

/// Runs `program` as a probe with `environment` given to env(1), through the emulator that runs this build's
/// programs when the build names one; gives what it wrote to standard output and standard error.
std::string runProbe(std::string const &environment, std::string const &program, int &status) {
  std::string const emulator = BFC_TEST_EMULATOR;
  std::string const command = "env " + environment + " " + kProbeVariable + "=1 " +
                              (emulator.empty() ? "" : "'" + emulator + "' ") + "'" + program + "' 2>&1";
  std::string output;
  status = -1;
  FILE *const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  char chunk[512];
  size_t got;
  while ((got = std::fread(chunk, 1, sizeof chunk, pipe)) > 0) output.append(chunk, got);
  int const code = pclose(pipe);
  status = WIFEXITED(code) ? WEXITSTATUS(code) : -1;
  return output;
}

/// A fresh directory for one test's files, removed afterwards.
struct TempDirectory {
  std::string path;
  TempDirectory() : path(testing::TempDir() + "bfc_strings_XXXXXX") {
    if (mkdtemp(path.data()) == nullptr) path.clear();
  }
  ~TempDirectory() {
    std::error_code ignored;
    if (!path.empty()) std::filesystem::remove_all(path, ignored);
  }
  std::string file(char const *name, std::string const &content) const {
    std::ofstream(path + "/" + name, std::ios::binary) << content;
    return path + "/" + name;
  }
};

std::string text(SYS_String const &s) { return std::string(static_cast<char const *>(s)); }

/// The texts TR gives for `ids`, joined by "|".
std::string trTexts(std::initializer_list<int> ids) {
  std::string joined;
  for (int id : ids) joined += text(TR(id)) + "|";
  return joined.substr(0, joined.size() - 1);
}

/// Removes the run-time table when a test ends.
struct RunTimeTableReset {
  ~RunTimeTableReset() { PLAT_RegisterStrings(nullptr, 0); }
};

}  // namespace

// BFC_STRINGS names a file read at load, else the file beside the program named after it is read; bad lines are
// skipped with a report; TR cuts to 999 bytes, whole characters, where LoadString gives the long text whole; the
// program's run-time table comes first. A host that supplies nothing gets empty names, silently; one naming a missing
// file is told so; nothing fails.
TEST(ProgramStrings, ReadAtLoad) {
  TempDirectory const dir;
  // Host texts with the unit names, a bad line, a text too long for the program's buffer, and one whose cut would
  // fall inside a two-byte character.
  std::string const path = dir.file("host.strings", "# board host\n45104 mil\n45105 mm\n45106 inch\n45107 \xC2\xB5m\n"
                                                    "oops\n500 " + std::string(1500, 'a') + "\n501 " +
                                                    std::string(998, 'b') + "\xC3\xA9\n45110\n");
  std::string const program = dir.path + "/board";
  std::filesystem::copy_file(selfPath(), program);
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  std::string const beside = dir.file("board.strings", "45104 Mil\n45107 Micron\n");
  std::string const nothing = "file=\nunit0=\nunit1=\nunit2=\nunit3=\ncut=0 uncut=0 multibyte=0\n"
                              "45104=MIL 600=run time 45110=filled in\n";
  struct Case { char const *name; std::string environment, program, output; std::vector<std::string> lines; };
  Case const cases[] = {
      {"from the variable", "BFC_STRINGS='" + path + "'", selfPath(), "",
       {"file=" + path, "unit0=mil", "unit1=mm", "unit2=inch", "unit3=\xC2\xB5m",
        "bfc: " + path + ":6: a number from 0 to 65535 is expected", "cut=999 uncut=1500 multibyte=998",
        "45104=mil 600=run time 45110=filled in"}},
      {"beside the program", "-u BFC_STRINGS", program, "", {"file=" + beside, "unit0=Mil", "unit1=", "unit3=Micron"}},
      {"no file beside the program", "-u BFC_STRINGS", selfPath(), nothing, {}},
      {"variable set but empty", "BFC_STRINGS=", selfPath(), nothing, {}},
      {"named file missing", "BFC_STRINGS=/nonexistent/host.strings", selfPath(), "",
       {"bfc: /nonexistent/host.strings: cannot be read (No such file or directory)", "unit0=",
        "45104=MIL 600=run time 45110=filled in"}},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    int status = -1;
    std::string const output = runProbe(c.environment, c.program, status);
    EXPECT_EQ(status, 0) << output;
    for (auto const &line : c.lines)
      EXPECT_NE(output.find(line + "\n"), std::string::npos) << line << " in\n" << output;
    if (!c.output.empty()) {
      EXPECT_EQ(output.rfind(c.output, 0), 0u) << output;  // and nothing before
    }
  }
}

// A registration replaces the whole run-time table, or changes nothing when one entry is bad; none removes it.
TEST(RunTimeStrings, RegisterReplacesOrFailsWhole) {
  RunTimeTableReset const reset;
  PLAT_StringEntry const first[] = {{1, "one"}, {2, "two"}, {65535, "last"}, {0, "zero"}};
  ASSERT_EQ(PLAT_RegisterStrings(first, 4), 1);
  EXPECT_EQ(trTexts({1, 65535, 0}), "one|last|zero");

  struct Case { char const *name; std::vector<PLAT_StringEntry> entries; int count; } bad[] = {
      {"number twice", {{3, "a"}, {3, "b"}}, 2}, {"number too large", {{3, "a"}, {65536, "b"}}, 2},
      {"negative number", {{-1, "a"}}, 1}, {"negative count", {{3, "a"}}, -1}, {"no entries", {}, 2},
  };
  for (auto const &c : bad) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(PLAT_RegisterStrings(c.entries.empty() ? nullptr : c.entries.data(), c.count), 0);
    EXPECT_EQ(trTexts({1, 3}), "one|");
  }

  PLAT_StringEntry const second[] = {{2, "TWO"}, {4, nullptr}};
  ASSERT_EQ(PLAT_RegisterStrings(second, 2), 1);
  EXPECT_EQ(trTexts({1, 2, 4}), "|TWO|");
  ASSERT_EQ(PLAT_RegisterStrings(nullptr, 0), 1);
  EXPECT_EQ(text(TR(2)), "");
}

// LoadString replaces the content and says whether a non-empty text was found.
TEST(RunTimeStrings, LoadStringByNumber) {
  RunTimeTableReset const reset;
  PLAT_StringEntry const entries[] = {{7, "seven"}, {8, ""}};
  ASSERT_EQ(PLAT_RegisterStrings(entries, 2), 1);
  struct Case { unsigned int id; int found; char const *text; } cases[] = {
      {7, 1, "seven"}, {8, 0, ""}, {9, 0, ""}, {0x80000007u, 0, ""}, {65536 + 7, 0, ""},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.id);
    SYS_String s("previous");
    EXPECT_EQ(s.LoadString(c.id) != 0, c.found != 0);
    EXPECT_EQ(text(s), c.text);
  }
}

// TR of a literal is that literal, placeholders included; an unknown number is empty.
TEST(Tr, LiteralsAndUnknownNumbers) {
  EXPECT_EQ(text(TR("File error %d: %s")), "File error %d: %s");
  EXPECT_EQ(text(TR(static_cast<char const *>(nullptr))), "");
  EXPECT_EQ(trTexts({-1, 0, 45103, 65535, 65536, INT_MAX, INT_MIN}), "||||||");
}

// A line is number, blanks, text; comments, blank lines, a byte-order mark and CRs are ignored; escapes work,
// hexadecimal digits in either case.
TEST(StringFile, Format) {
  RunTimeTableReset const reset;
  TempDirectory const dir;
  std::string const path = dir.file("format.strings",
                                    "\xEF\xBB\xBF" "1 first\n  # a comment\n\n2\t\t tabbed text  \n"
                                    "3 two\\nlines and a \\t tab\n4 \\x20leading space and a back\\\\slash\n"
                                    "9 \\xc3\\xa9\\x4a\\x6B\\xAa\n5\n"
                                    "6 windows\r\n  7 indented # not a comment\n08 leading zero\n65535 last");
  SYS_String error;
  ASSERT_EQ(PLAT_RegisterStringFile(path.c_str(), &error), 1) << text(error);
  struct Case { int id; char const *text; } cases[] = {
      {1, "first"}, {2, "tabbed text  "}, {3, "two\nlines and a \t tab"}, {4, " leading space and a back\\slash"},
      {5, ""}, {6, "windows"}, {7, "indented # not a comment"}, {8, "leading zero"},
      {9, "\xC3\xA9Jk\xAA"}, {65535, "last"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.id);
    EXPECT_EQ(text(TR(c.id)), c.text);
  }
}

// One bad line rejects a run-time file, names the line and the fault, and keeps the table registered before.
TEST(StringFile, BadLinesRejectTheFile) {
  RunTimeTableReset const reset;
  PLAT_StringEntry const before[] = {{1, "kept"}};
  ASSERT_EQ(PLAT_RegisterStrings(before, 1), 1);
  TempDirectory const dir;
  struct Case { char const *name; std::string content; char const *message; /* after "path:" */ } cases[] = {
      {"no number", "1 a\nx b\n", "2: a number from 0 to 65535 is expected"},
      {"number too large", "65536 big\n", "1: a number from 0 to 65535 is expected"},
      {"huge number", "99999999999999999999 big\n", "1: a number from 0 to 65535 is expected"},
      {"no blank", "12abc\n", "1: a blank is expected between the number and the text"},
      {"negative", "-1 minus\n", "1: a number from 0 to 65535 is expected"},
      {"unknown escape", "3 bad \\q\n", "1: unknown escape \\q"},
      {"backslash at the end", "3 end\\\n", "1: a backslash ends the line"},
      {"short hex escape", "3 \\x4\n", "1: \\x needs two hexadecimal digits"},
      {"NUL escape", "3 \\x00\n", "1: \\x needs two hexadecimal digits"},
      {"NUL byte", std::string("3 a\0b\n", 6), "1: the line holds a NUL byte"},
      {"number twice", "5 a\n\n5 b\n", "3: number 5 was given before, on line 1"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    std::string const path = dir.file("bad.strings", c.content);
    SYS_String error;
    EXPECT_EQ(PLAT_RegisterStringFile(path.c_str(), &error), 0);
    EXPECT_EQ(text(error).rfind(path + ":" + c.message, 0), 0u) << text(error);
    EXPECT_EQ(text(TR(1)), "kept");
  }
  EXPECT_EQ(PLAT_RegisterStringFile((dir.path + "/missing.strings").c_str(), nullptr), 0);
  SYS_String error;
  EXPECT_EQ(PLAT_RegisterStringFile(dir.path.c_str(), &error), 0);
  EXPECT_NE(text(error).find("cannot be read"), std::string::npos) << text(error);
  for (char const *unnamed : {static_cast<char const *>(nullptr), ""}) {
    error = "";
    EXPECT_EQ(PLAT_RegisterStringFile(unnamed, &error), 0);
    EXPECT_EQ(text(error), "no string file was named");
  }
  EXPECT_EQ(text(TR(1)), "kept");
}
