// OBF, the program's own binary format of simulated runs. Reads only; uses no screen and no stores.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>

namespace zelvane {

/// Fields of the header, each where the file reaches that far. Their values are the file's own.
struct ObfHeader {
  bool marked = false;  // the file begins with "OBF"
  std::optional<std::int32_t> numRuns;
  std::optional<std::int32_t> numPoints;  // of each run
  std::optional<float> intervalMs;
};

ObfHeader ReadObfHeader(std::istream& file);

/// Returns the number of samples of all runs in the file, independent of its header.
std::int64_t ObfSamplesHeld(std::istream& file);

/// Reads up to `count` samples, run after run, from sample `first` on into the front of `destination`; as
/// many as it holds and the file has. A count below 1 reads none.
std::size_t ReadObfSamples(std::istream& file, std::int64_t first, std::int64_t count,
                           std::span<float> destination);

}  // namespace zelvane
