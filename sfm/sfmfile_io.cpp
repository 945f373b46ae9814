//===- sfm/sfmfile_io.cpp - Typed, line and formatted transfers ----------===//
//
// Every transfer reopens a file closed for a while, clears the stream's error
// state, moves the data and, when the stream reports an error, raises 203 or
// 204 and clears it again. Integers move at their 32-bit program widths.
//
//===------------------------------------------------------------------===//
#include "sfm_file.h"

#include "plat/plat_file.h"
#include "sfm/sfm_file_events.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace {

/// `value` with its bits in reverse order over its whole width.
template <class Raw>
Raw mirrorBits(Raw value) {
  typedef typename std::make_unsigned<Raw>::type Bits;
  Bits bits = static_cast<Bits>(value);
  Bits result = 0;
  for (unsigned i = 0; i < sizeof(Bits) * CHAR_BIT; ++i) {
    result = static_cast<Bits>((result << 1) | (bits & 1u));
    bits = static_cast<Bits>(bits >> 1);
  }
  return static_cast<Raw>(result);
}

template <>
double mirrorBits<double>(double value) {
  return value;
}

/// True when a count fits the 32-bit range the files work in; a larger one is reported.
bool countFits(long count) { return sfm_file::check(count <= INT_MAX, __LINE__); }

}  // namespace

std::FILE *SFM_File::prepare(LastAccess access) {
  if ((m_TempClosed != 0 || SFM::Instance == nullptr) && ReOpen() == 0) return nullptr;
  if (!sfm_file::check(m_Stream != nullptr, __LINE__)) return nullptr;
  errno = 0;
  // C streams need a positioning call between reading and writing.
  if (m_LastAccess != access && m_LastAccess != LastAccess::None) std::fseek(m_Stream, 0, SEEK_CUR);
  m_LastAccess = access;
  clearerr_unlocked(m_Stream);
  return m_Stream;
}

void SFM_File::raiseStreamError(int code) {
  sfm_file::raise(static_cast<SFM::EventCode>(code), m_Name);
  // The hooks may have closed the file, or closed it for a while.
  if (m_Stream != nullptr) clearerr_unlocked(m_Stream);
}

long SFM_File::Read(void *buffer, long count) {
  if (!IsOpen()) return 0;
  std::FILE *const stream = prepare(LastAccess::Read);
  if (stream == nullptr || !sfm_file::check(buffer != nullptr, __LINE__) || !countFits(count) || count <= 0)
    return 0;
  bool failed = false;
  std::size_t const done = plat::readStream(buffer, static_cast<std::size_t>(count), stream, failed);
  if (failed) raiseStreamError(SFM::EventReadError);
  return static_cast<long>(done);
}

int SFM_File::Write(void const *buffer, long count) {
  if (!IsOpen()) return 0;
  std::FILE *const stream = prepare(LastAccess::Write);
  if (stream == nullptr || !sfm_file::check(buffer != nullptr, __LINE__) || !countFits(count)) return 0;
  if (count <= 0) return count == 0 ? 1 : 0;
  bool failed = false;
  bool const written = plat::writeStream(buffer, static_cast<std::size_t>(count), stream, failed);
  if (failed) raiseStreamError(SFM::EventWriteError);
  CheckLength();
  return written ? 1 : 0;
}

template <class Raw, class T>
T SFM_File::getValue(T &value, int mirror) {
  if (!IsOpen()) return 0;
  std::FILE *const stream = prepare(LastAccess::Read);
  if (stream == nullptr) return 0;
  Raw raw;
  bool failed = false;
  std::size_t const done = plat::readStream(&raw, sizeof raw, stream, failed);
  if (failed) raiseStreamError(SFM::EventReadError);
  if (done == sizeof raw) value = static_cast<T>(mirror != 0 ? mirrorBits(raw) : raw);
  return value;
}

template <class Raw, class T>
int SFM_File::putValue(T value, int mirror) {
  Raw raw = static_cast<Raw>(value);
  // A 64-bit long that does not fit the 32 bits on disk is refused, never cut.
  if (!sfm_file::check(static_cast<T>(raw) == value, __LINE__)) return 0;
  if (!IsOpen()) return 0;
  std::FILE *const stream = prepare(LastAccess::Write);
  if (stream == nullptr) return 0;
  if (mirror != 0) raw = mirrorBits(raw);
  bool failed = false;
  bool const written = plat::writeStream(&raw, sizeof raw, stream, failed);
  if (failed) raiseStreamError(SFM::EventWriteError);
  CheckLength();
  return written ? 1 : 0;
}

double SFM_File::Get(double &value) { return getValue<double>(value, 0); }
unsigned long SFM_File::Get(unsigned long &value, int mirror) { return getValue<std::uint32_t>(value, mirror); }
long SFM_File::Get(long &value, int mirror) { return getValue<std::int32_t>(value, mirror); }
unsigned char SFM_File::Get(unsigned char &value, int mirror) { return getValue<unsigned char>(value, mirror); }
char SFM_File::Get(char &value, int mirror) { return getValue<char>(value, mirror); }
unsigned short SFM_File::Get(unsigned short &value, int mirror) { return getValue<std::uint16_t>(value, mirror); }
short SFM_File::Get(short &value, int mirror) { return getValue<std::int16_t>(value, mirror); }
unsigned int SFM_File::Get(unsigned int &value, int mirror) { return getValue<std::uint32_t>(value, mirror); }
int SFM_File::Get(int &value, int mirror) { return getValue<std::int32_t>(value, mirror); }

int SFM_File::Put(double value) { return putValue<double>(value, 0); }
int SFM_File::Put(unsigned long value, int mirror) { return putValue<std::uint32_t>(value, mirror); }
int SFM_File::Put(long value, int mirror) { return putValue<std::int32_t>(value, mirror); }
int SFM_File::Put(unsigned char value, int mirror) { return putValue<unsigned char>(value, mirror); }
int SFM_File::Put(char value, int mirror) { return putValue<char>(value, mirror); }
int SFM_File::Put(unsigned short value, int mirror) { return putValue<std::uint16_t>(value, mirror); }
int SFM_File::Put(short value, int mirror) { return putValue<std::int16_t>(value, mirror); }
int SFM_File::Put(unsigned int value, int mirror) { return putValue<std::uint32_t>(value, mirror); }
int SFM_File::Put(int value, int mirror) { return putValue<std::int32_t>(value, mirror); }

char SFM_File::GetChar() {
  if (!IsOpen()) return -1;
  std::FILE *const stream = prepare(LastAccess::Read);
  if (stream == nullptr) return -1;
  bool failed = false;
  int const ch = plat::readChar(stream, failed);
  if (failed) raiseStreamError(SFM::EventReadError);
  return ch == EOF ? static_cast<char>(-1) : static_cast<char>(ch);
}

int SFM_File::PutChar(char ch) { return putValue<char>(ch, 0); }

SYS_String SFM_File::GetLine(long limit) {
  // fgets keeps room for the NUL: a limit of n gives at most n - 1 bytes.
  constexpr long kMaxLimit = 511;
  if (!IsOpen()) return SYS_String();
  std::FILE *const stream = prepare(LastAccess::Read);
  if (stream == nullptr) return SYS_String();
  if (limit <= 0 || limit >= kMaxLimit) limit = kMaxLimit;
  char buffer[kMaxLimit + 1];
  bool failed = false;
  if (!plat::readLine(buffer, static_cast<int>(limit), stream, failed)) {
    if (failed) raiseStreamError(SFM::EventReadError);
    return SYS_String();
  }
  return SYS_String(buffer, static_cast<int>(std::strlen(buffer)));
}

int SFM_File::WriteLine(SYS_String const &line) {
  if (!IsOpen()) return 0;
  std::FILE *const stream = prepare(LastAccess::Write);
  if (stream == nullptr) return 0;
  bool failed = false;
  bool written = plat::writeStream(line, static_cast<std::size_t>(line.GetLength()), stream, failed);
  if (failed) raiseStreamError(SFM::EventWriteError);
  // The hooks may have closed the file, or closed it for a while.
  if (m_Stream != stream) return 0;
  written = plat::writeChar('\n', stream, failed) && written;
  if (failed) raiseStreamError(SFM::EventWriteError);
  CheckLength();
  return written ? 1 : 0;
}

long SFM_File::Printf(char const *format, ...) {
  if (!IsOpen()) return 0;
  std::FILE *const stream = prepare(LastAccess::Write);
  if (stream == nullptr || !sfm_file::check(format != nullptr, __LINE__)) return 0;
  std::va_list args;
  va_start(args, format);
  bool failed = false;
  int const count = plat::writeFormatted(stream, format, args, failed);
  va_end(args);
  if (failed) raiseStreamError(SFM::EventWriteError);
  CheckLength();
  return failed || count < 0 ? 0 : count;
}
