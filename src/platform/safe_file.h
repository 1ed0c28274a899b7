// Replacing a file so that a crash, a full disk or a lost right leaves the old one whole, and appending to
// one.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane {

/// Asked between the parts of a file while it is written, about a megabyte apart, and before it takes its
/// place: true breaks the writing off, which then fails as any other does, with the former file standing.
using WriteStop = std::function<bool()>;

/// Sets what all writing here asks, and gives what it asked before. At first it asks nothing and goes on.
WriteStop SetWriteStop(WriteStop stop);

/// Whether writing is to stop now: a failure then needs no other reason.
bool WriteStopped();

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

/// The same for a file whose parts come one by one, and not in their order: a header with the counts of what
/// follows it, say. The old file stands until Commit; without one, nothing has happened.
class FileReplacement {
 public:
  /// Nothing when `path` may not be written.
  static std::unique_ptr<FileReplacement> Begin(const std::string& path);

  FileReplacement() = default;
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  virtual ~FileReplacement() = default;

  /// Writes `bytes` at `position` of the new file. Bytes never written hold 0. After a failure the file can
  /// no longer be committed.
  bool Write(std::int64_t position, std::string_view bytes);

  /// Puts the new file in place of the old one; to be called once, as the last. False when this or any write
  /// before it failed; the old file then stands.
  virtual bool Commit() = 0;

 protected:
  bool good_ = true;  // no step has failed so far

 private:
  virtual bool WritePart(std::int64_t position, std::string_view bytes) = 0;
};

/// Appends blocks to the regular file `path`, or makes it; with `head`, which may not be longer than the file
/// was, that then takes the place of its first bytes. The head comes last: a process killed before has left
/// the old one, and bytes behind those that it tells of.
///
/// False when any step fails or writing stops; the file then has the length and the head that it had. Refused
/// as by ReplaceFile.
/// @param end  where the file ends for its reader, when that is not its length; what stands behind is dropped
bool AppendToFile(const std::string& path, const NextBlock& nextBlock, std::string_view head = {},
                  std::optional<std::int64_t> end = {});

}  // namespace zelvane
