#include "desktop/window/script_player.h"

#include <QString>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "desktop/window/desktop_front_end.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr MessageTitle PlayTitle{MessageKind::Warning, "! Script"};
constexpr char BusyText[] = "A run is in progress.";
constexpr char RefusedText[] = "The script has ended. These commands could not be carried out:\n\n";
constexpr int MostErrors = 12;  // errors that a message shows

/// Returns the objects that report an error, one a line.
std::string ErrorsOf(std::istream& events) {
  std::string errors;
  std::string line;
  int count = 0;
  while (std::getline(events, line)) {
    if (!line.starts_with(R"({"error")")) continue;
    if (++count <= MostErrors) errors += line + '\n';
  }
  if (count > MostErrors) errors += FormatText("and %d more\n", count - MostErrors);
  return errors;
}

}  // namespace

void PlayScript(const QString& path, DesktopFrontEnd& frontEnd) {
  if (Screen.busy > 0) {
    MessagePopup(PlayTitle, BusyText);
    return;
  }
  std::ifstream script(path.toStdString(), std::ios::binary);
  std::error_code error;
  if (!script.is_open() || std::filesystem::is_directory(path.toStdString(), error)) {
    FileErrorPopup(FileOpenFailed);
    return;
  }
  std::stringstream events;
  frontEnd.setUnattended(true);
  frontEnd.playScript(script, events);
  frontEnd.setUnattended(false);
  const std::string errors = ErrorsOf(events);
  if (!errors.empty()) MessagePopup(PlayTitle, RefusedText + errors);
}

}  // namespace zelvane
