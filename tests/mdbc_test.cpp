//===- tests/mdbc_test.cpp - The catalogue tool and its source writer ----===//
#include "mdbc_source.h"

#include "tests/msgdb_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <random>
#include <sys/wait.h>

namespace {

/// A random catalogue: descending and repeated numbers, heads of one name in two cases,
/// the empty name, texts with colons, "$" ends and nothing at all.
std::string randomSource(std::mt19937 &random) {
  char const *const names[] = {"Pads", "PADS", "", "Vias and holes", "x"};
  char const *const texts[] = {"t", "a:b", "ends$", "two  $", "", "%d of %s"};
  std::string source;
  for (int lines = static_cast<int>(random() % 25); lines > 0; --lines) {
    if (random() % 4 == 0)
      source += "[" + std::string(names[random() % 5]) + "]\n";
    else
      source += std::to_string(random() % 12) + ":" + texts[random() % 6] + "\n";
  }
  return source;
}

/// Runs the catalogue tool beside the test program (through this build's emulator, if
/// any) and gives its exit status; its standard output and error go to `output`.
int mdbc(std::string const &arguments, std::string &output) {
  std::string const tool = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "mdbc";
  std::string const emulator = BFC_TEST_EMULATOR;
  FILE *const pipe = popen(((emulator.empty() ? "" : "'" + emulator + "' ") + "'" + tool + "' " + arguments + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return -1;
  output.clear();
  char chunk[512];
  while (std::size_t got = std::fread(chunk, 1, sizeof chunk, pipe)) output.append(chunk, got);
  int const status = pclose(pipe);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

// text -> mdb -> text -> mdb gives the same bytes, whatever order the numbers came in.
TEST(MdbcSource, WrittenBackSourceCompilesToTheSameBytes) {
  TempDir dir;
  RecordingManager rec;
  DiagnosticLog log;
  std::mt19937 random(15);
  for (int round = 0; round < 300; ++round) {
    std::string const source = randomSource(random);
    std::string const first = CompileSource(dir, source, "first.mdb");
    SFM_MessageDB compiled((dir / "first.mdb").c_str());
    std::string written, error;
    ASSERT_TRUE(WriteMessageSource(compiled, written, error)) << error << "\n" << source;
    ASSERT_EQ(CompileSource(dir, written, "second.mdb"), first) << source << "---\n" << written;
  }
}

TEST(MdbcSource, RefusesWhatNoSourceLineCanCarry) {
  TempDir dir;
  RecordingManager rec;
  std::string bytes = CompileSource(dir, "1:ab\n");
  bytes[bytes.size() - 2] = ' ';  // "a " would lose its blank in a source
  SFM_MessageDB db(dir.Write("blank.mdb", bytes).c_str());
  std::string written, error;
  EXPECT_FALSE(WriteMessageSource(db, written, error));
  EXPECT_EQ(error, "key 1: the text cannot stand on a source line");
}

TEST(MdbcTool, CompilesLooksUpAndCounts) {
  TempDir dir;
  std::string out;
  std::string const source = dir.Write("cat.msgs", "1:title\n[Routing]\n2:Net %s routed\n");
  EXPECT_EQ(mdbc("compile '" + source + "' -o '" + dir / "cat.mdb" + "'", out), 0) << out;
  EXPECT_EQ(mdbc("lookup '" + dir / "cat.mdb" + "' routing:2", out), 0);
  EXPECT_EQ(out, "Net %s routed\n");
  EXPECT_EQ(mdbc("lookup '" + dir / "cat.mdb" + "' 4", out), 1);
  EXPECT_EQ(mdbc("stats '" + dir / "cat.mdb" + "'", out), 0);
  EXPECT_EQ(out, "sections: 1\nmessages: 2\ntext bytes: 25\n");
  EXPECT_EQ(mdbc("decompile '" + dir / "cat.mdb" + "' -o '" + dir / "back.msgs" + "'", out), 0) << out;
  EXPECT_EQ(mdbc("compile '" + dir / "back.msgs" + "' -o '" + dir / "back.mdb" + "'", out), 0) << out;
  EXPECT_EQ(TempDir::Read(dir / "back.mdb"), TempDir::Read(dir / "cat.mdb"));
}

TEST(MdbcTool, ReportsErrorsWithFileAndLine) {
  TempDir dir;
  std::string out;
  std::string const source = dir.Write("bad.msgs", "1:ok\n oops\n[x\n");
  EXPECT_EQ(mdbc("compile '" + source + "' -o '" + dir / "bad.mdb" + "'", out), 1);
  EXPECT_EQ(out, source + ":2: leading blanks are not allowed\n" + source + ":3: invalid section: \"[x\"\n" +
                     "mdbc: 2 errors, " + dir / "bad.mdb" + " not written\n");
  EXPECT_EQ(TempDir::Read(dir / "bad.mdb"), "<missing>");
  EXPECT_EQ(mdbc("stats '" + dir.Write("cut.mdb", "abc") + "'", out), 1);
  EXPECT_NE(out.find("shorter than its 14-byte header"), std::string::npos) << out;
  EXPECT_EQ(mdbc("compile '" + dir / "none.msgs" + "' -o x.mdb", out), 1);
  EXPECT_NE(out.find("none.msgs"), std::string::npos) << out;
  EXPECT_EQ(mdbc("compile only-one-argument", out), 2);
  EXPECT_EQ(mdbc("frobnicate", out), 2);
  for (char const *command : {"compile", "decompile", "lookup", "stats"}) {
    EXPECT_EQ(mdbc(std::string(command) + " --help", out), 0);
    EXPECT_EQ(out.rfind(std::string("usage: mdbc ") + command, 0), 0u) << out;
  }
}
