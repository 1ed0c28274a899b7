#include "support/failing_allocation.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

namespace zelvane {
namespace {

/// There is memory again once the catch is over.
struct OutOfMemory : std::bad_alloc {
  ~OutOfMemory() override { Failing.usedUp = false; }
};

void CallNewHandler() {
  const std::new_handler handler = std::get_new_handler();
  if (handler == nullptr) throw std::bad_alloc();
  handler();
}

/// Notices the allocation at which the memory is used up.
void Count(std::size_t size) {
  if (Failing.left == 0 || size < Failing.least || --Failing.left > 0) return;
  Failing.failed = true;
  Failing.usedUp = true;
  if (Failing.reserveIsUsed) CallNewHandler();
  Failing.released = 0;
}

void* Allocate(std::size_t size) {
  Count(size);
  while (Failing.usedUp && Failing.released < size) CallNewHandler();
  if (Failing.usedUp) Failing.released -= size;
  if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}

}  // namespace
}  // namespace zelvane

void* operator new(std::size_t size) {
  try {
    return zelvane::Allocate(size);
  } catch (const std::bad_alloc&) {  // thrown anew, so that its end is noticed
  }
  throw zelvane::OutOfMemory();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return zelvane::Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept {
  zelvane::Failing.released += malloc_usable_size(memory);  // 0 of a null pointer
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  ::operator delete(memory);
}
