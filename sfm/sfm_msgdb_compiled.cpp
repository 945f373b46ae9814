//===- sfm/sfm_msgdb_compiled.cpp - Message database: the ".mdb" form ----===//
#include "sfm_msgdb.h"

#include "plat/plat_file.h"
#include "plat_error.h"
#include "scc_sortarr.h"
#include "sfm/sfm_msgdb_format.h"
#include "ssm_report.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

using namespace sfm_msgdb;

namespace {

constexpr char kSource[] = "sfm/sfmmsgdb";

int readInt16(unsigned char const *p) { return static_cast<std::int16_t>(p[0] | p[1] << 8); }

std::int32_t readInt32(unsigned char const *p) {
  return static_cast<std::int32_t>(std::uint32_t(p[0]) | std::uint32_t(p[1]) << 8 | std::uint32_t(p[2]) << 16 |
                                   std::uint32_t(p[3]) << 24);
}

void writeInt16(char *p, int value) {
  p[0] = static_cast<char>(value & 0xFF);
  p[1] = static_cast<char>((value >> 8) & 0xFF);
}

void writeInt32(char *p, std::int32_t value) {
  auto const bits = static_cast<std::uint32_t>(value);
  for (int i = 0; i < 4; ++i) p[i] = static_cast<char>((bits >> (8 * i)) & 0xFF);
}

int compareIdentifiers(keyTableElem const &a, keyTableElem const &b) {
  return (a.identifier > b.identifier) - (a.identifier < b.identifier);
}

SYS_String recordText(int record, char const *what) {
  SYS_String text("record ");
  text << record << ": " << what;
  return text;
}

}  // namespace

void SFM_MessageDB::LoadCompiled(SYS_String const &name) {
  m_File.SetName(name);
  if (!m_File.Open("rb")) return;
  ReadCompiledRecords(m_File.GetLength());
}

// Everything a record points at is checked against the file's length before it is used, so
// a damaged file is refused whole (GetError says where) and nothing outside it is ever read.
bool SFM_MessageDB::ReadCompiledRecords(long fileLength) {
  unsigned char header[kHeaderSize];
  if (fileLength < kHeaderSize || m_File.Read(header, kHeaderSize) != kHeaderSize) {
    fail("corrupt message database: shorter than its 14-byte header");
    return false;
  }
  int const indexCount = readInt16(header + 2);
  int const count = readInt16(header + 4);
  if (indexCount < 0 || count < 0 || count > indexCount) {
    fail("corrupt message database: the header's record counts are negative or disagree");
    return false;
  }
  std::int64_t const textStart = kHeaderSize + std::int64_t(kRecordSize) * indexCount;
  if (textStart > fileLength) {
    fail("corrupt message database: its index records run past the end of the file");
    return false;
  }
  createKeyTable(count);
  for (int i = 0; i < count; ++i) {
    unsigned char record[kRecordSize];
    if (m_File.Read(record, kRecordSize) != kRecordSize) {
      fail("corrupt message database: " + recordText(i, "cut short"));
      return false;
    }
    int const kind = record[2];
    std::int64_t const position = textStart + readInt32(record + 4);
    std::int32_t const length = readInt32(record + 8);
    std::int32_t const largest = readInt32(record + 12);
    char const *const field = reinterpret_cast<char const *>(record + 16);
    char const *const fieldEnd = static_cast<char const *>(std::memchr(field, '\0', kNumberField));
    std::int64_t const number = fieldEnd != nullptr ? readNumber(field, fieldEnd) : 0;
    char const *wrong = nullptr;
    if (kind > 1)
      wrong = "unknown kind";
    else if (length < 1 || length > kLongestText + 1)
      wrong = "text length outside 1 to 255";
    else if (position < textStart || position + length > fileLength)
      wrong = "text outside the file";
    else if (fieldEnd == nullptr)
      wrong = "number field without its NUL";
    else if (number < INT_MIN || number > INT_MAX)
      wrong = "number out of range";
    else if (kind == 1 && (number < 0 || largest < 0 || number + 1 + largest > INT_MAX))
      wrong = "section base or largest number out of range";
    if (wrong != nullptr) {
      fail("corrupt message database: " + recordText(i, wrong));
      return false;
    }
    int key = static_cast<int>(number);
    if (kind == 1) {
      // A length of 1 is the NUL alone: the empty name.
      SYS_String sectionName;
      if (length > 1) {
        if (!m_File.PushPosition(static_cast<int>(position), SFM_File::FromStart)) {
          fail(recordText(i, "its name cannot be read"));
          return false;
        }
        sectionName = m_File.GetLine(length);
        m_File.PopPosition();
      }
      m_Sections.AddHead(new SectionTableNode(sectionName, key, largest));
      key = -1 - key;
    }
    insert(key, static_cast<long>(position), length);
  }
  return true;
}

int SFM_MessageDB::saveFailed(SYS_String const &why, SFM_File *target) {
  m_Error = why;
  if (target != nullptr) {
    target->Close();
    plat::removeFile(target->GetName());
  }
  return 0;
}

int SFM_MessageDB::Save(SYS_String const &name) {
  m_Error.Empty();
  long const count = GetCount();
  if (count > kMostEntries) {
    SYS_String why(name);
    why << ": " << static_cast<int>(count) << " entries; the compiled form holds at most 32767";
    return saveFailed(why, nullptr);
  }
  SCC_SortableArray<keyTableElem> entries(&compareIdentifiers);
  if (count > 0) {
    entries.ChangeBounds(0, static_cast<int>(count));
    int i = 0;
    for (KeyTable::Iterator walk(m_Keys.get()); walk.IsValid(); walk.Next()) entries[i++] = walk.GetValue();
    entries.Sort();
  }

  // The whole image is built first and written at once: records and texts as the format
  // places them.
  std::int64_t const textStart = kHeaderSize + std::int64_t(kRecordSize) * count;
  std::string image(static_cast<std::size_t>(textStart), '\0');
  writeInt16(&image[2], static_cast<int>(count));
  writeInt16(&image[4], static_cast<int>(count));
  for (int i = 0; i < static_cast<int>(count); ++i) {
    keyTableElem const &entry = entries[i];
    char text[kLongestText + 2];
    int length = entry.length;
    if (length > 0 && (!m_File.Seek(entry.position, SFM_File::FromStart) || m_File.Read(text, length) != length))
      return saveFailed(m_File.GetName() + ": the texts cannot be read back", nullptr);
    if (length == 0 || text[length - 1] != '\0') text[length++] = '\0';
    if (length > kLongestText + 1) return saveFailed(recordText(i, "text too long for the compiled form"), nullptr);

    char *const record = &image[static_cast<std::size_t>(kHeaderSize + kRecordSize * i)];
    writeInt16(record, i);
    record[2] = entry.identifier < 0 ? 1 : 0;
    writeInt32(record + 4, static_cast<std::int32_t>(image.size() - textStart));
    writeInt32(record + 8, length);
    int number = entry.identifier;
    if (entry.identifier < 0) {
      SectionTableNode const *const section = GetSection(SYS_String(text));
      if (!SSM_Check(section != nullptr, "a section entry without its section", kSource, __LINE__))
        return saveFailed(recordText(i, "a section entry without its section"), nullptr);
      writeInt32(record + 12, section->GetLargestNumber());
      number = -1 - entry.identifier;
    }
    std::snprintf(record + 16, kNumberField, "%d", number);
    image.append(text, static_cast<std::size_t>(length));
  }

  SYS_String const temporary = name + ".tmp";
  SFM_File out;
  out.SetName(temporary);
  if (!out.Open("w+b")) return saveFailed(temporary + ": cannot be created: " + out.GetMsg(), nullptr);
  if (!out.Write(image.data(), static_cast<long>(image.size())))
    return saveFailed(temporary + ": cannot be written: " + out.GetMsg(), &out);
  if (!out.Close()) return saveFailed(temporary + ": cannot be written: " + out.GetMsg(), &out);
  if (!plat::renameFile(temporary, name)) {
    std::string reason;
    plat::errorText(PLAT_GetLastError(), reason);
    return saveFailed(temporary + ": cannot be renamed to " + name + ": " + reason.c_str(), &out);
  }
  return 1;
}
