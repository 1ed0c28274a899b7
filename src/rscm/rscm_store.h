// Settings of the correction for series resistance and membrane capacitance. Data only.
#pragma once

namespace zelvane {

struct RsCmStore {
  int RsCmAuto = 0;  // 1 = correct every trace that is read
};

inline RsCmStore RsCm;

}  // namespace zelvane
