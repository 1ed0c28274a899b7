// Any bytes as a list of dwell times: only finite times are read, and the list keeps its bounds.
#include <cmath>
#include <cstdint>
#include <vector>

#include "dwells/dwell_lists.h"
#include "dwells/dwell_store.h"
#include "scratch_file.h"

namespace zelvane {
namespace {

void CheckOne(const std::uint8_t* data, std::size_t size) {
  static std::vector<float> list(MaxDwells, -1.0F);
  const std::string& path = ScratchFile(data, size);
  const auto count = ReadSingleColumnList(list, path, true, 0);
  if (!count) return;
  if (*count < 0 || *count > MaxFileDwells || static_cast<std::size_t>(*count) > size)
    Fault("more times than bytes");
  for (std::size_t i = 0; i < static_cast<std::size_t>(*count); ++i) {
    if (!std::isfinite(list[i])) Fault("a time without a value");
  }
  const float first = list[0];
  const auto appended = ReadSingleColumnList(list, path, false, *count);
  if (!appended || *appended < *count) Fault("times were lost");
  if (*count > 0 && list[0] != first) Fault("appending changed the times before");
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne(data, size);
  return 0;
}
