// A file with the bytes of a fuzz input, for readers that take a path.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace zelvane {

[[noreturn]] inline void Fault(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

/// Writes the bytes to the scratch file of this process and returns its path.
inline const std::string& ScratchFile(const std::uint8_t* data, std::size_t size) {
  static const std::string path = "/dev/shm/zelvane-fuzz-" + std::to_string(getpid());
  static const int file = [] {
    const int made = open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
    std::atexit([] { unlink(path.c_str()); });
    return made;
  }();
  if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
    Fault("the scratch file cannot be written");
  return path;
}

}  // namespace zelvane
