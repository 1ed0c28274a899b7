// Lists of dwell times and the idealised record. Data only.
#pragma once

#include <array>
#include <span>

namespace zelvane {

inline constexpr int MaxDwells = 1'000'000;       // entries of a list
inline constexpr int MaxFileDwells = 999'999;     // most entries from a file
inline constexpr int MaxIdealEvents = 3'000'000;  // entries of the idealised record
inline constexpr int MaxAmplitudeClasses = 5;     // open classes with their own list, from 1

/// Durations in ms, from index 0. The lists are set once by AllocateStores; the counts of the working lists
/// are 32-bit floats that hold whole numbers.
struct DwellStore {
  std::span<float> OpenTimes;     // working list: histograms, fits and the runs test use it
  std::span<float> ClosedTimes;   // working list
  std::span<float> RawOpenTimes;  // copy of OpenTimes after the last read or run
  std::array<std::span<float>, MaxAmplitudeClasses + 1> ClassOpenTimes{};  // from a file, by amplitude class
  std::span<float> Latencies;                                              // first opening of each sweep
  float NumOpenTimes = 0.0F;
  float NumClosedTimes = 0.0F;
  int NumRawOpenTimes = 0;
  std::array<int, MaxAmplitudeClasses + 1> NumClassOpenTimes{};
  float NumLatencies = 0.0F;

  // -- Idealised record of a simulation or a converted file: MaxIdealEvents entries --
  std::span<float> IdealDuration;   // ms; number of a segment marker, count of the end marker
  std::span<float> IdealClass;      // see DwellLists in kinetics/dwell_recorder.h
  std::span<float> IdealAmplitude;  // only from a file with amplitudes
  int NumIdealEvents = 0;           // still counts when the record is full
  int SegmentCounter = 1;           // next segment number

  // -- Event statistics of the last Monte Carlo run --
  int OpenStateExits = 0;     // exits from Model.OpenState
  int MonitoredChannels = 0;  // channels that reached a monitored state

  // -- Reading --
  float ResolutionOpen = 0.1F;       // ms
  float ResolutionClosed = 0.1F;     // ms
  int LastDwellKind = -1;            // last accepted dwell: -1 no dwell, 0 closed, 1 open
  int OpenListSelector = 0;          // 0 raw list, 1..5 class list
  float CondClosedMin = 0.1F;        // ms, inclusive
  float CondClosedMax = 1.0F;        // ms, exclusive
  float CondOpenResolution = 0.05F;  // ms
  int CondUsePreceding = 1;          // 1 = openings that follow the closed time, 0 = that precede it
  int ChoiceOpen = 1;                // boxes of the list choice
  int ChoiceClosed = 0;
  int ListReplace = 1;  // 1 = a list from a file replaces the present one
};

inline DwellStore Dwell;

}  // namespace zelvane
