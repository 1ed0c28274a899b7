#include "desktop/widgets/panel_layout.h"

#include <QRegularExpression>
#include <QStringList>
#include <cassert>
#include <set>

#include "desktop/widgets/text.h"
#include "model/model_store.h"

namespace zelvane {
namespace {

struct LayoutRow {
  const char* panel = "";
  const char* title = "";
  const char* rows = "";  // split by blanks; + joins controls of one line, [1-6] makes one line each
  const char* tab = "";
  int columns = 1;
  const char* heads = "";  // words above the fields, split by '|'
};

// clang-format off
constexpr LayoutRow Layout[] = {
    {"MainPanel", "Run", "SimulatorKind NumPoints ADInterval MaxStepSize Precision"},
    {"MainPanel", "Channels", "NumChannels ChannelsGaussian ChannelsSTD MultiSubunit OpenState"},
    {"MainPanel", "Start", "StartAtEquilibrium FitStartAtEquilibrium ReseedSimulation"},
    {"MainPanel", "Electrical", "VHold VRev Valence"},
    {"MainPanel", "Display", "DisplayUnits AutoFilter AutoFilterFc FilterButton AutoNoise AutoNoiseSTD ShowAllTraces"},
    {"MainPanel", "Between the cursors", "MeanBetweenCursors VarBetweenCursors"},
    {"MainPanel", "Repeated runs", "NumRuns NumIntervals AutoAnalyze"},
    {"MainPanel", "Event statistics", "OpenStateExits MonitoredChannels OpenTimesText ClosedTimesText LatenciesText"},
    {"MainPanel", "Files", "DataName MainStimFile Autosave AutosaveFormat AutosaveFileName"},

    {"StimulusPanel", "Automatic step", "AutoDrugOrVolt AutoValue AutoStart AutoStop AutoFilterOn"},
    {"StimulusPanel", "Step", "StepAmp StepStart StepStop StepDuration StepRamp StepRiseTau StepDecayTau"},
    {"StimulusPanel", "Train", "TrainCount TrainDelay TrainInterval TrainExpFlag TrainRiseFlag TrainLength TrainFrequency"},
    {"StimulusPanel", "Exponential waveform", "ExpStart ExpOffset ExpComponents ExpAmp1 ExpTau1 ExpAmp2 ExpTau2 ExpRiseFlag ExpRiseTau"},
    {"StimulusPanel", "Filter", "FilterFc"},
    {"StimulusPanel", "Files", "StimConfigFile StimSweepLength StimFile LoadStim+ButtonSaveStim ExportPoints ImportStim+ExportStim"},

    {"AnalysisPanel", "Baseline", "BaselineStart BaselinePts BringBaseButton"},
    {"AnalysisPanel", "Peak", "StartAnalysis PeakSearchPts BringAnalysisButton PeakAvePts PeakOption"},
    {"AnalysisPanel", "Rise, as fractions of the amplitude", "RiseStartFrac RiseEndFrac"},
    {"AnalysisPanel", "Decay and width", "FracDecay"},
    {"AnalysisPanel", "Latency", "LatencyPos LatencyFrac"},
    {"AnalysisPanel", "Integral and exponential fit", "AnalysisFitPts AnalysisParse FitMode AnalysisFitStatus FitParams AnalysisFitNote "
     "ShowFitResidual"},
    {"AnalysisPanel", "Course of the exponential fit", "FitStartPts DualSpeedPts FitExtrapolate AnalysisNumIterations "
     "AnalysisNumRestarts AnalysisTolerance"},
    {"AnalysisPanel", "View", "TraceUnits MeasureWhileMoving AutoRescale YMinGain YMaxGain AnalysisExpandButton+AnalysisCompressButton "
     "AnalysisFullButton+ZoomAreaButton AnalysisZoomButton AnalysisDisplay[1]"},
    {"AnalysisPanel", "Files", "AutoSaveMeasures VerifyMeasures SaveAnalysisButton MeasuresFileShown MeasuresCount TableFileShown "
     "ExportTraceButton ExportCurveButton PrintAnalysisButton"},

    {"AnalysisPanel", "Dose-response of this trace", "AnalyzeDR+ShowLastCurve TemplateEC50 TemplateSlope TemplateMax TemplateResult "
     "TemplateCursorConc TemplateCursorResponse"},

    {"WaveAnalysisPanel", "Alignment", "AlignMode AlignRange ManualRise SlopePoints WaveBaselineCorrect"},
    {"WaveAnalysisPanel", "Baseline", "WaveBaselineStart WaveBaselinePts"},
    {"WaveAnalysisPanel", "Peak", "WaveStartAnalysis WavePeakSearchPts WavePeakAve"},
    {"WaveAnalysisPanel", "Rise, as fractions of the amplitude", "WaveRiseStartFrac WaveRiseEndFrac"},
    {"WaveAnalysisPanel", "Latency", "WaveLatencyPos WaveLatencyFrac"},
    {"WaveAnalysisPanel", "Cursor 7", "ManualRiseIndex ManualRiseValue ManualRiseStep"},
    {"WaveAnalysisPanel", "Steepest rise", "SteepestPos"},
    {"WaveAnalysisPanel", "Files", "ExportWaveAverageButton ExportWaveNormalizedButton ExportWaveVarianceButton ExportWaveTraceButton"},

    {"DoseResponsePanel", "Hill curve", "DoseEC50+DoseError[1] DoseSlope+DoseError[2] DoseMax+DoseError[3] DoseMin+DoseError[4]"},
    {"DoseResponsePanel", "Fit", "DoseLimits+DoseNew"},
    {"DoseResponsePanel", "Simulated doses", "DoseDrug DoseMeasure"},
    {"DoseResponsePanel", "View", "DoseLogAxis"},

    {"RsCorrectionPanel", "Cell", "RcRs RcCm RcRm RcVhold RcVrev"},
    {"RsCorrectionPanel", "Correction, as fractions of the error", "RcFracVolt RcFracCap RcLagFc RcLagTau "
     "RcCorrectLinear+RcCorrectNonlinear RsCmAuto RcFileCorrect"},
    {"RsCorrectionPanel", "Current-voltage relation", "RcIvFileName RcIvCount RcLoadIv"},
    {"RsCorrectionPanel", "Filtering by the cell", "RcFromConductance+RcFromVoltage"},

    {"FitPanel", "Simplex", "FitNumIterations FitNumRestarts FitTolerance FitStepSize FitSeedSpread"},
    {"FitPanel", "Windows of the waveform shown", "FitShownWave FitAlignChoice DataBaselineStart[1-15] SimBaselineStart[1-15] "
     "NumBaselinePts[1-15] DataFitStart[1-15] SimFitStart[1-15] NumAlignPts[1-15] NumFitPts[1-15]"},
    {"FitPanel", "Comparison", "FitNormalized FitAlign FitAlignRange FitPeakSearchPts FitPeakAve FitParse FitDualSpeed "
     "FitFilterOn FitFilterFc"},
    {"FitPanel", "Start and form", "FitModelIs2D FitStartAtEquilibrium"},
    {"FitPanel", "Display", "FitShowCurves FitTotalCurves FitShownProfile"},
    {"FitPanel", "Log file", "FitLogOn FitLogFileShown"},

    {"FilterPanel", "Gaussian filter", "AutoFilterFc+ApplyFilter"},
    {"FilterPanel", "Noise", "NoiseMean AutoNoiseSTD GaussNoise+RectNoise"},
    {"TransformPanel", "Every sample of the trace", "AddConstant+AddToTrace MultiplyConstant+MultiplyTrace"},
    {"TransformPanel", "Fewer points", "ParseConstant+ParseTrace"},

    {"DependencePanel", "", "DependRate"},
    {"DependencePanel", "Drugs: the rate is multiplied by their concentration", "DependDrug[1-6]+DrugLabel[1-6]"},
    {"DependencePanel", "Voltage", "DependVolt DependSteepness DependTemperature DependGrowth DependEfold"},

    {"QMatrixPanel", "", "QMatrixTime QMatrixPoint"},
    {"ParseReadPanel", "The file", "ParseFileName ParseFileSamples ADInterval ParseFileMs ParseFileMinutes"},
    {"ParseReadPanel", "What to read",
     "ParseStart ParseStartTime ParseCount ParseDuration ParseSkip ParseMaxPoints ParseInterval ParseMaximum"},
    {"DwellListsPanel", "", "OpenTimesCount ClosedTimesCount LatenciesCount OpenListSelector"},
    {"DwellListsPanel", "Read and write", "SCImportAscii+SCOpenWorkHistogram ExportOpenTimes+ExportClosedTimes ExportLatencies"},

    {.panel = "ConductancePanel", .rows = "StateConductance[1-20]", .columns = 2},
    {.panel = "InitialConditionsPanel", .rows = "StartOccupancy[1-20]", .columns = 2},

    {.panel = "ConstraintsPanel", .rows = "RateConstraint[1-60].enabled+RateConstraint[1-60].targetFrom+"
     "RateConstraint[1-60].targetTo+RateConstraint[1-60].sourceFrom+RateConstraint[1-60].sourceTo+"
     "RateConstraint[1-60].operation+RateConstraint[1-60].value",
     .heads = "On|Rate from|to|Source from|to|Operation|c"},
    {.panel = "LoopsPanel", .rows = "LoopConstraint[1-40].enabled+LoopConstraint[1-40].state[1]+"
     "LoopConstraint[1-40].state[2]+LoopConstraint[1-40].state[3]+LoopConstraint[1-40].state[4]+"
     "LoopConstraint[1-40].state[5]+LoopConstraint[1-40].state[6]+LoopConstraint[1-40].state[7]+"
     "LoopConstraint[1-40].state[8]+LoopConstraint[1-40].rateFrom+LoopConstraint[1-40].rateTo",
     .heads = "On|State 1|2|3|4|5|6|7|8|Rate from|to"},

    {.panel = "GraphPropertiesPanel", .title = "X axis",
     .rows = "GraphTimeUnit GraphLeftTime GraphRightTime GraphLeftSample GraphRightSample GraphXSpan", .tab = "Limits"},
    {.panel = "GraphPropertiesPanel", .title = "Y axis", .rows = "GraphYMin GraphYMax GraphYSpan", .tab = "Limits"},
    {.panel = "GraphPropertiesPanel", .rows = "GraphAutoX GraphAutoY GraphLogY", .tab = "Scaling"},
};
// clang-format on

/// Returns the control of this name on the panel, or else on another: a panel may also show a field of
/// another panel.
Control* ControlOn(const Panel& panel, const std::string& name) {
  for (Control* control : panel.controls) {
    if (control->name == name) return control;
  }
  return FindControl(name);
}

/// Returns the names for one word of a layout: the word itself, or with [1-6] all six, also before a field
/// such as .value.
std::vector<std::string> NamesOf(const QString& word) {
  static const QRegularExpression range(QStringLiteral(R"(^(\w+)\[(\d+)-(\d+)\]([.\w\[\]]*)$)"));
  const auto match = range.match(word);
  if (!match.hasMatch()) return {word.toStdString()};
  std::vector<std::string> names;
  for (int i = match.captured(2).toInt(); i <= match.captured(3).toInt(); ++i) {
    names.push_back(match.captured(1).toStdString() + '[' + std::to_string(i) + ']' +
                    match.captured(4).toStdString());
  }
  return names;
}

std::vector<Control*> ControlsOf(const Panel& panel, const QString& word) {
  std::vector<Control*> controls;
  for (const std::string& name : NamesOf(word)) {
    Control* control = ControlOn(panel, name);
    assert(control != nullptr && "a word of the layout names no control");
    if (control != nullptr) controls.push_back(control);
  }
  return controls;
}

void AddRows(FormSection& section, const Panel& panel, const QString& word) {
  std::vector<FormRow> rows;
  for (const QString& part : word.split('+')) {
    const std::vector<Control*> controls = ControlsOf(panel, part);
    if (rows.size() < controls.size()) rows.resize(controls.size());
    for (std::size_t i = 0; i < controls.size(); ++i) rows[i].push_back(controls[i]);
  }
  section.rows.insert(section.rows.end(), rows.begin(), rows.end());
}

std::set<const Control*> ControlsIn(const std::vector<FormSection>& sections) {
  std::set<const Control*> named;
  for (const FormSection& section : sections) {
    for (const FormRow& row : section.rows) named.insert(row.begin(), row.end());
  }
  return named;
}

}  // namespace

std::vector<FormSection> NamedSections(const Panel& panel) {
  std::vector<FormSection> sections;
  for (const LayoutRow& row : Layout) {
    if (panel.name != row.panel) continue;
    FormSection section{row.title, row.tab, {}, row.columns, row.heads};
    for (const QString& word : QString(row.rows).split(' ')) AddRows(section, panel, word);
    sections.push_back(std::move(section));
  }
  return sections;
}

std::vector<FormSection> SectionsOf(const Panel& panel) {
  std::vector<FormSection> sections = NamedSections(panel);
  const std::set<const Control*> named = ControlsIn(sections);
  std::string group;
  bool open = false;
  for (Control* control : panel.controls) {
    if (control->kind == ControlKind::Button || named.contains(control)) continue;
    if (!open || control->group != group) sections.push_back({});
    open = true;
    group = control->group;
    sections.back().rows.push_back({control});
  }
  return sections;
}

std::vector<Control*> ButtonsOf(const Panel& panel) {
  const std::vector<FormSection> sections = NamedSections(panel);
  const std::set<const Control*> named = ControlsIn(sections);
  std::vector<Control*> buttons;
  for (Control* control : panel.controls) {
    if (control->kind == ControlKind::Button && !named.contains(control)) buttons.push_back(control);
  }
  return buttons;
}

std::vector<std::string> LayoutFaults() {
  std::vector<std::string> faults;
  for (const LayoutRow& row : Layout) {
    const Panel* panel = FindPanel(row.panel);
    if (panel == nullptr) {
      faults.emplace_back(row.panel);
      continue;
    }
    for (const QString& word : QString(row.rows).split(QRegularExpression("[ +]"))) {
      for (const std::string& name : NamesOf(word)) {
        if (ControlOn(*panel, name) == nullptr) faults.push_back(panel->name + ' ' + name);
      }
    }
  }
  return faults;
}

}  // namespace zelvane
