// One session of the command language: its queues and its output.
#pragma once

#include <deque>
#include <istream>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "headless/drive/drive.h"
#include "headless/json_values.h"
#include "screen/front_end.h"

namespace zelvane {

/// The actions of the user in one modal dialog.
struct DialogReply {
  std::vector<std::pair<std::string, std::string>> fields;  // control, typed value
  bool accept = true;                                       // false = cancelled
};

/// A press during the next command, at one of its calls of ProcessSystemEvents.
struct QueuedPress {
  int pump = 1;  // counts from 1
  std::string callback;
};

struct DriveSession {
  std::ostream* out = nullptr;
  std::deque<bool> answers;
  std::deque<std::vector<std::string>> choices;  // an empty one = cancelled
  std::deque<DialogReply> replies;
  std::vector<QueuedPress> presses;
  int pumps = 0;                            // calls of ProcessSystemEvents in the running command
  bool ended = false;                       // ended by `quit`, or because the user quit the program
  bool misunderstood = false;               // a line was not a command, or its item does not exist
  const std::atomic<bool>* stop = nullptr;  // of DriveHost
};

/// Returns whether the script shall end.
inline bool StopAsked(const DriveSession& session) {
  return session.stop != nullptr && session.stop->load();
}

using Words = std::span<const std::string>;  // of a line, without the command

/// A command of the language. Commands with `queues` keep the queued presses for the next command.
struct DriveCommand {
  std::string_view name;
  std::size_t minWords = 0;
  std::size_t maxWords = 0;
  std::string_view usage;
  void (*run)(DriveSession&, Words) = nullptr;
  bool queues = false;
};

/// Return the commands for actions of a user, and the commands for questions of a script.
std::span<const DriveCommand> ActionCommands();
std::span<const DriveCommand> QueryCommands();

inline constexpr std::size_t AnyNumber = 1'000'000;  // of words

/// Runs the lines of `in` until its end, or until the session ends.
void RunLines(DriveSession& session, std::istream& in, const DriveHost& host = {});

// -- Output --

void WriteObject(DriveSession& session, const Json& object);

/// Writes that the program refused a command. The exit status stays unchanged.
void WriteRefusal(DriveSession& session, std::string_view text);

/// Writes that a line is not a command, or that its item does not exist. The exit status becomes 2.
void WriteMisunderstood(DriveSession& session, std::string_view text);

/// Does the same for an unknown name, and adds similar names among `candidates`.
void WriteUnknownName(DriveSession& session, std::string_view kind, std::string_view name,
                      const std::vector<std::string>& candidates);

// -- The program's side --

/// Returns a front end that writes events of the program to the session and takes answers from its queues.
/// Calls `shown`, the visible front end, for everything that a script does not answer.
FrontEnd DriveFrontEnd(DriveSession& session, const FrontEnd& shown);

/// Presses the control or the menu command with this callback. If no callback has the name, presses the
/// control with this name.
void PressNamed(DriveSession& session, const std::string& name);

}  // namespace zelvane
