// Any bytes as an Axon Binary File of version 1.
#include <algorithm>
#include <array>

#include "abf_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::array<std::uint8_t, 4> Mark{'A', 'B', 'F', ' '};
  // Inputs without the mark of this version would be refused at once and find nothing.
  std::vector<std::uint8_t> bytes(data, data + size);
  std::copy_n(Mark.begin(), std::min(size, Mark.size()), bytes.begin());
  zelvane::CheckRecording(bytes);
  return 0;
}
