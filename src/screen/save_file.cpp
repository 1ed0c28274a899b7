#include "screen/save_file.h"

#include <functional>

#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char NotWritten[] =
    "%s could not be written: the disk is full or refused the data. An old file with this name is "
    "unchanged.";
constexpr char NotExtended[] =
    "%s could not be extended: the disk is full or refused the data. The file is unchanged.";

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

Outcome OutcomeOf(bool written, bool opened, const char* failure, const std::string& path) {
  if (written) return Outcome::Done;
  if (WriteStopped()) return Outcome::Stopped;
  if (opened) TellAbout(failure, path);
  if (!opened) FileErrorPopup(FileOpenFailed);
  return Outcome::Failed;
}

}  // namespace

Outcome SaveFile(const std::string& path, const NextBlock& nextBlock) {
  Watched blocks{nextBlock};
  const bool written = ReplaceFileInBlocks(path, std::ref(blocks));
  return OutcomeOf(written, blocks.opened, NotWritten, path);
}

Outcome ExtendFile(const std::string& path, const NextBlock& nextBlock, std::string_view head,
                   std::optional<std::int64_t> end) {
  Watched blocks{nextBlock};
  const bool written = AppendToFile(path, std::ref(blocks), head, end);
  return OutcomeOf(written, blocks.opened, NotExtended, path);
}

void TellNotWritten(const std::string& path) {
  if (!WriteStopped()) TellAbout(NotWritten, path);
}

}  // namespace zelvane
