//===- plat/plat_map.cpp - Private read-only views of whole files --------===//
#include "plat/plat_map.h"

#include "plat/plat_fault_gate.h"
#include "plat_error.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace plat {

namespace {

bool failure() {
  PLAT_SetLastErrorFromErrno();
  return false;
}

/// Closes `fd` without disturbing errno, for the paths that fail after opening it.
void closeQuietly(int fd) {
  int const saved = errno;
  ::close(fd);
  errno = saved;
}

}  // namespace

bool mapFile(char const *name, MappedView &view) {
  view = MappedView();
  if (failsNow(PLAT_CallOpen)) return failure();
  int const fd = ::open(name, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return failure();
  struct stat info;
  if (::fstat(fd, &info) != 0) return closeQuietly(fd), failure();
  if (S_ISDIR(info.st_mode)) return closeQuietly(fd), errno = EISDIR, failure();
  if (info.st_size > INT_MAX) return closeQuietly(fd), errno = EFBIG, failure();
  if (info.st_size == 0) return ::close(fd), true;
  if (failsNow(PLAT_CallMap)) return closeQuietly(fd), failure();
  std::size_t const length = static_cast<std::size_t>(info.st_size);
  // The view keeps the file's pages alive by itself: the descriptor can go at once.
  void *const address = ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE, fd, 0);
  closeQuietly(fd);
  if (address == MAP_FAILED) return failure();
  view.address = address;
  view.length = length;
  return true;
}

bool unmapFile(MappedView &view) {
  if (view.address == nullptr) return true;
  if (::munmap(view.address, view.length) != 0) return failure();
  view = MappedView();
  return true;
}

}  // namespace plat
