// Start-up, the main commands, shutdown.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zelvane {

struct StartOptions {
  std::string folder;                          // program's folder; empty = where the installed data lie
  std::vector<std::string> files;              // files named on the command line
  std::optional<std::array<double, 3>> seeds;  // of the generators, in place of the clock
  std::function<void()> shown{};               // the main panel shows; the files are read next
};

/// Brings the program up in its fixed order: banner, generators, stores, panels, "config.mod", stimulus, main
/// panel, the files named. Needs a front end (SetFrontEnd) and may be called once in a process, or again
/// after it in tests.
void StartApplication(const StartOptions& options);

/// Opens a file that the user named, dropped or chose among recent ones: a model or a recording. What
/// cannot be read is told and changes nothing.
void OpenFileByName(const std::string& path);

/// Connects what lower folders hand on to higher ones.
void ConnectHooks();

/// Declares every panel on an empty screen.
void AddAllPanels();

/// The quit button and its companions ask their question; yes ends the event loop.
void AskToQuit();

}  // namespace zelvane
