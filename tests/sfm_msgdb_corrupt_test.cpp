//===- tests/sfm_msgdb_corrupt_test.cpp - Damaged ".mdb" files -----------===//
#include "sfm_msgdb.h"

#include "tests/msgdb_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

namespace {

// Records 0 and 1 are the sections, 2 to 4 the messages; the text area starts at 194.
char const kSource[] = "1:one\n[Sec]\n1:A\n2:bb\n[]\n";
constexpr int kRecord0 = 14;
constexpr int kRecordSize = 36;

void set32(std::string &bytes, std::size_t at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>((value >> (8 * i)) & 0xFF);
}

/// Loads `bytes` as a compiled file and checks the refusal: nothing loaded, every lookup
/// empty, the reason named. Returns the reason.
std::string refusal(TempDir const &dir, std::string const &bytes) {
  SFM_MessageDB db(dir.Write("bad.mdb", bytes).c_str());
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(db.GetCount(), 0);
  EXPECT_EQ(db.GetSectionBase("Sec"), -1);
  for (long key : {-5L, -2L, 1L, 4L}) EXPECT_EQ(std::string(db.getTxt(key)), "");
  return static_cast<char const *>(db.GetError());
}

}  // namespace

TEST(SfmMessageDbCorrupt, EveryKindOfDamageIsRefusedWhole) {
  TempDir dir;
  RecordingManager rec;
  std::string const good = CompileSource(dir, kSource);
  ASSERT_EQ(good.size(), 14u + 5 * kRecordSize + 14);
  auto damaged = [&](std::size_t at, std::uint32_t value) {
    std::string bytes = good;
    set32(bytes, at, value);
    return bytes;
  };
  struct Case {
    char const *what;
    std::string bytes;
    char const *reason;
  } const cases[] = {
      {"short header", good.substr(0, 13), "14-byte header"},
      {"negative count", damaged(2, 0xFFFF0005u), "record counts"},
      {"more to load than indexed", damaged(2, 0x00060005u), "record counts"},
      {"records past the end", damaged(2, 0x00060006u) + "", "past the end"},
      {"length 0", damaged(kRecord0 + 2 * kRecordSize + 8, 0), "record 2: text length"},
      {"length 256", damaged(kRecord0 + 2 * kRecordSize + 8, 256), "record 2: text length"},
      {"negative offset", damaged(kRecord0 + 3 * kRecordSize + 4, 0xFFFFFFFFu), "record 3: text outside"},
      {"text past the end", damaged(kRecord0 + 4 * kRecordSize + 4, 15), "record 4: text outside"},
      {"number without NUL", good.substr(0, kRecord0 + 16) + "12345678901234567890" + good.substr(kRecord0 + 36),
       "record 0: number field without its NUL"},
      {"number beyond 32 bits", good.substr(0, kRecord0 + 2 * kRecordSize + 16) + "2147483648" +
                                    good.substr(kRecord0 + 2 * kRecordSize + 26), "record 2: number out"},
      {"unknown kind", damaged(kRecord0 + 2 * kRecordSize, 0x00020002u), "record 2: unknown kind"},
      {"negative section base", damaged(kRecord0 + 16, 0x0000312Du), "record 0: section base"},
      {"negative largest number", damaged(kRecord0 + 12, 0xFFFFFFFFu), "record 0: section base"},
  };
  for (Case const &c : cases) EXPECT_NE(refusal(dir, c.bytes).find(c.reason), std::string::npos) << c.what;

  // At the limits: base 7 with the largest number that keeps the last key within 32 bits.
  SFM_MessageDB limit(dir.Write("limit.mdb", damaged(kRecord0 + 12, 0x7FFFFFFFu - 7)).c_str());
  EXPECT_TRUE(limit.IsLoaded()) << limit.GetError();
  EXPECT_TRUE(SFM_MessageDB::SectionIterator(&limit, "", 0).IsEmpty());
}

// The last text ends the file, so every shorter file lacks a byte something points at.
TEST(SfmMessageDbCorrupt, EveryTruncationIsRefused) {
  TempDir dir;
  RecordingManager rec;
  std::string const good = CompileSource(dir, kSource);
  for (std::size_t length = 0; length < good.size(); ++length)
    EXPECT_FALSE(refusal(dir, good.substr(0, length)).empty()) << length;
  SFM_MessageDB whole(dir.Write("good.mdb", good).c_str());
  EXPECT_TRUE(whole.GetError().IsEmpty());
  EXPECT_EQ(whole.GetSectionBase(""), 7);  // a name of length 1 is the empty name
  EXPECT_EQ(std::string(whole.getTxt(5)), "bb");
}

// Random damage (fixed seed): whatever loads reads only inside the file and saves again;
// the sanitizers watch every step.
TEST(SfmMessageDbCorrupt, RandomDamageLoadsOrFailsCleanly) {
  TempDir dir;
  RecordingManager rec;
  std::string const good = CompileSource(dir, kSource);
  std::mt19937 random(2026);
  int loaded = 0;
  for (int round = 0; round < 400; ++round) {
    std::string bytes = good;
    for (int flips = 1 + static_cast<int>(random() % 4); flips > 0; --flips)
      bytes[random() % bytes.size()] = static_cast<char>(random() % 4 == 0 ? random() : bytes[0] ^ (1 << random() % 8));
    SFM_MessageDB db(dir.Write("fuzz.mdb", bytes).c_str());
    if (!db.IsLoaded()) {
      EXPECT_FALSE(db.GetError().IsEmpty());
      continue;
    }
    ++loaded;
    for (int key : db.GetKeys()) EXPECT_LE(db.GetStoredText(key).GetLength(), 255);
    for (SFM_MessageDB::SectionIterator it(&db, "Sec", 0); !it.IsEmpty(); ++it) SYS_String(it).GetLength();
    db.Save((dir / "resaved.mdb").c_str());
  }
  EXPECT_GT(loaded, 0);
}
