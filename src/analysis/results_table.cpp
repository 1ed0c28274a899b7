#include "analysis/results_table.h"

#include <algorithm>
#include <array>

#include "analysis/analysis_fit_store.h"
#include "analysis/analyze.h"
#include "analysis/results_files.h"
#include "parameters/parameters_store.h"
#include "platform/index.h"
#include "screen/popups.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char TableFull[] =
    "You have exceeded the capacity of the table. Clear table before analyzing more events.";

// Why the value of a column was not measured.
constexpr char NoBaseline[] = "The baseline begins outside the trace, or has no sample.";
constexpr char NoPeak[] = "The search for the peak begins outside the trace, or there is no baseline.";
constexpr char NoRise[] = "The rise does not begin between Start Analysis and the peak.";
constexpr char NoWidth[] = "The trace does not cross the level on both sides of the peak.";
constexpr char NoFit[] = "No exponential fit ran.";
constexpr char NoSecond[] = "No fit with two components ran.";
constexpr char NoLatency[] = "The trace does not cross the level before the peak.";
constexpr char NoResponse[] = "The trace stays on its baseline.";
constexpr char NoIntegral[] = "The part of the integral begins outside the trace, or there is no baseline.";
constexpr char NoSlope[] = "The slope needs a rise with three samples between the levels.";
constexpr char NoDecay[] = "The trace does not decay to the level.";
constexpr char NoVariance[] = "The variance needs a baseline with two samples.";

constexpr std::array<const char*, AnalysisColumns + 1> Doubts = {
    "",      "",     "",         "",       NoBaseline, NoPeak,    NoRise,     NoWidth,
    NoFit,   NoFit,  NoSecond,   NoSecond, NoFit,      NoLatency, NoResponse, NoIntegral,
    NoSlope, NoRise, NoIntegral, NoDecay,  NoVariance, NoFit};

/// Sets a value and whether it was measured.
void SetValue(AnalysisRow& row, std::size_t column, float value, bool measured) {
  row.value[column] = value;
  row.measured[column] = measured;
}

void SetMeasures(AnalysisRow& row, const ResponseMeasures& m) {
  const auto made = [&m](unsigned bit) { return (m.measured & bit) != 0; };
  SetValue(row, 4, m.Baseline, made(MeasuredBaseline));
  SetValue(row, 5, m.PeakValue - m.Baseline, made(MeasuredAmplitude));
  SetValue(row, 6, m.RiseTime, made(MeasuredRise));
  SetValue(row, 7, m.FracWidth, made(MeasuredWidth));
  SetValue(row, 13, m.LatencyRise, made(MeasuredLatencyRise));
  SetValue(row, 14, m.LatencyPeak, made(MeasuredLatencyPeak));
  SetValue(row, 15, m.Integral, made(MeasuredIntegral));
  SetValue(row, 16, m.RiseSlope, made(MeasuredSlope));
  SetValue(row, 17, static_cast<float>(m.RisePoints), made(MeasuredRise));
  SetValue(row, 18, m.Coastline, made(MeasuredIntegral));
  SetValue(row, 19, m.DecayTime, made(MeasuredDecay));
  SetValue(row, 20, m.BaselineVar, made(MeasuredVariance));
}

/// Puts the fit into its columns; without a fit they hold 0.
void StoreFit(AnalysisRow& row) {
  const bool ran = Analysis.FittedMode != 0;
  const bool two = Analysis.FittedMode == FitTwoDecays;
  SetValue(row, 8, static_cast<float>(AnalysisFit.FitAmp1), ran);
  SetValue(row, 9, static_cast<float>(AnalysisFit.FitTau1), ran);
  SetValue(row, 10, static_cast<float>(AnalysisFit.FitAmp2), two);
  SetValue(row, 11, static_cast<float>(AnalysisFit.FitTau2), two);
  SetValue(row, 12, static_cast<float>(AnalysisFit.FitOffset), ran);
  SetValue(row, 21, AnalysisFit.FitGoodness, ran);
}

AnalysisRow& RowAt(int row) {
  return Analysis.Rows[Index(row)];
}

}  // namespace

std::string WhyInDoubt(const AnalysisRow& row, int column) {
  if (!row.filled || column < FirstValueColumn || row.measured[Index(column)]) return {};
  return Doubts[Index(column)];
}

AnalysisRow ResultsRow(const ResponseMeasures& measures, const std::string& fileName, int episode) {
  AnalysisRow row;
  row.fileName = fileName;
  row.episode = episode;
  row.filled = true;
  SetMeasures(row, measures);
  StoreFit(row);
  return row;
}

bool TableAddRow(int row) {
  if (row + 1 > MaxAnalysisRows) {
    MessagePopup(NoticeTitle, TableFull);
    return false;
  }
  RewriteRow(row);
  TableRowMarked.Tell(row);
  return true;
}

void RewriteRow(int row) {
  RowAt(row) = ResultsRow(Analysis.Measures, DataFileName(), DataEpisode());
  TableRowChanged.Tell(row);
}

void DeleteLastRow() {
  Analysis.Measures.measured = 0;
  EndMeasuresFile();
  Analysis.MeasuresCount = 0;
  Analysis.TableRow = std::max(Analysis.TableRow - 1, 1);
  if (Analysis.TableRow <= MaxAnalysisRows) RowAt(Analysis.TableRow) = AnalysisRow{};
  MeasuresChanged.Tell();
  ResponseGone.Tell();
  if (Analysis.TableRow <= MaxAnalysisRows) TableRowChanged.Tell(Analysis.TableRow);
  TableRowMarked.Tell(Analysis.TableRow - 1);
}

void ClearResultsTable() {
  for (AnalysisRow& row : Analysis.Rows) row = AnalysisRow{};
  Analysis.TableRow = 1;
  ResultsTableChanged.Tell();
}

}  // namespace zelvane
