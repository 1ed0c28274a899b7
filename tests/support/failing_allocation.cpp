#include "support/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace {

void* Allocate(std::size_t size) {
  zelvane::FailingAllocation& failing = zelvane::Failing;
  if (failing.left > 0 && size >= failing.least && --failing.left == 0) {
    failing.failed = true;
    return nullptr;
  }
  return std::malloc(size > 0 ? size : 1);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* memory = Allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
