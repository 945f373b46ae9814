//===- tests/sfm_filepath_test.cpp - SFM_FilePath ------------------------===//
#include "sfm_filepath.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Parts {
  std::string base, directory, name, extension, full;
};

Parts split(char const *text) {
  SFM_FilePath path(text);
  return {std::string(path.GetBasePath()), std::string(path.GetRelPath()), std::string(path.GetFileName()),
          std::string(path.GetFileExtension()), std::string(static_cast<char const *>(path))};
}

/// Restores the default separator a test changed.
struct SeparatorGuard {
  int saved = SFM_FilePath::DefaultSeparator;
  ~SeparatorGuard() { SFM_FilePath::DefaultSeparator = saved; }
};

}  // namespace

// Both separators split; drives, shares and the POSIX root are bases; trailing dots go.
TEST(SfmFilePath, SplitsIntoBaseDirectoryNameExtension) {
  struct Case { char const *path; Parts parts; } const cases[] = {
      {"C:\\dir\\sub\\file.txt", {"C:", "\\dir\\sub\\", "file", ".txt", "C:\\dir\\sub\\file.txt"}},
      {"\\\\server\\share\\dir\\f.txt", {"\\\\server\\share\\", "dir\\", "f", ".txt", "\\\\server\\share\\dir\\f.txt"}},
      {"\\\\server", {"\\\\server", "", "", "", "\\\\server"}},
      {"//srv/share/x.y", {"//srv/share/", "", "x", ".y", "//srv/share/x.y"}},
      {"a/b\\c.d.e", {"", "a/b\\", "c.d", ".e", "a/b\\c.d.e"}},
      {"file.", {"", "", "file", "", "file"}},
      {".profile", {"", "", "", ".profile", ".profile"}},
      {"\\f.txt", {"", "\\", "f", ".txt", "\\f.txt"}},
      {"/home/u/board.brd", {"/", "home/u/", "board", ".brd", "/home/u/board.brd"}},
      {"/f", {"/", "", "f", "", "/f"}},
      {"dir/", {"", "dir/", "", "", "dir/"}},
      {"", {"", "", "", "", ""}},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.path);
    Parts const got = split(c.path);
    EXPECT_EQ(got.base, c.parts.base);
    EXPECT_EQ(got.directory, c.parts.directory);
    EXPECT_EQ(got.name, c.parts.name);
    EXPECT_EQ(got.extension, c.parts.extension);
    EXPECT_EQ(got.full, c.parts.full);
  }
}

// Each setter copies one part of its argument's own split and rebuilds the whole.
TEST(SfmFilePath, SettersReplaceOnePart) {
  struct Case {
    char const *label;
    SYS_String (*apply)(SFM_FilePath &);
    char const *expected;
  } const cases[] = {
      {"name with ext", [](SFM_FilePath &p) { return p.SetFileName("new.dat", 0); }, "C:\\x\\new.dat.txt"},
      {"name only", [](SFM_FilePath &p) { return p.SetFileName("new.dat", 1); }, "C:\\x\\new.txt"},
      {"name ext", [](SFM_FilePath &p) { return p.SetFileNameExt("readme"); }, "C:\\x\\readme"},
      {"name ext dotted", [](SFM_FilePath &p) { return p.SetFileNameExt("a.b"); }, "C:\\x\\a.b"},
      {"ext bare", [](SFM_FilePath &p) { return p.SetFileExtension("dat"); }, "C:\\x\\old.dat"},
      {"ext dotted", [](SFM_FilePath &p) { return p.SetFileExtension(".dat"); }, "C:\\x\\old.dat"},
      {"ext removed", [](SFM_FilePath &p) { return p.SetFileExtension(""); }, "C:\\x\\old"},
      {"dir unclosed", [](SFM_FilePath &p) { return p.SetFileDirectory("C:\\dir"); }, "C:\\old.txt"},
      {"dir closed", [](SFM_FilePath &p) { return p.SetFileDirectory("D:\\dir\\"); }, "D:\\dir\\old.txt"},
      {"rel path", [](SFM_FilePath &p) { return p.SetRelPath("E:/a/b/"); }, "C:/a/b/old.txt"},
      {"base", [](SFM_FilePath &p) { return p.SetBasePath("Z:\\q"); }, "Z:\\x\\old.txt"},
      {"default fills nothing", [](SFM_FilePath &p) { return p.SetDefault("D:\\y\\n.e"); }, "C:\\x\\old.txt"},
      {"def path with base", [](SFM_FilePath &p) { return p.SetDefPath("/work"); }, "C:\\x\\old.txt"},
      {"two-arg takes path", [](SFM_FilePath &p) { return p.SetFileExtension("/a/b.c", "d"); }, "/a/b.d"},
      {"two-arg null keeps", [](SFM_FilePath &p) { return p.SetFileNameExt(nullptr, "n"); }, "C:\\x\\n"},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.label);
    SFM_FilePath path("C:\\x\\old.txt");
    EXPECT_EQ(std::string(c.apply(path)), c.expected);
    EXPECT_EQ(std::string(static_cast<char const *>(path)), c.expected);
    // The parts agree with the whole they returned.
    EXPECT_EQ(std::string(path.GetFileDirectory() + path.GetFileNameExt()), c.expected);
  }
  SFM_FilePath empty;
  EXPECT_EQ(std::string(empty.SetDefault("D:\\y\\n.e")), "D:\\y\\n.e");
}

// A path without a base is completed against the default path; a rooted path never is.
TEST(SfmFilePath, DefPathCompletesOnlyPathsWithoutBase) {
  struct Case { char const *path, *defaultPath, *expected; } const cases[] = {
      {"sub/f.txt", "/work", "/work/sub/f.txt"},
      {"sub/f.txt", "/work/", "/work/sub/f.txt"},
      {"f.txt", "rel", "rel/f.txt"},
      // Only the default separator closes a directory, here as in AddSeparator.
      {"sub\\f.txt", "C:\\work", "C:\\work/sub\\/f.txt"},
      {"/etc/f", "/work", "/etc/f"},
      {"D:\\f.txt", "C:\\work", "D:\\f.txt"},
      {"f.txt", "", "f.txt"},
      {"", "/work", "/work/"},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(std::string(c.path) + " on " + c.defaultPath);
    SFM_FilePath path(c.path);
    EXPECT_EQ(std::string(path.SetDefPath(c.defaultPath)), c.expected);
  }
}

// Only the default separator counts as a closing one.
TEST(SfmFilePath, AddSeparatorMakesTheWholePathADirectory) {
  SeparatorGuard guard;
  SFM_FilePath path("/a/dir");
  path.AddSeparator();
  EXPECT_EQ(std::string(path.GetRelPath()), "a/dir/");
  EXPECT_TRUE(path.GetFileNameExt().IsEmpty());
  path.AddSeparator();
  EXPECT_EQ(std::string(static_cast<char const *>(path)), "/a/dir/");
  SFM_FilePath empty;
  empty.AddSeparator();
  EXPECT_TRUE(empty.IsEmpty());
  SFM_FilePath windows("C:\\dir\\");
  windows.AddSeparator();
  EXPECT_EQ(std::string(static_cast<char const *>(windows)), "C:\\dir\\/");
  SFM_FilePath::DefaultSeparator = 0;
  windows = "C:\\dir\\";
  windows.AddSeparator();
  EXPECT_EQ(std::string(static_cast<char const *>(windows)), "C:\\dir\\");
  windows = "C:\\dir/";
  windows.AddSeparator();
  EXPECT_EQ(std::string(static_cast<char const *>(windows)), "C:\\dir/\\");
}

// Assignment and getters take a new path; null and "" clear every part.
TEST(SfmFilePath, AssignmentAndGettersTakeANewPath) {
  SFM_FilePath path("C:\\x\\old.txt");
  EXPECT_EQ(std::string(path.GetFileNameExt("/b/new.dat")), "new.dat");
  EXPECT_EQ(std::string(path.GetBasePath()), "/");
  EXPECT_EQ(std::string(path = static_cast<char const *>(nullptr)), "");
  EXPECT_TRUE(path.GetFileName().IsEmpty() && path.GetRelPath().IsEmpty());
  path = "x/y.z";
  EXPECT_EQ(std::string(path = SYS_String()), "");
  SFM_FilePath copy(SFM_FilePath("Q:\\k\\l.m"));
  EXPECT_EQ(std::string(copy.GetFileDirectory()), "Q:\\k\\");
}
