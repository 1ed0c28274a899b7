// `zelvane-cli fit`: fits the rates of a model to recorded waveforms.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

/// A recording and the stimulus that evoked it.
struct FitPair {
  std::string stimulus;  // .stm
  std::string data;
};

struct FitOptions {
  std::string list;            // .lst; empty = the pairs
  std::vector<FitPair> pairs;  // at most MaxFitWaveforms
  std::string model;           // replaces that of the list
  std::optional<int> sweep;    // of the recordings of the pairs
  std::optional<int> channel;
  std::optional<double> intervalMs;   // of a text without an interval
  std::optional<int> form;            // 1 grid, 0 table
  std::vector<std::string> free;      // names of rates: all others are fixed
  std::vector<std::string> fixed;     // names of rates: all others are free
  std::vector<std::string> limits;    // "NAME=LO:HI"
  std::vector<std::string> settings;  // "NAME=VALUE", any store field
  std::optional<int> restarts;
  std::optional<int> iterations;
  std::optional<double> tolerance;
  int starts = 1;
  std::optional<Seeds> seeds;
  bool normalize = false;
  bool stepUp = false;       // a longer step of the integrator where it is short
  bool anyInterval = false;  // also with intervals that differ
  std::string outFile;       // .mod of the best rates; empty = none
  std::string curvesFile;    // .fit
  std::string logFile;       // .log
  bool json = false;
};

/// Does what a press of "Fit rates" does, with the same numbers for the same seeds: loads the waveforms, applies
/// the options, runs the session `starts` times from the same rates, and prints the results. Files get the best of
/// them. A stop keeps the best so far.
/// @return JobDone after a convergence or the last iteration; JobFailed with the reason on `streams.err`, also after a
///         stop; JobMisused
int FitCommand(const FitOptions& options, const JobStreams& streams);

}  // namespace zelvane
