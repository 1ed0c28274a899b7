// Writing whole files, with failures told: the texts that the writers of this folder share. That the user has
// stopped the writing (WriteStopped) needs no telling.
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

/// Appends the blocks to the file `path` or makes it, as AppendToFile does. On failure shows a message and
/// leaves the file as it was.
/// @return as SaveFile
Outcome ExtendFile(const std::string& path, const NextBlock& nextBlock, std::string_view head = {},
                   std::optional<std::int64_t> end = {});

/// Tells that a file, which could be opened, was not written.
void TellNotWritten(const std::string& path);

}  // namespace zelvane
