// What a run hands on to parts of the program that lie above the simulators. Connected at start-up; an empty
// hook does nothing.
#pragma once

namespace zelvane {

struct RunHooks {
  /// The samples of the trace are being made anew, or cleared: nothing that was measured of it holds any
  /// more.
  void (*traceChanges)() = nullptr;

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

/// Tells whoever measured the trace that it changes. A fit, which makes thousands of traces, does not.
inline void TellTraceChanges(int fitActive) {
  if (fitActive == 0 && AfterRun.traceChanges != nullptr) AfterRun.traceChanges();
}

}  // namespace zelvane
