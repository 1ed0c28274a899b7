// Reads an ABF file for tests.
#pragma once

#include <string>
#include <vector>

#include "formats/abf/abf.h"

namespace zelvane {

/// Returns the sweeps of channel 0, empty when the file cannot be read. Writes the header to `header`.
inline std::vector<std::vector<float>> AbfSweeps(const std::string& path, AbfHeader& header) {
  int longest = 0;
  int count = 0;
  const AbfHandle file = OpenABFFile(path, header, longest, count);
  std::vector<std::vector<float>> sweeps;
  for (int sweep = 1; file != nullptr && sweep <= count; ++sweep) {
    sweeps.emplace_back(static_cast<std::size_t>(SweepLength(*file, sweep)));
    ReadSweep(*file, 0, sweep, 0, sweeps.back());
  }
  return sweeps;
}

}  // namespace zelvane
