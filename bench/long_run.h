// Runs that take seconds, apart from the headers of the simulators: they use a word that Qt takes for its
// own.
#pragma once

namespace zelvane {

enum class LongRun {
  FixedStep,     // the full table under a voltage that never stands still, 600,000 points
  Adaptive,      // the same with steps that adapt
  OneChannel,    // a channel that opens and closes 10^7 times within 1,000,000 points
  ManyChannels,  // 10,000 channels, each of them some thousand dwells in 100,000 points
};
inline constexpr const char* LongRunNames[] = {"fixed step", "adaptive", "one channel", "10,000 channels"};

/// Sets the stores to it.
void SetUpLongRun(LongRun run);

}  // namespace zelvane
