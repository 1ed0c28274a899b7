// What a run leaves for later runs under the same stimulus.
#pragma once

#include "kinetics/scheme_memory.h"

namespace zelvane {

/// A caller that runs the model many times under one stimulus keeps one of these. The rates may differ from run to
/// run; stimulus, dependences, length and interval must not.
struct RunMemory {
  SchemeMemory scheme;
};

}  // namespace zelvane
