//===- inc/sfm_file.h - Named files with typed, line and formatted I/O ---===//
//
// Every file object registers with the file manager (inc/sfm.h), which hears
// of each open, close and failure as an event and may answer "try again". When
// the process runs out of descriptors the manager closes the least recently
// opened file for a while; the next operation on it reopens it at the position
// where it was left, so the user never sees the difference. Integers go to
// disk little-endian at the width of a 32-bit program (long is 4 bytes in both
// data models), so a file written by one build reads the same in the other.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SFM_FILE_H
#define BFC_SFM_FILE_H

#include "scc_safelist.h"
#include "sccstack.h"
#include "sys_base.h"
#include "sys_string.h"

#include <cstdio>
#include <memory>

struct SFM_Mapping;

/// A file over a buffered byte stream, known to the file manager.
///
/// States: closed (no stream); open; temporarily closed (no stream, flag set, the position
/// saved on the position stack; IsOpen() is still 1). Name and mode change only while
/// closed. Failures are events of the manager, never exceptions; broken contracts are
/// reported checks (source "sfm/sfmfile") after which the call returns its failure value.
class BFC_API SFM_File : public SCC_SafeDListNode<SFM_File> {
public:
  /// Origins of Seek, as fseek takes them.
  enum SeekType { FromStart = 0, FromCurrent = 1, FromEnd = 2 };

  /// A closed file with this name (none for ""); needs the file manager.
  SFM_File(char const *name = "");
  /// Opens `name` with `mode` at once (both must be non-empty).
  SFM_File(char const *name, char const *mode);
  /// A closed file with the source's name and mode, placed after it in the manager's list.
  SFM_File(SFM_File &source);
  /// Takes the source's name and mode; this file must be closed.
  SFM_File &operator=(SFM_File &source);
  /// Takes `name`; this file must be closed. Returns `name`.
  char const *operator=(char const *name);
  /// Closes the file (events included) and leaves the manager's list.
  ~SFM_File() override;

  SYS_String const &GetName() const noexcept { return m_Name; }
  SYS_String const &GetMode() const noexcept { return m_Mode; }
  /// The text of the last error event raised for this file's name.
  SYS_String const &GetMsg() const noexcept { return m_Msg; }
  void SetName(SYS_String const &name);
  void SetMode(SYS_String const &mode);
  void SetMsg(SYS_String const &message) { m_Msg = message; }

  /// Closes, takes the name and opens with the mode.
  virtual int ReOpen(SYS_String const &name, SYS_String const &mode);
  virtual int IsValid();
  /// Opens with `mode`, or with the stored mode when it is empty: events 101, then 102 or
  /// 201 (the answer 2 tries again). 1 when open.
  virtual int Open(SYS_String mode);
  /// 1 at the end of the file (also right after a seek to the end); 1 for a file not open.
  virtual int Eof();
  /// 1 when open or temporarily closed.
  virtual int IsOpen();
  /// Writes buffered output; a failure raises 204. 1 when flushed.
  virtual int Flush();
  /// Closes (event 103, or 202 when the close failed to write) and drops a mapping. 1 unless
  /// the close failed.
  virtual int Close();
  /// The whole file as a private, writable view (never written back), or null: for an
  /// empty file (no event) or on failure (201; the answer 2 tries again). An open file
  /// stays open for its user (it is closed for a while). Mapping again drops the old view.
  virtual void *MapToMemory();
  /// Releases the view; 1 when there was none or it was released.
  virtual int UnmapMemory();
  /// 1 when the stream took the new position.
  virtual int Seek(int offset, SeekType origin);
  /// Seeks and, when that worked, pushes the position it left; 0 (nothing pushed, the
  /// position as it was) when the seek failed.
  virtual int PushPosition(int offset, SeekType origin);
  /// Seeks to the last pushed position; the stack must not be empty.
  virtual int PopPosition();
  /// Reads up to `count` bytes; returns how many (a read error raises 203).
  virtual long Read(void *buffer, long count);
  /// 1 when all `count` bytes were written (a write error raises 204).
  virtual int Write(void const *buffer, long count);
  /// Typed reads: sizeof(T) bytes (long and unsigned long: 4), little-endian; with a
  /// non-zero `mirror` the value's bits are reversed over its width. The value is stored
  /// only when all its bytes were read; the variable's value is returned either way.
  virtual double Get(double &value);
  virtual unsigned long Get(unsigned long &value, int mirror = 0);
  virtual long Get(long &value, int mirror = 0);
  virtual unsigned char Get(unsigned char &value, int mirror = 0);
  virtual char Get(char &value, int mirror = 0);
  virtual unsigned short Get(unsigned short &value, int mirror = 0);
  virtual short Get(short &value, int mirror = 0);
  virtual unsigned int Get(unsigned int &value, int mirror = 0);
  virtual int Get(int &value, int mirror = 0);
  /// Typed writes, the mirror images of Get; 1 when written. A long outside the 32-bit
  /// range (possible on 64-bit builds) is a reported check and writes nothing.
  virtual int Put(double value);
  virtual int Put(unsigned long value, int mirror = 0);
  virtual int Put(long value, int mirror = 0);
  virtual int Put(unsigned char value, int mirror = 0);
  virtual int Put(char value, int mirror = 0);
  virtual int Put(unsigned short value, int mirror = 0);
  virtual int Put(short value, int mirror = 0);
  virtual int Put(unsigned int value, int mirror = 0);
  virtual int Put(int value, int mirror = 0);
  /// The next byte; -1 at the end or on a read error (a byte 0xFF reads as -1 too).
  virtual char GetChar();
  virtual int PutChar(char ch);
  /// Up to limit - 1 bytes (limit 0, negative or above 511: 511), stopping after a newline,
  /// which is kept; "" at the end or on a read error.
  virtual SYS_String GetLine(long limit = 0);
  /// Writes the line and one "\n"; 1 when both were written.
  virtual int WriteLine(SYS_String const &line);
  /// Formats as vfprintf does; the count of bytes, 0 on a write error.
  virtual long Printf(char const *format, ...) __attribute__((format(printf, 2, 3)));

  int Rewind() { return Seek(0, FromStart); }
  int SeekToEnd() { return Seek(0, FromEnd); }
  /// The byte position; -1 when not open or beyond 2 GiB - 1.
  long GetPosition();
  /// The file's length in bytes, measured once and cached until a write may change it;
  /// -1 when it cannot be measured (no such file, or beyond 2 GiB - 1). A closed file is
  /// measured on the file system, without events.
  long GetLength();

  /// File operations on this file's name (inc/sfm_directory.h); an open file is flushed first.
  int Copy(char const *target, int overwrite);
  int Move(char const *target, int overwrite);
  int Delete();
  int Exists();

private:
  friend class SFM;
  enum class LastAccess { None, Read, Write };

  virtual int MayBeTempClosed();
  virtual int TempClose();
  virtual int ReOpen();

  void registerWithManager();
  SYS_String GetReOpenMode() const;
  void CheckLength();
  std::FILE *prepare(LastAccess access);
  void raiseStreamError(int code);
  bool openStream(char const *mode);
  void forgetLength() noexcept { m_Length = -1; }
  template <class Raw, class T> T getValue(T &value, int mirror);
  template <class Raw, class T> int putValue(T value, int mirror);

  std::FILE *m_Stream = nullptr;
  SYS_String m_Name;
  SYS_String m_Mode;
  SYS_String m_Msg;
  int m_Length = 0;  // -1: not known
  int m_TempClosed = 0;
  SCC_Stack<long> m_Positions;
  std::unique_ptr<SFM_Mapping> m_Mapping;
  // Which way the stream last moved data: C streams need a seek between the two.
  LastAccess m_LastAccess = LastAccess::None;
};

#endif
