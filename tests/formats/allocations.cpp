#include "formats/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> handedOut = 0;

}  // namespace

namespace zelvane {

std::size_t AllocatedBytes() {
  return handedOut;
}

}  // namespace zelvane

void* operator new(std::size_t size) {
  handedOut += size;
  if (void* memory = std::malloc(size); memory != nullptr) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
