// The panels that ask which part of a recording to read, and the panel with its information. Questions do not
// change the stores: their controls edit fields of the stores, which get their old values again after the
// answer.
#pragma once

#include <optional>
#include <string>

#include "formats/recording_file.h"
#include "trace/parse_rules.h"

namespace zelvane {

// -- The panels, each in its file --
void AddFileInfoPanel();
void AddChannelChoicePanel();  // with the dialog for the interval of a text
void AddParseReadPanel();

/// Asks which input of an ABF, or which signal of a text, to read. Returns an empty result on cancel, and for
/// an input that the file does not have, after a message.
std::optional<int> AskChannel(const std::string& path, const RecordingAccount& account);
std::optional<int> AskSignal(const std::string& path, const RecordingAccount& account);

/// The source of the interval of a column of numbers.
struct ColumnInterval {
  bool firstLine = false;
  float intervalMs = 0.0F;  // typed, with a factor of the samples; unused if `firstLine` is true
  float scale = 1.0F;
};

/// Asks for the interval of a column of numbers. Returns an empty result on cancel.
std::optional<ColumnInterval> AskColumnInterval();

/// Shows the parse panel for a file with `length` samples of the channel, and proposes to keep every `skip`-th.
/// Returns its settings with the result 1 or, after a cancel, 2.
ParseSettings AskParse(const std::string& path, int length, int skip, float intervalMs);

}  // namespace zelvane
