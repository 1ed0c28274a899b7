// TransformPanel: add, multiply, resample. A transform changes the present trace, so two presses add twice.
#include "trace/transform_panel.h"

#include "model/model_store.h"
#include "screen/screen.h"
#include "trace/trace.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "TransformPanel";
constexpr char Group[] = "transform";

void OpenPanel() {
  WriteControls(PanelName, Group);
  ShowPanel(PanelName);
}

void LeavePanel() {
  ReadControls(PanelName, Group);
  HidePanel(PanelName);
}

void FxnAdd(const ControlEvent&) {
  StoreTyped("AddConstant");
  const float constant = Trace.AddConstant;
  for (float& sample : TraceToWrite(Model.NumPoints)) sample += constant;
  TellTraceChanged();
}

void FxnMultiply(const ControlEvent&) {
  StoreTyped("MultiplyConstant");
  const float constant = Trace.MultiplyConstant;
  for (float& sample : TraceToWrite(Model.NumPoints)) sample *= constant;
  TellTraceChanged();
}

void FxnParseData(const ControlEvent&) {
  StoreTyped("ParseConstant");
  ParseTrace();
  TellTraceCame();
}

void FxnDoneTransform(const ControlEvent&) {
  LeavePanel();
}

constexpr auto Number = ControlKind::Number;
constexpr auto Button = ControlKind::Button;
constexpr char AddHelp[] = "Add a constant value to the entire waveform.";
constexpr char MultiplyHelp[] = "Multiply the entire waveform by a constant.";
constexpr char ParseHelp[] = "Parse waveform; replace waveform by using every n-th point.";

// clang-format off
constexpr ControlDecl TransformControls[] = {
    {.name = "AddConstant", .kind = Number, .label = "Add", .format = "%g", .help = AddHelp},
    {.name = "MultiplyConstant", .kind = Number, .label = "Multiply by", .format = "%g", .help = MultiplyHelp},
    {.name = "ParseConstant", .kind = Number, .label = "Every n-th point", .format = "%d", .help = ParseHelp},
    {.name = "AddToTrace", .kind = Button, .label = "Add", .format = "", .command = "FxnAdd", .action = FxnAdd,
     .help = AddHelp},
    {.name = "MultiplyTrace", .kind = Button, .label = "Multiply", .format = "", .command = "FxnMultiply",
     .action = FxnMultiply, .help = MultiplyHelp},
    {.name = "ParseTrace", .kind = Button, .label = "Parse", .format = "", .command = "FxnParseData",
     .action = FxnParseData, .help = ParseHelp},
    {.name = "DoneTransform", .kind = Button, .label = "Done", .format = "", .command = "FxnDoneTransform",
     .action = FxnDoneTransform, .help = "Close transform panel."},
};
constexpr MenuDecl TransformMenu[] = {{"Tools/Transform...", "FxnMenuTransform", OpenPanel}};
// clang-format on

}  // namespace

void AddTransformPanel() {
  AddPanel({.name = PanelName,
            .title = "Transform",
            .close = LeavePanel,
            .help =
                "Change the whole trace: add, multiply, or keep every n-th point. To get the old trace back, "
                "read the file again."});
  AddControls(PanelName, Group, TransformControls);
  AddMenu(TransformMenu);
}

}  // namespace zelvane
