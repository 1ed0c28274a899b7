// What the integrators keep from one sweep for the next ones under the same stimulus.
//
//   PreparedScheme
//
// A fit integrates one scheme thousands of times with other rates. The list of its transitions, the stretches of
// the stimulus and the factors of the rates over them do not change.
#pragma once

#include <array>

#include "kinetics/compiled_scheme.h"

namespace zelvane {

struct SchemeMemory {
  bool prepared = false;
  CompiledScheme scheme;
  std::array<int, MaxStates + 1> on{};  // states that were on when it was compiled
  StateTable<bool> listed{};            // rates that were not 0
  std::array<TermPlace, MaxTerms> place{};
  int places = 0;
  StretchBook book;
};

/// Returns the compiled form of `tables` with its present rates. Compiles again only when other states are on
/// or other rates are 0; else it only replaces the rates. Dependences and temperature must be
/// those of the first call.
const CompiledScheme& PreparedScheme(SchemeMemory& memory, const SchemeTables& tables);

}  // namespace zelvane
