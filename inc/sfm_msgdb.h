//===- inc/sfm_msgdb.h - The message database ----------------------------===//
//
// Message texts grouped in named sections and addressed by a 32-bit key: the
// section's base plus the message's number; a section's own entry (its name)
// has the negated base as key. Only positions are kept in memory: the file
// the database was loaded from stays open and every lookup seeks and reads.
//
// Two file forms: the text source people edit ("[section]" heads, "number:text"
// lines, ";" comments) and the compiled ".mdb" form that Save writes. Its
// layout (all integers little-endian):
//   header, 14 bytes: 0 (2), index record count (2), records to load (2), 0 (4), 0 (4);
//   records, 36 bytes each from offset 14: running index (2), kind (1: 1 section,
//     0 message), 0 (1), text offset from the text area (4), text length with its NUL (4),
//     a section's largest local number (4), the decimal key (message) or stored base
//     (section) as NUL-terminated ASCII (20);
//   the text area at 14 + 36 * index record count, every text ending with a NUL.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SFM_MSGDB_H
#define BFC_SFM_MSGDB_H

#include "scc_map.h"
#include "scc_safelist.h"
#include "sfm_file.h"
#include "sys_base.h"
#include "sys_string.h"

#include <memory>
#include <vector>

/// Where the text of one key stands in the database's file.
struct keyTableElem {
  int identifier;        ///< the key
  int position;          ///< absolute byte offset of the text's first byte
  unsigned char length;  ///< bytes to read there (the compiled form counts the NUL)
};

/// The message texts of an application, loaded once and read-only afterwards.
///
/// Invariant: a database has a key table exactly when its file opened and the load went
/// through; every position and length in the table lies inside that file.
class BFC_API SFM_MessageDB {
public:
  /// A named section: its stored base is one less than the base keys are counted from.
  class BFC_API SectionTableNode : public SCC_SafeDListNode<SectionTableNode> {
  public:
    SectionTableNode(SYS_String const &name, int storedBase, int largestNumber);
    SYS_String const &GetName() const noexcept { return m_Name; }
    int GetStoredBase() const noexcept { return m_Base; }
    int GetLargestNumber() const noexcept { return m_Largest; }
    void SetLargestNumber(int number) noexcept { m_Largest = number; }

  private:
    SYS_String m_Name;
    int m_Base;
    int m_Largest;
  };

  class SectionIterator;

  /// Receives a rejected line of the text source: the loaded file's name, the line number
  /// from 1, what is wrong and the trimmed line (null when the message shows no line).
  typedef void (*DiagnosticSink)(char const *file, int line, char const *message, char const *text);

  /// Loads the text source `name`; rejected lines go to the diagnostic sink (by default
  /// printed to standard output as "name(line) : message : \"text\""). `unused` is not used.
  SFM_MessageDB(SYS_String const &name, int unused);
  /// Loads the compiled form `name`. A file that breaks the format loads nothing: the
  /// database stays empty and GetError says what was wrong.
  explicit SFM_MessageDB(SYS_String const &name);
  /// Copying would share the key table and the open file: it is not offered.
  SFM_MessageDB(SFM_MessageDB const &) = delete;
  SFM_MessageDB &operator=(SFM_MessageDB const &) = delete;
  virtual int IsValid() { return 1; }
  virtual ~SFM_MessageDB();

  /// The text stored under `key` without one closing "$", or "" (unknown key, no file).
  SYS_String getTxt(long key);
  /// The text stored under `key` as it stands in the file, a closing "$" kept.
  SYS_String GetStoredText(long key);
  /// The base of the section named `name` (any case), or -1 when there is none.
  long GetSectionBase(SYS_String const &name);
  /// Writes the compiled form to `name`, through a temporary file renamed at the end, so
  /// that a failure leaves any earlier file whole and the database's own file may be the
  /// target. 0 (with GetError) when it could not: the file failed, more than 32767 entries,
  /// or a text that does not fit a record.
  int Save(SYS_String const &name);

  /// 1 when the file opened and loaded: the database has a key table.
  int IsLoaded() const noexcept { return m_Keys != nullptr; }
  /// Why the last load or save failed; empty when it did not.
  SYS_String const &GetError() const noexcept { return m_Error; }
  /// The sections, the most recently loaded first.
  SCC_SafeDList<SectionTableNode> &GetSections() noexcept { return m_Sections; }
  /// Every key of the table in ascending order.
  std::vector<int> const &GetKeys() const;
  /// The number of entries (sections and messages).
  long GetCount() const noexcept { return m_Keys ? m_Keys->GetCount() : 0; }

  /// Sets where the text loader's diagnostics go (null: standard output); returns the old sink.
  static DiagnosticSink SetDiagnosticSink(DiagnosticSink sink);

protected:
  /// The first section from the front whose name equals `name` ignoring case, or null.
  SectionTableNode *GetSection(SYS_String const &name);

private:
  typedef SCC_Map<int, keyTableElem> KeyTable;

  SYS_String readText(long key, bool keepDollar);
  void LoadText(SYS_String const &name);
  void LoadCompiled(SYS_String const &name);
  bool ReadCompiledRecords(long fileLength);
  void createKeyTable(long count);
  void insert(int key, long position, int length);
  void fail(SYS_String const &why);
  int saveFailed(SYS_String const &why, SFM_File *target);

  SCC_SafeDList<SectionTableNode> m_Sections;
  std::unique_ptr<KeyTable> m_Keys;
  int m_HashSize = 0;
  SFM_File m_File;
  SYS_String m_Error;
  // The keys in order, made on first use: section walks jump from key to key with it
  // instead of trying every number of a range that a damaged file can make huge.
  mutable std::vector<int> m_SortedKeys;
  mutable bool m_KeysSorted = false;
};

/// Walks the messages of one section in number order.
class BFC_API SFM_MessageDB::SectionIterator {
public:
  /// Keeps the database (which must not be null) and the section name, then positions
  /// itself on the first message numbered `position` or above.
  SectionIterator(SFM_MessageDB *db, SYS_String const &name, long position);
  SectionIterator(SectionIterator const &) = default;
  SectionIterator &operator=(SectionIterator const &) = default;

  /// Stands on the first message numbered `position` or above; empty when there is none
  /// or the section does not exist.
  void operator=(long position);
  int IsEmpty() const noexcept { return m_Current < 0; }
  void Clear() noexcept { m_Current = -1; }
  /// The local number of the current message, -1 when empty.
  long GetPosition() const noexcept { return m_Current < 0 ? -1 : m_Current - m_Base; }
  SYS_String const &GetName() const noexcept { return m_Name; }
  /// The current text, "" when empty.
  operator SYS_String();
  /// Advances, then returns the new current text.
  SYS_String operator++();
  /// Returns the current text, then advances.
  SYS_String operator++(int);

private:
  void GetNext();

  SFM_MessageDB *m_DB;
  int m_Current = -1;
  int m_Last = 0;
  int m_Base = 0;
  SYS_String m_Name;
};

#endif
