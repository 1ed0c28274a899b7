// Scripts of stimulus files and templates of traces.
#include <cstdint>
#include <cstdlib>

#include "analysis/dose_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvane;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (const auto script = ParseBatchScript(text)) {
    if (script->count > MaxScriptFiles || script->profile < 0 || script->profile > 6) std::abort();
    if (script->names.size() > static_cast<std::size_t>(MaxScriptFiles)) std::abort();
    for (const std::string& name : script->names) {
      if (!name.ends_with(".stm") || name.size() > 264) std::abort();
    }
  }
  const auto stretches = ReadDoseTemplate(text);
  if (stretches.size() > 99) std::abort();
  for (const DoseStretch& stretch : stretches) {
    if (!(stretch.concentration > 0.0F)) std::abort();
  }
  return 0;
}
