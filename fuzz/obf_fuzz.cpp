// Any bytes given as a file of the program's own binary layout.
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "formats/obf_file.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace zelvane;
  std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
  const ObfHeader header = ReadObfHeader(file);
  const std::int64_t count =
      static_cast<std::int64_t>(header.numRuns.value_or(1)) * header.numPoints.value_or(10);
  std::vector<float> destination(64, -1.0F);
  const std::size_t read = ReadObfSamples(file, 0, count, destination);
  const std::size_t held = size > 2048 ? (size - 2048) / 4 : 0;
  if (read > destination.size() || read > held) std::abort();
  return 0;
}
