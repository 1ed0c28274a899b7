#include "model/state_number_panels.h"

#include <string>

#include "kinetics/scheme_tables.h"

namespace zelvane {
namespace {

/// Returns whether the field takes this number. A state of a loop can be 0, which ends the list.
bool Takes(const Control& control, double number) {
  const bool endsList = control.name.find(".state[") != std::string::npos;
  return number >= (endsList ? 0.0 : 1.0) && number <= MaxStates;
}

void TellNoState(const Control& control, double number) {
  Note(FormatText("%s keeps its number: %g is no state. States have the numbers 1 to %d.",
                  control.name.c_str(), number, MaxStates));
}

}  // namespace

void KeepStateNumber(const ControlEvent& event) {
  Control& control = *event.control;
  if (Takes(control, control.number)) return;
  TellNoState(control, control.number);
  SetFieldNumber(control.field, event.previous);
  ShowField(control.name);
}

void KeepStateNumbers(std::string_view panel) {
  for (Control* control : PanelNamed(panel).controls) {
    if (control->command != IndexCommand || Takes(*control, control->number)) continue;
    if (control->number == FieldNumber(control->field)) continue;  // a file had it
    TellNoState(*control, control->number);
    ShowField(control->name);
  }
}

}  // namespace zelvane
