// StimFitLimitsPanel: the limits of the parameters of an exponential stimulus.
#include <array>

#include "fit/fit_rows_panel.h"
#include "fit/fit_store.h"
#include "model/model_events.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "StimFitLimitsPanel";
constexpr char Group[] = "limits";

struct StimulusParameter {
  const char* label;
  const char* unit;
};
constexpr std::array<StimulusParameter, StimFitRows> Parameter{{{"Amplitude 1", "M"},
                                                                {"Time constant 1", "ms"},
                                                                {"Amplitude 2", "M"},
                                                                {"Time constant 2", "ms"},
                                                                {"Rise time constant", "ms"}}};

void Close() {
  HidePanel(PanelName);
  StimFitLimitsRead();
}

void FxnQuitStimFitLimits(const ControlEvent& /*event*/) {
  Close();
}

// clang-format off
constexpr ControlDecl LowerControl{
    .name = "StimFitLimits[%d].lo", .kind = ControlKind::Number, .format = "%g", .command = "FxnMinStimVertex",
    .help = "Minimum limit for this parameter of the stimulus in a fit."};
constexpr ControlDecl UpperControl{
    .name = "StimFitLimits[%d].hi", .kind = ControlKind::Number, .format = "%g", .command = "FxnMaxStimVertex",
    .help = "Maximum limit for this parameter of the stimulus in a fit."};
constexpr ControlDecl CommandControls[] = {
    {.name = "StimFitLimitsDone", .kind = ControlKind::Button, .label = "Done", .format = "",
     .command = "FxnQuitStimFitLimits", .action = FxnQuitStimFitLimits, .help = "Return to Waveform Fitting Panel."},
};
// clang-format on

void AddRow(ControlDecl decl, int row) {
  const StimulusParameter& parameter = Parameter[Index(row) - 1];
  decl.label = parameter.label;
  decl.unit = parameter.unit;
  AddControl(PanelName, Group, decl, row);
}

}  // namespace

void AddStimFitLimitsPanel() {
  AddPanel({.name = PanelName,
            .title = "Limits of the stimulus",
            .close = Close,
            .help = "Set the limits of amplitudes and time constants in a fit of an exponential stimulus."});
  for (int row = 1; row <= StimFitRows; ++row) AddRow(LowerControl, row);
  for (int row = 1; row <= StimFitRows; ++row) AddRow(UpperControl, row);
  AddControls(PanelName, "commands", CommandControls);
  ModelFileToSave.Add(StimFitLimitsRead);
}

void StimFitLimitsRead() {
  ReadControls(PanelName, Group);
}

void StimFitLimitsWrite() {
  WriteControls(PanelName, Group);
}

}  // namespace zelvane
