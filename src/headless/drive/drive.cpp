#include "headless/drive/drive.h"

#include <istream>
#include <limits>
#include <utility>

#include "analysis/results_files.h"
#include "headless/drive/drive_session.h"
#include "headless/nearest_names.h"
#include "headless/words.h"
#include "platform/safe_file.h"
#include "screen/memory_guard.h"

namespace zelvane {
namespace {

constexpr std::size_t LongestLine = 1'000'000;         // bytes; a longer command is a mistake
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";  // some editors put it at the start of a text
constexpr int StoppedScript = 1;                       // exit status
constexpr int Misunderstood = 2;                       // the same

constexpr std::string_view LineName = "a line of the script";
constexpr std::string_view RowsName = "rows of measures";

/// Reads up to the next line end, and leaves it and a carriage return before it out of `line`. Skips what
/// exceeds the longest line and sets `tooLong`. Returns false at the end of the input.
bool ReadLine(std::istream& in, std::string& line, bool& tooLong) {
  line.clear();
  tooLong = false;
  char c = 0;
  while (in.get(c) && c != '\n') {
    if (line.size() < LongestLine)
      line += c;
    else
      tooLong = true;
  }
  const bool read = in.good() || !line.empty();
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return read;
}

const DriveCommand* FindDriveCommand(std::string_view name) {
  for (const std::span<const DriveCommand> commands : {ActionCommands(), QueryCommands()}) {
    for (const DriveCommand& command : commands) {
      if (command.name == name) return &command;
    }
  }
  return nullptr;
}

std::vector<std::string> CommandNames() {
  std::vector<std::string> names;
  for (const std::span<const DriveCommand> commands : {ActionCommands(), QueryCommands()}) {
    for (const DriveCommand& command : commands) names.emplace_back(command.name);
  }
  return names;
}

/// Writes what the program tells and asks to the session, during its lifetime.
class SessionScreen {
 public:
  SessionScreen(DriveSession& session, const DriveHost& host)
      : former_(SetFrontEnd(DriveFrontEnd(session, host.frontEnd))) {}
  ~SessionScreen() { SetFrontEnd(std::move(former_)); }
  SessionScreen(const SessionScreen&) = delete;
  SessionScreen& operator=(const SessionScreen&) = delete;

 private:
  FrontEnd former_;
};

void RunCommand(DriveSession& session, const DriveCommand& command, Words words) {
  session.pumps = 0;
  command.run(session, words);
  if (!command.queues) session.presses.clear();  // drops presses whose moment did not come
}

void RunLine(DriveSession& session, std::string_view line) {
  const std::size_t begin = line.find_first_not_of(" \t");
  if (begin == std::string_view::npos || line[begin] == '#') return;
  const auto words = SplitWords(line);
  if (!words) {
    WriteMisunderstood(session, "a quote is not closed: " + Shortened(line));
    return;
  }
  const DriveCommand* command = FindDriveCommand(words->front());
  if (command == nullptr) {
    WriteUnknownName(session, "command", words->front(), CommandNames());
    return;
  }
  const Words rest = Words(*words).subspan(1);
  if (rest.size() < command->minWords || rest.size() > command->maxWords) {
    WriteMisunderstood(
        session, "usage: " + std::string(command->usage) + " (write a value with blanks in double quotes)");
    return;
  }
  RunCommand(session, *command, rest);
}

}  // namespace

void RunLines(DriveSession& session, std::istream& in, const DriveHost& host) {
  std::string line;
  bool first = true;
  bool more = true;
  while (more && !session.ended && !StopAsked(session)) {
    bool whole = false;
    const bool enough = WithinMemory(LineName, [&] {
      bool tooLong = false;
      more = ReadLine(in, line, tooLong);
      whole = true;
      if (!more) return;
      if (tooLong)
        WriteMisunderstood(session, FormatText("a line of more than %zu bytes", LongestLine));
      else
        RunLine(session, first && line.starts_with(Utf8Mark) ? line.substr(Utf8Mark.size()) : line);
    });
    if (!enough) session.presses.clear();
    if (!whole) in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');  // its rest is no command
    first = false;
    session.out->flush();  // the program at the other end of a pipe waits for the answer
    if (more && host.afterLine) host.afterLine();
  }
}

int RunDrive(std::istream& in, std::ostream& out, const StartOptions& options, const DriveHost& host) {
  DriveSession session;
  session.out = &out;
  session.stop = host.stop;
  const SessionScreen screen(session, host);
  WriteStop formerStop = SetWriteStop([&session] { return StopAsked(session); });
  StartApplication(options);
  out.flush();
  RunLines(session, in, host);
  WithinMemory(RowsName, OfferUnwrittenRows);
  out.flush();
  SetWriteStop(std::move(formerStop));
  if (StopAsked(session)) return StoppedScript;
  return session.misunderstood ? Misunderstood : 0;
}

int PlayDrive(std::istream& in, std::ostream& out, const DriveHost& host) {
  DriveSession session;
  session.out = &out;
  const SessionScreen screen(session, host);
  RunLines(session, in, host);
  return session.misunderstood ? Misunderstood : 0;
}

}  // namespace zelvane
