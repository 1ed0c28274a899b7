// FilterPanel, which adds noise to the trace and filters it, and one button on MainPanel.
#include "trace/filter_panel.h"

#include <algorithm>
#include <utility>

#include "model/model_store.h"
#include "screen/screen.h"
#include "screen/window_reporter.h"
#include "stimulus/gaussian_filter.h"
#include "trace/filtered_trace.h"
#include "trace/noise_store.h"
#include "trace/program_random.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_graph.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "FilterPanel";

// Both are on MainPanel too.
constexpr char CornerField[] = "AutoFilterFc";
constexpr char DeviationField[] = "AutoNoiseSTD";
constexpr char MeanField[] = "NoiseMean";

constexpr char NoCorner[] = "The corner of the filter must be above 0 kHz.";

void ReadFields() {
  for (const char* field : {MeanField, DeviationField, CornerField}) StoreTyped(field);
}

void OpenPanel() {
  for (const char* field : {MeanField, DeviationField, CornerField}) ShowField(field);
  ShowPanel(PanelName);
}

void LeavePanel() {
  ReadFields();
  HidePanel(PanelName);
}

void FxnRectNoise(const ControlEvent&) {
  Trace.TraceValid = 1;
  AdoptRunLength();
  StoreTyped(MeanField);
  const float mean = Noise.NoiseMean;
  for (float& sample : TraceToWrite(Model.NumPoints))
    sample += mean + static_cast<float>(UniformRandom(ProgramRandom));
  TellTraceChanged();
}

void FxnCreateGaussNoise(const ControlEvent&) {
  Trace.TraceValid = 1;
  AdoptRunLength();
  StoreTyped(MeanField);
  StoreTyped(DeviationField);
  const float mean = Noise.NoiseMean;
  const float deviation = Model.AutoNoiseSTD;
  for (float& sample : TraceToWrite(Model.NumPoints))
    sample += mean + deviation * GaussianNoise(ProgramRandom);
  TellTraceChanged();
}

/// Filters the trace. If it is shorter than the last record, for example a short sweep of a recording, its
/// own length counts as the record, so that a message reports a kernel that is too long.
void FilterTrace() {
  StoreTyped(CornerField);
  if (!(Model.AutoFilterFc > 0.0F)) {
    MessagePopup(NoticeTitle, NoCorner);
    return;
  }
  const int recorded = std::exchange(Model.RecordPoints, std::min(Model.RecordPoints, Model.NumPoints));
  GaussianFilter(TraceToWrite(Model.NumPoints), Model.AutoFilterFc, WindowReporter());
  Model.RecordPoints = recorded;
}

void FxnApplyFilter(const ControlEvent&) {
  FilterTrace();
  TellTraceChanged();
}

void FxnFilterButton(const ControlEvent&) {
  FilterTrace();
  PlotTrace(true);
}

/// Shows a value that other panels show too.
void FxnShared(const ControlEvent& event) {
  ShowField(event.control->name);
}

void FxnDoneFilter(const ControlEvent&) {
  LeavePanel();
}

constexpr auto Number = ControlKind::Number;
constexpr auto Button = ControlKind::Button;
constexpr char CornerHelp[] =
    "Filter the main data display with a Gaussian Filter corrected for a phase shift.";

// clang-format off
constexpr ControlDecl FilterControls[] = {
    {.name = "AutoFilterFc", .kind = Number, .label = "Corner", .unit = "kHz", .format = "%g", .command = "FxnFc",
     .action = FxnShared, .help = CornerHelp},
    {.name = "NoiseMean", .kind = Number, .label = "Mean of noise", .format = "%g", .command = "FxnNoiseMean",
     .help = "Enter the mean of noise (Gaussian or Rectangular) that is to be added to the trace."},
    {.name = "AutoNoiseSTD", .kind = Number, .label = "STD of noise", .format = "%g", .command = "FxnNoiseSTD",
     .action = FxnShared,
     .help = "Enter the standard Deviatoin of noise (Gaussian) that is to be added to the trace."},
    {.name = "ApplyFilter", .kind = Button, .label = "Filter", .format = "", .command = "FxnApplyFilter",
     .action = FxnApplyFilter, .help = "Filter the trace with a Gaussian Filter corrected for a phase shift."},
    {.name = "GaussNoise", .kind = Button, .label = "Add Gaussian noise", .format = "",
     .command = "FxnCreateGaussNoise", .action = FxnCreateGaussNoise,
     .help = "Add Gaussian noise of the mean and standard deviation above to the trace."},
    {.name = "RectNoise", .kind = Button, .label = "Add rectangular noise", .format = "", .command = "FxnRectNoise",
     .action = FxnRectNoise,
     .help = "Add evenly distributed noise to the trace: the mean above plus a value between 0 and 1."},
    {.name = "DoneFilter", .kind = Button, .label = "Done", .format = "", .command = "FxnDoneFilter",
     .action = FxnDoneFilter, .help = "Close filter panel."},
};
constexpr ControlDecl MainControls[] = {
    {.name = "FilterButton", .kind = Button, .label = "Filter trace", .format = "", .command = "FxnFilterButton",
     .action = FxnFilterButton, .help = CornerHelp},
};
constexpr MenuDecl FilterMenu[] = {{"Tools/Filter...", "FxnMenuFilter", OpenPanel}};
// clang-format on

}  // namespace

void AddFilterPanel() {
  AddPanel({.name = PanelName,
            .title = "Filter and noise",
            .close = LeavePanel,
            .help = "Filter the trace, or add noise. Each press filters or adds again."});
  AddControls(PanelName, "filter", FilterControls);
  TraceChanged.Add(TraceFilterUpdate);
  AddControls(MainPanelName, "shell", MainControls);
  AddMenu(FilterMenu);
}

}  // namespace zelvane
