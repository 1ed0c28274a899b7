// The dialogs for reading a recording. Without panels the dialogs are cancelled and show nothing.
#pragma once

#include <optional>
#include <string>

namespace zelvane {

// -- The panels, each in its file --
void AddFileInfoPanel();
void AddChannelChoicePanel();  // with the dialog for the interval of a text
void AddParseReadPanel();

/// Asks for the channel or the signal to read and proposes `proposed`. Returns an empty result on cancel.
std::optional<int> AskChannel(const std::string& text, int proposed);
std::optional<int> AskSignal(const std::string& text, int proposed);

/// Asks for `Model.ADInterval` and `Trace.ScaleFactor` of a text. Returns false on cancel.
bool AskInterval(const std::string& text);

/// Shows the parse panel until the user accepts or cancels it, and sets `Trace.ParseResult`.
void AskParse();

}  // namespace zelvane
