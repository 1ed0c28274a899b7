// What a computation may ask of the screen: modal popups, file dialogs, the event pump and the progress bar.
// Panels and controls are out of its reach (screen.h is for panel files).
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/format_text.h"
#include "screen/front_end.h"

namespace zelvane {

/// Makes `frontEnd` the one that shows everything from here on; the former one is returned.
FrontEnd SetFrontEnd(FrontEnd frontEnd);

// -- Titles of popups: the first characters tell the kind --
inline constexpr std::string_view ErrorTitle = "! Error";
inline constexpr std::string_view WarningTitle = "! Warning";
inline constexpr std::string_view FileErrorTitle = "! File error";
inline constexpr std::string_view NoticeTitle = "!";
inline constexpr std::string_view HelpTitle = "? Help";

/// Shows a message and waits until the user has seen it.
void MessagePopup(std::string_view title, std::string_view text);

/// Asks a question; true = yes. Without a front end the answer is no.
bool ConfirmPopup(std::string_view title, std::string_view text);

/// Asks for one file. Nothing when the user cancels: then nothing may happen.
std::optional<std::string> FileSelectPopup(const FileRequest& request);

/// Asks for any number of files. Empty when the user cancels.
std::vector<std::string> MultiFileSelectPopup(FileRequest request);

/// Lets user events that wait run: a stop button can work. Called by long loops at fixed moments.
void ProcessSystemEvents();

/// Lets a window repaint and take a click on the stop button within a stretch that pumps no events. Unlike
/// ProcessSystemEvents it is called at moments of the clock, so nothing that a run computes may rest on it.
/// `fraction` from 0 to 1 is the part of the work that is done.
void Breathe(double fraction);

// -- The wish to end the work that is under way: the stop button sets it, long loops look for it --
void RequestStop();
bool StopAsked();
void ForgetStop();  // at the begin of a work: an earlier wish is over

/// Writes a line to the program's console.
void ConsoleLine(std::string_view text);

/// Moves the progress bar, from 0 to 1, with a text beside it. ResetProgress empties it.
void ShowProgress(double fraction, std::string_view text = {});
void ResetProgress();

/// Opens the help at a topic; HelpContents is its table of contents. A missing help file is told.
inline constexpr int HelpContents = 0;
void SystemHelp(int topic);

/// Prints a panel with its present content, through the system's print dialog.
void PrintPanel(std::string_view panel);

/// Ends the event loop with result 0.
void QuitUserInterface();

// -- File errors: four fixed texts --
inline constexpr int FileOpenFailed = 100;
inline constexpr int HeaderClearFailed = 101;
inline constexpr int FileMoveFailed = 102;
inline constexpr int WrongFileFormat = 103;

/// Shows the text of a file error under "! File error"; any other code shows nothing.
void FileErrorPopup(int code);

/// One number through a display format of a control ("%.3ems", "%g"); an int where the format asks for one.
std::string FormatNumber(std::string_view format, double value);

}  // namespace zelvane
