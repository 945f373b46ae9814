//===- plat/plat_file.h - Streams, files and directories on POSIX --------===//
//
// The calls the file classes make to the platform. Each one passes the fault
// switch (inc/plat_fault.h) and, when it fails, records errno as the thread's
// last-error code before it returns, so an event raised afterwards carries the
// cause of its own failure.
//
//===------------------------------------------------------------------===//
#ifndef BFC_PLAT_FILE_H
#define BFC_PLAT_FILE_H

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

namespace plat {

/// `name` opened with an fopen mode, or null.
std::FILE *openStream(char const *name, char const *mode);

/// Reads up to `count` bytes and returns how many were read; `failed` tells a read error
/// apart from the end of the file.
std::size_t readStream(void *buffer, std::size_t count, std::FILE *stream, bool &failed);

/// The next byte (0 to 255), or EOF at the end or on a read error (then `failed`).
int readChar(std::FILE *stream, bool &failed);

/// Reads as fgets does: at most size - 1 bytes, up to and including a newline. False when
/// nothing was read (the end, or a read error: then `failed`).
bool readLine(char *buffer, int size, std::FILE *stream, bool &failed);

/// Writes `count` bytes; false (and `failed`) unless all of them were taken.
bool writeStream(void const *buffer, std::size_t count, std::FILE *stream, bool &failed);

/// Writes one byte; false (and `failed`) on failure.
bool writeChar(char ch, std::FILE *stream, bool &failed);

/// Formats as vfprintf does and returns its count; `failed` on a write error.
int writeFormatted(std::FILE *stream, char const *format, std::va_list args, bool &failed);

/// Flushes buffered output; false on failure.
bool flushStream(std::FILE *stream);

/// Closes the stream, which is gone afterwards whatever the outcome; false when the close
/// (or the flush it makes) failed.
bool closeStream(std::FILE *stream);

/// Removes a file; false on failure.
bool removeFile(char const *name);

/// Renames a file, replacing the target; false on failure.
bool renameFile(char const *from, char const *to);

/// Creates one directory; false on failure (an existing one included).
bool makeDirectory(char const *name);

/// The size of the file named `name` in bytes, or -1 when it cannot be measured.
long long fileSize(char const *name);

/// True when both names lead to one file (the same device and inode).
bool sameFile(char const *first, char const *second);

/// The working directory, without a closing separator; empty when it cannot be read.
std::string currentDirectory();

/// The system's description of error `code`; false when the system has none.
bool errorText(int code, std::string &text);

}  // namespace plat

#endif
