// Start-up, the main commands, shutdown.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelvane {

struct StartOptions {
  std::string folder;                          // program's folder; empty = folder of the installed data
  std::vector<std::string> files;              // files on the command line
  std::optional<std::array<double, 3>> seeds;  // of the random generators; default: from the clock
  std::function<void()> shown{};  // called when the main panel is shown, before the files are read
};

/// Starts the program in a fixed order: banner, generators, stores, panels, "config.mod", stimulus, main
/// panel, files of the command line. Needs a front end (SetFrontEnd). Only tests may call it again in the
/// same process.
void StartApplication(const StartOptions& options);

/// Opens a model or a recording that the user named, dropped or selected from the recent files. When it
/// cannot read the file, shows a message and changes nothing.
void OpenFileByName(const std::string& path);

/// Loads files that the user dropped on the page of the fit: recordings and stimuli become its waveforms, other files
/// are opened.
void AddFilesToFit(std::span<const std::string> paths);

/// Connects the hooks from lower folders to higher folders.
void ConnectHooks();

/// Declares every panel on an empty screen.
void AddAllPanels();

/// Asks the question of the quit commands. Yes ends the event loop.
void AskToQuit();

}  // namespace zelvane
