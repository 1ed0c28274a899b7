// The one trace of the program, simulated or recorded, and the data of its file. Data only.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace zelvane {

/// Codes of TraceStore::OperationMode, as in recordings.
inline constexpr int GapFreeMode = 3;
inline constexpr int EpisodicMode = 5;

/// Codes of TraceStore::TraceUnits. The first four are also the codes of Model.DisplayUnits.
inline constexpr int TraceNoUnits = 0;
inline constexpr int TracePicosiemens = 1;
inline constexpr int TracePicoamps = 2;
inline constexpr int TraceProbability = 3;
inline constexpr int TraceMicrovolts = 4;
inline constexpr int TraceMillivolts = 5;
inline constexpr int TraceNanoamps = 6;

inline constexpr int MaxParseCount = 5'000'000;  // most samples of a subsampled read

struct TraceStore {
  std::span<float> SimTrace;  // MaxStimPoints samples from index 0; set once by AllocateStores
  int SimTraceUsed = 0;       // this sample and all after it are 0

  int TraceValid = 0;   // 1 = SimTrace holds a completed simulation or a file
  int TracePoints = 0;  // length of the run when the trace was made; 0 = unfinished; see FollowRunLength
  float TraceInterval = 0.0F;  // ms, interval of the run at that time
  int TraceSimulator = 0;      // Model.SimulatorKind of the last run, for the colour of its plot
  int TraceFromFile = 0;       // 1 = SimTrace holds a recording or a changed recording; 0 = a simulation
  int TraceParsed = 0;         // 1 = resampled in place
  int RsCorrected = 0;         // 1 = corrected for series resistance
  int RcFiltered = 0;          // 1 = filtered by series resistance and capacitance
  int TraceUnits = 1;          // 0 #, 1 pS, 2 pA, 3 Po, 4 uV, 5 mV, 6 nA

  // -- The file --
  std::string TraceFileName;  // path of the last file that was read
  int TraceIsText = 0;        // 1 = read by the text reader; a re-read uses the same reader
  int EpisodeCount = 1;       // 1 for gap-free and single-column files
  int EpisodeIndex = 1;
  int SweepSamples = 0;      // samples of one episode of the channel read
  int TotalSamples = 0;      // of all channels and episodes
  int RecordedChannels = 1;  // channels in the file
  int RecordedChannel = 0;   // the channel that was read; a re-read uses the same one
  int OperationMode = 0;
  float FinalGain = 1.0F;
  float AdcResolution = 2048.0F;      // counts of full scale
  float AdcRange = 10.0F;             // volts of full scale
  std::vector<std::string> FileInfo;  // lines of the information panel, top to bottom

  // -- Subsampled read --
  int ParseRequested = 0;          // 1 = show the parse panel
  int ParseSkip = 1;               // keep every n-th sample
  int ParseCount = MaxParseCount;  // samples to keep
  int ParseStart = 0;              // first sample to read
  float ParseStartTime = 0.0F;     // the same in ms
  float ParseInterval = 0.01F;     // ms between kept samples
  float ParseDuration = 1.0F;      // ms
  int ParseMaxPoints = 0;          // 1 = always try to read MaxParseCount points
  int ParseResult = 0;             // 0 pending, 1 accepted, 2 cancelled
  int ParseLength = 0;             // samples of the channel in the file

  // -- Answers about a text; a re-read uses them again --
  int RecordedSignal = 1;      // of an ATF file with several signals
  int IntervalLine = 0;        // single column: 1 = its first line is the interval
  float TypedInterval = 0.0F;  // single column: ms, if the user typed it
  float ScaleFactor = 1.0F;    // of a single-column text with a typed interval

  // -- Changes of the waveform --
  float AddConstant = 0.0F;
  float MultiplyConstant = 1.0F;
  int ParseConstant = 1;  // keep every n-th sample

  std::string AutosaveFileName;
};

inline TraceStore Trace;

}  // namespace zelvane
