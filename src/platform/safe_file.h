// Replacing a file so that a crash, a full disk or a lost right leaves the old one whole.
#pragma once

#include <string>
#include <string_view>

namespace zelvane {

/// Writes `content` to a temporary file beside `path`, flushes it to the disk and renames it over `path`.
/// False, with the old file untouched and no temporary file left, when any step fails: `path` is a directory,
/// its folder or the file itself may not be written, or the disk is full. A symbolic link is followed.
bool ReplaceFile(const std::string& path, std::string_view content);

}  // namespace zelvane
