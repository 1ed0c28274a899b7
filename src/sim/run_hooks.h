// What a run hands on to parts of the program that lie above the simulators. Connected at start-up; an empty
// hook does nothing.
#pragma once

namespace zelvane {

struct RunHooks {
  /// Appends the trace just made to the autosave file.
  void (*autosave)() = nullptr;

  // -- Analysis of each run of a simulation with several --
  /// Asks for the results file. False when the user cancels: the runs are then not analysed.
  bool (*beginAnalysis)() = nullptr;
  /// Measures the trace of run `run`, from 1, writes its row and adds it to mean and variance.
  void (*analyzeRun)(int run) = nullptr;
  /// Writes the variance file once more than one run was analysed, and closes the results.
  void (*endAnalysis)() = nullptr;
};

inline RunHooks AfterRun;

}  // namespace zelvane
