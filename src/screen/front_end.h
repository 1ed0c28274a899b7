// The functions of a front end: a window, or a script. The program calls them through popups.h and the
// screen.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/message_title.h"

namespace zelvane {

struct Panel;
struct Graph;

/// A file dialog.
struct FileRequest {
  std::string title{};
  std::string directory{};    // folder at the start; empty = the last folder used
  std::string defaultName{};  // proposed name or pattern
  std::string filter{};       // "*.mod", or several, separated by ";"
  bool save = false;
  bool multiple = false;
};

/// Every function may be empty. Then a message or a note is dropped, a question is answered no, a dialog is cancelled.
struct FrontEnd {
  std::function<void(MessageTitle title, std::string_view text)> message;
  std::function<void(std::string_view sentence)> note;  // tells without waiting
  std::function<bool(std::string_view title, std::string_view text)> confirm;
  std::function<std::vector<std::string>(const FileRequest&)> files;  // empty = cancelled
  std::function<bool(Panel&, std::string_view text)> modal;           // true = ok, false = cancelled
  std::function<void()> pump;                                         // handles waiting user events
  std::function<void(std::string_view line)> console;
  std::function<void(double fraction, std::string_view text)> progress;  // 0 to 1; below 0 = no run
  std::function<void(Panel&)> panelChanged;                              // shown, hidden, controls changed
  std::function<void(Graph&)> graphChanged;
  std::function<void()> quit;                    // the event loop ends
  std::function<bool(int topic)> help;           // opens the help at a topic; false = no help file
  std::function<void(Panel&)> print;             // prints a panel with its present content
  std::function<void(double fraction)> breathe;  // repaints and takes clicks during long work
};

}  // namespace zelvane
