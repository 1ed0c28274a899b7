// Settings of the filters and the noise analysis. Data only.
#pragma once

namespace zelvane {

struct NoiseStore {
  int RecordPoints = 10240;  // length of the record last made
};

inline NoiseStore Noise;

}  // namespace zelvane
