// Any bytes as a binary stimulus file: the reader returns what the bytes hold.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "formats/stimulus_read.h"
#include "scratch_file.h"

namespace zelvane {
namespace {

constexpr std::size_t Room = 256;  // samples of a profile

void CheckOne(const std::uint8_t* data, std::size_t size) {
  std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
  const auto head = ReadStimHead(file);
  if (!head) return;
  if (size < StimFileHeadBytes || head->samples < 1) Fault("a head without a file");
  const auto samples = static_cast<std::size_t>(head->samples);
  for (std::size_t p = 0; p < StimFileProfiles; ++p) {
    std::vector<float> profile(Room);
    const std::size_t read = ReadStimSamples(file, *head, static_cast<int>(p), 0, profile);
    const auto held = static_cast<std::size_t>(head->samplesHeld);
    if (p + 1 == StimFileProfiles && read != std::min(held, Room))
      Fault("the head tells of other samples than come");
    for (std::size_t i = 0; i < read; ++i) {
      const std::size_t at = StimFileHeadBytes + sizeof(float) * (p * samples + i);
      if (i >= samples || at + sizeof(float) > size) Fault("a sample beyond the file");
      if (std::memcmp(&profile[i], data + at, sizeof(float)) != 0) Fault("a sample is not the file's");
    }
  }
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne(data, size);
  return 0;
}
