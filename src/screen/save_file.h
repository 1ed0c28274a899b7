// Writing whole files, with failures told: the texts that the writers of this folder share. That the user has
// stopped the writing (WriteStopped) needs no telling.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/safe_file.h"

namespace zelvane {

/// Replaces the file `path` by the blocks. When that fails the user is told, and a former file stands.
bool SaveFile(const std::string& path, const NextBlock& nextBlock);

/// Appends the blocks to the file `path` or makes it, as AppendToFile does. When that fails the user is told,
/// and the file is as it was.
bool ExtendFile(const std::string& path, const NextBlock& nextBlock, std::string_view head = {},
                std::optional<std::int64_t> end = {});

/// Tells that a file, which could be opened, was not written.
void TellNotWritten(const std::string& path);

}  // namespace zelvane
