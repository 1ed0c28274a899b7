// Any bytes as a text recording. The first byte of the input selects the answers to questions, the rest is
// the file.
#include <cstdlib>
#include <sstream>
#include <string>

#include "formats/text_recording.h"

/// Small, so that most inputs have several blocks.
constexpr std::size_t BlockBytes = 64;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace zelvane;
  if (size == 0) return 0;
  TextRequest request;
  request.signal = data[0] % 5 - 1;
  request.episode = data[0] / 5 % 4;
  request.episodes = data[0] % 7;
  request.intervalLine = data[0] >= 128;
  request.scale = request.intervalLine ? 1.0F : -2.5F;
  request.most = 1000;
  const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  std::istringstream in(bytes);
  TextRecording recording(in, BlockBytes);
  if (!recording.Refusal().empty()) return 0;
  const TextSamples read = recording.Read(request);
  // A word has at least one byte, and one more byte separates it from the next word.
  const bool sound =
      read.samples.size() <= request.most * static_cast<std::size_t>(recording.Shape().episodes) &&
      recording.Shape().units.size() <= static_cast<std::size_t>(recording.Shape().signals) &&
      2 * read.samples.size() <= bytes.size() + 1 &&
      (!read.intervalMs || (*read.intervalMs >= MinTextInterval && *read.intervalMs <= MaxAtfInterval)) &&
      recording.Shape().episodes >= 1 && recording.Shape().signals >= 1;
  if (!sound) std::abort();
  return 0;
}
