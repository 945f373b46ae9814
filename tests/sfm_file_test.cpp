//===- tests/sfm_file_test.cpp - SFM_File --------------------------------===//
#include "sfm_file.h"

#include "plat_fault.h"
#include "sfm.h"
#include "tests/report_spy.h"
#include "tests/sfm_support.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string bytesOf(std::initializer_list<int> values) {
  std::string bytes;
  for (int v : values) bytes += static_cast<char>(v);
  return bytes;
}

}  // namespace

// Integers go to disk little-endian at 32-bit program widths: long is 4 bytes in both models.
TEST(SfmFile, TypedValuesRoundTripAtProgramWidths) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir / "typed.bin";
  {
    SFM_File file(name.c_str(), "wb");
    EXPECT_EQ(file.Put(static_cast<long>(-2)), 1);
    EXPECT_EQ(file.Put(static_cast<unsigned long>(0x80000001u)), 1);
    EXPECT_EQ(file.Put(static_cast<short>(-3)), 1);
    EXPECT_EQ(file.Put(static_cast<unsigned short>(0xBEEF)), 1);
    EXPECT_EQ(file.Put('A'), 1);
    EXPECT_EQ(file.Put(static_cast<unsigned char>(0xFE)), 1);
    EXPECT_EQ(file.Put(-5), 1);
    EXPECT_EQ(file.Put(7u), 1);
    EXPECT_EQ(file.Put(1.5), 1);
  }
  std::string const bytes = TempDir::Read(name);
  ASSERT_EQ(bytes.size(), 4u + 4 + 2 + 2 + 1 + 1 + 4 + 4 + 8);
  EXPECT_EQ(bytes.substr(0, 14), bytesOf({0xFE, 0xFF, 0xFF, 0xFF, 0x01, 0, 0, 0x80, 0xFD, 0xFF, 0xEF, 0xBE, 'A', 0xFE}));
  SFM_File file(name.c_str(), "rb");
  long l = 0;
  unsigned long ul = 0;
  short s = 0;
  unsigned short us = 0;
  char c = 0;
  unsigned char uc = 0;
  int i = 0;
  unsigned int ui = 0;
  double d = 0;
  EXPECT_EQ(file.Get(l), -2);
  EXPECT_EQ(file.Get(ul), 0x80000001ul);
  EXPECT_EQ(file.Get(s), -3);
  EXPECT_EQ(file.Get(us), 0xBEEF);
  EXPECT_EQ(file.Get(c), 'A');
  EXPECT_EQ(file.Get(uc), 0xFE);
  EXPECT_EQ(file.Get(i), -5);
  EXPECT_EQ(file.Get(ui), 7u);
  EXPECT_EQ(file.Get(d), 1.5);
  // At the end nothing is read and the variable keeps its value.
  i = 42;
  EXPECT_EQ(file.Get(i), 42);
  EXPECT_TRUE(file.Eof());
}

// The mirror flag reverses bits over the value's width; it is not a byte swap.
TEST(SfmFile, MirrorReversesBitsOverTheWidth) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("m.bin", bytesOf({1, 0, 0, 0, 1, 0, 1, 0x0F, 0, 0, 0}));
  SFM_File file(name.c_str(), "rb");
  long l = 0;
  short s = 0;
  char c = 0;
  unsigned int u = 0;
  EXPECT_EQ(static_cast<unsigned long>(file.Get(l, 1)) & 0xFFFFFFFFul, 0x80000000ul);
  EXPECT_EQ(l, static_cast<long>(INT_MIN));
  EXPECT_EQ(file.Get(s, 1), -32768);
  EXPECT_EQ(static_cast<unsigned char>(file.Get(c, 1)), 0x80);
  EXPECT_EQ(file.Get(u, 1), 0xF0000000u);
  // Writing with the flag gives the original bytes back.
  file.Close();
  std::string const copy = dir / "m2.bin";
  SFM_File out(copy.c_str(), "wb");
  out.Put(l, 1);
  out.Put(s, 1);
  out.Put(c, 1);
  out.Put(u, 1);
  out.Close();
  EXPECT_EQ(TempDir::Read(copy), TempDir::Read(name));
}

// On a 64-bit build a long may not fit the 4 bytes on disk: refused and reported, not cut.
TEST(SfmFile, OversizedLongAndCountsAreRefused) {
#if LONG_MAX == INT_MAX
  GTEST_SKIP() << "every long fits in a 32-bit build";
#else
  TempDir dir;
  RecordingManager rec;
  SFM_File file((dir / "big.bin").c_str(), "w+b");
  ReportSpy spy;
  EXPECT_EQ(file.Put(static_cast<long>(INT_MAX) + 1), 0);
  EXPECT_EQ(file.Put(static_cast<unsigned long>(UINT_MAX) + 1), 0);
  char buffer[4] = {};
  EXPECT_EQ(file.Read(buffer, static_cast<long>(INT_MAX) + 1), 0);
  EXPECT_EQ(file.Write(buffer, static_cast<long>(INT_MAX) + 1), 0);
  EXPECT_EQ(spy.Reports().size(), 4u);
  EXPECT_EQ(file.GetLength(), 0);
#endif
}

// Lines come through a 512-byte buffer: a long line arrives in pieces of 510.
TEST(SfmFile, LinesArriveInPiecesAndKeepTheirNewline) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("l.txt", std::string(600, 'x') + "\nshort\nlast");
  SFM_File file(name.c_str(), "r");
  EXPECT_EQ(file.GetLine(0).GetLength(), 510);
  EXPECT_EQ(std::string(file.GetLine(0)), std::string(90, 'x') + "\n");
  EXPECT_EQ(std::string(file.GetLine(4)), "sho");
  EXPECT_EQ(std::string(file.GetLine(-1)), "rt\n");
  EXPECT_EQ(std::string(file.GetLine()), "last");
  EXPECT_TRUE(file.GetLine().IsEmpty());
  EXPECT_EQ(rec.Count(SFM::EventReadError), 0);
  file.Close();
  SFM_File out((dir / "w.txt").c_str(), "w");
  EXPECT_EQ(out.WriteLine("one"), 1);
  EXPECT_EQ(out.Printf("%s=%d\n", "two", 2), 6);
  EXPECT_EQ(out.Printf("%s", ""), 0);
  EXPECT_EQ(out.Close(), 1);
  EXPECT_EQ(out.Close(), 1);  // closing a closed file is no failure
  EXPECT_EQ(rec.Codes(true), std::vector<int>{});
  EXPECT_EQ(TempDir::Read(dir / "w.txt"), "one\ntwo=2\n");
}

// GetChar gives -1 at the end, the same value a byte 0xFF gives.
TEST(SfmFile, GetCharAndEof) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("c.bin", bytesOf({'a', 0xFF}));
  SFM_File file(name.c_str(), "rb");
  EXPECT_FALSE(file.Eof());
  EXPECT_EQ(file.GetChar(), 'a');
  EXPECT_EQ(file.GetChar(), static_cast<char>(-1));
  EXPECT_EQ(file.Eof(), 1);
  EXPECT_EQ(file.GetChar(), static_cast<char>(-1));
  // Eof is 1 right after a seek to the end, before a read meets it.
  EXPECT_TRUE(file.Rewind());
  EXPECT_FALSE(file.Eof());
  EXPECT_TRUE(file.SeekToEnd());
  EXPECT_EQ(file.Eof(), 1);
}

// A refused push leaves the position and the stack as they were.
TEST(SfmFile, PositionStack) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("p.bin", "0123456789");
  SFM_File file(name.c_str(), "rb");
  file.Seek(3, SFM_File::FromStart);
  EXPECT_EQ(file.PushPosition(-1, SFM_File::FromStart), 0);
  EXPECT_EQ(file.GetPosition(), 3);
  EXPECT_EQ(file.PushPosition(2, SFM_File::FromCurrent), 1);
  EXPECT_EQ(file.GetChar(), '5');
  EXPECT_EQ(file.PushPosition(-2, SFM_File::FromEnd), 1);
  EXPECT_EQ(file.GetChar(), '8');
  EXPECT_EQ(file.PopPosition(), 1);
  EXPECT_EQ(file.GetChar(), '6');
  EXPECT_EQ(file.PopPosition(), 1);
  EXPECT_EQ(file.GetPosition(), 3);
  ReportSpy spy;
  EXPECT_EQ(file.PopPosition(), 0);
  EXPECT_EQ(spy.Summary(), std::vector<std::string>{"sfm/sfmfile: "});
  EXPECT_EQ(file.GetPosition(), 3);
}

// Reading after writing and writing after reading need a seek in C streams; the file
// puts it in.
TEST(SfmFile, SwitchingBetweenReadingAndWriting) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("rw.bin", "abcdef");
  SFM_File file(name.c_str(), "r+b");
  EXPECT_EQ(file.GetChar(), 'a');
  EXPECT_EQ(file.PutChar('X'), 1);
  EXPECT_EQ(file.GetChar(), 'c');
  EXPECT_EQ(file.Write("YZ", 2), 1);
  EXPECT_EQ(file.GetChar(), 'f');
  file.Close();
  EXPECT_EQ(TempDir::Read(name), "aXcYZf");
}

// The length is measured once; a write that reaches it, SetName and assignment forget it.
TEST(SfmFile, LengthIsCachedUntilAWriteReachesIt) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("len.bin", "0123456789");
  SFM_File closed(name.c_str());
  EXPECT_EQ(closed.GetLength(), 10);
  EXPECT_TRUE(rec.events.empty());  // a closed file is measured without events
  dir.Write("len.bin", "0123456789ab");
  EXPECT_EQ(closed.GetLength(), 10);  // measured once
  dir.Write("len.bin", "0123456789");
  SFM_File file(name.c_str(), "r+b");
  EXPECT_EQ(file.GetLength(), 10);
  file.Write("ab", 2);
  EXPECT_EQ(file.GetLength(), 10);
  file.SeekToEnd();
  file.Write("cd", 2);
  EXPECT_EQ(file.GetLength(), 12);
  EXPECT_EQ(file.GetPosition(), 12);
  file.Close();
  closed.SetName((dir / "none").c_str());
  EXPECT_EQ(closed.GetLength(), -1);
  closed = name.c_str();
  EXPECT_EQ(closed.GetLength(), 12);
  SFM_File other((dir / "none").c_str());
  closed = other;
  EXPECT_EQ(closed.GetLength(), -1);
}

// Opening and closing raise 101, 102 and 103 with the file's name.
TEST(SfmFile, OpenAndCloseEvents) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("e.txt", "x");
  {
    SFM_File file(name.c_str(), "r");
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(file.ReOpen(SYS_String(name.c_str()), SYS_String("rb")), 1);
  }
  EXPECT_EQ(rec.Codes(), (std::vector<int>{101, 102, 103, 101, 102, 103}));
  for (SeenEvent const &event : rec.events) EXPECT_EQ(event.name1, name);
}

// Each failed open raises 201 with the platform's code and leaves the text in GetMsg.
TEST(SfmFile, FailedOpensCarryTheirCause) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard faults;
  std::string const missing = dir / "missing.txt";
  std::string const unreadable = dir.Write("secret.txt", "s");
  ::mkdir((dir / "sub").c_str(), 0777);
  struct Case { std::string name; char const *mode; unsigned error; } const cases[] = {
      {missing, "rb", ENOENT}, {dir / "sub", "wb", EISDIR}, {unreadable, "rb", EACCES}};
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    rec.events.clear();
    // Root reads anything: the refusal of the unreadable file is made by the fault switch.
    if (c.error == EACCES) PLAT_FailCall(PLAT_CallOpen, 1, EACCES);
    SFM_File file(c.name.c_str());
    EXPECT_EQ(file.Open(c.mode), 0);
    EXPECT_FALSE(file.IsOpen());
    ASSERT_EQ(rec.Codes(), (std::vector<int>{101, 201}));
    EXPECT_EQ(rec.events[1].error, c.error);
    std::string const expected = std::string(std::strerror(static_cast<int>(c.error))) + "\r\n\"" + c.name + "\"";
    EXPECT_EQ(rec.events[1].text, expected);
    EXPECT_EQ(std::string(file.GetMsg()), expected);
  }
  // A directory opened for reading opens, and its read fails with the platform's code.
  rec.events.clear();
  SFM_File folder((dir / "sub").c_str(), "rb");
  char buffer[8];
  EXPECT_EQ(folder.Read(buffer, 8), 0);
  EXPECT_EQ(rec.Codes(true), std::vector<int>{203});
  EXPECT_EQ(rec.events.back().error, static_cast<unsigned>(EISDIR));
}

// Each answer 2 buys exactly one more try; any other answer ends the open.
TEST(SfmFile, RetryAnswerGivesOneMoreTryPerAnswer) {
  TempDir dir;
  RecordingManager rec;
  rec.Answer(SFM::EventOpenFailed, SFM::EventRetry, 3);
  long const before = PLAT_CallCount(PLAT_CallOpen);
  SFM_File file((dir / "missing").c_str());
  EXPECT_EQ(file.Open("rb"), 0);
  EXPECT_EQ(PLAT_CallCount(PLAT_CallOpen) - before, 4);
  EXPECT_EQ(rec.Count(SFM::EventOpenFailed), 4);
  // A retry that finds the file succeeds.
  FaultGuard faults;
  PLAT_FailCall(PLAT_CallOpen, 1, EIO);
  rec.Answer(SFM::EventOpenFailed, SFM::EventRetry);
  SFM_File present(dir.Write("here", "h").c_str());
  EXPECT_EQ(present.Open("rb"), 1);
}

// A full device: buffered bytes fail at the flush (204) or the close (202), with ENOSPC.
TEST(SfmFile, WriteErrorsSurfaceAtFlushAndClose) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
  RecordingManager rec;
  {
    SFM_File file("/dev/full", "wb");
    EXPECT_EQ(file.Write("abc", 3), 1);  // still in the buffer
    EXPECT_EQ(file.Flush(), 0);
    EXPECT_EQ(file.Write("abc", 3), 1);
    EXPECT_EQ(file.Close(), 0);
  }
  EXPECT_EQ(rec.Codes(true), (std::vector<int>{204, 202}));
  for (SeenEvent const &event : rec.events) {
    if (event.code > 150) {
      EXPECT_EQ(event.error, static_cast<unsigned>(ENOSPC));
    }
  }
  // A write larger than the buffer fails at once.
  rec.events.clear();
  SFM_File file("/dev/full", "wb");
  std::string const big(1 << 16, 'b');
  EXPECT_EQ(file.Write(big.data(), static_cast<long>(big.size())), 0);
  EXPECT_EQ(file.Printf("%s", big.c_str()), 0);
  EXPECT_EQ(rec.Codes(true), (std::vector<int>{204, 204}));
}

// A hook that closes the file while its write error is reported leaves no dangling stream.
TEST(SfmFile, HookMayCloseTheFileDuringItsOwnError) {
  RecordingManager rec;
  FaultGuard faults;
  TempDir dir;
  static SFM_File *s_File;
  SFM_File file((dir / "h.bin").c_str(), "wb");
  s_File = &file;
  SFM_EventHook closer([](int code, SFM_EventData *) { return code == 204 ? s_File->Close() : 0; }, 5);
  rec.manager.GetEvent().Insert(closer);
  PLAT_FailCall(PLAT_CallWrite, 1, EIO);
  EXPECT_EQ(file.Put(1), 0);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.Put(2), 0);
  // The closer ranks above the recorder: its close is heard inside the 204 delivery.
  EXPECT_EQ(rec.Codes(), (std::vector<int>{101, 102, 103, 204}));
}

// Injected failures of each call raise their event; bytes written before stay.
TEST(SfmFile, InjectedFailuresRaiseTheirEventAndLoseNothing) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard faults;
  std::string const name = dir / "f.bin";
  SFM_File file(name.c_str(), "w+b");
  file.Write("keep", 4);
  PLAT_FailCall(PLAT_CallWrite, 1, EIO);
  EXPECT_EQ(file.Write("lost", 4), 0);
  PLAT_FailCall(PLAT_CallFlush, 1, ENOSPC);
  EXPECT_EQ(file.Flush(), 0);
  file.Rewind();
  PLAT_FailCall(PLAT_CallRead, 1, EIO);
  EXPECT_EQ(file.GetChar(), static_cast<char>(-1));
  char buffer[4] = {};
  PLAT_FailCall(PLAT_CallRead, 1, EIO);
  EXPECT_EQ(file.Read(buffer, 4), 0);
  EXPECT_EQ(file.Read(buffer, -1), 0);  // nothing read, nothing touched
  {
    ReportSpy spy;
    EXPECT_EQ(file.Read(nullptr, 4), 0);
    EXPECT_EQ(file.Write(nullptr, 4), 0);
    EXPECT_EQ(spy.Reports().size(), 2u);
  }
  EXPECT_EQ(file.GetChar(), 'k');
  PLAT_FailCall(PLAT_CallClose, 1, EDQUOT);
  EXPECT_EQ(file.Close(), 0);
  EXPECT_EQ(rec.Codes(true), (std::vector<int>{204, 204, 203, 203, 202}));
  EXPECT_EQ(rec.events.back().error, static_cast<unsigned>(EDQUOT));
  EXPECT_EQ(TempDir::Read(name), "keep");
}

// A temporary close writes the buffer out and keeps the position; a "w" file reopens
// appending, so what it held stays.
TEST(SfmFile, MappingClosesAnOpenFileForAWhile) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir / "map.bin";
  SFM_File file(name.c_str(), "w+b");
  file.Write("abc", 3);
  char *const view = static_cast<char *>(file.MapToMemory());
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(std::string(view, 3), "abc");
  EXPECT_TRUE(file.IsOpen());
  view[0] = 'Z';  // private: never reaches the file
  EXPECT_EQ(file.UnmapMemory(), 1);
  EXPECT_EQ(file.GetPosition(), 3);
  file.Write("def", 3);
  ASSERT_NE(file.MapToMemory(), nullptr);
  rec.events.clear();
  file.Close();
  EXPECT_EQ(rec.Codes(), (std::vector<int>{101, 103}));
  EXPECT_EQ(TempDir::Read(name), "abcdef");
  // A file that had to be new when it was first opened reopens all the same.
  SFM_File fresh((dir / "fresh.bin").c_str(), "w+bx");
  fresh.Write("x", 1);
  ASSERT_NE(fresh.MapToMemory(), nullptr);
  EXPECT_EQ(fresh.UnmapMemory(), 1);
  EXPECT_EQ(fresh.Write("y", 1), 1);
  fresh.Close();
  EXPECT_EQ(TempDir::Read(dir / "fresh.bin"), "xy");
  // Mapping again releases the first view; a closed file stays closed.
  SFM_File closed(name.c_str());
  void *const first = closed.MapToMemory();
  void *const second = closed.MapToMemory();
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, nullptr);
  EXPECT_FALSE(closed.IsOpen());
  EXPECT_EQ(std::string(static_cast<char *>(second), 6), "abcdef");
}

// A buffer that cannot be written out keeps its file open: 204, and no temporary close
// that would drop it.
TEST(SfmFile, TemporaryCloseNeverDropsABuffer) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard faults;
  std::string const name = dir / "buf.bin";
  SFM_File file(name.c_str(), "wb");
  file.Write("kept", 4);
  PLAT_FailCall(PLAT_CallFlush, 1, ENOSPC);
  EXPECT_EQ(file.MapToMemory(), nullptr);
  EXPECT_EQ(rec.Codes(true), std::vector<int>{204});
  EXPECT_EQ(file.Write("!", 1), 1);
  EXPECT_EQ(file.Close(), 1);
  EXPECT_EQ(TempDir::Read(name), "kept!");
}

// An empty file maps to null without an event; a missing one raises 201.
TEST(SfmFile, FailedOrEmptyMappingLeavesNothingBehind) {
  TempDir dir;
  RecordingManager rec;
  SFM_File empty(dir.Write("empty", "").c_str(), "rb");
  rec.events.clear();
  EXPECT_EQ(empty.MapToMemory(), nullptr);
  EXPECT_TRUE(empty.IsOpen());
  EXPECT_EQ(rec.Codes(), std::vector<int>{101});  // reopened at once, as it was
  EXPECT_EQ(empty.GetChar(), static_cast<char>(-1));
  SFM_File missing((dir / "missing").c_str());
  EXPECT_EQ(missing.MapToMemory(), nullptr);
  EXPECT_EQ(rec.Codes(true), std::vector<int>{201});
  EXPECT_EQ(rec.events.back().error, static_cast<unsigned>(ENOENT));
  EXPECT_EQ(missing.UnmapMemory(), 1);
}

// A copy is a closed file of the same name and mode, listed right after its source.
TEST(SfmFile, CopiesAreClosedAndRenamingAnOpenFileIsRefused) {
  TempDir dir;
  RecordingManager rec;
  SFM_File source(dir.Write("s", "s").c_str(), "rb");
  SFM_File later("later");
  SFM_File copy(source);
  EXPECT_FALSE(copy.IsOpen());
  EXPECT_EQ(copy.GetLength(), 1);
  EXPECT_EQ(copy.GetMode(), source.GetMode());
  SCC_SafeDList<SFM_File> &list = rec.manager.GetFileList();
  EXPECT_EQ(list.GetHead(), &later);
  ReportSpy spy;
  source.SetName("other");
  source.SetMode("wb");
  source = later;
  EXPECT_EQ(spy.Reports().size(), 3u);
  EXPECT_EQ(source.GetName(), copy.GetName());
  EXPECT_EQ(std::string(source.GetMode()), "rb");
  SFM_File unnamed(nullptr), empty;
  EXPECT_EQ(unnamed.GetLength(), 0);
  EXPECT_TRUE(empty.GetName().IsEmpty());
}

// Without a manager a file is reported, and still closes its stream.
TEST(SfmFile, ManagerMustExist) {
  ReportSpy spy;
  SFM_File orphan("x");
  EXPECT_EQ(spy.Reports().size(), 1u);
  EXPECT_EQ(orphan.Open("rb"), 0);
}
