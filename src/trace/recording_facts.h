// The facts of a recording besides its samples, as a value. Readers fill it; only StoreRecording writes the
// stores.
#pragma once

#include <string>
#include <vector>

#include "trace/parse_rules.h"

namespace zelvane {

/// The file fields of `Trace`, and the fields that a recording sets in `Model`. A reader begins with the
/// values of the stores, because no file has all of them.
struct RecordingFacts {
  // -- The file --
  std::string path;
  bool text = false;
  int episodes = 1;
  int episode = 1;
  int sweepSamples = 0;
  int totalSamples = 0;
  int channels = 1;
  int channel = 0;
  int operationMode = 0;
  float finalGain = 1.0F;
  float adcResolution = 2048.0F;
  float adcRange = 10.0F;
  int units = 0;                         // a code of TraceStore::TraceUnits
  std::vector<std::string> infoLines{};  // of the information panel; empty = those of the last file stay

  // -- Answers to questions --
  ParseSettings parse{};
  int signal = 1;
  bool intervalLine = false;
  float typedIntervalMs = 0.0F;
  float scale = 1.0F;

  // -- The run --
  int points = 0;
  float intervalMs = 0.0F;
  int runs = 1;
};

RecordingFacts StoredFacts();

/// Writes all facts to `Trace` and `Model` (NumPoints, ADInterval, NumRuns).
void StoreRecording(const RecordingFacts& facts);

/// Sets `facts.units` from the units of a channel. Keeps it for units without a code.
void SetUnits(RecordingFacts& facts, const std::string& units);

/// Sets `facts.intervalMs`. For an invalid interval such as 0, shows a message and keeps the old one.
void SetInterval(RecordingFacts& facts, float intervalMs);

/// Data of an ABF file that only the information panel shows.
struct AbfInfo {
  double version = 1.0;
  bool floats = false;
  int autoSample = 1;
  double gainMultiplier = 1.0;
  double programmableGain = 1.0;
  double instrumentGain = 1.0;
  double signalGain = 1.0;
  double scale = 1.0;  // user units per count
  std::string units;
};

/// Returns the lines of the information panel for an ABF file.
std::vector<std::string> AbfInfoLines(const RecordingFacts& facts, const AbfInfo& info);

}  // namespace zelvane
