// ChannelChoicePanel, a number and a message, and the dialog for the interval of a text.
#include <cmath>
#include <limits>

#include "screen/screen.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_panels.h"

namespace zelvane {
namespace {

constexpr char ChoicePanelName[] = "ChannelChoicePanel";
constexpr char ChannelName[] = "Channel";
constexpr char SignalName[] = "Signal";

constexpr char IntervalPanelName[] = "TextIntervalPanel";
constexpr char IntervalGroup[] = "interval";

// clang-format off
constexpr ControlDecl ChoiceControls[] = {
    {ChannelName, ControlKind::Number, "Channel", "", "%.0f", "", nullptr, "Number of the channel to read."},
    {SignalName,  ControlKind::Number, "Signal",  "", "%.0f", "", nullptr, "Number of the signal to read, from 1."},
};

constexpr ControlDecl IntervalControls[] = {
    {"ADInterval",  ControlKind::Number, "Interval", "ms", "%g", "", nullptr, "Time between samples (in ms)."},
    {"ScaleFactor", ControlKind::Number, "Factor",   "",   "%g", "", nullptr, "Factor that multiplies every sample."},
};
// clang-format on

/// Asks for the number of one of the two fields of the panel. A number that no int holds is -1, which no
/// channel bears.
std::optional<int> AskNumber(const char* field, const char* other, const std::string& text, int proposed) {
  if (FindPanel(ChoicePanelName) == nullptr) return std::nullopt;
  SetVisible(field, true);
  SetVisible(other, false);
  ShowNumber(field, proposed);
  if (!RunModalPanel(ChoicePanelName, text)) return std::nullopt;
  const double typed = std::trunc(ControlNumber(field));
  const bool fits = std::abs(typed) <= std::numeric_limits<int>::max();
  return fits ? static_cast<int>(typed) : -1;
}

}  // namespace

void AddChannelChoicePanel() {
  AddPanel({.name = ChoicePanelName,
            .title = "Choose",
            .help = "Choose the channel or the signal of the file "
                    "to read."});
  AddControls(ChoicePanelName, "choice", ChoiceControls);
  AddPanel({.name = IntervalPanelName,
            .title = "Interval",
            .help = "Enter the time between the samples of a text without an interval."});
  AddControls(IntervalPanelName, IntervalGroup, IntervalControls);
}

std::optional<int> AskChannel(const std::string& text, int proposed) {
  return AskNumber(ChannelName, SignalName, text, proposed);
}

std::optional<int> AskSignal(const std::string& text, int proposed) {
  return AskNumber(SignalName, ChannelName, text, proposed);
}

bool AskInterval(const std::string& text) {
  if (FindPanel(IntervalPanelName) == nullptr) return false;
  WriteControls(IntervalPanelName, IntervalGroup);
  if (!RunModalPanel(IntervalPanelName, text)) return false;
  ReadControls(IntervalPanelName, IntervalGroup);
  return true;
}

}  // namespace zelvane
