// OBF, the program's own binary layout of simulated runs. Read only; no screen, no stores.
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

/// Samples that the file holds, of all runs, whatever its header says.
std::int64_t ObfSamplesHeld(std::istream& file);

/// Reads up to `count` samples, run after run, from sample `first` on into the front of `destination`; as
/// many as it holds and the file has. A count below 1 reads none.
std::size_t ReadObfSamples(std::istream& file, std::int64_t first, std::int64_t count,
                           std::span<float> destination);

}  // namespace zelvane
