#include "headless/commands/q_matrix_command.h"

#include <ostream>

#include "headless/commands/job_settings.h"
#include "headless/json_values.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "run/q_matrix_panel.h"

namespace zelvane {
namespace {

std::string NameOf(int state) {
  const auto& labels = Model.ModelIs2D != 0 ? Model.StateLabel : Model.TableStateLabel;
  return StateName(state, labels[Index(state)]);
}

void WriteText(const QMatrixSolution& solution, int point, std::ostream& out) {
  const QMatrix& matrix = solution.matrix;
  out << "Scheme       " << (Model.ModelTitle.empty() ? "(no title)" : Model.ModelTitle) << '\n';
  out << FormatText("Stimulus     as at %.9g ms (point %d)\n", TimeOfStimulusPoint(point), point);
  out << "Q (1/s)\n";
  for (std::size_t i = 0; i < matrix.rates.rows; ++i) {
    out << FormatText("  %-12s", NameOf(matrix.states[i]).c_str());
    for (std::size_t j = 0; j < matrix.rates.columns; ++j) {
      out << FormatText(" %11.5g", static_cast<double>(matrix.rates(i, j)));
    }
    out << '\n';
  }
  out << "Relaxation time constants\n";
  for (const RelaxationTime& time : solution.relaxation) {
    out << FormatText("  tau %-8d %.6g ms\n", time.eigenvalue, static_cast<double>(time.ms));
  }
  out << "Occupancy at equilibrium\n";
  for (std::size_t k = 0; k < matrix.states.size(); ++k) {
    out << FormatText("  %-12s %.6f\n", NameOf(matrix.states[k]).c_str(), solution.equilibrium.occupancy[k]);
  }
}

Json MatrixJson(const DenseMatrix<float>& rates) {
  Json rows = Json::array();
  for (std::size_t i = 0; i < rates.rows; ++i) {
    Json row = Json::array();
    for (std::size_t j = 0; j < rates.columns; ++j) row.push_back(FloatJson(rates(i, j)));
    rows.push_back(std::move(row));
  }
  return rows;
}

void WriteJson(const QMatrixSolution& solution, const std::string& model, int point, std::ostream& out) {
  Json json = Json::object();
  json["model"] = model;
  json["title"] = Model.ModelTitle;
  json["time"] = NumberJson(TimeOfStimulusPoint(point));
  json["point"] = point;
  json["q"] = MatrixJson(solution.matrix.rates);
  json["tau"] = Json::array();
  for (const RelaxationTime& time : solution.relaxation) {
    json["tau"].push_back({{"eigenvalue", time.eigenvalue}, {"ms", FloatJson(time.ms)}});
  }
  json["states"] = Json::array();
  for (std::size_t k = 0; k < solution.matrix.states.size(); ++k) {
    const int state = solution.matrix.states[k];
    json["states"].push_back(
        {{"state", state},
         {"label", NameOf(state)},
         {"equilibrium", FloatJson(static_cast<float>(solution.equilibrium.occupancy[k]))}});
  }
  json["singular"] = solution.equilibrium.singular;
  out << JsonLine(json) << '\n';
}

}  // namespace

int QMatrixCommand(const QMatrixOptions& options, const JobStreams& streams) {
  const JobScreen screen(streams);
  StartJob({});
  if (ReadJobModel(options.model, streams) == Outcome::Refused) return JobFailed;
  if (!ApplySettings(options.settings, streams.err)) return JobMisused;
  if (!(Model.ADInterval > 0.0F)) {
    streams.err << "interval: must be above 0 ms\n";
    return JobMisused;
  }
  ShowJobStores();
  const int point = StimulusPointAt(options.timeMs);
  const QMatrixSolution solution = AnalyzeOnPanel(point);
  if (!solution.finite) return JobFailed;  // the console has the message
  if (solution.matrix.states.empty()) {
    streams.err << options.model << ": no rate leads into any state\n";
    return JobFailed;
  }
  if (options.json) {
    WriteJson(solution, options.model, point, streams.out);
  } else {
    WriteText(solution, point, streams.out);
  }
  return JobDone;
}

}  // namespace zelvane
