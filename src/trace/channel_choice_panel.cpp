// ChannelChoicePanel, a number and a message, and the dialog for the interval of a text.
#include <cmath>
#include <limits>
#include <utility>

#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/screen.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_panels.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char ChoicePanelName[] = "ChannelChoicePanel";
constexpr char ChannelName[] = "Channel";
constexpr char SignalName[] = "Signal";

constexpr char IntervalPanelName[] = "TextIntervalPanel";
constexpr char IntervalGroup[] = "interval";

constexpr char ChannelQuestion[] =
    "%s contains %u channels.\nThe channels with data are: %sTo read in channel %u, click OK.\n"
    "Otherwise enter the number of the channel to read in and then click OK.";
constexpr char NoSuchChannel[] = "%s holds no channel %d.";
constexpr char SignalQuestion[] =
    "%s contains %u signals: %s\nTo read in the first signal, enter 1.\nTo read the second signal, enter 2, "
    "and so forth.\nThen click OK.";
constexpr char IntervalTitle[] = "Get ADinterval";
constexpr char IntervalLineQuestion[] = "Read First Value of 1-column Ascii file as AD interval in ms ?";
constexpr char TypeInterval[] = "Enter the time between samples and a factor that multiplies each of them.";

// clang-format off
constexpr ControlDecl ChoiceControls[] = {
    {.name = ChannelName, .kind = ControlKind::Number, .label = "Channel", .format = "%.0f",
     .help = "Number of the channel to read."},
    {.name = SignalName, .kind = ControlKind::Number, .label = "Signal", .format = "%.0f",
     .help = "Number of the signal to read, from 1."},
};

constexpr ControlDecl IntervalControls[] = {
    {.name = "ADInterval", .kind = ControlKind::Number, .label = "Interval", .unit = "ms", .format = "%g",
     .help = "Time between samples (in ms)."},
    {.name = "ScaleFactor", .kind = ControlKind::Number, .label = "Factor", .format = "%g",
     .help = "Factor that multiplies every sample."},
};
// clang-format on

/// Asks for the number of one of the two fields of the panel. A number too large for an int becomes -1, which
/// is not a channel.
std::optional<int> AskNumber(const char* field, const char* other, const std::string& text, int proposed) {
  SetVisible(field, true);
  SetVisible(other, false);
  ShowNumber(field, proposed);
  if (!RunModalPanel(ChoicePanelName, text)) return std::nullopt;
  const double typed = std::trunc(ControlNumber(field));
  const bool fits = std::abs(typed) <= std::numeric_limits<int>::max();
  return fits ? static_cast<int>(typed) : -1;
}

/// Shows the dialog for an interval and a factor; the factor is 1 at first.
std::optional<ColumnInterval> AskInterval() {
  const float formerInterval = Model.ADInterval;
  const float formerScale = std::exchange(Trace.ScaleFactor, 1.0F);
  WriteControls(IntervalPanelName, IntervalGroup);
  std::optional<ColumnInterval> typed;
  if (RunModalPanel(IntervalPanelName, TypeInterval)) {
    ReadControls(IntervalPanelName, IntervalGroup);
    typed = {.firstLine = false, .intervalMs = Model.ADInterval, .scale = Trace.ScaleFactor};
  }
  Model.ADInterval = formerInterval;
  Trace.ScaleFactor = formerScale;
  return typed;
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

std::optional<int> AskChannel(const std::string& path, const RecordingAccount& account) {
  std::string list;
  for (const RecordedInput& input : account.inputs) list += FormatText("%d ", input.number);
  const int proposed = account.inputs.front().number;
  const auto answer =
      AskNumber(ChannelName, SignalName,
                FormatText(ChannelQuestion, path.c_str(), static_cast<unsigned>(account.inputs.size()),
                           (list + '\n').c_str(), static_cast<unsigned>(proposed)),
                proposed);
  if (!answer || HasInput(account, *answer)) return answer;
  MessagePopup(FileErrorTitle, FormatText(NoSuchChannel, FileNameOf(path).c_str(), *answer));
  return std::nullopt;
}

std::optional<int> AskSignal(const std::string& path, const RecordingAccount& account) {
  return AskNumber(SignalName, ChannelName,
                   FormatText(SignalQuestion, FileNameOf(path).c_str(),
                              static_cast<unsigned>(account.inputs.size()), account.text.signalList.c_str()),
                   1);
}

std::optional<ColumnInterval> AskColumnInterval() {
  if (ConfirmPopup(IntervalTitle, IntervalLineQuestion)) return ColumnInterval{.firstLine = true};
  return AskInterval();
}

}  // namespace zelvane
