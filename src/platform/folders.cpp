#include "platform/folders.h"

#include <cstdlib>
#include <filesystem>

#if defined(__APPLE__)
#include <mach-o/dyld.h>

#include <cstdint>
#endif

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr char ProgramName[] = "zelvane";

/// Returns the value of an environment variable; empty when it is not set.
std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// Returns the folder of the running program; empty when the system does not tell it.
fs::path ExecutableFolder() {
  std::error_code error;
#if defined(__linux__)
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (!error) return program.parent_path();
#elif defined(__APPLE__)
  char program[4096];
  std::uint32_t size = sizeof program;
  if (_NSGetExecutablePath(program, &size) == 0) return fs::canonical(program, error).parent_path();
#endif
  return {};
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
  if (!FolderSet().empty() && fs::is_regular_file(own, error)) return fs::absolute(own, error).string();
  // Without any folder the name must not mean a file of the current folder.
  fs::path folder = ProgramDataFolder();
  if (folder.empty()) folder = ExecutableFolder();
  return folder.empty() ? std::string{} : fs::absolute(folder / name, error).string();
}

std::string ProgramDataFolder() {
  if (const std::string told = Environment("ZELVANE_DATA_DIR"); !told.empty()) return told;
  const fs::path program = ExecutableFolder();
  if (program.empty()) return {};
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
