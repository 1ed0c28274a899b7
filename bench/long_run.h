// Runs of some seconds. They are separate from the headers of the simulators, which use a word that Qt also
// uses.
#pragma once

namespace zelvane {

enum class LongRun {
  FixedStep,     // the full table with a voltage that always changes, 600,000 points
  Adaptive,      // the same with adaptive steps
  OneChannel,    // a channel that opens and closes 10^7 times within 1,000,000 points
  ManyChannels,  // 10,000 channels, each with some thousand dwells in 100,000 points
};
inline constexpr const char* LongRunNames[] = {"fixed step", "adaptive", "one channel", "10,000 channels"};

/// Sets the stores for a run.
void SetUpLongRun(LongRun run);

}  // namespace zelvane
