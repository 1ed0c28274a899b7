// What the program asks of whatever shows it. A front end fills this struct of functions; the logic calls
// them through popups.h and the screen.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

struct Panel;
struct Graph;

/// A file dialog.
struct FileRequest {
  std::string title{};
  std::string directory{};    // where it opens; empty = the last folder used
  std::string defaultName{};  // name or pattern it offers
  std::string filter{};       // "*.mod", or several split by ";"
  bool save = false;
  bool multiple = false;
};

/// Every function may be left empty: a message is then dropped, a question answered no, a dialog cancelled.
struct FrontEnd {
  std::function<void(std::string_view title, std::string_view text)> message;
  std::function<bool(std::string_view title, std::string_view text)> confirm;
  std::function<std::vector<std::string>(const FileRequest&)> files;  // empty = cancelled
  std::function<bool(Panel&, std::string_view text)> modal;           // true = ok, false = cancelled
  std::function<void()> pump;                                         // lets waiting user events run
  std::function<void(std::string_view line)> console;
  std::function<void(double fraction, std::string_view text)> progress;  // 0..1; below 0 = no run
  std::function<void(Panel&)> panelChanged;                              // shown, hidden, controls changed
  std::function<void(Graph&)> graphChanged;
  std::function<void()> quit;                    // the event loop ends
  std::function<bool(int topic)> help;           // opens the help at a topic; false = no help file
  std::function<void(Panel&)> print;             // a panel with its present content
  std::function<void(double fraction)> breathe;  // repaint and take clicks within a long stretch
};

}  // namespace zelvane
