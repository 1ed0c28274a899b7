// What reading a recording needs of the panels. Without panels on the screen dialogs count as cancelled, and
// nothing is shown.
#pragma once

#include <optional>
#include <string>

namespace zelvane {

// -- The panels, each in its file --
void AddFileInfoPanel();
void AddChannelChoicePanel();  // with the dialog for the interval of a text
void AddParseReadPanel();

/// Asks for the channel, or the signal, to read; `proposed` stands in the field. Nothing when cancelled.
std::optional<int> AskChannel(const std::string& text, int proposed);
std::optional<int> AskSignal(const std::string& text, int proposed);

/// Asks for `Model.ADInterval` and `Trace.ScaleFactor` of a text. False when cancelled.
bool AskInterval(const std::string& text);

/// Shows the parse panel until it is accepted or cancelled; `Trace.ParseResult` tells which.
void AskParse();

}  // namespace zelvane
