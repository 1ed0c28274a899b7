// Analysis of each run of a simulation: its row in the results file, and mean and variance over the runs.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace zelvane {

/// Mean and variance over traces, from the differences of successive ones.
struct RunAverages {
  std::vector<float> mean;  // sums until FinishAverages
  std::vector<float> variance;
  std::vector<float> previous;
  int runs = 0;
};

/// Adds a trace: to the mean, and from the second on the square of its difference from the one before it to
/// the variance.
void AddToAverages(RunAverages& averages, std::span<const float> trace);

/// Divides the mean by the number of runs and the squares by one less. Does nothing for fewer than two runs.
void FinishAverages(RunAverages& averages);

/// One line per sample, mean and variance. Left out: samples whose mean is 0 or whose variance is not above
/// 0.0001.
std::string VarianceText(const RunAverages& averages);

/// Asks for the results file and makes ready. Rows are appended to a file that exists, with a notice. False
/// when the user cancels.
bool BeginRunAnalysis();

/// Measures the trace of a run with the settings of the analysis panel, appends its row and adds it to the
/// averages.
void AnalyzeRun();

/// Writes the variance file beside the results file once more than one run was analysed, and ends the use of
/// the results file.
void EndRunAnalysis();

/// Lets the runs of each simulation be analysed while `Model.AutoAnalyze` is on and a results file is chosen.
void ConnectRunAnalysis();

}  // namespace zelvane
