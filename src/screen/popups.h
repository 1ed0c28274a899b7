// The part of the screen for computations: modal popups, notes, file dialogs, the event pump and the progress bar.
// Panels and controls are in screen.h, which only panel files use.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/format_text.h"
#include "screen/front_end.h"
#include "screen/listeners.h"

namespace zelvane {

/// Announces a note, for the list of all notes.
inline Listeners<std::string_view> NoteGiven;

/// Uses `frontEnd` from now on. Returns the front end before it.
FrontEnd SetFrontEnd(FrontEnd frontEnd);

// -- Titles that many popups have --
inline constexpr MessageTitle ErrorTitle{MessageKind::Error, "! Error"};
inline constexpr MessageTitle WarningTitle{MessageKind::Warning, "! Warning"};
inline constexpr MessageTitle FileErrorTitle{MessageKind::Error, "! File error"};
inline constexpr MessageTitle NoticeTitle{MessageKind::Warning, "!"};
inline constexpr MessageTitle HelpTitle{MessageKind::Information, "? Help"};

/// Shows a message and waits until the user has seen it.
void MessagePopup(MessageTitle title, std::string_view text);

/// Tells one sentence and goes on at once: something happened that the user must know and need not answer.
void Note(std::string_view sentence);

/// Asks a question. Returns true for yes. Without a front end the answer is no.
bool ConfirmPopup(std::string_view title, std::string_view text);
inline bool ConfirmPopup(MessageTitle title, std::string_view text) {
  return ConfirmPopup(title.words, text);
}

/// Asks for one file. Returns an empty result when the user cancels; the caller must then do nothing.
std::optional<std::string> FileSelectPopup(const FileRequest& request);

/// Asks for any number of files. Returns an empty list when the user cancels.
std::vector<std::string> MultiFileSelectPopup(FileRequest request);

/// Handles waiting user events, so that a stop button works. Long loops call it at fixed steps of their work.
void ProcessSystemEvents();

/// Lets a window repaint and take a click on the stop button during work that handles no events. The clock
/// decides when it is called, unlike ProcessSystemEvents. So the result of a run must not depend on it.
/// `fraction` (0 to 1) is the finished part of the work.
void Breathe(double fraction);

// -- The wish to end the present work: the stop button sets it, long loops check it --
void RequestStop();
bool StopAsked();
void ForgetStop();  // at the start of a work: an earlier wish is no longer valid

/// Writes a line to the program's console.
void ConsoleLine(std::string_view text);

/// While one exists, a line for the console becomes a note, and the same line does so only once: the runs of a fit
/// would repeat it thousands of times. There is at most one.
class ConsoleAsNotes {
 public:
  ConsoleAsNotes();
  ConsoleAsNotes(const ConsoleAsNotes&) = delete;
  ConsoleAsNotes& operator=(const ConsoleAsNotes&) = delete;
  ~ConsoleAsNotes();
};

/// Moves the progress bar, from 0 to 1, with a text beside it. ResetProgress empties it.
void ShowProgress(double fraction, std::string_view text = {});
void ResetProgress();

/// Opens the help at a topic; HelpContents is the table of contents. Shows a message when the help file is
/// missing.
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

/// Shows the text of a file error under "! File error". Does nothing for any other code.
void FileErrorPopup(int code);

/// Formats one number with the display format of a control ("%.3ems", "%g"). Converts it to int for an integer
/// format.
std::string FormatNumber(std::string_view format, double value);

}  // namespace zelvane
