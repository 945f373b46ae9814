//===- tests/sfm_manager_test.cpp - SFM, its events and descriptors ------===//
#include "sfm.h"

#include "plat_error.h"
#include "plat_fault.h"
#include "sfm_directory.h"
#include "plat_strings.h"
#include "sfm_tr.h"
#include "tests/report_spy.h"
#include "tests/sfm_support.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <dirent.h>
#include <memory>
#include <set>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

/// Lowers the soft descriptor limit so that exactly `spare` descriptors are free, for its
/// lifetime. The limit bounds descriptor numbers, so the free ones are counted below it.
class DescriptorLimit {
public:
  explicit DescriptorLimit(int spare) {
    ::getrlimit(RLIMIT_NOFILE, &m_Saved);
    std::set<int> open;
    if (DIR *const dir = ::opendir("/proc/self/fd")) {
      while (dirent const *entry = ::readdir(dir))
        if (entry->d_name[0] != '.') open.insert(std::atoi(entry->d_name));
      open.erase(::dirfd(dir));
      ::closedir(dir);
    }
    rlim_t limit = 0;
    for (int free = 0; free < spare || open.count(static_cast<int>(limit)) != 0; ++limit)
      if (open.count(static_cast<int>(limit)) == 0) ++free;
    rlimit lowered = m_Saved;
    lowered.rlim_cur = limit;
    m_Set = ::setrlimit(RLIMIT_NOFILE, &lowered) == 0;
  }
  ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_Saved); }
  bool IsSet() const { return m_Set; }

private:
  rlimit m_Saved;
  bool m_Set = false;
};

}  // namespace

// Ten times more files than descriptors: files close for a while in turn, unnoticed by the
// hooks, and every byte written comes back.
TEST(SfmDescriptors, TenTimesMoreFilesThanDescriptorsLoseNothing) {
  TempDir dir;
  RecordingManager rec;
  constexpr int kFiles = 50, kRounds = 20;
  std::vector<std::unique_ptr<SFM_File>> files;
  {
    DescriptorLimit limit(5);
    ASSERT_TRUE(limit.IsSet());
    for (int f = 0; f < kFiles; ++f)
      files.emplace_back(new SFM_File((dir / ("f" + std::to_string(f))).c_str(), "w+b"));
    for (int round = 0; round < kRounds; ++round)
      for (int f = 0; f < kFiles; ++f) ASSERT_EQ(files[f]->Put(f * 1000 + round), 1);
    for (int f = 0; f < kFiles; ++f) {
      ASSERT_TRUE(files[f]->IsOpen());
      files[f]->Rewind();
      for (int round = 0; round < kRounds; ++round) {
        int value = -1;
        ASSERT_EQ(files[f]->Get(value), f * 1000 + round) << "file " << f;
      }
    }
    files.clear();
  }
  EXPECT_EQ(rec.Count(SFM::EventOpenFailed), 0);
  EXPECT_EQ(rec.Count(SFM::EventCloseFailed) + rec.Count(SFM::EventWriteError), 0);
  EXPECT_GT(rec.Count(SFM::EventOpening), kFiles * 2);  // reopenings happened
  for (int f = 0; f < kFiles; ++f) EXPECT_EQ(TempDir::Read(dir / ("f" + std::to_string(f))).size(), 4u * kRounds);
}

// With no file to close, error 24 reaches the hooks, and only their answers retry.
TEST(SfmDescriptors, NothingToCloseReachesTheHooks) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("x", "x");
  rec.Answer(SFM::EventOpenFailed, SFM::EventRetry, 2);
  SFM_File file(name.c_str());
  {
    DescriptorLimit limit(0);
    ASSERT_TRUE(limit.IsSet());
    EXPECT_EQ(file.Open("rb"), 0);
  }
  EXPECT_EQ(rec.Count(SFM::EventOpenFailed), 3);
  EXPECT_EQ(rec.events.back().error, static_cast<unsigned>(EMFILE));
  EXPECT_EQ(file.Open("rb"), 1);
}

// The fault switch: the n-th call fails, 0 disarms, nonsense is refused.
TEST(PlatFault, NthCallFailsAndZeroDisarms) {
  TempDir dir;
  FaultGuard faults;
  std::string const name = dir.Write("f", "f");
  EXPECT_EQ(PLAT_FailCall(PLAT_CallOpen, -1, EIO) + PLAT_FailCall(PLAT_CallOpen, 1, 0), 0);
  EXPECT_EQ(PLAT_FailCall(PLAT_CallKinds, 1, EIO), 0);
  ASSERT_EQ(PLAT_FailCall(PLAT_CallRemove, 2, EBUSY), 1);
  SFM manager;
  SFM_Directory d(dir.Path().c_str());
  EXPECT_EQ(d.DeleteFileA("missing"), 0);
  EXPECT_EQ(PLAT_GetLastError(), ENOENT);
  EXPECT_EQ(d.DeleteFileA("f"), 0);
  EXPECT_EQ(PLAT_GetLastError(), EBUSY);
  PLAT_FailCall(PLAT_CallRemove, 1, EBUSY);
  EXPECT_EQ(PLAT_FailCall(PLAT_CallRemove, 0, EBUSY), 1);
  EXPECT_EQ(d.DeleteFileA("f"), 1);
}

// The least recently opened file is the one closed for a while; its next use reopens it
// where it was and puts it at the front of the list.
TEST(SfmDescriptors, LeastRecentlyOpenedFileGoesFirst) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard faults;
  SFM_File a(dir.Write("a", "abc").c_str(), "rb");
  SFM_File b(dir.Write("b", "b").c_str(), "rb");
  EXPECT_EQ(a.GetChar(), 'a');
  PLAT_FailCall(PLAT_CallOpen, 1, EMFILE);
  SFM_File c(dir.Write("c", "c").c_str(), "rb");
  EXPECT_TRUE(c.IsOpen());
  SCC_SafeDList<SFM_File> &list = rec.manager.GetFileList();
  EXPECT_EQ(list.GetHead(), &c);
  rec.events.clear();
  EXPECT_EQ(a.GetChar(), 'b');
  EXPECT_EQ(rec.Codes(), std::vector<int>{101});
  EXPECT_EQ(list.GetHead(), &a);
  EXPECT_EQ(rec.Count(SFM::EventOpenFailed), 0);
}

// One manager at a time; a second is reported and never becomes current.
TEST(SfmManager, OnlyOneAtATime) {
  SFM first;
  {
    ReportSpy spy;
    SFM second;
    EXPECT_EQ(spy.Summary(), std::vector<std::string>{"sfm/sfmanagr: only one file manager at a time"});
    EXPECT_EQ(SFM::GetManager(), &first);
  }
  EXPECT_EQ(SFM::GetManager(), &first);
  EXPECT_EQ(SFM::InstanceCount, 1);
}

// A manager that goes first leaves its files detached: their use is reported, and their
// streams still close.
TEST(SfmManager, FilesOutliveTheirManagerSafely) {
  TempDir dir;
  std::unique_ptr<SFM> manager(new SFM);
  std::unique_ptr<SFM_File> file(new SFM_File(dir.Write("f", "f").c_str(), "rb"));
  manager.reset();
  EXPECT_EQ(SFM::InstanceCount, 0);
  ReportSpy spy;
  EXPECT_EQ(file->GetChar(), static_cast<char>(-1));
  EXPECT_EQ(spy.Reports().size(), 1u);
  file.reset();
  EXPECT_EQ(spy.Reports().size(), 2u);
}

// An event has one answer; its text names both files in quotes.
TEST(SfmEventData, OneAnswerAndTheQuotedNames) {
  SFM_EventData data("a.txt", nullptr);
  data.SetText("Gone");
  EXPECT_EQ(std::string(data.GetText()), "Gone\r\n\"a.txt\"");
  SFM_EventData both("a", "b");
  EXPECT_EQ(std::string(both.GetText()), "\r\n\"a\"\r\n\"b\"");
  data.SetResult(SFM::EventRetry);
  ReportSpy spy;
  data.SetResult(SFM::EventYes);
  EXPECT_EQ(data.GetResult(), SFM::EventRetry);
  EXPECT_EQ(spy.Reports().size(), 1u);
  data.SetResult(SFM::EventNone);
  data.SetResult(SFM::EventYes);
  EXPECT_EQ(data.GetResult(), SFM::EventYes);
  EXPECT_EQ(spy.Reports().size(), 1u);
}

// A code the system cannot describe gets the host's text 45103, used as a text with one
// number put in: nothing else in it is a placeholder.
TEST(SfmManager, UnknownErrorsGetTheHostsFallbackText) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard faults;
  std::string const name = dir / "x";
  SFM_File file(name.c_str(), "rb");
  struct Case { char const *text, *expected; } cases[] = {
      {"File error %d, 100%% (%s)", "File error 9999, 100% (%s)"}, {"E%ld %d", "E9999 %d"},
      {"E%08X", "E0000270F"}, {"E%o%lli", "E23417%lli"}, {"E%s %hu", "E%s 9999"}, {"E%-5i|", "E9999 |"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.text);
    PLAT_StringEntry const texts[] = {{45103, c.text}};
    ASSERT_EQ(PLAT_RegisterStrings(texts, 1), 1);
    PLAT_FailCall(PLAT_CallOpen, 1, 9999);
    file.Open("rb");
    EXPECT_EQ(std::string(file.GetMsg()), c.expected + ("\r\n\"" + name + "\""));
  }
  PLAT_RegisterStrings(nullptr, 0);
  PLAT_FailCall(PLAT_CallOpen, 1, 9998);
  file.Open("rb");
  if (TR(45103).IsEmpty()) {
    EXPECT_EQ(rec.events.back().text, "error 9998\r\n\"" + name + "\"");
  }
}
