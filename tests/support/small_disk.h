// A disk without room.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace zelvane {

/// Limits the size of this process's files during its lifetime: writes fail as on a full disk.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit small{bytes, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallDisk() { setrlimit(RLIMIT_FSIZE, &former_); }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  rlimit former_{};
};

}  // namespace zelvane
