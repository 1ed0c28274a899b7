#include "platform/folders.h"

#include <cstdlib>
#include <filesystem>

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr char ProgramName[] = "zelvane";

/// Returns the value of an environment variable; empty when it is not set.
std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// Returns the folder of the running program.
fs::path ExecutableFolder() {
  std::error_code error;
#if defined(__linux__)
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (!error) return program.parent_path();
#endif
  return fs::current_path(error);
}

bool HoldsData(const fs::path& folder) {
  std::error_code error;
  return fs::is_regular_file(folder / ConfigFileName, error);
}

fs::path& FolderSet() {
  static fs::path folder;
  return folder;
}

}  // namespace

void SetProgramFolder(const std::string& folder) {
  FolderSet() = folder;
}

std::string ProgramFile(std::string_view name) {
  std::error_code error;
  const fs::path own = FolderSet() / name;
  if (!FolderSet().empty() && fs::is_regular_file(own, error)) return own.string();
  return (fs::path(ProgramDataFolder()) / name).string();
}

std::string ProgramDataFolder() {
  if (const std::string told = Environment("ZELVANE_DATA_DIR"); !told.empty()) return told;
  const fs::path program = ExecutableFolder();
  const fs::path installed = (program / ".." / "share" / ProgramName).lexically_normal();
  if (HoldsData(installed)) return installed.string();
  // In a build tree the program is some folders below the one with data/.
  for (fs::path folder = program;; folder = folder.parent_path()) {
    if (HoldsData(folder / "data")) return (folder / "data").string();
    if (!folder.has_relative_path()) return {};
  }
}

std::string UserConfigFolder() {
#if defined(_WIN32)
  const std::string roaming = Environment("APPDATA");
  return roaming.empty() ? "" : (fs::path(roaming) / ProgramName).string();
#else
  const std::string home = Environment("HOME");
#if defined(__APPLE__)
  const fs::path own = home.empty() ? "" : fs::path(home) / "Library" / "Application Support";
#else
  // By the definition of the XDG base directories a path that is not absolute must not be used.
  fs::path own = Environment("XDG_CONFIG_HOME");
  if (!own.is_absolute()) own = home.empty() ? fs::path{} : fs::path(home) / ".config";
#endif
  return own.empty() ? "" : (own / ProgramName).string();
#endif
}

}  // namespace zelvane
