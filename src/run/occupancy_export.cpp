#include "run/occupancy_export.h"

#include <algorithm>
#include <vector>

#include "formats/number_text.h"
#include "model/model_store.h"
#include "platform/safe_file.h"
#include "run/result_store.h"
#include "run/saved_steps.h"
#include "trace/trace_export.h"

namespace zelvane {
namespace {

/// Returns the columns of the states that are on, each with `rows` values from point 1.
std::vector<CsvColumn> OccupancyColumns(std::size_t rows) {
  const auto& on = Model.ModelIs2D == 1 ? Model.StateOn : Model.TableStateOn;
  const auto& labels = Model.ModelIs2D == 1 ? Model.StateLabel : Model.TableStateLabel;
  std::vector<CsvColumn> columns;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (on[s] == 0) continue;
    columns.push_back(
        {labels[s].empty() ? std::to_string(s) : labels[s], Result.Occupancy[s].subspan(1, rows)});
  }
  return columns;
}

/// Returns the number of rows for the last run: its points, or the saved steps of an adaptive run.
std::size_t RowsOfRun() {
  const bool savedSteps = Result.ResultKind == ResultSavedSteps;
  const auto count = static_cast<std::size_t>(std::max(savedSteps ? Result.KeptSteps : Model.NumPoints, 0));
  std::size_t room = Result.Occupancy[1].size();
  if (savedSteps) room = std::min(room, Result.SavedTime.size());
  return std::min(count, room > 0 ? room - 1 : 0);
}

}  // namespace

bool WriteOccupancyCsv(const std::string& path) {
  const std::size_t rows = RowsOfRun();
  const std::vector<CsvColumn> columns = OccupancyColumns(rows);
  const double interval = AsTyped(Model.ADInterval);
  if (Result.ResultKind == ResultSavedSteps) {
    const std::vector<double> times = SavedStepTimes();
    return ReplaceFileInBlocks(path, CsvBlocks(rows, columns, [&](std::size_t i) { return times[i]; }));
  }
  // Point 1 is time 0 after an integrator, but the end of the first interval after Monte Carlo.
  const double first = Result.ResultKind == ResultMonteCarlo ? interval : 0.0;
  return ReplaceFileInBlocks(path, CsvBlocks(rows, columns, [first, interval](std::size_t i) {
                               return first + static_cast<double>(i) * interval;
                             }));
}

}  // namespace zelvane
