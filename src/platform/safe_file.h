// Replacing a file so that a crash, a full disk or a lost right leaves the old one whole.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zelvane {

/// Writes `content` to a temporary file beside `path`, flushes it to the disk and renames it over `path`.
///
/// False, with the old file untouched and no temporary file left, when any step fails: `path` is a directory,
/// a device or a pipe, its folder or the file itself may not be written, or the disk is full. A file or
/// folder whose owner has no right to write counts as one that may not be written, for the superuser too:
/// whoever took that right away meant the file to stay. A symbolic link is followed; a hard link parts from
/// its companions. The new file has the old one's permissions and, where the system allows it, its owner.
bool ReplaceFile(const std::string& path, std::string_view content);

/// Gives the next part of a file; an empty one is the end. A part need only last until the next call.
using NextBlock = std::function<std::string_view()>;

/// The same for a file too large to hold in memory.
bool ReplaceFileInBlocks(const std::string& path, const NextBlock& nextBlock);

}  // namespace zelvane
