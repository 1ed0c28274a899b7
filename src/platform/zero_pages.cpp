#include "platform/zero_pages.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace zelvane {
namespace {

/// Writes only to values other than 0, so that untouched pages stay untouched.
void ClearInPlace(std::span<float> floats) {
  for (float& value : floats) {
    if (std::bit_cast<std::uint32_t>(value) != 0) value = 0.0F;
  }
}

}  // namespace

std::span<float> TakeZeroPages(std::size_t count) {
#if defined(__linux__)
  void* memory = mmap(nullptr, count * sizeof(float), PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) memory = nullptr;
#else
  // On every common system calloc gets fresh zero pages for a large block.
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
  // Only whole pages can be returned; of a page shared with neighbours only the part of the span is cleared.
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = reinterpret_cast<std::uintptr_t>(floats.data());
  const std::uintptr_t firstPage = (begin + page - 1) / page * page;
  const std::uintptr_t endPage = (begin + floats.size_bytes()) / page * page;
  if (firstPage < endPage &&
      madvise(reinterpret_cast<void*>(firstPage), endPage - firstPage, MADV_DONTNEED) == 0) {
    ClearInPlace(floats.first((firstPage - begin) / sizeof(float)));
    ClearInPlace(floats.subspan((endPage - begin) / sizeof(float)));
    return;
  }
#endif
  ClearInPlace(floats);
}

void ClearUsed(std::span<float> values, int& used, int end) {
  const int stop = std::clamp(end, 0, used);
  std::fill_n(values.begin(), stop, 0.0F);
  if (stop == used) used = 0;
}

}  // namespace zelvane
