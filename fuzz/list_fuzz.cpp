// Any bytes as a list file: the length of names is limited, and a written list reads back the same.
#include <cstdint>
#include <fstream>
#include <string>

#include "fit/fit_store.h"
#include "fit/wave_list.h"
#include "scratch_file.h"

namespace zelvane {
namespace {

constexpr std::size_t LongestName = 260 + 4;  // a line and an extension

std::optional<WaveList> Read(const std::uint8_t* data, std::size_t size) {
  return ReadWaveList(std::ifstream(ScratchFile(data, size), std::ios::binary));
}

void CheckName(const std::string& name, std::string_view extension) {
  if (name.size() > LongestName) Fault("a name is longer than its line");
  if (name.find_first_of("\r\n") != std::string::npos) Fault("a line end in a name");
  if (!name.ends_with(extension)) Fault("a name without its extension");
}

void CheckOne(const std::uint8_t* data, std::size_t size) {
  const auto list = Read(data, size);
  if (!list) return;
  if (list->pairs.size() > MaxFitWaveforms) Fault("more pairs than there are waveforms");
  CheckName(list->model, ".mod");
  std::string text = "LIST\n" + list->model + '\n' + std::to_string(list->pairs.size()) + '\n';
  bool fits = list->model.size() <= 256;
  for (const WaveListPair& pair : list->pairs) {
    CheckName(pair.data, "");
    CheckName(pair.stimulus, ".stm");
    text += pair.data + '\n' + pair.stimulus + '\n';
    fits = fits && pair.stimulus.size() <= 256;
  }
  if (!fits) return;  // the extension made a full line too long
  const auto again = Read(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  if (!again || again->model != list->model || again->pairs.size() != list->pairs.size())
    Fault("a written list is another one");
  for (std::size_t p = 0; p < list->pairs.size(); ++p) {
    if (again->pairs[p].data != list->pairs[p].data || again->pairs[p].stimulus != list->pairs[p].stimulus)
      Fault("a written pair is another one");
  }
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne(data, size);
  return 0;
}
