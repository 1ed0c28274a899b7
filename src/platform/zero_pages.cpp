#include "platform/zero_pages.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zelvane {

std::span<float> TakeZeroPages(std::size_t count) {
#if defined(__linux__)
  void* memory = mmap(nullptr, count * sizeof(float), PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) memory = nullptr;
#else
  // calloc of a large block takes fresh zero pages from every common system.
  void* memory = std::calloc(count, sizeof(float));
#endif
  if (memory == nullptr) {
    std::fputs("zelvane: no address space left for the arrays of a run\n", stderr);
    std::exit(1);
  }
  return {static_cast<float*>(memory), count};
}

void ReleaseZeroPages(std::span<float> floats) {
#if defined(__linux__)
  if (madvise(floats.data(), floats.size_bytes(), MADV_DONTNEED) == 0) return;
#endif
  std::fill(floats.begin(), floats.end(), 0.0F);
}

}  // namespace zelvane
