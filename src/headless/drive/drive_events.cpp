// Events of the program: writes popups, dialogs and console lines, and answers from the queues.
#include <algorithm>

#include "headless/drive/drive_session.h"
#include "headless/nearest_names.h"
#include "headless/words.h"

namespace zelvane {
namespace {

/// Takes and returns the front of a queue; nullopt when it is empty.
template <typename T>
std::optional<T> Take(std::deque<T>& queue) {
  if (queue.empty()) return std::nullopt;
  T front = std::move(queue.front());
  queue.pop_front();
  return front;
}

Json Popup(const char* kind) {
  Json event = Json::object();
  event["popup"] = kind;
  return event;
}

void MarkUnanswered(Json& event, bool unanswered) {
  if (unanswered) event["unanswered"] = true;
}

void ShowMessage(DriveSession& session, std::string_view title, std::string_view text) {
  Json event = Popup("message");
  event["title"] = title;
  event["text"] = text;
  WriteObject(session, event);
}

void WriteNote(DriveSession& session, std::string_view sentence) {
  Json event = Json::object();
  event["note"] = sentence;
  WriteObject(session, event);
}

bool Confirm(DriveSession& session, std::string_view title, std::string_view text) {
  const std::optional<bool> answer = Take(session.answers);
  Json event = Popup("confirm");
  event["title"] = title;
  event["text"] = text;
  event["answer"] = answer.value_or(false) ? "yes" : "no";
  MarkUnanswered(event, !answer);
  WriteObject(session, event);
  return answer.value_or(false);
}

/// Returns one path, or all of a multiple selection; null when the dialog is cancelled.
Json ChosenJson(const std::vector<std::string>& paths, bool multiple) {
  if (paths.empty()) return nullptr;
  if (multiple) return paths;
  return paths.front();
}

std::vector<std::string> ChooseFiles(DriveSession& session, const FileRequest& request) {
  const auto chosen = Take(session.choices);
  std::vector<std::string> paths = chosen.value_or(std::vector<std::string>{});
  Json event = Popup("file");
  event["title"] = request.title;
  event["filter"] = request.filter;
  event["answer"] = ChosenJson(paths, request.multiple);
  MarkUnanswered(event, !chosen);
  WriteObject(session, event);
  return paths;
}

/// Types one field of a dialog. A control that may act while the command waits for the dialog acts at once,
/// as it does for a user.
void FillField(DriveSession& session, Panel& panel, const std::string& name, const std::string& value) {
  const auto it = std::find_if(panel.controls.begin(), panel.controls.end(),
                               [&](const Control* control) { return control->name == name; });
  if (it == panel.controls.end()) {
    std::vector<std::string> names;
    for (const Control* control : panel.controls) names.push_back(control->name);
    WriteUnknownName(session, "field of " + panel.name, name, names);
    return;
  }
  Control& control = **it;
  Refusal refusal = TypeInto(control, value);
  if (refusal.empty() && control.action != nullptr && control.whileBusy) refusal = Commit(control);
  if (!refusal.empty()) WriteRefusal(session, name + ": " + refusal);
}

bool RunModal(DriveSession& session, const FrontEnd& shown, Panel& panel, std::string_view text) {
  const std::optional<DialogReply> reply = Take(session.replies);
  const bool accept = reply && reply->accept;
  if (reply) {
    for (const auto& [name, value] : reply->fields) FillField(session, panel, name, value);
  }
  if (shown.modal) shown.modal(panel, text);
  Json event = Popup("dialog");
  event["name"] = panel.name;
  event["text"] = text;
  event["answer"] = accept ? "ok" : "cancel";
  MarkUnanswered(event, !reply);
  WriteObject(session, event);
  return accept;
}

void StopIfAsked(const DriveSession& session) {
  if (StopAsked(session)) RequestStop();
}

/// Performs the presses that are queued for this moment.
void Pump(DriveSession& session) {
  const int moment = ++session.pumps;
  std::vector<QueuedPress> due;
  std::erase_if(session.presses, [&](const QueuedPress& press) {
    if (press.pump != moment) return false;
    due.push_back(press);
    return true;
  });
  for (const QueuedPress& press : due) PressNamed(session, press.callback);
}

void WriteConsole(DriveSession& session, std::string_view line) {
  Json event = Json::object();
  event["console"] = line;
  WriteObject(session, event);
}

void WriteHelp(DriveSession& session, int topic) {
  Json event = Json::object();
  event["help"] = topic;
  WriteObject(session, event);
}

void WritePrint(DriveSession& session, const Panel& panel) {
  Json event = Json::object();
  event["print"] = panel.name;
  WriteObject(session, event);
}

void WriteError(DriveSession& session, std::string_view text) {
  Json event = Json::object();
  event["error"] = text;
  WriteObject(session, event);
}

}  // namespace

void WriteObject(DriveSession& session, const Json& object) {
  *session.out << JsonLine(object) << '\n';
}

void WriteRefusal(DriveSession& session, std::string_view text) {
  WriteError(session, text);
}

void WriteMisunderstood(DriveSession& session, std::string_view text) {
  session.misunderstood = true;
  WriteError(session, text);
}

void WriteUnknownName(DriveSession& session, std::string_view kind, std::string_view name,
                      const std::vector<std::string>& candidates) {
  WriteMisunderstood(session, "unknown " + std::string(kind) + ": " + Shortened(name) +
                                  DidYouMean(NearestNames(name, candidates)));
}

FrontEnd DriveFrontEnd(DriveSession& session, const FrontEnd& shown) {
  FrontEnd frontEnd = shown;
  frontEnd.message = [&session](MessageTitle title, std::string_view text) {
    ShowMessage(session, title.words, text);
  };
  frontEnd.note = [&session, shownNote = shown.note](std::string_view sentence) {
    WriteNote(session, sentence);
    if (shownNote) shownNote(sentence);
  };
  frontEnd.confirm = [&session](std::string_view title, std::string_view text) {
    return Confirm(session, title, text);
  };
  frontEnd.files = [&session](const FileRequest& request) { return ChooseFiles(session, request); };
  frontEnd.modal = [&session, shown](Panel& panel, std::string_view text) {
    return RunModal(session, shown, panel, text);
  };
  frontEnd.breathe = [&session, shownBreath = shown.breathe](double fraction) {
    StopIfAsked(session);
    if (shownBreath) shownBreath(fraction);
  };
  frontEnd.pump = [&session, shownPump = shown.pump] {
    Pump(session);
    StopIfAsked(session);
    if (shownPump) shownPump();
  };
  frontEnd.help = [&session, shownHelp = shown.help](int topic) {
    WriteHelp(session, topic);
    return !shownHelp || shownHelp(topic);
  };
  frontEnd.print = [&session, shownPrint = shown.print](Panel& panel) {
    WritePrint(session, panel);
    if (shownPrint) shownPrint(panel);
  };
  frontEnd.console = [&session](std::string_view line) { WriteConsole(session, line); };
  frontEnd.quit = [&session] { session.ended = true; };
  return frontEnd;
}

}  // namespace zelvane
