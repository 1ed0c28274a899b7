#include "screen/save_file.h"

#include <functional>
#include <utility>

#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char NotWritten[] =
    "%s could not be written: the disk is full or refused the data. An old file with this name is "
    "unchanged.";
constexpr char NotExtended[] =
    "%s could not be extended: the disk is full or refused the data. The file is unchanged.";
constexpr char InUse[] = "%s is in use: another program extends it. Choose another name.";

void TellAbout(std::string text, const std::string& path) {
  MessagePopup(FileErrorTitle, text.replace(text.find("%s"), 2, path));
}

/// Notes whether the first block was asked for; if not, the file could not be opened.
struct Watched {
  const NextBlock& nextBlock;
  bool opened = false;
  std::string_view operator()() {
    opened = true;
    return nextBlock();
  }
};

}  // namespace

Outcome SaveFile(const std::string& path, const NextBlock& nextBlock) {
  Watched blocks{nextBlock};
  if (ReplaceFileInBlocks(path, std::ref(blocks))) return Outcome::Done;
  if (WriteStopped()) return Outcome::Stopped;
  if (blocks.opened) TellAbout(NotWritten, path);
  if (!blocks.opened) FileErrorPopup(FileOpenFailed);
  return Outcome::Failed;
}

Outcome SaveText(const std::string& path, std::string_view text) {
  return SaveFile(path, [&text] { return std::exchange(text, {}); });
}

Outcome ExtendFile(const std::string& path, const NextBlock& nextBlock) {
  return TellAppended(AppendToFile(path, nextBlock), path);
}

Outcome ExtendFile(FileLock& lock, const std::string& path, const NextBlock& nextBlock, std::string_view head,
                   std::optional<std::int64_t> end) {
  return TellAppended(lock.Append(path, nextBlock, head, end), path);
}

Outcome TellAppended(Appended result, const std::string& path) {
  if (result == Appended::Done) return Outcome::Done;
  if (WriteStopped()) return Outcome::Stopped;
  if (result == Appended::NotOpened) FileErrorPopup(FileOpenFailed);
  if (result == Appended::InUse) TellAbout(InUse, path);
  if (result == Appended::NotWritten) TellAbout(NotExtended, path);
  return Outcome::Failed;
}

void TellNotRead(const std::string& path, std::string_view why) {
  const std::string_view name = std::string_view(path).substr(path.find_last_of("/\\") + 1);
  MessagePopup(FileErrorTitle, std::string(name).append(" was not read: ").append(why));
}

void TellNotWritten(const std::string& path) {
  if (!WriteStopped()) TellAbout(NotWritten, path);
}

}  // namespace zelvane
