// Replaces files and appends to them. After a crash, on a full disk or without the right to write, the old
// file is still complete.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane {

/// A writer calls it after about each megabyte, and before the new file replaces the old one. True stops the
/// writer. It then fails and keeps the old file.
using WriteStop = std::function<bool()>;

/// Sets the function that all writers of this header call, and returns the function before it. At the start
/// there is no function.
WriteStop SetWriteStop(WriteStop stop);

/// Returns whether the function of SetWriteStop asks to stop. This is then the reason of a failed write.
bool WriteStopped();

/// Writes `content` to a temporary file beside `path`, flushes it to the disk and renames it over `path`.
///
/// Returns false when any step fails, keeps the old file unchanged and removes the temporary file. Examples:
/// `path` is a directory, a device or a pipe; the folder or the file is write-protected; the disk is full. A
/// file or folder whose owner has no right to write counts as write-protected, for the superuser too.
/// Follows a symbolic link. Separates a hard link from its other names. The new file gets the permissions of
/// the old one and, if the system allows it, its owner.
bool ReplaceFile(const std::string& path, std::string_view content);

/// Returns the next part of a file; an empty part is the end. A part must stay valid until the next call.
using NextBlock = std::function<std::string_view()>;

/// Does the same for a file that is too large for the memory. A process that is killed between two system calls
/// can leave a temporary file. The next ReplaceFile in this folder removes it when it is older than a day.
bool ReplaceFileInBlocks(const std::string& path, const NextBlock& nextBlock);

/// Replaces a file whose parts are not written in order, for example a header that is written last. The old
/// file stays until Commit. Without Commit it stays for good.
class FileReplacement {
 public:
  /// Returns nullptr when `path` is write-protected.
  static std::unique_ptr<FileReplacement> Begin(const std::string& path);

  FileReplacement() = default;
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  virtual ~FileReplacement() = default;

  /// Writes `bytes` at `position` of the new file. Other bytes are 0. After a failed write, Commit fails too.
  bool Write(std::int64_t position, std::string_view bytes);

  /// Replaces the old file by the new one. Call it once, at the end. Returns false and keeps the old file
  /// when this step or any write before it failed.
  virtual bool Commit() = 0;

 protected:
  bool good_ = true;  // no step has failed so far

 private:
  virtual bool WritePart(std::int64_t position, std::string_view bytes) = 0;
};

enum class Appended {
  Done,
  NotOpened,   // the file may not be written, or cannot be made
  InUse,       // another process extends the file
  NotWritten,  // a step after the opening failed, or the write was stopped
};

/// Keeps other processes, and other locks of this process, from extending a file. The lock ends with the object
/// or with the process.
class FileLock {
 public:
  enum class State {
    Held,
    NoFile,   // there is no file to lock; AppendToFile makes one
    InUse,    // another lock holds the file, and did not release it soon
    Refused,  // the file may not be written
  };

  FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock() { Release(); }

  /// Locks the file `path`. Keeps the lock if it is already on this file, and otherwise releases it first.
  /// Refuses the same files as ReplaceFile. A file system without locks counts as held.
  State Take(const std::string& path);
  void Release();

  /// Does what AppendToFile describes, and keeps the lock on the file.
  Appended Append(const std::string& path, const NextBlock& nextBlock, std::string_view head = {},
                  std::optional<std::int64_t> end = {});

 private:
  int file_ = -1;  // descriptor of the open file
};

/// Appends blocks to the regular file `path`. Then `head` replaces the first bytes of the file; it may not be
/// longer than the old file. The head is written last. So a process that is killed before leaves the old head,
/// and unused bytes after the old end. A missing file is made without the head: it gets its name when all blocks
/// are on the disk.
///
/// When a step fails or the write is stopped, the file has its old length and head. Refuses the same files as
/// ReplaceFile.
/// @param end  end of the file for its reader, if this is not its length; bytes after it are removed
Appended AppendToFile(const std::string& path, const NextBlock& nextBlock, std::string_view head = {},
                      std::optional<std::int64_t> end = {});

}  // namespace zelvane
