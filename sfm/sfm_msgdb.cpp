//===- sfm/sfm_msgdb.cpp - Message database: text source, lookup, sections ===//
#include "sfm_msgdb.h"

#include "sfm/sfm_msgdb_format.h"
#include "ssm_report.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <vector>

using namespace sfm_msgdb;

namespace {

constexpr char kSource[] = "sfm/sfmmsgdb";
/// Holds the longest text a key can describe (255 bytes) and a closing NUL.
constexpr int kLookupBuffer = 256;
/// More buckets than this buy no speed and cost memory a bad file could ask for.
constexpr long kMostBuckets = 1L << 22;

void printDiagnostic(char const *file, int line, char const *message, char const *text) {
  if (text != nullptr)
    std::printf("%s(%d) : %s : \"%s\"\n", file, line, message, text);
  else
    std::printf("%s(%d) : %s\n", file, line, message);
}

SFM_MessageDB::DiagnosticSink g_Sink = &printDiagnostic;

long hashKey(int const &key, long buckets) {
  long const hash = key % buckets;
  return hash < 0 ? hash + buckets : hash;
}

bool isSpace(char ch) { return ch == ' ' || (ch >= '\t' && ch <= '\r'); }

/// The pieces of a file exactly as GetLine(0) returns them, one after the other: at most
/// 510 bytes, up to and including a newline, cut at a NUL as a C string is; each with the
/// position where it starts. Reading in blocks spares an allocation and a position query
/// per line.
class LineReader {
public:
  explicit LineReader(SFM_File &file) : m_File(file), m_Buffer(1 << 16) {}

  /// The next piece; false at the end of the file (or at a read error, which the file
  /// has reported).
  bool Next(char const *&text, int &length, long &start) {
    constexpr std::size_t kLongest = 510;
    if (m_End - m_Begin < kLongest && !m_AtEnd) refill();
    if (m_Begin == m_End) return false;
    char const *const piece = &m_Buffer[m_Begin];
    std::size_t const available = std::min(m_End - m_Begin, kLongest);
    char const *const newline = static_cast<char const *>(std::memchr(piece, '\n', available));
    std::size_t const size = newline != nullptr ? static_cast<std::size_t>(newline - piece) + 1 : available;
    text = piece;
    length = static_cast<int>(strnlen(piece, size));
    start = m_Position;
    m_Begin += size;
    m_Position += static_cast<long>(size);
    return true;
  }

private:
  void refill() {
    std::memmove(m_Buffer.data(), m_Buffer.data() + m_Begin, m_End - m_Begin);
    m_End -= m_Begin;
    m_Begin = 0;
    while (m_End < m_Buffer.size() && !m_AtEnd) {
      long const got = m_File.Read(m_Buffer.data() + m_End, static_cast<long>(m_Buffer.size() - m_End));
      if (got <= 0) m_AtEnd = true;
      m_End += static_cast<std::size_t>(got > 0 ? got : 0);
    }
  }

  SFM_File &m_File;
  std::vector<char> m_Buffer;
  std::size_t m_Begin = 0, m_End = 0;
  long m_Position = 0;  // of m_Buffer[m_Begin] in the file
  bool m_AtEnd = false;
};

}  // namespace

SFM_MessageDB::SectionTableNode::SectionTableNode(SYS_String const &name, int storedBase, int largestNumber)
    : m_Name(name), m_Base(storedBase), m_Largest(largestNumber) {}

SFM_MessageDB::SFM_MessageDB(SYS_String const &name, int) { LoadText(name); }

SFM_MessageDB::SFM_MessageDB(SYS_String const &name) { LoadCompiled(name); }

SFM_MessageDB::~SFM_MessageDB() {
  while (SectionTableNode *const node = m_Sections.RemoveHead()) delete node;
}

SFM_MessageDB::DiagnosticSink SFM_MessageDB::SetDiagnosticSink(DiagnosticSink sink) {
  DiagnosticSink const old = g_Sink;
  g_Sink = sink != nullptr ? sink : &printDiagnostic;
  return old;
}

void SFM_MessageDB::createKeyTable(long count) {
  long const buckets = count + count / 4;
  m_HashSize = static_cast<int>(std::clamp(buckets, 1L, kMostBuckets));
  m_Keys.reset(new KeyTable(m_HashSize, &hashKey));
}

void SFM_MessageDB::insert(int key, long position, int length) {
  // The first definition of a key wins.
  if (keyTableElem *const entry = m_Keys->Insert(key))
    *entry = keyTableElem{key, static_cast<int>(position), static_cast<unsigned char>(length)};
}

void SFM_MessageDB::fail(SYS_String const &why) {
  m_Error = m_File.GetName();
  m_Error << ": " << why;
  m_Keys.reset();
  m_SortedKeys.clear();
  m_KeysSorted = false;
  while (SectionTableNode *const node = m_Sections.RemoveHead()) delete node;
  m_File.Close();
}

// Every rejected line changes nothing: neither the running key nor a section's largest
// number. The one-byte length rules out texts beyond 254 bytes, and keys stay within 32
// bits; both are reported like the other malformed lines rather than cut or wrapped.
void SFM_MessageDB::LoadText(SYS_String const &name) {
  m_File.SetName(name);
  if (!m_File.Open("r")) return;
  long count = 0;
  char const *text;
  int length;
  long start;
  for (LineReader lines(m_File); lines.Next(text, length, start);) ++count;
  m_File.Rewind();

  SectionTableNode *section = m_Sections.AddHead(new SectionTableNode("", -1, 0));
  createKeyTable(count);
  std::int64_t last = 0;
  int base = 0;
  LineReader lines(m_File);
  for (int lineNumber = 1; lines.Next(text, length, start); ++lineNumber) {
    if (start > INT_MAX - 512) return fail("the file is too large for 32-bit positions");
    while (length > 0 && isSpace(text[length - 1])) --length;
    if (length == 0 || text[0] == ';') continue;
    auto reject = [&](char const *message, bool showLine) {
      g_Sink(name, lineNumber, message, showLine ? static_cast<char const *>(SYS_String(text, length)) : nullptr);
    };
    if (text[0] == ' ') {
      reject("leading blanks are not allowed", false);
    } else if (text[0] == '[') {
      char const *const close = static_cast<char const *>(std::memchr(text, ']', length));
      if (close != text + length - 1) {
        reject("invalid section", true);
        continue;
      }
      int first = 0;
      while (text[first] == '[') ++first;
      int const nameLength = std::max(length - 1 - first, 0);
      if (nameLength > kLongestText) {
        reject("text too long", true);
      } else if (last + 2 > INT_MAX) {
        reject("number out of range", true);
      } else {
        last += 2;
        base = static_cast<int>(last);
        section = m_Sections.AddHead(new SectionTableNode(SYS_String(text + first, nameLength), base - 1, 0));
        // The name's own bytes, past every leading "[", so that the text read back is the name.
        insert(-base, start + first, nameLength);
      }
    } else {
      char const *const colon = static_cast<char const *>(std::memchr(text, ':', length));
      if (colon == nullptr || colon == text) {
        reject("invalid line", true);
        continue;
      }
      std::int64_t const number = readNumber(text, colon);
      int const at = static_cast<int>(colon - text);
      int const textLength = length - at - 1;
      if (number < 0) {
        reject("negative message number", true);
      } else if (base + number > INT_MAX) {
        reject("number out of range", true);
      } else if (textLength > kLongestText) {
        reject("text too long", true);
      } else {
        int const key = static_cast<int>(base + number);
        last = key;
        if (number > section->GetLargestNumber()) section->SetLargestNumber(static_cast<int>(number));
        insert(key, start + at + 1, textLength);
      }
    }
  }
}

SYS_String SFM_MessageDB::getTxt(long key) { return readText(key, false); }

SYS_String SFM_MessageDB::GetStoredText(long key) { return readText(key, true); }

SYS_String SFM_MessageDB::readText(long key, bool keepDollar) {
  if (!m_Keys || !m_File.IsOpen() || key < INT_MIN || key > INT_MAX) return SYS_String();
  KeyTable::MapNode const *const node = m_Keys->Lookup(static_cast<int>(key));
  if (node == nullptr) return SYS_String();
  keyTableElem const &entry = node->m_Value;
  char buffer[kLookupBuffer];
  if (!m_File.Seek(entry.position, SFM_File::FromStart)) return SYS_String();
  long const got = m_File.Read(buffer, entry.length);
  std::size_t length = strnlen(buffer, static_cast<std::size_t>(got > 0 ? got : 0));
  if (!keepDollar && length > 0 && buffer[length - 1] == '$') --length;
  return SYS_String(buffer, static_cast<int>(length));
}

SFM_MessageDB::SectionTableNode *SFM_MessageDB::GetSection(SYS_String const &name) {
  SCC_SafeDList<SectionTableNode>::Iterator walk;
  for (walk.First(m_Sections); walk.IsValid(); walk.Next())
    if (walk->GetName().CompareNoCase(name) == 0) return walk.Get();
  return nullptr;
}

long SFM_MessageDB::GetSectionBase(SYS_String const &name) {
  SectionTableNode const *const section = GetSection(name);
  return section != nullptr ? section->GetStoredBase() + 1L : -1L;
}

std::vector<int> const &SFM_MessageDB::GetKeys() const {
  if (m_KeysSorted || !m_Keys) return m_SortedKeys;
  m_SortedKeys.reserve(static_cast<std::size_t>(m_Keys->GetCount()));
  for (KeyTable::Iterator walk(m_Keys.get()); walk.IsValid(); walk.Next()) m_SortedKeys.push_back(walk.GetKey());
  std::sort(m_SortedKeys.begin(), m_SortedKeys.end());
  m_KeysSorted = true;
  return m_SortedKeys;
}

SFM_MessageDB::SectionIterator::SectionIterator(SFM_MessageDB *db, SYS_String const &name, long position)
    : m_DB(db), m_Name(name) {
  *this = position;
}

// A position below 0 counts as 0: the keys below a section's base are other sections'.
void SFM_MessageDB::SectionIterator::operator=(long position) {
  m_Base = 0;
  m_Last = 0;
  m_Current = -1;
  if (!SSM_Check(m_DB != nullptr, "a section iterator needs a database", kSource, __LINE__)) return;
  SectionTableNode const *const section = m_DB->GetSection(m_Name);
  if (section == nullptr) return;
  m_Base = section->GetStoredBase() + 1;
  m_Last = m_Base + section->GetLargestNumber();
  std::int64_t const start = std::int64_t(m_Base) + std::max(position, 0L) - 1;
  m_Current = static_cast<int>(std::min<std::int64_t>(start, m_Last));
  GetNext();
}

void SFM_MessageDB::SectionIterator::GetNext() {
  if (!SSM_Check(m_DB != nullptr && m_DB->m_Keys != nullptr, "a section iterator needs a loaded database",
                 kSource, __LINE__)) {
    m_Current = -1;
    return;
  }
  // The next key of the table above the current one, when it is within the section: the
  // same stop as trying each number in turn.
  std::vector<int> const &keys = m_DB->GetKeys();
  auto const next = std::upper_bound(keys.begin(), keys.end(), m_Current);
  m_Current = next != keys.end() && *next <= m_Last && m_Current < m_Last ? *next : -1;
}

SFM_MessageDB::SectionIterator::operator SYS_String() {
  return IsEmpty() ? SYS_String() : m_DB->getTxt(m_Current);
}

// An empty iterator stays empty: advancing it would start over from key 0.
SYS_String SFM_MessageDB::SectionIterator::operator++() {
  if (IsEmpty()) return SYS_String();
  GetNext();
  return *this;
}

SYS_String SFM_MessageDB::SectionIterator::operator++(int) {
  SYS_String taken = *this;
  if (!IsEmpty()) GetNext();
  return taken;
}
