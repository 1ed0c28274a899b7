#include "screen/memory_guard.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr int LongestName = 160;  // bytes of what the work was for

}  // namespace

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
}

}  // namespace zelvane
