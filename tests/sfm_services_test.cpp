//===- tests/sfm_services_test.cpp - The manager's database, settings, editor ===//
#include "sfm.h"

#include "plat/plat_process.h"
#include "plat/plat_settings.h"
#include "plat_error.h"
#include "plat_fault.h"
#include "sfm_msgdb.h"
#include "tests/msgdb_support.h"
#include "tests/report_spy.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

/// Waits up to five seconds for `path` to end with a line end (a started program's output).
std::string awaitLine(std::string const &path) {
  for (int i = 0; i < 500; ++i) {
    std::string const bytes = TempDir::Read(path);
    if (!bytes.empty() && bytes.back() == '\n') return bytes;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return TempDir::Read(path);
}

}  // namespace

TEST(SfmInitiate, ChoosesTheLoaderByExtensionOnce) {
  TempDir dir;
  std::string const compiled = dir / "CAT.MDB";
  {
    RecordingManager rec;
    CompileSource(dir, "1:compiled\n", "CAT.MDB");
    EXPECT_EQ(rec.manager.Initiate(nullptr), 0);
    EXPECT_EQ(rec.manager.Initiate(compiled.c_str()), 1);
    SFM_MessageDB *const db = rec.manager.GetMessageDB();
    EXPECT_EQ(std::string(db->getTxt(1)), "compiled");
    EXPECT_EQ(db->GetSectionBase(""), -1);  // the compiled form has no unnamed section
    rec.manager.Initiate(dir.Write("other.msgs", "1:text\n").c_str());
    EXPECT_EQ(rec.manager.GetMessageDB(), db);
  }
  {
    RecordingManager rec;
    rec.manager.Initiate((dir / "missing.msgs").c_str());
    ASSERT_NE(rec.manager.GetMessageDB(), nullptr);
    EXPECT_FALSE(rec.manager.GetMessageDB()->IsLoaded());
    EXPECT_EQ(rec.Codes(true), std::vector<int>{SFM::EventOpenFailed});
    rec.manager.Initiate(compiled.c_str());  // the empty database stays
    EXPECT_FALSE(rec.manager.GetMessageDB()->IsLoaded());
  }
  RecordingManager rec;
  rec.manager.Initiate(dir.Write("cat.mdb.txt", "1:text\n").c_str());
  EXPECT_EQ(std::string(rec.manager.GetMessageDB()->getTxt(1)), "text");
}

TEST(SfmManager, IsValidNeedsTheDatabaseAndSoundFiles) {
  TempDir dir;
  RecordingManager rec;
  ReportSpy spy;
  EXPECT_EQ(rec.manager.IsValid(), 0);
  EXPECT_EQ(spy.Summary(), std::vector<std::string>{"sfm/sfmanagr: the manager has a message database"});
  rec.manager.Initiate(dir.Write("cat.msgs", "1:x\n").c_str());
  spy.Forget();
  EXPECT_EQ(rec.manager.IsValid(), 1);
  EXPECT_TRUE(spy.Reports().empty());
}

TEST(SfmManager, ExternalNamesResolveAgainstTheHostsDirectories) {
  RecordingManager rec;
  SFM_DirArray &dirs = rec.manager.GetDirectories();
  dirs[0] = "/boards/";
  dirs[1] = "/libs";
  EXPECT_EQ(std::string(rec.manager.GetExternalFileName(1, "parts.lib")), "/libs/parts.lib");
  EXPECT_EQ(std::string(rec.manager.GetExternalFileName(0, "/abs/x.brd")), "/abs/x.brd");
  ReportSpy spy;
  EXPECT_EQ(std::string(rec.manager.GetExternalFileName(2, "x")), "");
  EXPECT_EQ(std::string(rec.manager.GetExternalFileName(-1, "x")), "");
  EXPECT_EQ(spy.Reports().size(), 2u);
  EXPECT_EQ(dirs.GetCount(), 2);  // a wrong index never grows the array
}

TEST(SfmSettings, EntriesByNameInAnyCaseWithDefaults) {
  TempDir dir;
  RecordingManager rec;
  std::string const path = dir / "cfg/deep/settings.ini";
  rec.manager.SetProfilePath(path.c_str());
  EXPECT_EQ(std::string(rec.manager.ReadProfileString("general", "editor", "none")), "none");
  EXPECT_EQ(rec.manager.GetProfileIntA("general", "size", -4), -4);
  rec.manager.SetProfileString("General", "Editor", "vi -R");
  rec.manager.SetProfileInt("general", "size", -12);
  rec.manager.SetProfileString("grid", "step", "  25mil ");
  rec.manager.SetProfileString("general", "EDITOR", "ed");
  EXPECT_EQ(TempDir::Read(path), "[General]\nEditor=ed\nsize=-12\n\n[grid]\nstep=25mil\n");
  EXPECT_EQ(rec.manager.GetProfileIntA("GRID", "Step", 0), 25);  // integers read as atoi reads
  EXPECT_EQ(std::string(rec.manager.ReadProfileString("grid", "STEP", "")), "25mil");

  // Comments and other lines stay; null removes an entry or a whole section.
  dir.Write("cfg/deep/settings.ini", "; kept\n[a]\nx=1\n# kept too\ny = 2\n\n[b]\nz=3\n");
  rec.manager.SetProfileString("a", "x", nullptr);
  rec.manager.SetProfileString("b", nullptr, nullptr);
  rec.manager.SetProfileString("a", "w", "4");
  EXPECT_EQ(TempDir::Read(path), "; kept\n[a]\n# kept too\ny = 2\nw=4\n\n");
  EXPECT_EQ(rec.manager.GetProfileIntA("a", "y", 0), 2);

  // A value or name that would break the file's lines is refused, the file left as it was.
  std::string const before = TempDir::Read(path);
  rec.manager.SetProfileString("a", "w", "two\nlines");
  rec.manager.SetProfileString("a", "k=v", "1");
  rec.manager.SetProfileString("a]", "k", "1");
  EXPECT_EQ(TempDir::Read(path), before);
  EXPECT_FALSE(plat::writeSetting(path, "a", "w", "\r"));
  EXPECT_EQ(PLAT_GetLastError(), EINVAL);

  rec.manager.SetProfilePath(nullptr);
  ASSERT_EQ(setenv("XDG_CONFIG_HOME", (dir / "xdg").c_str(), 1), 0);
  EXPECT_EQ(std::string(rec.manager.GetProfilePath()),
            dir / "xdg/" + std::string(program_invocation_short_name) + "/settings.ini");
  unsetenv("XDG_CONFIG_HOME");
}

TEST(SfmSettings, FailedWritesLeaveTheOldFile) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard guard;
  std::string const path = dir.Write("settings.ini", "[s]\ne=old\n");
  rec.manager.SetProfilePath(path.c_str());
  for (PLAT_Call call : {PLAT_CallOpen, PLAT_CallWrite, PLAT_CallFlush, PLAT_CallRename}) {
    PLAT_FailCall(call, call == PLAT_CallOpen ? 2 : 1, ENOSPC);  // the first open reads
    EXPECT_FALSE(plat::writeSetting(path, "s", "e", "new")) << call;
    EXPECT_EQ(TempDir::Read(path), "[s]\ne=old\n") << call;
    EXPECT_EQ(TempDir::Read(path + ".tmp." + std::to_string(::getpid())), "<missing>") << call;
  }
  PLAT_ClearFailures();
  rec.manager.SetProfileString("s", "e", "new");
  EXPECT_EQ(std::string(rec.manager.ReadProfileString("s", "e", "")), "new");
}

// A writer killed at any moment leaves the old file or the new one, never a mixture.
TEST(SfmSettings, SurviveAWriterKilledMidWrite) {
  TempDir dir;
  std::string const path = dir / "settings.ini";
  ASSERT_TRUE(plat::writeSetting(path, "keep", "marker", "1"));
  std::mt19937 random(7);
  for (int round = 0; round < 8; ++round) {
    pid_t const child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0;; ++i) plat::writeSetting(path, "data", "blob", std::string(200000, char('a' + i % 26)).c_str());
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 40));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    std::string blob, marker;
    ASSERT_TRUE(plat::readSetting(path, "keep", "marker", marker)) << round;
    EXPECT_EQ(marker, "1");
    if (plat::readSetting(path, "data", "blob", blob)) {
      ASSERT_EQ(blob.size(), 200000u) << round;
      EXPECT_EQ(blob.find_first_not_of(blob[0]), std::string::npos) << round;
    }
  }
}

TEST(PlatCommandLine, SplitsAsThePlatformDoesAndQuotesBack) {
  using Args = std::vector<std::string>;
  EXPECT_EQ(plat::splitCommandLine(" a  b\t\"c d\" \"\""), (Args{"a", "b", "c d", ""}));
  EXPECT_EQ(plat::splitCommandLine(R"(x"y z"w a\"b c\\d e\\"f g")"), (Args{"xy zw", "a\"b", "c\\\\d", "e\\f g"}));
  EXPECT_EQ(plat::splitCommandLine("\"open"), (Args{"open"}));
  EXPECT_EQ(plat::splitCommandLine(nullptr), Args{});
  std::mt19937 random(11);
  char const alphabet[] = "a \"\\\t;";
  for (int round = 0; round < 2000; ++round) {
    Args args(1 + random() % 3);
    for (std::string &arg : args)
      for (int n = static_cast<int>(random() % 7); n > 0; --n) arg += alphabet[random() % 6];
    std::string line = "prog";
    for (std::string const &arg : args) line += " " + plat::quoteArgument(arg);
    args.insert(args.begin(), "prog");
    ASSERT_EQ(plat::splitCommandLine(line.c_str()), args) << line;
  }
}

// The editor gets the file name as one argument: no shell reads it, so nothing in it runs.
TEST(SfmShowFile, StartsTheEditorWithTheNameAsOneArgument) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard guard;
  rec.manager.SetProfilePath((dir / "settings.ini").c_str());
  EXPECT_EQ(rec.manager.ShowFile("board.brd"), 0);  // no editor configured

  std::string const script = dir.Write("my editor.sh", "#!/bin/sh\nfor a in \"$@\"; do printf '%s|' \"$a\"; done >'" +
                                                           dir / "args" + "'\necho >>'" + dir / "args" + "'\n");
  ::chmod(script.c_str(), 0755);
  rec.manager.SetProfileString("general", "editor", ("\"" + script + "\" -R").c_str());
  std::string const name = "my board\"s; touch '" + dir / "pwned" + "'";
  EXPECT_EQ(rec.manager.ShowFile(name.c_str()), 1);
  EXPECT_EQ(awaitLine(dir / "args"), "-R|" + name + "|\n");
  EXPECT_EQ(TempDir::Read(dir / "pwned"), "<missing>");

  PLAT_FailCall(PLAT_CallSpawn, 1, EAGAIN);
  EXPECT_EQ(rec.manager.ShowFile("x"), 0);
  EXPECT_EQ(PLAT_GetLastError(), EAGAIN);
  rec.manager.SetProfileString("general", "editor", (dir / "no such editor").c_str());
  EXPECT_EQ(rec.manager.ShowFile("x"), 0);
  EXPECT_EQ(PLAT_GetLastError(), ENOENT);
  EXPECT_FALSE(plat::startProgram(" \t"));
  EXPECT_EQ(PLAT_GetLastError(), EINVAL);
  EXPECT_TRUE(rec.Codes(true).empty());  // nothing is reported
}
