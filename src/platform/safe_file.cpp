#include "platform/safe_file.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#if defined(__unix__) || defined(__APPLE__)
#define ZELVANE_POSIX 1
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#else
#include <fstream>
#endif

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr int MaxLinks = 40;  // longest chain of symbolic links, as long as systems follow
constexpr int NameAttempts = 100;
constexpr std::size_t PartBytes = 1 << 20;

WriteStop& StopHook() {
  static WriteStop hook;
  return hook;
}

/// Returns the file of `path` after all symbolic links, whether or not it exists. Returns nullopt for an
/// endless chain.
std::optional<fs::path> LinkTarget(const std::string& path) {
  fs::path target(path);
  std::error_code error;
  for (int link = 0; link < MaxLinks; ++link) {
    if (!fs::is_symlink(target, error)) return target;
    const fs::path next = fs::read_symlink(target, error);
    if (error) return std::nullopt;
    target = target.parent_path() / next;  // an absolute `next` replaces the folder
  }
  return std::nullopt;
}

fs::path FolderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

bool OwnerMayWrite(const fs::file_status& status) {
  return (status.permissions() & fs::perms::owner_write) != fs::perms::none;
}

/// Returns whether the type of `target` and the rights of its owner allow to create or replace it.
bool MayBeReplaced(const fs::path& target) {
  std::error_code error;
  if (!target.has_filename()) return false;
  const fs::file_status folder = fs::status(FolderOf(target), error);
  if (!fs::is_directory(folder) || !OwnerMayWrite(folder)) return false;
  const fs::file_status file = fs::status(target, error);
  if (!fs::exists(file)) return file.type() == fs::file_type::not_found;
  return fs::is_regular_file(file) && OwnerMayWrite(file);
}

/// Returns the file behind `path` if it may be written.
std::optional<fs::path> TargetToWrite(const std::string& path) {
  if (path.find('\0') != std::string::npos) return std::nullopt;
  auto target = LinkTarget(path);
  if (target && !MayBeReplaced(*target)) target.reset();
  return target;
}

constexpr std::string_view TemporaryStart = ".zelvane-";
constexpr std::string_view TemporaryEnd = ".tmp";

/// Returns the number of this process; 0 where the system has none.
long ThisProcess() {
#if defined(ZELVANE_POSIX)
  return ::getpid();
#else
  return 0;
#endif
}

/// Returns a name for the temporary file that another process does not choose. The name is short, so that it is
/// possible even if the name of the target has the largest length.
fs::path TemporaryName(const fs::path& target) {
  static std::minstd_rand random(
      static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
      std::random_device{}());
  std::string name(TemporaryStart);
  name.append(std::to_string(ThisProcess()))
      .append("-")
      .append(std::to_string(random()))
      .append(TemporaryEnd);
  return FolderOf(target) / name;
}

/// How a file is extended.
struct Extension {
  std::string_view head;            // replaces the first bytes
  std::optional<std::int64_t> end;  // end of the file for its reader
};

bool WriteBlocks(FileReplacement& file, const NextBlock& nextBlock) {
  std::int64_t position = 0;
  for (std::string_view block = nextBlock(); !block.empty(); block = nextBlock()) {
    if (!file.Write(position, block)) return false;
    position += static_cast<std::int64_t>(block.size());
  }
  return true;
}

#if defined(ZELVANE_POSIX)

bool WriteAll(int file, std::int64_t position, std::string_view block) {
  while (!block.empty()) {
    const ssize_t written = ::pwrite(file, block.data(), block.size(), position);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    block.remove_prefix(static_cast<std::size_t>(written));
    position += written;
  }
  return true;
}

/// Gives the open file the owner and permissions of `target`, if that exists.
void TakeOverRights(int file, const fs::path& target) {
  struct stat old {};
  if (::stat(target.c_str(), &old) != 0) return;
  // Only the superuser may give a file away; for other users it belongs to the one who saves.
  if (::fchown(file, old.st_uid, old.st_gid) != 0) errno = 0;
  if (::fchmod(file, old.st_mode & 07777) != 0) errno = 0;
}

/// Flushes a folder: a rename is safe on the disk only after this. Not every file system can do it.
void FlushFolder(const fs::path& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return;
  ::fsync(handle);
  ::close(handle);
}

/// Returns the name under which the system shows an open file of this process.
std::string DescriptorPath(int file) {
  return "/proc/self/fd/" + std::to_string(file);
}

/// Returns whether a file is a temporary one that no process needs: older than a day, and its process is gone.
bool IsStray(const fs::directory_entry& entry) {
  constexpr auto LeastAge = std::chrono::hours(24);
  const std::string name = entry.path().filename().string();
  if (!name.starts_with(TemporaryStart) || !name.ends_with(TemporaryEnd)) return false;
  std::error_code error;
  if (entry.symlink_status(error).type() != fs::file_type::regular) return false;
  const auto age = fs::file_time_type::clock::now() - entry.last_write_time(error);
  pid_t process = 0;
  const auto [end, wrong] =
      std::from_chars(name.data() + TemporaryStart.size(), name.data() + name.size(), process);
  const bool gone = wrong != std::errc{} || process <= 0 || (::kill(process, 0) != 0 && errno == ESRCH);
  return !error && age > LeastAge && gone;
}

/// Removes the stray temporary files of a folder, once for each folder.
void RemoveStrays(const fs::path& folder) {
  static std::set<fs::path> done;
  if (!done.insert(folder).second) return;
  std::error_code error;
  std::vector<fs::path> strays;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::end(entry);
       entry.increment(error)) {
    if (IsStray(*entry)) strays.push_back(entry->path());
  }
  for (const fs::path& stray : strays) fs::remove(stray, error);
}

/// Makes a new file, open for writing, with the usual permissions of a new file. If the system allows it, the
/// file has no name yet and `name` stays empty: a process that is killed now leaves nothing behind.
int CreateTemporary(const fs::path& target, fs::path& name) {
#if defined(O_TMPFILE)
  const int unnamed = ::open(FolderOf(target).c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0666);
  if (unnamed >= 0 && ::access(DescriptorPath(unnamed).c_str(), F_OK) == 0) return unnamed;
  if (unnamed >= 0) ::close(unnamed);
#endif
  for (int attempt = 0; attempt < NameAttempts; ++attempt) {
    name = TemporaryName(target);
    const int file = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file >= 0) return file;
    name.clear();
    if (errno != EEXIST) break;
  }
  return -1;
}

class Replacement final : public FileReplacement {
 public:
  explicit Replacement(fs::path target) : target_(std::move(target)) {
    std::error_code error;
    if (fs::exists(target_, error) && ::access(target_.c_str(), W_OK) != 0) return;
    RemoveStrays(FolderOf(target_));
    file_ = CreateTemporary(target_, temporary_);
  }

  ~Replacement() override {
    if (file_ >= 0) ::close(file_);
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
  }

  bool IsOpen() const { return file_ >= 0; }

  bool Commit() override {
    TakeOverRights(file_, target_);
    good_ = Flush() && (Link(target_) || TakePlaceOfTarget());
    if (good_) FlushFolder(FolderOf(target_));
    return good_;
  }

  /// Gives the file its name, unless another process has made a file with this name. Returns the open file.
  Appended CommitNew(int& open) {
    if (!Flush()) return Appended::NotWritten;
    if (!Link(target_)) {
      if (errno == EEXIST) return Appended::InUse;
      if (!TakePlaceOfTarget()) return Appended::NotWritten;
    }
    FlushFolder(FolderOf(target_));
    open = std::exchange(file_, -1);
    return Appended::Done;
  }

  int Descriptor() const { return file_; }

 private:
  bool WritePart(std::int64_t position, std::string_view bytes) override {
    return WriteAll(file_, position, bytes);
  }

  bool Flush() { return good_ && ::fsync(file_) == 0 && !WriteStopped(); }

  /// Gives the file a name that is free.
  bool Link(const fs::path& name) {
    const std::string source = temporary_.empty() ? DescriptorPath(file_) : temporary_.string();
    return ::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
  }

  /// Renames the file over the target. Only a file with a name can replace another one.
  bool TakePlaceOfTarget() {
    for (int attempt = 0; temporary_.empty() && attempt < NameAttempts; ++attempt) {
      const fs::path chosen = TemporaryName(target_);
      if (Link(chosen))
        temporary_ = chosen;
      else if (errno != EEXIST)
        return false;
    }
    if (temporary_.empty() || ::rename(temporary_.c_str(), target_.c_str()) != 0) return false;
    temporary_.clear();
    return true;
  }

  fs::path target_;
  fs::path temporary_;  // empty while the new file has no name
  int file_ = -1;
};

/// Appends to an open file, and then writes `head`, which describes the new contents, over its first bytes.
bool AppendBlocks(int file, std::int64_t length, const NextBlock& nextBlock, std::string_view head) {
  for (std::string_view block = nextBlock(); !block.empty(); block = nextBlock()) {
    if (WriteStopped() || !WriteAll(file, length, block)) return false;
    length += static_cast<std::int64_t>(block.size());
  }
  return WriteAll(file, 0, head) && ::fsync(file) == 0;
}

bool Extend(int file, const fs::path&, const NextBlock& nextBlock, const Extension& extension) {
  const off_t whole = ::lseek(file, 0, SEEK_END);
  const off_t length = extension.end ? std::min<off_t>(*extension.end, whole) : whole;
  std::string oldHead(extension.head.size(), '\0');
  const bool headStands =
      ::pread(file, oldHead.data(), oldHead.size(), 0) == static_cast<ssize_t>(oldHead.size()) &&
      (length == whole || ::ftruncate(file, length) == 0);
  const bool good = headStands && AppendBlocks(file, length, nextBlock, extension.head);
  if (headStands && !good && (::ftruncate(file, length) != 0 || !WriteAll(file, 0, oldHead))) errno = 0;
  return good;
}

/// Waits for a lock for as long as another program needs to append a long run.
bool LockSoon(int file) {
  constexpr int Attempts = 50;
  constexpr auto Pause = std::chrono::milliseconds(10);
  for (int attempt = 0; attempt < Attempts; ++attempt) {
    if (::flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return true;
    std::this_thread::sleep_for(Pause);
  }
  return false;
}

bool IsSameFile(int file, const fs::path& path) {
  struct stat open {};
  struct stat named {};
  return ::fstat(file, &open) == 0 && ::stat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
         open.st_ino == named.st_ino;
}

FileLock::State Lock(const fs::path& target, int& file) {
  file = ::open(target.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return errno == ENOENT ? FileLock::State::NoFile : FileLock::State::Refused;
  if (!LockSoon(file)) return FileLock::State::InUse;
  // Meanwhile another process may have replaced the file.
  return IsSameFile(file, target) ? FileLock::State::Held : FileLock::State::InUse;
}

void Close(int file) {
  ::close(file);
}

/// Makes a file of the blocks and locks it before others can see it.
Appended MakeLocked(const fs::path& target, const NextBlock& nextBlock, int& file) {
  Replacement made(target);
  if (!made.IsOpen()) return Appended::NotOpened;
  LockSoon(made.Descriptor());
  return WriteBlocks(made, nextBlock) ? made.CommitNew(file) : Appended::NotWritten;
}

#else

class Replacement final : public FileReplacement {
 public:
  explicit Replacement(fs::path target) : target_(std::move(target)), temporary_(TemporaryName(target_)) {
    file_.open(temporary_, std::ios::binary | std::ios::trunc);
  }

  ~Replacement() override {
    file_.close();
    std::error_code error;
    fs::remove(temporary_, error);
  }

  bool IsOpen() const { return file_.is_open(); }

  bool Commit() override {
    file_.close();
    if (!good_ || !file_.good() || WriteStopped()) return false;
    std::error_code error;
    fs::rename(temporary_, target_, error);
    return !error;
  }

 private:
  bool WritePart(std::int64_t position, std::string_view bytes) override {
    file_.seekp(position);
    file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file_.good();
  }

  fs::path target_;
  fs::path temporary_;
  std::ofstream file_;
};

// This system has no locks here: a file counts as held while it exists.
bool IsSameFile(int, const fs::path&) {
  return false;
}

void Close(int) {}

FileLock::State Lock(const fs::path& target, int&) {
  std::error_code error;
  return fs::exists(target, error) ? FileLock::State::Held : FileLock::State::NoFile;
}

Appended MakeLocked(const fs::path& target, const NextBlock& nextBlock, int&) {
  Replacement made(target);
  if (!made.IsOpen()) return Appended::NotOpened;
  return WriteBlocks(made, nextBlock) && made.Commit() ? Appended::Done : Appended::NotWritten;
}

bool Extend(int, const fs::path& target, const NextBlock& nextBlock, const Extension& extension) {
  std::error_code error;
  std::uintmax_t length = fs::file_size(target, error);
  if (extension.end && !error && static_cast<std::uintmax_t>(*extension.end) < length) {
    length = static_cast<std::uintmax_t>(*extension.end);
    fs::resize_file(target, length, error);
  }
  std::fstream file(target, std::ios::binary | std::ios::in | std::ios::out);
  std::string oldHead(extension.head.size(), '\0');
  file.read(oldHead.data(), static_cast<std::streamsize>(oldHead.size()));
  if (error || !file) return false;
  file.seekp(0, std::ios::end);
  bool stopped = false;
  for (std::string_view block = nextBlock(); file && !block.empty(); block = nextBlock()) {
    stopped = WriteStopped();
    if (stopped) break;
    file.write(block.data(), static_cast<std::streamsize>(block.size()));
  }
  file.seekp(0);
  file.write(extension.head.data(), static_cast<std::streamsize>(extension.head.size()));
  file.close();
  if (file.good() && !stopped) return true;
  fs::resize_file(target, length, error);
  std::fstream back(target, std::ios::binary | std::ios::in | std::ios::out);
  back.write(oldHead.data(), static_cast<std::streamsize>(oldHead.size()));
  return false;
}

#endif

}  // namespace

WriteStop SetWriteStop(WriteStop stop) {
  return std::exchange(StopHook(), std::move(stop));
}

bool WriteStopped() {
  return StopHook() && StopHook()();
}

bool FileReplacement::Write(std::int64_t position, std::string_view bytes) {
  while (good_ && !bytes.empty()) {
    const std::string_view part = bytes.substr(0, PartBytes);
    good_ = !WriteStopped() && WritePart(position, part);
    position += static_cast<std::int64_t>(part.size());
    bytes.remove_prefix(part.size());
  }
  return good_;
}

std::unique_ptr<FileReplacement> FileReplacement::Begin(const std::string& path) {
  const auto target = TargetToWrite(path);
  if (!target) return nullptr;
  auto replacement = std::make_unique<Replacement>(*target);
  if (!replacement->IsOpen()) return nullptr;
  return replacement;
}

bool ReplaceFileInBlocks(const std::string& path, const NextBlock& nextBlock) {
  const std::unique_ptr<FileReplacement> replacement = FileReplacement::Begin(path);
  return replacement != nullptr && WriteBlocks(*replacement, nextBlock) && replacement->Commit();
}

FileLock::State FileLock::Take(const std::string& path) {
  const auto target = TargetToWrite(path);
  if (target && file_ >= 0 && IsSameFile(file_, *target)) return State::Held;
  Release();
  if (!target) return State::Refused;
  const State state = Lock(*target, file_);
  if (state != State::Held) Release();
  return state;
}

void FileLock::Release() {
  if (file_ >= 0) Close(std::exchange(file_, -1));
}

Appended FileLock::Append(const std::string& path, const NextBlock& nextBlock, std::string_view head,
                          std::optional<std::int64_t> end) {
  const State state = Take(path);
  const auto target = TargetToWrite(path);
  if (!target || state == State::Refused) return Appended::NotOpened;
  if (state == State::InUse) return Appended::InUse;
  if (state == State::NoFile) return MakeLocked(*target, nextBlock, file_);
  return Extend(file_, *target, nextBlock, {head, end}) ? Appended::Done : Appended::NotWritten;
}

Appended AppendToFile(const std::string& path, const NextBlock& nextBlock, std::string_view head,
                      std::optional<std::int64_t> end) {
  return FileLock().Append(path, nextBlock, head, end);
}

bool ReplaceFile(const std::string& path, std::string_view content) {
  return ReplaceFileInBlocks(path, [&content] { return std::exchange(content, {}); });
}

}  // namespace zelvane
