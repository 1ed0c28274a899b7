#include "platform/safe_file.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>
#include <utility>

#if defined(__unix__) || defined(__APPLE__)
#define ZELVANE_POSIX 1
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#else
#include <fstream>
#endif

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr int MaxLinks = 40;  // of a chain of symbolic links, as many as systems follow
constexpr int NameAttempts = 100;

/// The file that `path` means after all symbolic links, whether or not it exists. Nothing for an endless
/// chain.
std::optional<fs::path> LinkTarget(const std::string& path) {
  fs::path target(path);
  std::error_code error;
  for (int link = 0; link < MaxLinks; ++link) {
    if (!fs::is_symlink(target, error)) return target;
    const fs::path next = fs::read_symlink(target, error);
    if (error) return std::nullopt;
    target = target.parent_path() / next;  // an absolute `next` stands alone
  }
  return std::nullopt;
}

fs::path FolderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

bool OwnerMayWrite(const fs::file_status& status) {
  return (status.permissions() & fs::perms::owner_write) != fs::perms::none;
}

/// Whether `target` may be created or replaced, as far as its type and its owner's rights tell.
bool MayBeReplaced(const fs::path& target) {
  std::error_code error;
  if (!target.has_filename()) return false;
  const fs::file_status folder = fs::status(FolderOf(target), error);
  if (!fs::is_directory(folder) || !OwnerMayWrite(folder)) return false;
  const fs::file_status file = fs::status(target, error);
  if (!fs::exists(file)) return file.type() == fs::file_type::not_found;
  return fs::is_regular_file(file) && OwnerMayWrite(file);
}

/// A name for the temporary file that no other process is likely to choose. It is short, so that a target
/// whose own name is as long as the system allows has one too.
fs::path TemporaryName(const fs::path& target) {
  static std::minstd_rand random(
      static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
      std::random_device{}());
  return FolderOf(target) / (".zelvane-" + std::to_string(random()) + ".tmp");
}

#if defined(ZELVANE_POSIX)

bool WriteAll(int file, std::string_view block) {
  while (!block.empty()) {
    const ssize_t written = ::write(file, block.data(), block.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    block.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// Gives the open file the owner and permissions of `target`, where that exists.
void TakeOverRights(int file, const fs::path& target) {
  struct stat old {};
  if (::stat(target.c_str(), &old) != 0) return;
  // Only the superuser may give a file away; anyone else keeps it, as its saver.
  if (::fchown(file, old.st_uid, old.st_gid) != 0) errno = 0;
  if (::fchmod(file, old.st_mode & 07777) != 0) errno = 0;
}

/// A rename is safe on the disk once its folder is. Not every file system can do that.
void FlushFolder(const fs::path& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return;
  ::fsync(handle);
  ::close(handle);
}

/// The name under which the system shows an open file of this process.
std::string DescriptorPath(int file) {
  return "/proc/self/fd/" + std::to_string(file);
}

/// A new file, open for writing, with the permissions that a new file has here. Where the system can, it has
/// no name yet, and `name` stays empty: a process killed now leaves nothing behind.
int CreateTemporary(const fs::path& target, fs::path& name) {
#if defined(O_TMPFILE)
  const int unnamed = ::open(FolderOf(target).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666);
  if (unnamed >= 0 && ::access(DescriptorPath(unnamed).c_str(), F_OK) == 0) return unnamed;
  if (unnamed >= 0) ::close(unnamed);
#endif
  for (int attempt = 0; attempt < NameAttempts; ++attempt) {
    name = TemporaryName(target);
    const int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file >= 0 || errno != EEXIST) return file;
  }
  return -1;
}

/// Gives a file from CreateTemporary a name where it has none. Only a file with a name can take the place of
/// another one.
bool NameTemporary(int file, const fs::path& target, fs::path& name) {
  for (int attempt = 0; name.empty() && attempt < NameAttempts; ++attempt) {
    const fs::path chosen = TemporaryName(target);
    const std::string source = DescriptorPath(file);
    if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, chosen.c_str(), AT_SYMLINK_FOLLOW) == 0)
      name = chosen;
    else if (errno != EEXIST)
      return false;
  }
  return !name.empty();
}

bool Replace(const fs::path& target, const NextBlock& nextBlock) {
  std::error_code error;
  if (fs::exists(target, error) && ::access(target.c_str(), W_OK) != 0) return false;
  fs::path temporary;
  const int file = CreateTemporary(target, temporary);
  if (file < 0) return false;
  bool good = true;
  for (std::string_view block = nextBlock(); good && !block.empty(); block = nextBlock())
    good = WriteAll(file, block);
  TakeOverRights(file, target);
  good = good && ::fsync(file) == 0 && NameTemporary(file, target, temporary);
  good = ::close(file) == 0 && good;
  good = good && ::rename(temporary.c_str(), target.c_str()) == 0;
  if (good) {
    FlushFolder(FolderOf(target));
  } else if (!temporary.empty()) {
    ::unlink(temporary.c_str());
  }
  return good;
}

#else

bool Replace(const fs::path& target, const NextBlock& nextBlock) {
  const fs::path temporary = TemporaryName(target);
  std::error_code error;
  bool good = false;
  {
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    for (std::string_view block = nextBlock(); file && !block.empty(); block = nextBlock()) {
      file.write(block.data(), static_cast<std::streamsize>(block.size()));
    }
    file.close();
    good = file.good();
  }
  if (good) {
    fs::rename(temporary, target, error);
    good = !error;
  }
  if (!good) fs::remove(temporary, error);
  return good;
}

#endif

}  // namespace

bool ReplaceFileInBlocks(const std::string& path, const NextBlock& nextBlock) {
  if (path.find('\0') != std::string::npos) return false;
  const auto target = LinkTarget(path);
  return target && MayBeReplaced(*target) && Replace(*target, nextBlock);
}

bool ReplaceFile(const std::string& path, std::string_view content) {
  return ReplaceFileInBlocks(path, [&content] { return std::exchange(content, {}); });
}

}  // namespace zelvane
