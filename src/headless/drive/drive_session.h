// One run of the command language: what is queued, and what has been written.
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

/// What the user does in one modal dialog.
struct DialogReply {
  std::vector<std::pair<std::string, std::string>> fields;  // control, typed value
  bool accept = true;                                       // false = cancelled
};

/// A press at a moment at which the next command lets user events through.
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
  int pumps = 0;               // of the command that runs
  bool ended = false;          // by `quit`, or by the user's leaving the program
  bool misunderstood = false;  // a line was no command or named nothing
};

using Words = std::span<const std::string>;  // of a line, without the command

/// A word of the language. Commands that only queue something leave the queued presses for the next one.
struct DriveCommand {
  std::string_view name;
  std::size_t minWords = 0;
  std::size_t maxWords = 0;
  std::string_view usage;
  void (*run)(DriveSession&, Words) = nullptr;
  bool queues = false;
};

/// What a user does, and what a script asks about.
std::span<const DriveCommand> ActionCommands();
std::span<const DriveCommand> QueryCommands();

inline constexpr std::size_t AnyNumber = 1'000'000;  // of words

/// Runs the lines of `in` until its end or until the session has ended.
void RunLines(DriveSession& session, std::istream& in, const DriveHost& host = {});

// -- Output --

void WriteObject(DriveSession& session, const Json& object);

/// Tells that a command could not be carried out; the script itself is sound.
void WriteRefusal(DriveSession& session, std::string_view text);

/// Tells that a line is no command or names nothing: the exit status will say so.
void WriteMisunderstood(DriveSession& session, std::string_view text);

/// The same for a name, with the names that are near it among `candidates`.
void WriteUnknownName(DriveSession& session, std::string_view kind, std::string_view name,
                      const std::vector<std::string>& candidates);

// -- The program's side --

/// The functions that write events of the program to the session and answer from its queues. What a script
/// does not answer is passed on to `shown`, the front end that shows the program meanwhile.
FrontEnd DriveFrontEnd(DriveSession& session, const FrontEnd& shown);

/// The control, menu command or, where no callback has that name, control of a name is pressed.
void PressNamed(DriveSession& session, const std::string& name);

}  // namespace zelvane
