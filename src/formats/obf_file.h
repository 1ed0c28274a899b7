// OBF, the program's own binary format of simulated runs. Reads only; uses no screen and no stores.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>

namespace zelvane {

/// Fields of the header with the values in the file; empty where the file is too short.
struct ObfHeader {
  bool marked = false;  // the file begins with "OBF"
  std::optional<std::int32_t> numRuns;
  std::optional<std::int32_t> numPoints;  // of each run
  std::optional<float> intervalMs;
};

ObfHeader ReadObfHeader(std::istream& file);

/// Returns the number of samples of all runs in the file, independent of its header.
std::int64_t ObfSamplesHeld(std::istream& file);

/// Reads up to `count` samples, run after run, from sample `first` on into the front of `destination`. Stops
/// when `destination` is full or the file ends. Reads nothing for a count below 1.
std::size_t ReadObfSamples(std::istream& file, std::int64_t first, std::int64_t count,
                           std::span<float> destination);

}  // namespace zelvane
