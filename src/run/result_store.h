// The results of a run: occupancies, saved steps and the flags of the run driver. Data only.
#pragma once

#include <array>
#include <span>
#include <string>

#include "kinetics/scheme_tables.h"
#include "platform/sweep_room.h"

namespace zelvane {

/// Codes of ResultStore::ResultKind.
inline constexpr int ResultUniform = 0;     // points of the fixed-step integrator
inline constexpr int ResultMonteCarlo = 1;  // Monte Carlo, or a trace read from a file
inline constexpr int ResultSavedSteps = 2;  // saved steps of a completed adaptive run

/// The length of a row of Occupancy. A run of MaxStimPoints writes points 1..MaxStimPoints + 1. A row is
/// slightly longer, so that the rows use different sets of the cache.
inline constexpr int OccupancyPoints = MaxStimPoints + 47;

struct ResultStore {
  // -- Large arrays, set once by AllocateStores --
  // Occupancy[state][point], states from 1, OccupancyPoints each. After an integrator point 1 is time 0;
  // after Monte Carlo point p is time p x ADInterval.
  std::array<std::span<float>, MaxStates + 1> Occupancy{};
  std::array<int, MaxStates + 1> OccupancyUsed{};  // this point and all after it are 0
  std::span<float> SavedTime;                      // ms, saved steps of an adaptive run, from index 1

  int ResultKind = ResultUniform;
  int KeptSteps = 0;          // rounds of the stepping loop; after conversion the last saved step
  int IntegrationOffset = 0;  // point of the stimulus at time 0 of the integrator
  int ReductionCount = 0;     // halvings of MaxStepSize in the last fixed-step integration

  // -- Run driver --
  int RunPoints = 0;                            // length of the run in Occupancy; 0 = no result
  float RunInterval = 0.0F;                     // ms, its interval
  int OfSubunits = 0;                           // 1 = Occupancy holds the last subunit of a channel
  float EffectiveChannels = 1.0F;               // channels that scale the trace
  float ChannelUnit = 1.0F;                     // unit of one channel in Occupancy
  std::array<int, MaxStates + 1> StateClass{};  // number of the conductance of each state
  std::array<float, MaxStates + 1> EquilibriumOccupancy{};  // of the last Q-matrix analysis
  std::string ResultsFileName;
  std::string RunText;  // "Run 1 of 3 with ..." as last shown
};

inline ResultStore Result;

}  // namespace zelvane
