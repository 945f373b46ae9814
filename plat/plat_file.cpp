//===- plat/plat_file.cpp - Streams, files and directories on POSIX ------===//
//
// The library runs its files from one thread at a time, so the stream calls
// take the unlocked forms: the lock of each call would cost more than the copy.
//
//===------------------------------------------------------------------===//
#include "plat/plat_file.h"

#include "plat/plat_fault_gate.h"
#include "plat_error.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace plat {

namespace {

/// Records errno and gives false, for the failing branch of every call.
bool failure() {
  PLAT_SetLastErrorFromErrno();
  return false;
}

}  // namespace

std::FILE *openStream(char const *name, char const *mode) {
  if (failsNow(PLAT_CallOpen)) return failure(), nullptr;
  std::FILE *const stream = std::fopen(name, mode);
  if (stream == nullptr) failure();
  return stream;
}

std::size_t readStream(void *buffer, std::size_t count, std::FILE *stream, bool &failed) {
  failed = false;
  if (failsNow(PLAT_CallRead)) return failed = true, failure(), 0;
  std::size_t const done = fread_unlocked(buffer, 1, count, stream);
  if (done < count && ferror_unlocked(stream)) failed = true, failure();
  return done;
}

int readChar(std::FILE *stream, bool &failed) {
  failed = false;
  if (failsNow(PLAT_CallRead)) return failed = true, failure(), EOF;
  int const ch = getc_unlocked(stream);
  if (ch == EOF && ferror_unlocked(stream)) failed = true, failure();
  return ch;
}

bool readLine(char *buffer, int size, std::FILE *stream, bool &failed) {
  failed = false;
  if (failsNow(PLAT_CallRead)) return failed = true, failure();
  if (fgets_unlocked(buffer, size, stream) != nullptr) return true;
  if (ferror_unlocked(stream)) failed = true, failure();
  return false;
}

bool writeStream(void const *buffer, std::size_t count, std::FILE *stream, bool &failed) {
  failed = false;
  if (failsNow(PLAT_CallWrite)) return failed = true, failure();
  if (fwrite_unlocked(buffer, 1, count, stream) == count && !ferror_unlocked(stream)) return true;
  failed = true;
  return failure();
}

bool writeChar(char ch, std::FILE *stream, bool &failed) {
  failed = false;
  if (failsNow(PLAT_CallWrite)) return failed = true, failure();
  if (putc_unlocked(static_cast<unsigned char>(ch), stream) != EOF) return true;
  failed = true;
  return failure();
}

int writeFormatted(std::FILE *stream, char const *format, std::va_list args, bool &failed) {
  failed = false;
  if (failsNow(PLAT_CallWrite)) return failed = true, failure(), 0;
  int const count = std::vfprintf(stream, format, args);
  if (count < 0 || ferror_unlocked(stream)) failed = true, failure();
  return count;
}

bool flushStream(std::FILE *stream) {
  if (failsNow(PLAT_CallFlush)) return failure();
  return fflush_unlocked(stream) == 0 || failure();
}

bool closeStream(std::FILE *stream) {
  // An injected failure still releases the stream, as a real failing close does.
  bool const injected = failsNow(PLAT_CallClose);
  int const saved = errno;
  bool const closed = std::fclose(stream) == 0;
  if (injected) errno = saved;
  return (closed && !injected) || failure();
}

bool removeFile(char const *name) {
  if (failsNow(PLAT_CallRemove)) return failure();
  // Files only: a directory is never removed through here, empty or not.
  return ::unlink(name) == 0 || failure();
}

bool renameFile(char const *from, char const *to) {
  if (failsNow(PLAT_CallRename)) return failure();
  return std::rename(from, to) == 0 || failure();
}

bool makeDirectory(char const *name) {
  if (failsNow(PLAT_CallMkdir)) return failure();
  return ::mkdir(name, 0777) == 0 || failure();
}

long long fileSize(char const *name) {
  struct stat info;
  if (::stat(name, &info) != 0) return failure(), -1;
  if (S_ISDIR(info.st_mode)) return errno = EISDIR, failure(), -1;
  return static_cast<long long>(info.st_size);
}

bool sameFile(char const *first, char const *second) {
  struct stat a, b;
  return ::stat(first, &a) == 0 && ::stat(second, &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::string currentDirectory() {
  std::string path(256, '\0');
  while (::getcwd(&path[0], path.size()) == nullptr) {
    if (errno != ERANGE) return failure(), std::string();
    path.resize(path.size() * 2);
  }
  path.resize(std::strlen(path.c_str()));
  return path;
}

bool errorText(int code, std::string &text) {
  char buffer[256];
  // The GNU form returns the text, which may or may not sit in the buffer.
  char const *const description = strerror_r(code, buffer, sizeof buffer);
  if (description == nullptr || std::strncmp(description, "Unknown error", 13) == 0) return false;
  text = description;
  return true;
}

}  // namespace plat
