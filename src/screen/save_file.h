// Writes whole files and shows a message after a failure. The writers share these texts. A stop by the user
// (WriteStopped) shows no message.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/outcome.h"
#include "platform/safe_file.h"

namespace zelvane {

/// Replaces the file `path` by the blocks. On failure shows a message and keeps the existing file.
/// @return Done, Stopped (WriteStopped, without a message) or Failed
Outcome SaveFile(const std::string& path, const NextBlock& nextBlock);

/// Does the same with a text.
Outcome SaveText(const std::string& path, std::string_view text);

/// Appends the blocks to the file `path` or makes it, as AppendToFile does. On failure shows a message and
/// keeps the file unchanged.
/// @param lock  keeps its lock on the file
/// @return as SaveFile
Outcome ExtendFile(const std::string& path, const NextBlock& nextBlock);
Outcome ExtendFile(FileLock& lock, const std::string& path, const NextBlock& nextBlock,
                   std::string_view head = {}, std::optional<std::int64_t> end = {});

/// Shows why a file was not extended. Shows no message after Done and after a stop by the user.
/// @return as SaveFile
Outcome TellAppended(Appended result, const std::string& path);

/// Shows the message that a file was refused, and the reason.
void TellNotRead(const std::string& path, std::string_view why);

/// Shows the message that a file could be opened but not written.
void TellNotWritten(const std::string& path);

}  // namespace zelvane
