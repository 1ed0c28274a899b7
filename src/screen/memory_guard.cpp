#include "screen/memory_guard.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>

#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr int LongestName = 160;                  // bytes of what the work was for
constexpr std::size_t ReserveBlock = 512 * 1024;  // bytes

using ReservePart = std::atomic<void*>;  // any thread may run out of memory

constinit ReservePart ReserveToGoOn = nullptr;
constinit ReservePart ReserveToEnd = nullptr;

/// Returns whether there was a block to release.
bool Release(ReservePart& part) {
  void* block = part.exchange(nullptr);
  ::operator delete(block);
  return block != nullptr;
}

void Fill(ReservePart& part) {
  if (part == nullptr) part = ::operator new(ReserveBlock, std::nothrow);
}

/// Called by operator new, again and again, until the allocation succeeds or this function throws.
void OnFailedAllocation() {
  if (Release(ReserveToGoOn)) return;
  Release(ReserveToEnd);
  throw std::bad_alloc();
}

}  // namespace

void KeepMemoryReserve() {
  std::set_new_handler(nullptr);  // filling one part must not release the other
  Fill(ReserveToEnd);
  Fill(ReserveToGoOn);
  std::set_new_handler(OnFailedAllocation);
}

void TellMemoryRanOut(std::string_view what) {
  std::array<char, LongestName + 40> text{};  // needs no memory itself
  std::snprintf(text.data(), text.size(), "Not enough memory for %.*s.",
                std::min(static_cast<int>(what.size()), LongestName), what.data());
  try {
    MemoryRanOut.Tell();
    ForgetStop();
    ResetProgress();
    MessagePopup(ErrorTitle, text.data());
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "%s\n", text.data());
  }
  KeepMemoryReserve();
}

}  // namespace zelvane
