#include "app/recorder.h"

#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "screen/observer.h"
#include "screen/save_file.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char RecordTitle[] = "Record Script";
constexpr char ScriptFilter[] = "*.drive";

struct Recorder {
  bool on = false;
  std::vector<std::string> queued;  // answers during the present action: the script gives them first
  std::vector<std::string> lines;
  std::string path;
};

Recorder& TheRecorder() {
  static Recorder recorder;
  return recorder;
}

/// Returns the view in a line: "view GRAPH x "; empty for any other line.
std::string_view ViewSet(std::string_view line) {
  if (!line.starts_with("view ") || line.ends_with(" all")) return {};
  const std::size_t graphEnd = line.find(' ', sizeof("view ") - 1);
  return line.substr(0, graphEnd + sizeof(" x"));
}

/// Removes the view that `line` replaces. A pan or a turn of the wheel gives many views, and only the last
/// one counts.
void DropFormerView(std::vector<std::string>& lines, const std::string& line) {
  const std::string_view view = ViewSet(line);
  if (view.empty()) return;
  for (auto former = lines.rbegin(); former != lines.rend() && !ViewSet(*former).empty(); ++former) {
    if (ViewSet(*former) != view) continue;
    lines.erase(std::next(former).base());
    return;
  }
}

void Keep(const std::string& line) {
  Recorder& recorder = TheRecorder();
  std::vector<std::string> queued = std::exchange(recorder.queued, {});
  if (!recorder.on || line == "press FxnRecord" || line == "press FxnStopRecording") return;
  recorder.lines.insert(recorder.lines.end(), queued.begin(), queued.end());
  DropFormerView(recorder.lines, line);
  recorder.lines.push_back(line);
}

std::optional<std::string> AskForScript() {
  return FileSelectPopup({.title = RecordTitle, .filter = ScriptFilter, .save = true});
}

void FxnRecord() {
  const auto path = AskForScript();
  if (!path) return;
  TheRecorder().path = *path;
  StartRecording();
}

void FxnStopRecording() {
  if (!IsRecording()) return;
  std::string script = "# A recorded session. Run it with: zelvane-cli drive THIS-FILE\n";
  for (const std::string& line : StopRecording()) script += line + '\n';
  std::string path = TheRecorder().path;
  while (SaveText(path, script) == Outcome::Failed) {
    const auto other = AskForScript();
    if (!other) return;
    path = *other;
  }
}

// clang-format off
constexpr MenuDecl RecorderMenu[] = {
    {"Tools/Record...",       "FxnRecord",        FxnRecord},
    {"Tools/Stop recording",  "FxnStopRecording", FxnStopRecording},
};
// clang-format on

}  // namespace

void WatchForRecorder() {
  TheRecorder() = Recorder{};
  AddUserObserver({nullptr, Keep, [](const std::string& line) { TheRecorder().queued.push_back(line); }});
}

void AddRecorderMenu() {
  AddMenu(RecorderMenu);
}

void StartRecording() {
  TheRecorder().lines.clear();
  TheRecorder().queued.clear();
  TheRecorder().on = true;
}

std::vector<std::string> StopRecording() {
  TheRecorder().on = false;
  return std::exchange(TheRecorder().lines, {});
}

bool IsRecording() {
  return TheRecorder().on;
}

}  // namespace zelvane
