#include "model/model_rows.h"

#include <initializer_list>
#include <vector>

#include "analysis/analysis_store.h"
#include "dwells/dwell_fit_store.h"
#include "model/constraints_store.h"
#include "model/model_store.h"
#include "parameters/fit_store.h"
#include "rscm/rscm_store.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

// -- Numbers with a rule of their own --
constexpr CellRule SwitchOr0{.least = 0, .most = 1};
constexpr CellRule SwitchOr1{.least = 0, .most = 1, .belowBecomes = 1, .aboveBecomes = 1};
constexpr CellRule Magnitude{.absolute = true};
constexpr CellRule PointsOfRun{
    .least = 100'000, .most = MaxStimPoints, .belowBecomes = 100'000, .aboveBecomes = MaxPoints};
constexpr CellRule AtLeast0{.least = 0};
constexpr CellRule AtLeast1{.least = 1, .belowBecomes = 1};
constexpr CellRule AtLeast10{.least = 10, .belowBecomes = 10};
constexpr CellRule AtLeast500{.least = 500, .belowBecomes = 500};
constexpr CellRule AtLeastHalf{.least = 0.5, .belowBecomes = 0.5};
constexpr CellRule AtMost1{.most = 1, .aboveBecomes = 1};
constexpr CellRule LimitFactor{.least = 2, .most = 1e6, .belowBecomes = 2, .aboveBecomes = 2};
constexpr CellRule CornerTo50{.least = 0, .most = 50, .belowBecomes = 5, .aboveBecomes = 5};
constexpr CellRule CornerTo20{
    .least = 0, .most = 20, .belowBecomes = 10, .aboveBecomes = 10, .leastIsBelow = true};
constexpr CellRule TimeConstant{.least = 0, .belowBecomes = 5};
constexpr CellRule TrainRange{.least = 0, .most = 1e6, .belowBecomes = 1, .aboveBecomes = 1};
constexpr CellRule FractionOfPeak{.least = 0, .most = 1, .belowBecomes = 0.1, .aboveBecomes = 0.1};
constexpr CellRule InExponentForm{.form = NumberForm::Exponent};
constexpr CellRule InShortExponentForm{.form = NumberForm::ShortExponent};

// Lines of the oldest files end before these.
constexpr CellRule SubunitSwitch{.missing = 0.0};
constexpr CellRule VoltageSwitch{.least = 0, .most = 1, .missing = 0.0};
constexpr CellRule PrecisionRule{.least = 1e-9,
                                 .most = 1000,
                                 .belowBecomes = 1e-5,
                                 .aboveBecomes = 1e-5,
                                 .leastIsBelow = true,
                                 .missing = 5e-5,
                                 .form = NumberForm::Exponent};
const CellRule ToleranceOfDwellFit{.insteadOfZero = &Fit.FitTolerance};

constexpr int FitRowsOfFirstFormat = 36;
constexpr int WaveformsOfOldFormats = 5;

/// The walk's shorthands: one call a line.
struct Walk {
  int version;
  ModelFileVisitor& visitor;

  void Line(std::initializer_list<Cell> cells, bool blankAtEnd = false) const {
    visitor.Numbers({cells.begin(), cells.size()}, blankAtEnd);
  }
  void Header(std::string_view text) const { visitor.Header(text); }
  int FitRows() const { return version == 1 ? FitRowsOfFirstFormat : MaxFitRows; }
};

/// A number from 1 to `last` as an index into a store's array.
std::size_t At(int i) {
  return static_cast<std::size_t>(i);
}

// -- The scheme --

void StateRows(const Walk& walk) {
  walk.Header("[State1-20: onoff]");
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    walk.Line({{&Model.StateOn[s], &SwitchOr1},
               {&Model.StateMonitored[s]},
               {&Model.StateConductance[s]},
               {&Model.StartOccupancy[s]}});
  }
  walk.Header("[Drug dependence labels]");
  for (std::size_t d = 1; d <= MaxDrugs; ++d) walk.visitor.Text(Model.DrugLabel[d], DrugLabelBytes, nullptr);
}

/// Section titles of the links' rates in one direction.
struct LinkTitles {
  const char* rates;
  const char* dependence;
  const char* steepness;
  const char* range;
};
constexpr LinkTitles OnTitles{"[K1-31on]", "[Kon concentration/voltage dependent]",
                              "[Kon steepness of voltage dependence]",
                              "[Kon activation range for voltage dependence]"};
constexpr LinkTitles OffTitles{"[K1-31off]", "[Koff concentration/voltage dependent]",
                               "[Koff steepness of voltage dependence]",
                               "[Koff activation range for voltage dependence]"};

/// Rates of all links in one direction and what they depend on; `forward` is from the lower state to the
/// higher.
void LinkRows(const Walk& walk, const LinkTitles& titles, std::array<double, MaxLinks + 1>& rates,
              bool forward) {
  DependenceTables& depend = Model.Depend;
  const auto fromOf = [forward](std::size_t n) { return At(forward ? LinkTable[n].low : LinkTable[n].high); };
  const auto toOf = [forward](std::size_t n) { return At(forward ? LinkTable[n].high : LinkTable[n].low); };
  walk.Header(titles.rates);
  for (std::size_t n = 1; n <= MaxLinks; ++n) walk.Line({{&rates[n], &Magnitude}});
  walk.Header(titles.dependence);
  for (std::size_t n = 1; n <= MaxLinks; ++n) {
    const std::size_t from = fromOf(n);
    const std::size_t to = toOf(n);
    walk.Line({{&depend.Drug[1][from][to]},
               {&depend.Drug[2][from][to]},
               {&depend.Drug[3][from][to]},
               {&depend.Drug[4][from][to]},
               {&depend.Drug[5][from][to]},
               {&depend.Drug[6][from][to]},
               {&depend.Volt[from][to]}});
  }
  walk.Header(titles.steepness);
  for (std::size_t n = 1; n <= MaxLinks; ++n) walk.Line({{&depend.Steepness[fromOf(n)][toOf(n)]}});
  walk.Header(titles.range);
  for (std::size_t n = 1; n <= MaxLinks; ++n) walk.Line({{&depend.Range[fromOf(n)][toOf(n)]}});
}

void TableRows(const Walk& walk) {
  DependenceTables& depend = Model.TableDepend;
  walk.Header("[Rate constants for transitions between all states]");
  for (int i = 1; i <= MaxStates; ++i) {
    for (int j = 1; j <= MaxStates; ++j) {
      const std::size_t from = At(i);
      const std::size_t to = At(j);
      walk.Line({{i},
                 {j},
                 {&Model.TableRate[from][to]},
                 {&depend.Drug[1][from][to]},
                 {&depend.Drug[2][from][to]},
                 {&depend.Drug[3][from][to]},
                 {&depend.Drug[4][from][to]},
                 {&depend.Drug[5][from][to]},
                 {&depend.Drug[6][from][to]},
                 {&depend.Volt[from][to]},
                 {&depend.Steepness[from][to]},
                 {&depend.Range[from][to]}});
    }
  }
}

void ConstraintRows(const Walk& walk) {
  walk.Header("[Constraints for rate constants for transitions]");
  for (std::size_t n = 1; n <= MaxRateConstraints; ++n) {
    RateConstraint& row = Constraints.Rate[n];
    walk.Line({{&row.Enabled},
               {&row.TargetFrom},
               {&row.TargetTo},
               {&row.SourceFrom},
               {&row.SourceTo},
               {&row.Operation},
               {&row.Value}},
              true);
  }
  walk.Header("[Loop Constraints for rate constants for transitions]");
  for (std::size_t n = 1; n <= MaxLoopConstraints; ++n) {
    LoopConstraint& row = Constraints.Loop[n];
    walk.Line({{&row.Enabled},
               {&row.State[1]},
               {&row.State[2]},
               {&row.State[3]},
               {&row.State[4]},
               {&row.State[5]},
               {&row.State[6]},
               {&row.State[7]},
               {&row.State[8]},
               {&row.RateFrom},
               {&row.RateTo}});
  }
}

// -- Run, electrical settings, stimulus --

void RunRows(const Walk& walk) {
  walk.Header("[QMatrixMonteCarlo,#passes,#pts,#start,#channels,openstate,startstate,pApS,mVmM]");
  walk.Line({{&Model.SimulatorKind}});
  walk.Line({{&Model.NumRuns}});
  walk.Line({{&Model.NumPoints, &PointsOfRun}});
  walk.Line({{&Model.NumIntervals}});
  walk.Line({{&Model.NumChannels}});
  walk.Line({{&Model.OpenState}});
  walk.Line({{&Model.StartState}});
  walk.Line({{&Model.ReseedSimulation}, {&Model.MultiSubunit, &SubunitSwitch}});
  walk.Line({{&Model.DisplayUnits}}, true);
  walk.visitor.Reserved(1, "0");
  walk.Line({{&Model.ShowAllTraces}});
  walk.Line({{&Model.AutoAnalyze}, {&Model.Autosave, &SwitchOr0}, {&Model.AutosaveFormat, &SwitchOr0}});
}

void IntegratorAndFitRows(const Walk& walk) {
  walk.Header("[extra storage space]");
  walk.Line({{&Model.MaxStepSize, &InExponentForm}, {&Model.Precision, &PrecisionRule}});
  walk.Line({{&Model.Temperature}});
  walk.Line({{&Fit.AnalysisTolerance, &InShortExponentForm}});
  walk.Line({{&Fit.FitAlign},
             {&Fit.FitModelIs2D},
             {&Fit.WaveFitFixOn, &SwitchOr0},
             {&Fit.WaveFitLimitsOn, &SwitchOr0},
             {&Fit.WaveFitAutoSeed, &SwitchOr0},
             {&Fit.AutoGenFitLims, &SwitchOr0},
             {&Fit.FitLimsXFold, &LimitFactor}});
  walk.Line({{&Fit.FitPeakSearchPts, &AtLeast500},
             {&Fit.FitNumIterations, &AtLeast10},
             {&Fit.FitNumRestarts, &AtLeast1},
             {&Fit.FitPeakAve, &AtLeast1},
             {&Fit.FitDualSpeed, &AtLeast0},
             {&Fit.FitStepSize, &AtLeastHalf}});
  walk.Line({{&Model.StartAtEquilibrium, &SwitchOr0}, {&Model.FitStartAtEquilibrium, &SwitchOr0}});
  walk.Line({{&Model.AutoFilter},
             {&Model.AutoFilterFc, &CornerTo50},
             {&Model.AutoNoise},
             {&Model.AutoNoiseSTD, &AtLeast0},
             {&Model.ChannelsGaussian},
             {&Model.ChannelsSTD, &AtLeast0}});
  walk.visitor.Reserved(13, "1");
}

void ElectricalRows(const Walk& walk) {
  walk.Header("[adinterval,conductance,voltage,vrev,valence,kzero]");
  walk.Line({{&Model.ADInterval}});
  walk.Line({{&Model.StateConductance[0]}});
  walk.Line({{&Model.VHold}});
  walk.Line({{&Model.VRev}});
  walk.Line({{&Model.Valence}});
}

void StimulusRows(const Walk& walk) {
  walk.Header("[Stimulus: Mode,AutoStep,ManualStep,Exp,Fc,pole,autofilt]");
  walk.Line({{&Stimulus.StimMode}});
  walk.Line({{&Stimulus.AutoValue, &InExponentForm}});
  walk.Line({{&Stimulus.AutoStart}});
  walk.Line({{&Stimulus.AutoStop}});
  walk.Line({{&Stimulus.StepAmp, &InExponentForm}, {&Stimulus.StepRamp, &SwitchOr0}});
  walk.Line({{&Stimulus.StepStart}, {&Stimulus.StepRiseTau, &TimeConstant}});
  walk.Line({{&Stimulus.StepStop}, {&Stimulus.StepDecayTau, &TimeConstant}});
  walk.Line({{&Stimulus.ExpStart}});
  walk.Line({{&Stimulus.ExpAmp1, &InExponentForm}});
  walk.Line({{&Stimulus.ExpAmp2, &InExponentForm}});
  walk.Line({{&Stimulus.ExpTau1}});
  walk.Line({{&Stimulus.ExpTau2}});
  walk.Line({{&Stimulus.ExpRiseTau}});
  walk.Line({{&Stimulus.ExpOffset}});
  walk.Line({{&Stimulus.ExpRiseFlag}});
  walk.Line({{&Stimulus.ExpComponents}});
  walk.Line({{&Stimulus.FilterFc}});
  walk.Line({{&Stimulus.FilterPoles},
             {&Stimulus.TrainExpFlag, &SwitchOr1},
             {&Stimulus.TrainCount, &TrainRange},
             {&Stimulus.TrainRiseFlag, &SwitchOr1},
             {&Stimulus.TrainDelay},
             {&Stimulus.TrainInterval, &TrainRange}});
  walk.Line({{&Stimulus.AutoFilterOn}, {&Stimulus.AutoDrugOrVolt, &VoltageSwitch}});
  walk.Line({{&Stimulus.StimLogAxis}});
}

void MultiStimRows(const Walk& walk) {
  walk.Header("[Multi-stimulus file voltage / concentration parameters]");
  for (auto& group : Stimulus.MultiStimTable) {
    const bool last = &group == &Stimulus.MultiStimTable.back();
    if (last && walk.version < NewestFileVersion) walk.visitor.LastLine();
    walk.Line({{&group[0]}, {&group[1]}, {&group[2]}, {&group[3]}, {&group[4]}, {&group[5]}});
  }
}

// -- Analysis and fits --

void MeasureRows(const Walk& walk) {
  walk.Header("[Analysis: pksrch,pkave,basepts,basepos,startpos,risebeg,riseend]");
  walk.Line({{&Analysis.PeakSearchPts}});
  walk.Line({{&Analysis.PeakAvePts},
             {&Analysis.AutoSaveMeasures, &SwitchOr0},
             {&Analysis.VerifyMeasures, &SwitchOr0},
             {&Analysis.AnalysisDisplay[1], &SwitchOr0},
             {&Analysis.AnalysisDisplay[2], &SwitchOr0},
             {&Analysis.AnalysisDisplay[3], &SwitchOr0},
             {&RsCm.RsCmAuto, &SwitchOr0}});
  walk.Line({{&Analysis.BaselinePts}});
  walk.Line({{&Analysis.BaselineStart}});
  walk.Line({{&Analysis.StartAnalysis}, {&Analysis.LatencyPos, &AtLeast0}});
  walk.Line({{&Analysis.RiseStartFrac}, {&Analysis.LatencyFrac, &FractionOfPeak}});
  walk.Line({{&Analysis.RiseEndFrac}});
}

void AnalysisFitRows(const Walk& walk) {
  walk.Header("[Analysis: expmodel,parse,numfitpts,numiter,numrestarts,tol,dual,startpts]");
  walk.Line({{&Fit.FitMode}});
  walk.Line({{&Fit.AnalysisParse}});
  walk.Line({{&Fit.AnalysisFitPts}});
  walk.Line({{&Fit.AnalysisNumIterations}});
  walk.Line({{&Fit.AnalysisNumRestarts}});
  walk.Line({{&Fit.FitTolerance}, {&DwellFit.ScTolerance, &ToleranceOfDwellFit}});
  walk.Line({{&Fit.DualSpeedPts}});
  walk.Line({{&Fit.FitStartPts}});
}

void FitTableRows(const Walk& walk) {
  const std::size_t rows = At(walk.FitRows());
  walk.Header("[Analysis: Fit limits hi,lo for vertex 1-72]");
  for (std::size_t r = 1; r <= rows; ++r) {
    for (double FitLimit::*bound : {&FitLimit::hi, &FitLimit::lo}) {
      walk.Line({{&(Fit.AnalysisFitLimits[r].*bound)},
                 {&(Fit.WaveFitLimits[r].*bound)},
                 {&(Fit.DwellFitLimits[r].*bound)},
                 {&(Fit.ExpFitLimits[r].*bound)},
                 {&(Fit.SublevelFitLimits[r].*bound)},
                 {&(Fit.VarFitLimits[r].*bound)},
                 {&(Fit.SpecFitLimits[r].*bound)}});
    }
  }
  walk.Header("[Analysis: Fixed fit params for vertex 1-72]");
  for (std::size_t r = 1; r <= rows; ++r) walk.Line({{&Fit.AnalysisFitFixed[r]}, {&Fit.WaveFitFixed[r]}});
  walk.Header("[Analysis: Seeds for vertex 1-72, fitlims,autoseed,fixfree]");
  for (std::size_t r = 1; r <= rows; ++r) walk.Line({{&Fit.AnalysisFitSeed[r]}, {&Fit.WaveFitSeed[r]}});
  walk.Line({{&Fit.AnalysisLimitsOn}});
  walk.Line({{&Fit.AnalysisAutoSeed}});
  walk.Line({{&Fit.AnalysisFixOn}});
}

/// One field of the waveforms' windows: a line for all waveforms, or, before the third format, one for each
/// of five.
template <typename T>
void WindowRow(const Walk& walk, T FitWindow::*field) {
  if (walk.version < 3) {
    for (std::size_t w = 1; w <= WaveformsOfOldFormats; ++w) walk.Line({{&(Fit.Waveform[w].*field)}});
    return;
  }
  std::vector<Cell> cells;
  cells.reserve(MaxFitWaveforms);
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) cells.push_back({&(Fit.Waveform[w].*field)});
  walk.visitor.Numbers(cells, false);
}

void WaveformFitRows(const Walk& walk) {
  walk.Header("[FitWaveforms: start, stop positions for fit]");
  walk.Line({{&Fit.FitNormalized}});
  walk.Line({{&Fit.FitSeedSpread}});
  walk.Line({{&Fit.FitFilterOn},
             {&Fit.AlignRange, &AtMost1},
             {&Fit.FitAlignChoice, &SwitchOr0},
             {&Fit.FitFilterFc, &CornerTo20}});
  for (auto field : {&FitWindow::DataBaselineStart, &FitWindow::DataFitStart, &FitWindow::SimBaselineStart,
                     &FitWindow::SimFitStart}) {
    WindowRow(walk, field);
  }
  for (auto field : {&FitWindow::NumBaselinePts, &FitWindow::NumAlignPts, &FitWindow::NumFitPts}) {
    WindowRow(walk, field);
  }
  if (walk.version < 3) return;
  walk.visitor.Reserved(20, "0.000000");
  walk.visitor.Reserved(15, "1");
}

// -- Labels --

/// Before the fourth format the table had no labels of its own: it shows the grid's.
void OldLabelRows(const Walk& walk) {
  walk.Header("[State1-20: labels]");
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    walk.visitor.Text(Model.StateLabel[s], StateLabelBytes, &Model.TableStateLabel[s]);
  }
}

void LabelRows(const Walk& walk) {
  walk.visitor.NumberedHeader(MaxStates, "[TState1-20: labels]");
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    walk.visitor.Text(Model.TableStateLabel[s], StateLabelBytes, nullptr);
  }
  walk.Header("[State1-20: labels]");
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (s == MaxStates) walk.visitor.LastLine();
    walk.visitor.Text(Model.StateLabel[s], StateLabelBytes, nullptr);
  }
}

}  // namespace

void WalkModelFile(int version, ModelFileVisitor& visitor) {
  const Walk walk{version, visitor};
  visitor.Text(Model.ModelTitle, TitleBytes, nullptr);
  if (version < NewestFileVersion) OldLabelRows(walk);
  StateRows(walk);
  LinkRows(walk, OnTitles, Model.KOn, true);
  LinkRows(walk, OffTitles, Model.KOff, false);
  RunRows(walk);
  IntegratorAndFitRows(walk);
  ElectricalRows(walk);
  StimulusRows(walk);
  MeasureRows(walk);
  AnalysisFitRows(walk);
  FitTableRows(walk);
  WaveformFitRows(walk);
  TableRows(walk);
  ConstraintRows(walk);
  MultiStimRows(walk);
  if (version >= NewestFileVersion) LabelRows(walk);
}

}  // namespace zelvane
