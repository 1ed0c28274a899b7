// The one trace of the program, simulated or read, and what is known of the file it came from. Data only.
#pragma once

#include <span>
#include <string>

namespace zelvane {

struct TraceStore {
  std::span<float> SimTrace;  // MaxStimPoints samples from index 0, set once by AllocateStores
  int SimTraceUsed = 0;       // samples at and beyond this one hold 0

  int TraceValid = 0;   // 1 = SimTrace holds a completed simulation or a file
  int TraceParsed = 0;  // 1 = resampled in place
  int RsCorrected = 0;  // 1 = corrected for series resistance
  int TraceUnits = 1;   // 0 #, 1 pS, 2 pA, 3 Po, 4 uV, 5 mV, 6 nA
  int EpisodeCount = 1;
  int EpisodeIndex = 1;
  std::string TraceFileName;  // path of the file read last
};

inline TraceStore Trace;

}  // namespace zelvane
