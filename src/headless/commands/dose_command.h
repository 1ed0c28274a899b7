// `zelvane-cli dose` and `batch`: concentration-response curves of a model.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

struct DoseOptions {
  std::string model;
  std::vector<float>
      concentrations;  // M; empty = 13 over four decades, up to ten times the dose of the stimulus
  int measure = 0;     // DosePeak, DoseSteady or DoseArea
  int drug = 1;
  std::optional<int> points;
  std::vector<std::string> settings;  // "NAME=VALUE", any store field
  std::optional<Seeds> seeds;
  std::string outFile;  // .csv
  bool json = false;
};

/// Reads "A,B,..." or "LO:HI:N", N concentrations with equal ratios. Returns an empty result for any other text, for
/// numbers below 0, and for more than 100.
std::optional<std::vector<float>> ParseConcentrations(std::string_view text);

/// Simulates one run for each dose, fits the Hill curve and prints EC50, slope, maximum and minimum with their standard
/// errors.
/// @return JobDone; JobFailed after a failure or a stop, with the reason on `streams.err` and without a file;
///         JobMisused for wrong settings
int DoseCommand(const DoseOptions& options, const JobStreams& streams);

struct BatchOptions {
  std::string script;
  std::string model;
  std::string outFolder;  // gets the trace of each run and doses.csv; empty = none
  std::vector<std::string> settings;
  std::optional<Seeds> seeds;
  bool json = false;
};

/// Runs a script of stimulus files with a model, and fits the Hill curve to its peaks.
/// @return as DoseCommand
int BatchCommand(const BatchOptions& options, const JobStreams& streams);

}  // namespace zelvane
