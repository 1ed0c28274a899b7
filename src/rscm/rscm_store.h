// Settings of the correction for series resistance and membrane capacitance. Data only.
#pragma once

#include <array>

namespace zelvane {

inline constexpr int MaxIvPoints = 2048;

struct RsCmStore {
  int RsCmAuto = 0;           // 1 = correct every trace that is read
  float RcRs = 1e7F;          // series resistance, ohm
  float RcCm = 1e-11F;        // membrane capacitance, farad
  float RcRm = 1e9F;          // input resistance, ohm
  float RcVhold = -0.1F;      // holding potential, V
  float RcVrev = 0.0F;        // reversal potential, V
  float RcFracVolt = 1.0F;    // fraction of the voltage error to correct
  float RcFracCap = 1.0F;     // fraction of the capacitive current to correct
  float RcLagFc = 100000.0F;  // Hz, one-pole filter of the capacitive current

  // -- Measured current-voltage relation: relative current at each voltage --
  std::array<float, MaxIvPoints> RcIvVolt{};  // V
  std::array<float, MaxIvPoints> RcIvCurrent{};
  int RcIvCount = 0;
  int RcIvLoaded = 0;  // 1 = the relation is from a file
};

inline RsCmStore RsCm;

}  // namespace zelvane
