//===- tests/sfm_directory_test.cpp - SFM_Directory ----------------------===//
#include "sfm_directory.h"

#include "plat_fault.h"
#include "sfm.h"
#include "tests/report_spy.h"
#include "tests/sfm_support.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

/// Every name a search yields, starting with `pattern`.
template <class Next>
std::vector<std::string> all(Next next, char const *pattern) {
  std::vector<std::string> names;
  for (char *name = next(pattern); name != nullptr; name = next(nullptr)) names.emplace_back(name);
  return names;
}

/// A directory with two files, a file without a dot and two subdirectories.
struct Tree {
  TempDir dir;
  SFM_Directory folder;
  Tree() : folder(dir.Path().c_str()) {
    dir.Write("a.txt", "a");
    dir.Write("b.txt", "bb");
    dir.Write("README", "r");
    ::mkdir((dir / "sub").c_str(), 0777);
    ::mkdir((dir / "sub2").c_str(), 0777);
  }
};

typedef std::vector<std::string> Names;

}  // namespace

// Entries include "." and ".."; files and subdirectories leave out what they are not.
TEST(SfmDirectory, SearchesYieldTheirKindInNameOrder) {
  Tree tree;
  SFM_Directory &d = tree.folder;
  EXPECT_EQ(all([&](char const *p) { return d.GetNextEntry(p); }, "*"),
            (Names{".", "..", "README", "a.txt", "b.txt", "sub", "sub2"}));
  EXPECT_EQ(all([&](char const *p) { return d.GetNextFile(p); }, "*"), (Names{"README", "a.txt", "b.txt"}));
  EXPECT_EQ(all([&](char const *p) { return d.GetNextSubdir(p); }, "*"), (Names{"sub", "sub2"}));
  EXPECT_EQ(all([&](char const *p) { return d.GetNextFile(p); }, "*.txt"), (Names{"a.txt", "b.txt"}));
  EXPECT_EQ(all([&](char const *p) { return d.GetNextFile(p); }, "*.*"), (Names{"README", "a.txt", "b.txt"}));
  EXPECT_EQ(all([&](char const *p) { return d.GetNextEntry(p); }, "?.t[x]t"), (Names{"a.txt", "b.txt"}));
  // A closing separator names the directory itself.
  EXPECT_EQ(all([&](char const *p) { return d.GetNextEntry(p); }, "sub/"), Names{"sub"});
  // Entry and file searches are one search.
  EXPECT_STREQ(d.GetNextEntry("*.txt"), "a.txt");
  EXPECT_STREQ(d.GetNextFile(nullptr), "b.txt");
  EXPECT_EQ(d.GetNextEntry(nullptr), nullptr);
  EXPECT_EQ(d.GetNextEntry(nullptr), nullptr);
  EXPECT_EQ(d.GetNextEntry("nothing*"), nullptr);
}

/// A directory that shows its search records.
struct RecordingDirectory : SFM_Directory {
  using SFM_Directory::SFM_Directory;
  SFM_FindData search;
  PLAT_FindRecord const *Find(char const *pattern) {
    return GetNextItem(&search, pattern) != nullptr ? &search : nullptr;
  }
};

// A search's record tells the kind, size and write permission of each entry.
TEST(SfmDirectory, RecordsCarryKindSizeAndPermission) {
  Tree tree;
  ::chmod((tree.dir / "b.txt").c_str(), 0444);
  RecordingDirectory d(tree.dir.Path().c_str());
  PLAT_FindRecord const *record = d.Find("b.txt");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->size, 2);
  EXPECT_EQ(record->attrib, PLAT_FindRecord::kReadOnly);
  EXPECT_GT(record->time_write, 0);
  record = d.Find("sub");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->attrib, PLAT_FindRecord::kSubdirectory);
}

// The working directory is read whatever its length.
TEST(SfmDirectory, CurrentDirectoryOfAnyLength) {
  TempDir dir;
  std::string deep = dir.Path();
  for (int i = 0; i < 12; ++i) {
    deep += std::string(40, static_cast<char>('a' + i)) + "/";
    ASSERT_EQ(::mkdir(deep.c_str(), 0777), 0);
  }
  char saved[4096];
  ASSERT_NE(::getcwd(saved, sizeof saved), nullptr);
  ASSERT_EQ(::chdir(deep.c_str()), 0);
  SYS_String const cwd = SFM_Directory().GetCurDir();
  ASSERT_EQ(::chdir(saved), 0);
  EXPECT_EQ(std::string(cwd), deep);
}

// Existence tests see only their own kind; a copied directory has searches of its own.
TEST(SfmDirectory, ExistenceByKind) {
  Tree tree;
  SFM_Directory &d = tree.folder;
  EXPECT_EQ(d.FileExists("a.txt"), 1);
  EXPECT_EQ(d.FileExists("sub*"), 0);
  EXPECT_EQ(d.DirExists("sub*"), 1);
  EXPECT_EQ(d.DirExists("*.txt"), 0);
  EXPECT_EQ(d.FileExists((tree.dir / "README").c_str()), 1);
  SFM_Directory copy(d);
  EXPECT_STREQ(d.GetNextSubdir("*"), "sub");
  EXPECT_STREQ(copy.GetNextSubdir("*"), "sub");
  EXPECT_STREQ(d.GetNextSubdir(nullptr), "sub2");
  // FileExists ends the entry search it used.
  EXPECT_STREQ(d.GetNextEntry("*.txt"), "a.txt");
  EXPECT_EQ(d.FileExists("*.txt"), 1);
  EXPECT_EQ(d.GetNextEntry(nullptr), nullptr);
  EXPECT_EQ(std::string(d + "x/y"), tree.dir / "x/y");
  EXPECT_EQ(std::string(d + "/etc/y"), "/etc/y");
  SYS_String const cwd = d.GetCurDir();
  EXPECT_EQ(cwd[0], '/');
  EXPECT_EQ(cwd[cwd.GetLength() - 1], '/');
}

// An existing target asks first (151, error 17); only EventYes overwrites.
TEST(SfmDirectory, CopyAsksBeforeOverwriting) {
  Tree tree;
  RecordingManager rec;
  SFM_Directory &d = tree.folder;
  EXPECT_EQ(d.CopyFileA("a.txt", "b.txt", 0), 0);
  EXPECT_EQ(TempDir::Read(tree.dir / "b.txt"), "bb");
  ASSERT_EQ(rec.Codes(true), std::vector<int>{151});
  EXPECT_EQ(rec.events[0].error, static_cast<unsigned>(EEXIST));
  EXPECT_EQ(rec.events[0].name1, tree.dir / "a.txt");
  EXPECT_EQ(rec.events[0].name2, tree.dir / "b.txt");
  rec.Answer(SFM::EventTargetExists, SFM::EventYes);
  EXPECT_EQ(d.CopyFileA("a.txt", "b.txt", 0), 1);
  EXPECT_EQ(TempDir::Read(tree.dir / "b.txt"), "a");
  EXPECT_EQ(d.CopyFileA("README", "new", 0), 1);
  EXPECT_EQ(TempDir::Read(tree.dir / "new"), "r");
}

// Failed copies never harm a file: a missing source leaves the target, a file copied onto
// itself (by any name) stays whole, an empty file copies to an empty file.
TEST(SfmDirectory, CopyFailuresLeaveFilesIntact) {
  Tree tree;
  RecordingManager rec;
  SFM_Directory &d = tree.folder;
  EXPECT_EQ(d.CopyFileA("missing", "a.txt", 1), 0);
  EXPECT_EQ(TempDir::Read(tree.dir / "a.txt"), "a");
  EXPECT_EQ(rec.Codes(true), (std::vector<int>{201, 205}));
  rec.events.clear();
  ASSERT_EQ(::link((tree.dir / "a.txt").c_str(), (tree.dir / "alias").c_str()), 0);
  EXPECT_EQ(d.CopyFileA("a.txt", "./a.txt", 1), 0);
  EXPECT_EQ(d.CopyFileA("alias", "a.txt", 1), 0);
  EXPECT_EQ(TempDir::Read(tree.dir / "a.txt"), "a");
  EXPECT_EQ(rec.Codes(true), (std::vector<int>{205, 205}));
  rec.events.clear();
  EXPECT_EQ(d.CopyFileA("sub", "sub3", 0), 0);
  EXPECT_EQ(rec.events.back().error, static_cast<unsigned>(EISDIR));
  EXPECT_EQ(d.DirExists("sub3") + d.FileExists("sub3"), 0);
  tree.dir.Write("empty", "");
  EXPECT_EQ(d.CopyFileA("empty", "empty2", 0), 1);
  EXPECT_EQ(TempDir::Read(tree.dir / "empty2"), "");
}

// A large file moves in chunks of 100000 bytes, every byte in place.
TEST(SfmDirectory, CopyMovesChunksOf100000Bytes) {
  TempDir dir;
  RecordingManager rec;
  std::string bytes(250000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  dir.Write("big", bytes);
  SFM_Directory d(dir.Path().c_str());
  long const reads = PLAT_CallCount(PLAT_CallRead), writes = PLAT_CallCount(PLAT_CallWrite);
  EXPECT_EQ(d.CopyFileA("big", "big2", 0), 1);
  EXPECT_EQ(PLAT_CallCount(PLAT_CallRead) - reads, 3);
  EXPECT_EQ(PLAT_CallCount(PLAT_CallWrite) - writes, 3);
  EXPECT_TRUE(TempDir::Read(dir / "big2") == bytes);
}

// A copy that loses a byte fails: EventRetry copies again, and a move whose copy failed
// keeps its source.
TEST(SfmDirectory, MoveIsACopyThenADelete) {
  Tree tree;
  RecordingManager rec;
  FaultGuard faults;
  SFM_Directory &d = tree.folder;
  PLAT_FailCall(PLAT_CallWrite, 1, ENOSPC);
  EXPECT_EQ(d.MoveFileA("a.txt", "moved", 0), 0);
  EXPECT_EQ(TempDir::Read(tree.dir / "a.txt"), "a");
  EXPECT_EQ(rec.Codes(true), (std::vector<int>{204, 206}));
  rec.events.clear();
  PLAT_FailCall(PLAT_CallWrite, 1, ENOSPC);
  rec.Answer(SFM::EventMoveFailed, SFM::EventRetry);
  EXPECT_EQ(d.MoveFileA("a.txt", "moved", 1), 1);
  EXPECT_EQ(TempDir::Read(tree.dir / "moved"), "a");
  EXPECT_EQ(TempDir::Read(tree.dir / "a.txt"), "<missing>");
  EXPECT_EQ(rec.Codes(true), (std::vector<int>{204, 206}));
}

// A failed delete raises 207 and retries once per EventRetry; directories are not deleted.
TEST(SfmDirectory, DeleteRetriesOncePerAnswer) {
  Tree tree;
  RecordingManager rec;
  FaultGuard faults;
  SFM_Directory &d = tree.folder;
  PLAT_FailCall(PLAT_CallRemove, 1, EBUSY);
  rec.Answer(SFM::EventDeleteFailed, SFM::EventRetry);
  EXPECT_EQ(d.DeleteFileA("a.txt"), 1);
  EXPECT_EQ(rec.Codes(true), std::vector<int>{207});
  EXPECT_EQ(rec.events[0].error, static_cast<unsigned>(EBUSY));
  EXPECT_EQ(d.DeleteFileA("sub"), 0);
  EXPECT_EQ(d.DirExists("sub"), 1);
  EXPECT_EQ(d.DeleteFileA("a.txt"), 0);
  EXPECT_EQ(rec.events.back().error, static_cast<unsigned>(ENOENT));
}

// Copy, move and delete need the manager.
TEST(SfmDirectory, FileOperationsNeedTheManager) {
  Tree tree;
  ReportSpy spy;
  EXPECT_EQ(tree.folder.CopyFileA("a.txt", "c", 0), 0);
  EXPECT_EQ(tree.folder.MoveFileA("a.txt", "c", 0), 0);
  EXPECT_EQ(tree.folder.DeleteFileA("a.txt"), 0);
  EXPECT_EQ(spy.Summary(), (Names{"sfm/sfmdir: ", "sfm/sfmdir: ", "sfm/sfmdir: "}));
  EXPECT_EQ(TempDir::Read(tree.dir / "a.txt"), "a");
}

// MakePath creates every level, cutting at both separators; the result is the last one's.
// A backslash is no separator to the file system: "b\c" is one name there.
TEST(SfmDirectory, MakePathCreatesEveryLevel) {
  TempDir dir;
  SFM_Directory d;
  EXPECT_EQ(d.MakePath(SYS_String((dir / "a/b/c").c_str())), 1);
  EXPECT_EQ(d.DirExists((dir / "a/b/c").c_str()), 1);
  EXPECT_EQ(d.MakePath(SYS_String((dir / "a/b\\c").c_str())), 1);
  EXPECT_EQ(d.DirExists((dir / "a/b\\c").c_str()), 1);
  EXPECT_EQ(d.MakePath(SYS_String((dir / "a/b/").c_str())), 0);
  EXPECT_EQ(d.MakePath(SYS_String()), 0);
  EXPECT_EQ(d.MakePath(SYS_String("/")), 1);  // nothing to make
  EXPECT_EQ(d.MakeDirectory(SYS_String((dir / "a/new").c_str())), 1);
  EXPECT_EQ(d.MakeDirectory(SYS_String((dir / "a/new").c_str())), 0);
}

// A file's own operations act on its name; an open file is flushed before it is copied.
TEST(SfmDirectory, FileOperationsOfAFile) {
  TempDir dir;
  RecordingManager rec;
  SFM_File file((dir / "doc").c_str(), "wb");
  file.Write("buffered", 8);
  EXPECT_EQ(file.Exists(), 1);
  EXPECT_EQ(file.Copy((dir / "doc2").c_str(), 0), 1);
  EXPECT_EQ(TempDir::Read(dir / "doc2"), "buffered");
  file.Close();
  EXPECT_EQ(file.Move((dir / "doc3").c_str(), 0), 1);
  EXPECT_EQ(file.Exists(), 0);
  SFM_File moved((dir / "doc3").c_str());
  EXPECT_EQ(moved.Delete(), 1);
  EXPECT_EQ(moved.Exists(), 0);
}
