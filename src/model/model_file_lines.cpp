#include "model/model_file_lines.h"

#include <cassert>
#include <initializer_list>
#include <iterator>
#include <string>
#include <variant>
#include <vector>

#include "model/model_store.h"

namespace zelvane {
namespace {

// -- Numbers with their own rule --
constexpr CellRule SwitchOr0{.least = 0, .most = 1};
constexpr CellRule SwitchOr1{.least = 0, .most = 1, .belowBecomes = 1, .aboveBecomes = 1};
constexpr CellRule Magnitude{.absolute = true, .isNarrowed = true};
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

// The oldest files do not have these lines.
constexpr CellRule SubunitSwitch{.missing = 0.0};
constexpr CellRule VoltageSwitch{.least = 0, .most = 1, .missing = 0.0};
constexpr CellRule PrecisionRule{.least = 1e-9,
                                 .most = 1000,
                                 .belowBecomes = 1e-5,
                                 .aboveBecomes = 1e-5,
                                 .leastIsBelow = true,
                                 .missing = 5e-5,
                                 .form = NumberForm::Exponent};
constexpr CellRule ToleranceOfDwellFit{.insteadOfZero = "FitTolerance"};

constexpr int FitRowsOfFirstFormat = 36;
constexpr int WaveformsOfOldFormats = 5;

/// Short forms for the walk: one call per line, or per group of similar lines.
struct Walk {
  int version;
  ModelFileVisitor& visitor;

  void Line(std::initializer_list<Cell> cells, bool blankAtEnd = false) const {
    visitor.Numbers({cells.begin(), cells.size()}, blankAtEnd);
  }
  void Header(std::string_view text) const { visitor.Header(text); }

  /// Visits one line for each index of these fields, from 1 to `last`, or to their end when `last` is 0.
  void Rows(std::initializer_list<const char*> names, bool blankAtEnd, int last = 0) const {
    const std::vector<FieldElements> columns(names.begin(), names.end());
    std::vector<Cell> cells;
    for (int i = 1; i <= (last > 0 ? last : columns.front().Last()); ++i) {
      cells.clear();
      for (const FieldElements& column : columns) cells.emplace_back(column(i));
      visitor.Numbers(cells, blankAtEnd);
    }
  }

  /// Visits one line for each text of this field. When reading, `follower` gets the same texts, if it is
  /// given.
  void Texts(const char* name, const char* follower = nullptr) const {
    const FieldElements texts(name);
    const FieldElements followers(follower != nullptr ? follower : name);
    for (int i = 1; i <= texts.Last(); ++i) {
      visitor.Text(texts(i), follower != nullptr ? followers(i) : FieldRef{});
    }
  }
};

// -- The scheme --

void StateRows(const Walk& walk) {
  const FieldElements on("StateOn[]");
  const FieldElements monitored("StateMonitored[]");
  const FieldElements conductance("StateConductance[]");
  const FieldElements start("StartOccupancy[]");
  walk.Header("[State1-20: onoff]");
  for (int s = 1; s <= MaxStates; ++s) {
    walk.Line({{on(s), SwitchOr1}, {monitored(s)}, {conductance(s)}, {start(s)}});
  }
  walk.Header("[Drug dependence labels]");
  walk.Texts("DrugLabel[]");
}

/// The dependences of the rates of one form: the last nine numbers of a table's row, in three groups for the
/// links.
struct DependenceFields {
  FieldElements drug;
  FieldElements volt;
  FieldElements steepness;
  FieldElements range;
};

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

/// Visits rates of all links in one direction and their dependences. `forward` is from the lower state to the
/// higher.
void LinkRows(const Walk& walk, const LinkTitles& titles, const char* rates, bool forward) {
  const DependenceFields depend{FieldElements("DrugDepend[][][]"), FieldElements("VoltDepend[][]"),
                                FieldElements("VoltSteepness[][]"), FieldElements("VoltRange[][]")};
  const FieldElements rate(rates);
  const auto forEachLink = [&](const char* title, auto&& line) {
    walk.Header(title);
    for (std::size_t n = 1; n <= MaxLinks; ++n) {
      const Link& link = LinkTable[n];
      line(static_cast<int>(n), forward ? link.low : link.high, forward ? link.high : link.low);
    }
  };
  forEachLink(titles.rates, [&](int n, int, int) { walk.Line({{rate(n), Magnitude}}); });
  forEachLink(titles.dependence, [&](int, int from, int to) {
    walk.Line({{depend.drug(1, from, to)},
               {depend.drug(2, from, to)},
               {depend.drug(3, from, to)},
               {depend.drug(4, from, to)},
               {depend.drug(5, from, to)},
               {depend.drug(6, from, to)},
               {depend.volt(from, to)}});
  });
  forEachLink(titles.steepness, [&](int, int from, int to) { walk.Line({{depend.steepness(from, to)}}); });
  forEachLink(titles.range, [&](int, int from, int to) { walk.Line({{depend.range(from, to)}}); });
}

void TableRows(const Walk& walk) {
  const DependenceFields depend{FieldElements("TableDrugDepend[][][]"), FieldElements("TableVoltDepend[][]"),
                                FieldElements("TableVoltSteepness[][]"), FieldElements("TableVoltRange[][]")};
  const FieldElements rate("TableRate[][]");
  walk.Header("[Rate constants for transitions between all states]");
  for (int from = 1; from <= MaxStates; ++from) {
    for (int to = 1; to <= MaxStates; ++to) {
      walk.Line({Cell(from),
                 Cell(to),
                 {rate(from, to)},
                 {depend.drug(1, from, to)},
                 {depend.drug(2, from, to)},
                 {depend.drug(3, from, to)},
                 {depend.drug(4, from, to)},
                 {depend.drug(5, from, to)},
                 {depend.drug(6, from, to)},
                 {depend.volt(from, to)},
                 {depend.steepness(from, to)},
                 {depend.range(from, to)}});
    }
  }
}

void ConstraintRows(const Walk& walk) {
  walk.Header("[Constraints for rate constants for transitions]");
  walk.Rows({"RateConstraint[].enabled", "RateConstraint[].targetFrom", "RateConstraint[].targetTo",
             "RateConstraint[].sourceFrom", "RateConstraint[].sourceTo", "RateConstraint[].operation",
             "RateConstraint[].value"},
            true);
  walk.Header("[Loop Constraints for rate constants for transitions]");
  const FieldElements enabled("LoopConstraint[].enabled");
  const FieldElements state("LoopConstraint[].state[]");
  const FieldElements rateFrom("LoopConstraint[].rateFrom");
  const FieldElements rateTo("LoopConstraint[].rateTo");
  for (int n = 1; n <= enabled.Last(); ++n) {
    walk.Line({{enabled(n)},
               {state(n, 1)},
               {state(n, 2)},
               {state(n, 3)},
               {state(n, 4)},
               {state(n, 5)},
               {state(n, 6)},
               {state(n, 7)},
               {state(n, 8)},
               {rateFrom(n)},
               {rateTo(n)}});
  }
}

// -- Run, electrical settings, stimulus --

void RunRows(const Walk& walk) {
  walk.Header("[QMatrixMonteCarlo,#passes,#pts,#start,#channels,openstate,startstate,pApS,mVmM]");
  walk.Line({{"SimulatorKind"}});
  walk.Line({{"NumRuns"}});
  walk.Line({{"NumPoints", PointsOfRun}});
  walk.Line({{"NumIntervals"}});
  walk.Line({{"NumChannels"}});
  walk.Line({{"OpenState"}});
  walk.Line({{"StartState"}});
  walk.Line({{"ReseedSimulation"}, {"MultiSubunit", SubunitSwitch}});
  walk.Line({{"DisplayUnits"}}, true);
  walk.visitor.Reserved(1, "0");
  walk.Line({{"ShowAllTraces"}});
  walk.Line({{"AutoAnalyze"}, {"Autosave", SwitchOr0}, {"AutosaveFormat", SwitchOr0}});
}

void IntegratorAndFitRows(const Walk& walk) {
  walk.Header("[extra storage space]");
  walk.Line({{"MaxStepSize", InExponentForm}, {"Precision", PrecisionRule}});
  walk.Line({{"Temperature"}});
  walk.Line({{"AnalysisTolerance", InShortExponentForm}});
  walk.Line({{"FitAlign"},
             {"FitModelIs2D"},
             {"WaveFitFixOn", SwitchOr0},
             {"WaveFitLimitsOn", SwitchOr0},
             {"WaveFitAutoSeed", SwitchOr0},
             {"AutoGenFitLims", SwitchOr0},
             {"FitLimsXFold", LimitFactor}});
  walk.Line({{"FitPeakSearchPts", AtLeast500},
             {"FitNumIterations", AtLeast10},
             {"FitNumRestarts", AtLeast1},
             {"FitPeakAve", AtLeast1},
             {"FitDualSpeed", AtLeast0},
             {"FitStepSize", AtLeastHalf}});
  walk.Line({{"StartAtEquilibrium", SwitchOr0}, {"FitStartAtEquilibrium", SwitchOr0}});
  walk.Line({{"AutoFilter"},
             {"AutoFilterFc", CornerTo50},
             {"AutoNoise"},
             {"AutoNoiseSTD", AtLeast0},
             {"ChannelsGaussian"},
             {"ChannelsSTD", AtLeast0}});
  walk.visitor.Reserved(13, "1");
}

void ElectricalRows(const Walk& walk) {
  walk.Header("[adinterval,conductance,voltage,vrev,valence,kzero]");
  walk.Line({{"ADInterval"}});
  walk.Line({{"StateConductance[0]"}});
  walk.Line({{"VHold"}});
  walk.Line({{"VRev"}});
  walk.Line({{"Valence"}});
}

void StimulusRows(const Walk& walk) {
  walk.Header("[Stimulus: Mode,AutoStep,ManualStep,Exp,Fc,pole,autofilt]");
  walk.Line({{"StimMode"}});
  walk.Line({{"AutoValue", InExponentForm}});
  walk.Line({{"AutoStart"}});
  walk.Line({{"AutoStop"}});
  walk.Line({{"StepAmp", InExponentForm}, {"StepRamp", SwitchOr0}});
  walk.Line({{"StepStart"}, {"StepRiseTau", TimeConstant}});
  walk.Line({{"StepStop"}, {"StepDecayTau", TimeConstant}});
  walk.Line({{"ExpStart"}});
  walk.Line({{"ExpAmp1", InExponentForm}});
  walk.Line({{"ExpAmp2", InExponentForm}});
  walk.Line({{"ExpTau1"}});
  walk.Line({{"ExpTau2"}});
  walk.Line({{"ExpRiseTau"}});
  walk.Line({{"ExpOffset"}});
  walk.Line({{"ExpRiseFlag"}});
  walk.Line({{"ExpComponents"}});
  walk.Line({{"FilterFc"}});
  walk.Line({{"FilterPoles"},
             {"TrainExpFlag", SwitchOr1},
             {"TrainCount", TrainRange},
             {"TrainRiseFlag", SwitchOr1},
             {"TrainDelay"},
             {"TrainInterval", TrainRange}});
  walk.Line({{"AutoFilterOn"}, {"AutoDrugOrVolt", VoltageSwitch}});
  walk.Line({{"StimLogAxis"}});
}

void MultiStimRows(const Walk& walk) {
  const FieldElements group("MultiStimTable[][]");
  walk.Header("[Multi-stimulus file voltage / concentration parameters]");
  for (int g = 0; g <= group.Last(); ++g) {
    if (g == group.Last() && walk.version < NewestFileVersion) walk.visitor.LastLine();
    walk.Line({{group(g, 0)}, {group(g, 1)}, {group(g, 2)}, {group(g, 3)}, {group(g, 4)}, {group(g, 5)}});
  }
}

// -- Analysis and fits --

void MeasureRows(const Walk& walk) {
  walk.Header("[Analysis: pksrch,pkave,basepts,basepos,startpos,risebeg,riseend]");
  walk.Line({{"PeakSearchPts"}});
  walk.Line({{"PeakAvePts"},
             {"AutoSaveMeasures", SwitchOr0},
             {"VerifyMeasures", SwitchOr0},
             {"AnalysisDisplay[1]", SwitchOr0},
             {"AnalysisDisplay[2]", SwitchOr0},
             {"AnalysisDisplay[3]", SwitchOr0},
             {"RsCmAuto", SwitchOr0}});
  walk.Line({{"BaselinePts"}});
  walk.Line({{"BaselineStart"}});
  walk.Line({{"StartAnalysis"}, {"LatencyPos", AtLeast0}});
  walk.Line({{"RiseStartFrac"}, {"LatencyFrac", FractionOfPeak}});
  walk.Line({{"RiseEndFrac"}});
}

void AnalysisFitRows(const Walk& walk) {
  walk.Header("[Analysis: expmodel,parse,numfitpts,numiter,numrestarts,tol,dual,startpts]");
  walk.Line({{"FitMode"}});
  walk.Line({{"AnalysisParse"}});
  walk.Line({{"AnalysisFitPts"}});
  walk.Line({{"AnalysisNumIterations"}});
  walk.Line({{"AnalysisNumRestarts"}});
  walk.Line({{"FitTolerance"}, {"ScTolerance", ToleranceOfDwellFit}});
  walk.Line({{"DualSpeedPts"}});
  walk.Line({{"FitStartPts"}});
}

void FitTableRows(const Walk& walk) {
  constexpr const char* Tables[] = {"AnalysisFitLimits", "WaveFitLimits", "DwellFitLimits", "ExpFitLimits",
                                    "SublevelFitLimits", "VarFitLimits",  "SpecFitLimits"};
  std::vector<FieldElements> bounds;  // first the upper bounds of all tables, then the lower bounds
  for (const char* bound : {"[].hi", "[].lo"}) {
    for (const char* table : Tables) bounds.emplace_back(std::string(table) + bound);
  }
  const int rows = walk.version == 1 ? FitRowsOfFirstFormat : bounds.front().Last();
  walk.Header("[Analysis: Fit limits hi,lo for vertex 1-72]");
  for (int r = 1; r <= rows; ++r) {
    for (auto of = bounds.begin(); of != bounds.end(); of += std::size(Tables)) {
      walk.Line({{of[0](r)}, {of[1](r)}, {of[2](r)}, {of[3](r)}, {of[4](r)}, {of[5](r)}, {of[6](r)}});
    }
  }
  walk.Header("[Analysis: Fixed fit params for vertex 1-72]");
  walk.Rows({"AnalysisFitFixed[]", "WaveFitOwnFixed[]"}, false, rows);
  walk.Header("[Analysis: Seeds for vertex 1-72, fitlims,autoseed,fixfree]");
  walk.Rows({"AnalysisFitSeed[]", "WaveFitSeed[]"}, false, rows);
  walk.Line({{"AnalysisLimitsOn"}});
  walk.Line({{"AnalysisAutoSeed"}});
  walk.Line({{"AnalysisFixOn"}});
}

/// Visits one field of the waveforms' windows: one line for all waveforms, or five lines before the third
/// format.
void WindowRow(const Walk& walk, const char* name) {
  if (walk.version < 3) {
    walk.Rows({name}, false, WaveformsOfOldFormats);
    return;
  }
  const FieldElements window(name);
  std::vector<Cell> cells;
  for (int w = 1; w <= window.Last(); ++w) cells.emplace_back(window(w));
  walk.visitor.Numbers(cells, false);
}

void WaveformFitRows(const Walk& walk) {
  walk.Header("[FitWaveforms: start, stop positions for fit]");
  walk.Line({{"FitNormalized"}});
  walk.Line({{"FitSeedSpread"}});
  walk.Line({{"FitFilterOn"},
             {"FitAlignRange", AtMost1},
             {"FitAlignChoice", SwitchOr0},
             {"FitFilterFc", CornerTo20}});
  for (const char* name : {"DataBaselineStart[]", "DataFitStart[]", "SimBaselineStart[]", "SimFitStart[]",
                           "NumBaselinePts[]", "NumAlignPts[]", "NumFitPts[]"}) {
    WindowRow(walk, name);
  }
  if (walk.version < 3) return;
  walk.visitor.Reserved(20, "0.000000");
  walk.visitor.Reserved(15, "1");
}

// -- Labels --

/// Visits labels before the fourth format, which has no labels for the table: it shows those of the grid.
void OldLabelRows(const Walk& walk) {
  walk.Header("[State1-20: labels]");
  walk.Texts("StateLabel[]", "TableStateLabel[]");
}

void LabelRows(const Walk& walk) {
  const FieldElements labels("StateLabel[]");
  walk.visitor.NumberedHeader(MaxStates, "[TState1-20: labels]");
  walk.Texts("TableStateLabel[]");
  walk.Header("[State1-20: labels]");
  for (int s = 1; s <= labels.Last(); ++s) {
    if (s == labels.Last()) walk.visitor.LastLine();
    walk.visitor.Text(labels(s), {});
  }
}

std::variant<int*, float*, double*, int> NumberAt(FieldRef ref) {
  assert(ref && ref.field->kind.saved);
  switch (ref.field->type) {
    case FieldType::Int:
      return reinterpret_cast<int*>(ref.address);
    case FieldType::Float:
      return reinterpret_cast<float*>(ref.address);
    default:
      assert(ref.field->type == FieldType::Double);
      return reinterpret_cast<double*>(ref.address);
  }
}

}  // namespace

Cell::Cell(FieldRef itsField, const CellRule& itsRule)
    : number(NumberAt(itsField)), field(itsField), rule(&itsRule) {}

void WalkModelFile(int version, ModelFileVisitor& visitor) {
  const Walk walk{version, visitor};
  visitor.Text(FindField("ModelTitle"), {});
  if (version < NewestFileVersion) OldLabelRows(walk);
  StateRows(walk);
  LinkRows(walk, OnTitles, "KOn[]", true);
  LinkRows(walk, OffTitles, "KOff[]", false);
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
