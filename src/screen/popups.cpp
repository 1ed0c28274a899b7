#include "screen/popups.h"

#include <optional>
#include <set>
#include <string>
#include <utility>

#include "screen/announce.h"
#include "screen/observe.h"
#include "screen/observer.h"
#include "screen/popups_store.h"

namespace zelvane {
namespace {

FrontEnd& Current() {
  static FrontEnd frontEnd;
  return frontEnd;
}

/// Lines that ConsoleAsNotes has told; empty without one.
std::optional<std::set<std::string, std::less<>>> linesTold;

constexpr std::string_view NoHelpFile = "The help file is missing beside the program.";

struct FileErrorText {
  int code;
  std::string_view text;
};
constexpr FileErrorText FileErrorTexts[] = {
    {FileOpenFailed, "IO Error 100: FileOpen failed"},
    {HeaderClearFailed, "IO Error 101: HeaderClear failed"},
    {FileMoveFailed, "IO Error 102: FileMove failed"},
    {WrongFileFormat, "IO Error 103: Wrong File Format"},
};

/// Returns the conversion letter of the first % in a format, or 0.
char ConversionLetter(std::string_view format) {
  for (std::size_t i = format.find('%'); i != std::string_view::npos; i = format.find('%', i + 1)) {
    if (i + 1 < format.size() && format[i + 1] == '%') {
      ++i;
      continue;
    }
    const std::size_t letter = format.find_first_of("diuxXfFeEgGaAs", i + 1);
    return letter == std::string_view::npos ? '\0' : format[letter];
  }
  return '\0';
}

}  // namespace

FrontEnd SetFrontEnd(FrontEnd frontEnd) {
  return std::exchange(Current(), std::move(frontEnd));
}

void MessagePopup(MessageTitle title, std::string_view text) {
  if (Current().message) Current().message(title, text);
}

void Note(std::string_view sentence) {
  if (Current().note) Current().note(sentence);
  NoteGiven.Tell(sentence);
}

bool ConfirmPopup(std::string_view title, std::string_view text) {
  const bool yes = Current().confirm && Current().confirm(title, text);
  ObserveQueued(yes ? "answer yes" : "answer no");
  return yes;
}

namespace {

std::vector<std::string> AskFiles(const FileRequest& request) {
  std::vector<std::string> chosen;
  if (Current().files) chosen = Current().files(request);
  std::string line = "choose";
  for (const std::string& path : chosen) line += ' ' + QuoteWord(path);
  ObserveQueued(chosen.empty() ? "choose cancel" : line);
  return chosen;
}

int& PumpCount() {
  static int count = 0;
  return count;
}

}  // namespace

std::optional<std::string> FileSelectPopup(const FileRequest& request) {
  std::vector<std::string> chosen = AskFiles(request);
  if (chosen.empty()) return std::nullopt;
  return std::move(chosen.front());
}

std::vector<std::string> MultiFileSelectPopup(FileRequest request) {
  request.multiple = true;
  return AskFiles(request);
}

int PumpsOfAction() {
  return PumpCount();
}

void RestartPumpCount() {
  PumpCount() = 0;
}

void ProcessSystemEvents() {
  ++PumpCount();
  if (Current().pump) Current().pump();
}

void RequestStop() {
  Requests.StopRequested = 1;
}

bool StopAsked() {
  return Requests.StopRequested != 0;
}

void ForgetStop() {
  Requests.StopRequested = 0;
}

ConsoleAsNotes::ConsoleAsNotes() {
  linesTold.emplace();
}

ConsoleAsNotes::~ConsoleAsNotes() {
  linesTold.reset();
}

void ConsoleLine(std::string_view text) {
  if (linesTold) {
    if (linesTold->emplace(text).second) Note(text);
  } else if (Current().console) {
    Current().console(text);
  }
}

void ShowProgress(double fraction, std::string_view text) {
  if (Current().progress) Current().progress(fraction, text);
}

void ResetProgress() {
  ShowProgress(-1.0);
}

void Breathe(double fraction) {
  if (Current().breathe) Current().breathe(fraction);
}

void SystemHelp(int topic) {
  if (Current().help && !Current().help(topic)) MessagePopup(FileErrorTitle, NoHelpFile);
}

void QuitUserInterface() {
  if (Current().quit) Current().quit();
}

void AnnouncePanel(Panel& panel) {
  if (Current().panelChanged) Current().panelChanged(panel);
}

void AnnounceGraph(Graph& graph) {
  if (Current().graphChanged) Current().graphChanged(graph);
}

void AnnouncePrint(Panel& panel) {
  if (Current().print) Current().print(panel);
}

bool AskModal(Panel& panel, const char* text) {
  return Current().modal && Current().modal(panel, text);
}

void FileErrorPopup(int code) {
  for (const FileErrorText& row : FileErrorTexts) {
    if (row.code == code) MessagePopup(FileErrorTitle, row.text);
  }
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string FormatNumber(std::string_view format, double value) {
  const std::string pattern(format);
  switch (ConversionLetter(format)) {
    case 'd':
    case 'i': {
      const bool fits = value > -2147483649.0 && value < 2147483648.0;
      return FormatText(pattern.c_str(), fits ? static_cast<int>(value) : 0);
    }
    case '\0':
    case 's':
      return pattern;
    default:
      return FormatText(pattern.c_str(), value);
  }
}
#pragma GCC diagnostic pop

}  // namespace zelvane
