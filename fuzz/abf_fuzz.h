// Checks that must hold for every recording that the reader opens, for any bytes.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "formats/abf/abf_layout.h"

namespace zelvane {

[[noreturn]] inline void Fault(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

/// Reads one sweep of every channel, and a part from its middle.
inline void ReadSweepOfAllChannels(const AbfFile& file, const AbfHeader& header, int sweep, int longest) {
  const int length = SweepLength(file, sweep);
  if (length < 1 || length > longest) Fault("a sweep is empty or longer than the longest");
  std::vector<float> samples(static_cast<std::size_t>(length) + 1);
  for (int place = 0; place < header.channels; ++place) {
    const int channel = header.samplingSequence[static_cast<std::size_t>(place)];
    if (ReadSweep(file, channel, sweep, 0, samples) != length) Fault("a sweep is not in the file whole");
    const float middle = samples[static_cast<std::size_t>(length / 2)];
    float again = 0.0F;
    if (ReadSweep(file, channel, sweep, length / 2, std::span(&again, 1)) != 1 ||
        (again != middle && !std::isnan(middle)))
      Fault("a sample read alone is another one");
    if (header.dataFormat == AbfIntegers && !std::isfinite(middle)) Fault("a count has no value");
  }
}

inline void CheckRecording(std::span<const std::uint8_t> bytes) {
  AbfHeader header;
  int longest = 0;
  int sweeps = 0;
  std::string why;
  const AbfHandle file = OpenAbfSource(MemorySource(std::as_bytes(bytes)), header, longest, sweeps, &why);
  if ((file == nullptr) == why.empty()) Fault("a refusal without a reason");
  if (file == nullptr) return;
  if (header.channels < 1 || header.channels > AbfMaxChannels) Fault("no such number of channels");
  if (!std::isfinite(header.sampleInterval) || header.sampleInterval <= 0.0) Fault("no such interval");
  std::int64_t samples = 0;
  if (!GetActualSamples(*file, samples) || 2 * samples > static_cast<std::int64_t>(bytes.size()))
    Fault("more samples than bytes");
  if (sweeps < 1 || sweeps > samples) Fault("more sweeps than samples");
  for (const int sweep : {1, sweeps / 2 + 1, sweeps}) ReadSweepOfAllChannels(*file, header, sweep, longest);
  if (SweepLength(*file, sweeps + 1) != 0) Fault("a sweep behind the last");
}

}  // namespace zelvane
