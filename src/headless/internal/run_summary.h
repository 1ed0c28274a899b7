// What a run came to, in numbers.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace zelvane {

struct FinalOccupancy {
  int state = 0;
  std::string name;  // label, or number where there is none
  float value = 0.0F;
};

struct RunSummary {
  std::string title;
  int points = 0;
  double intervalMs = 0.0;
  int simulator = 0;
  double control = 0.0;  // largest step, ms, or tolerance, as the run left it
  int units = 0;
  std::string axisTitle;
  double peak = 0.0;  // sample farthest from 0
  double peakMs = 0.0;
  std::vector<FinalOccupancy> last;  // of the states that are on
  double lastMs = 0.0;
  int savedSteps = 0;  // of an adaptive run
  double wallSeconds = 0.0;
};

/// Sums up the run in the stores. Reads: `Model`, `Result`, `Trace`.
RunSummary SummariseRun(double wallSeconds);

void WriteSummary(const RunSummary& summary, std::ostream& out);
void WriteSummaryJson(const RunSummary& summary, const std::string& model, std::ostream& out);

/// Word of `--simulator`, and of `--units`, for a code.
const char* SimulatorWord(int simulator);
const char* UnitsWord(int units);

/// States on in the active form.
std::vector<int> StatesOn();

}  // namespace zelvane
