// Analysis of each run of a simulation: a row in the results file, and mean and variance over the runs.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace zelvane {

/// Mean and variance over traces. The variance comes from differences of successive traces.
struct RunAverages {
  std::vector<float> mean;  // sums until FinishAverages
  std::vector<float> variance;
  std::vector<float> previous;
  int runs = 0;
};

/// Adds a trace to the mean. From the second trace on, also adds the square of its difference from the
/// trace before it to the variance.
void AddToAverages(RunAverages& averages, std::span<const float> trace);

/// Divides the mean by the number of runs, and the squares by this number minus 1. Does nothing for fewer
/// than two runs.
void FinishAverages(RunAverages& averages);

/// Returns one line per sample with mean and variance. Leaves out samples with a mean of 0 or a variance of
/// 0.0001 or less.
std::string VarianceText(const RunAverages& averages);

/// Asks for the results file and prepares the analysis. Shows a notice for an existing file and appends to
/// it. Returns false when the user cancels.
bool BeginRunAnalysis();

/// Measures the trace of a run with the settings of the analysis panel, appends its row and adds it to the
/// averages.
void AnalyzeRun();

/// After more than one analysed run, writes the variance file into the folder of the results file. Stops
/// using the results file.
void EndRunAnalysis();

/// Makes each run of a simulation be analysed while `Model.AutoAnalyze` is on and a results file is selected.
void ConnectRunAnalysis();

}  // namespace zelvane
