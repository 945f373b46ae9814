//===- tests/sfm_msgdb_test.cpp - The message database: source, lookup, save ===//
#include "sfm_msgdb.h"

#include "plat_fault.h"
#include "tests/msgdb_support.h"
#include "tests/report_spy.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>

namespace {

/// The texts of a section from `position` on, as "number=text".
std::vector<std::string> walk(SFM_MessageDB &db, char const *section, long position) {
  std::vector<std::string> seen;
  for (SFM_MessageDB::SectionIterator it(&db, section, position); !it.IsEmpty(); ++it)
    seen.push_back(std::to_string(it.GetPosition()) + "=" + static_cast<char const *>(SYS_String(it)));
  return seen;
}

std::string text(SFM_MessageDB &db, long key) { return static_cast<char const *>(db.getTxt(key)); }

}  // namespace

// Bases follow the most recent key: a head adds 2 to it, so descending numbers make the
// next section's keys meet the previous section's, and the first definition of a key wins.
TEST(SfmMessageDb, KeysFollowSectionsAndTheRunningKey) {
  TempDir dir;
  RecordingManager rec;
  auto db = LoadSource(dir, "5:five\n0:zero\n[Pads]\n1:round\n1:again\n3:square\n[Vias]\n1:blind\n"
                            "[Down]\n9:nine\n0:low\n[Next]\n0:meets\n");
  EXPECT_EQ(text(*db, 5), "five");
  EXPECT_EQ(text(*db, 0), "zero");
  EXPECT_EQ(db->GetSectionBase(""), 0);
  EXPECT_EQ(db->GetSectionBase("pads"), 2);  // last was 0 after "0:zero"
  EXPECT_EQ(text(*db, -2), "Pads");
  EXPECT_EQ(text(*db, 3), "round");          // the repeated number keeps its first text
  EXPECT_EQ(db->GetSectionBase("Vias"), 7);  // after key 5 ("3:square")
  EXPECT_EQ(text(*db, 8), "blind");
  EXPECT_EQ(db->GetSectionBase("Down"), 10);
  EXPECT_EQ(db->GetSectionBase("Next"), 12);  // after "0:low", key 10
  EXPECT_EQ(text(*db, 19), "nine");
  EXPECT_EQ(text(*db, 12), "meets");
  // A section walks every key of its range, whoever defined it: "3:square" met key 5.
  EXPECT_EQ(walk(*db, "Pads", 1), (std::vector<std::string>{"1=round", "3=five"}));
  EXPECT_EQ(walk(*db, "", 0), (std::vector<std::string>{"0=zero", "3=round", "5=five"}));
  EXPECT_EQ(walk(*db, "down", 0), (std::vector<std::string>{"0=low", "2=meets", "9=nine"}));
  EXPECT_EQ(db->GetSectionBase("missing"), -1);
  EXPECT_EQ(text(*db, 4), "");
  EXPECT_EQ(text(*db, 1L << 20), "");
}

// Each rejected line prints its own text and line number; it changes neither the running
// key nor a section's largest number, so the sections after it are placed as without it.
TEST(SfmMessageDb, RejectedLinesPrintAndChangeNothing) {
  TempDir dir;
  RecordingManager rec;
  std::string const name = dir.Write("bad.msgs", " 1:blank\n[a]b]\n[open\n:x\nnocolon\n-3:neg\n\t4:tab\n[Ok]\n"
                                                 "2147483647:big\n7:" + std::string(255, 'x') + "\n[" +
                                                 std::string(255, 'n') + "]\n[Then]\n");
  testing::internal::CaptureStdout();
  SFM_MessageDB db(name.c_str(), 0);
  std::string const out = testing::internal::GetCapturedStdout();
  std::string const expected = name + "(1) : leading blanks are not allowed\n" +
                               name + "(2) : invalid section : \"[a]b]\"\n" +
                               name + "(3) : invalid section : \"[open\"\n" +
                               name + "(4) : invalid line : \":x\"\n" +
                               name + "(5) : invalid line : \"nocolon\"\n" +
                               name + "(6) : negative message number : \"-3:neg\"\n" +
                               name + "(9) : number out of range : \"2147483647:big\"\n" +
                               name + "(10) : text too long : \"7:" + std::string(255, 'x') + "\"\n" +
                               name + "(11) : text too long : \"[" + std::string(255, 'n') + "]\"\n";
  EXPECT_EQ(out, expected);
  EXPECT_EQ(text(db, 4), "tab");  // a tab is no blank, and atoi skips it
  EXPECT_EQ(db.GetSectionBase("Ok"), 6);
  EXPECT_EQ(db.GetSectionBase("Then"), 8);
  EXPECT_EQ(walk(db, "Ok", 0), std::vector<std::string>{});

  // The last key a 32-bit key can be; a head after it would need one beyond.
  DiagnosticLog log;
  auto top = LoadSource(dir, "2147483647:top\n[Over]\n");
  EXPECT_EQ(text(*top, 2147483647L), "top");
  EXPECT_EQ(log.lines, std::vector<std::string>{"2: number out of range: [Over]"});
}

// 254 bytes is the longest text and the longest name: both load, save and load back whole.
TEST(SfmMessageDb, LongestTextsRoundTrip) {
  TempDir dir;
  RecordingManager rec;
  DiagnosticLog log;
  std::string const longest(254, 'x'), name(254, 'n');
  CompileSource(dir, "1:" + longest + "\n[" + name + "]\n2:" + longest.substr(1) + "$\n");
  EXPECT_TRUE(log.lines.empty());
  SFM_MessageDB db((dir / "cat.mdb").c_str());
  EXPECT_EQ(text(db, 1), longest);
  EXPECT_EQ(db.GetSectionBase(name.c_str()), 3);
  EXPECT_EQ(text(db, 5), longest.substr(1));  // the "$" counted in the 254
}

TEST(SfmMessageDb, TextsKeepColonsAndLoseOneDollar) {
  TempDir dir;
  RecordingManager rec;
  DiagnosticLog log;
  // A NUL ends what a line holds; the lines after it are found where they start.
  auto db = LoadSource(dir, "1:a:b:c\n2:\n3:two  $\n4:end$$\r\n5:trimmed \t \r\n;6:comment\n\n7:$\n8:  x\n" +
                                std::string("9:a\0b\n\0\n10:after\n", 17));
  EXPECT_EQ(text(*db, 1), "a:b:c");
  EXPECT_EQ(text(*db, 2), "");
  EXPECT_EQ(text(*db, 3), "two  ");
  EXPECT_EQ(text(*db, 4), "end$");
  EXPECT_EQ(std::string(db->GetStoredText(4)), "end$$");
  EXPECT_EQ(text(*db, 5), "trimmed");
  EXPECT_EQ(text(*db, 6), "");
  EXPECT_EQ(text(*db, 7), "");
  EXPECT_EQ(text(*db, 8), "  x");
  EXPECT_EQ(text(*db, 9), "a");
  EXPECT_EQ(text(*db, 10), "after");
  EXPECT_TRUE(log.lines.empty());
}

// GetLine reads at most 510 characters: a longer line is two, and its rest stands alone.
TEST(SfmMessageDb, LinesBeyond510CharactersSplit) {
  TempDir dir;
  RecordingManager rec;
  DiagnosticLog log;
  std::string const first = "1:" + std::string(250, 'a') + std::string(258, 'b');  // 510 characters
  auto db = LoadSource(dir, first + "2:rest\n[S]\n");
  EXPECT_EQ(text(*db, 1).size(), 0u);  // 508 bytes is too long: rejected
  EXPECT_EQ(text(*db, 2), "rest");
  EXPECT_EQ(log.lines, std::vector<std::string>{"1: text too long: " + first});
  EXPECT_EQ(db->GetSectionBase("S"), 4);
}

// The text form finds the later of two heads of one name, the compiled form the earlier.
TEST(SfmMessageDb, SameNamedSectionsResolveByForm) {
  TempDir dir;
  RecordingManager rec;
  std::string const source = "[Lib]\n1:old\n[LIB]\n1:new\n";
  auto db = LoadSource(dir, source);
  EXPECT_EQ(db->GetSectionBase("lib"), 5);
  EXPECT_EQ(walk(*db, "Lib", 1), std::vector<std::string>{"1=new"});
  CompileSource(dir, source);
  SFM_MessageDB compiled((dir / "cat.mdb").c_str());
  EXPECT_EQ(compiled.GetSectionBase("lib"), 2);
  EXPECT_EQ(walk(compiled, "lib", 1), std::vector<std::string>{"1=old"});
  EXPECT_EQ(compiled.GetSectionBase(""), -1);  // no unnamed section in the compiled form
}

TEST(SfmSectionIterator, PositionsAdvancesAndEmpties) {
  TempDir dir;
  RecordingManager rec;
  auto db = LoadSource(dir, "[S]\n2:two\n0:zero\n5:five\n[T]\n");
  SFM_MessageDB::SectionIterator it(db.get(), "s", 3);
  EXPECT_EQ(it.GetPosition(), 5);
  EXPECT_EQ(std::string(it++), "five");
  EXPECT_TRUE(it.IsEmpty());
  EXPECT_EQ(std::string(++it), "");  // an empty iterator does not start over at key 0
  EXPECT_TRUE(it.IsEmpty());
  it = -7;  // below 0 counts as 0
  EXPECT_EQ(it.GetPosition(), 0);
  EXPECT_EQ(std::string(++it), "two");
  SFM_MessageDB::SectionIterator copy = it;
  it.Clear();
  EXPECT_EQ(it.GetPosition(), -1);
  EXPECT_EQ(copy.GetPosition(), 2);
  it = 6;
  EXPECT_TRUE(it.IsEmpty());
  it = 2147483647L;
  EXPECT_TRUE(it.IsEmpty());
  EXPECT_TRUE(SFM_MessageDB::SectionIterator(db.get(), "T", 0).IsEmpty());
  EXPECT_TRUE(SFM_MessageDB::SectionIterator(db.get(), "none", 1).IsEmpty());
  ReportSpy spy;
  EXPECT_TRUE(SFM_MessageDB::SectionIterator(nullptr, "S", 1).IsEmpty());
  ASSERT_EQ(spy.Reports().size(), 1u);
  EXPECT_EQ(spy.Reports()[0].file, "sfm/sfmmsgdb");
}

namespace {

void put16(std::string &bytes, int value) {
  bytes += static_cast<char>(value & 0xFF);
  bytes += static_cast<char>((value >> 8) & 0xFF);
}

void put32(std::string &bytes, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
}

/// One 36-byte index record.
std::string record(int index, int kind, int offset, int length, int largest, std::string const &number) {
  std::string bytes;
  put16(bytes, index);
  bytes += static_cast<char>(kind);
  bytes += '\0';
  put32(bytes, static_cast<std::uint32_t>(offset));
  put32(bytes, static_cast<std::uint32_t>(length));
  put32(bytes, static_cast<std::uint32_t>(largest));
  return bytes + number + std::string(20 - number.size(), '\0');
}

}  // namespace

// The reference catalogue compiles to these bytes in both data models: sections first, the
// largest base leading; an empty text is its NUL alone; "[]" is a section with an empty name.
TEST(SfmMessageDb, ReferenceCatalogueCompilesToFixedBytes) {
  TempDir dir;
  RecordingManager rec;
  std::string const source = "1:One\n[Sec]\n1:A$\n3:\n[]\n0:z\n";
  std::string expected;
  put16(expected, 0);
  put16(expected, 6);
  put16(expected, 6);
  put32(expected, 0);
  put32(expected, 0);
  expected += record(0, 1, 0, 1, 0, "7") + record(1, 1, 1, 4, 3, "2") + record(2, 0, 5, 4, 0, "1") +
              record(3, 0, 9, 3, 0, "4") + record(4, 0, 12, 1, 0, "6") + record(5, 0, 13, 2, 0, "8");
  expected += std::string("\0Sec\0One\0A$\0\0z\0", 15);
  std::string const bytes = CompileSource(dir, source);
  EXPECT_EQ(bytes, expected);

  // Loaded back it holds the same keys, texts, bases and largest numbers, and saves the same.
  SFM_MessageDB compiled((dir / "cat.mdb").c_str());
  EXPECT_EQ(compiled.GetKeys(), (std::vector<int>{-8, -3, 1, 4, 6, 8}));
  EXPECT_EQ(compiled.GetSectionBase(""), 8);
  EXPECT_EQ(text(compiled, -8), "");
  EXPECT_EQ(text(compiled, 4), "A");
  EXPECT_EQ(walk(compiled, "SEC", 0), (std::vector<std::string>{"1=A", "3="}));
  ASSERT_EQ(compiled.Save((dir / "cat.mdb").c_str()), 1);  // onto its own file
  EXPECT_EQ(TempDir::Read(dir / "cat.mdb"), expected);
  EXPECT_EQ(text(compiled, 1), "One");  // still reads the file it loaded
}

// A failed save reports why and leaves the earlier file and no temporary behind.
TEST(SfmMessageDb, FailedSavesKeepTheOldFile) {
  TempDir dir;
  RecordingManager rec;
  FaultGuard guard;
  auto db = LoadSource(dir, "1:one\n");
  std::string const target = dir.Write("old.mdb", "old bytes");
  char const *const reasons[] = {"cannot be created", "cannot be written", "cannot be renamed"};
  for (PLAT_Call call : {PLAT_CallOpen, PLAT_CallWrite, PLAT_CallRename}) {
    PLAT_FailCall(call, 1, ENOSPC);
    EXPECT_EQ(db->Save(target.c_str()), 0) << call;
    EXPECT_NE(std::string(db->GetError()).find(reasons[call == PLAT_CallOpen ? 0 : call == PLAT_CallWrite ? 1 : 2]),
              std::string::npos) << db->GetError();
    EXPECT_EQ(TempDir::Read(target), "old bytes");
    EXPECT_EQ(TempDir::Read(target + ".tmp"), "<missing>");
  }
  EXPECT_EQ(db->Save(target.c_str()), 1);
  EXPECT_TRUE(db->GetError().IsEmpty());

  std::string big;
  for (int i = 0; i < 32768; ++i) big += std::to_string(i) + ":\n";
  EXPECT_EQ(LoadSource(dir, big)->Save(target.c_str()), 0);
  EXPECT_EQ(SFM_MessageDB(target.c_str()).GetCount(), 1);
}

TEST(SfmMessageDb, UnopenableFileGivesAnEmptyDatabase) {
  TempDir dir;
  RecordingManager rec;
  for (bool compiled : {false, true}) {
    std::string const name = dir / (compiled ? "none.mdb" : "none.msgs");
    std::unique_ptr<SFM_MessageDB> db(compiled ? new SFM_MessageDB(name.c_str())
                                               : new SFM_MessageDB(name.c_str(), 0));
    EXPECT_FALSE(db->IsLoaded());
    EXPECT_EQ(db->GetSectionBase(""), -1);
    EXPECT_EQ(text(*db, 0), "");
    EXPECT_EQ(db->Save((dir / "empty.mdb").c_str()), 1);
    EXPECT_EQ(TempDir::Read(dir / "empty.mdb"), std::string(14, '\0'));
    SFM_MessageDB empty((dir / "empty.mdb").c_str());  // a header alone is a valid, empty file
    EXPECT_TRUE(empty.IsLoaded());
    EXPECT_TRUE(empty.GetError().IsEmpty());
  }
  EXPECT_EQ(rec.Count(SFM::EventOpenFailed), 2);
}
