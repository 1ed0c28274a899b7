// Any bytes as a binary stimulus file: what comes out is what the bytes hold, and nothing beyond it is
// written.
#include <cstdint>
#include <cstring>
#include <vector>

#include "formats/stimulus_read.h"
#include "scratch_file.h"

namespace zelvane {
namespace {

constexpr std::size_t Room = 256;  // samples of a profile
constexpr float Untouched = -77.0F;

void CheckOne(const std::uint8_t* data, std::size_t size) {
  const std::string& path = ScratchFile(data, size);
  const auto head = StimFileHeadOf(path);
  if (!head) return;
  if (size < StimFileHeadBytes || head->samples < 1) Fault("a head without a file");
  std::vector<float> memory(StimFileProfiles * Room, Untouched);
  StimProfileSpans profiles;
  for (std::size_t p = 0; p < StimFileProfiles; ++p) profiles[p] = std::span(memory).subspan(p * Room, Room);
  const int last = ReadStimProfiles(path, *head, profiles);
  if (last != head->samplesHeld) Fault("the head tells of other samples than come");
  const auto samples = static_cast<std::size_t>(head->samples);
  for (std::size_t p = 0; p < StimFileProfiles; ++p) {
    for (std::size_t i = 0; i < Room; ++i) {
      const std::size_t at = StimFileHeadBytes + sizeof(float) * (p * samples + i);
      float expected = Untouched;
      if (i < samples && at + sizeof(float) <= size) std::memcpy(&expected, data + at, sizeof expected);
      if (std::memcmp(&profiles[p][i], &expected, sizeof expected) != 0) Fault("a sample is not the file's");
    }
  }
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne(data, size);
  return 0;
}
