#include "platform/start_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <filesystem>

extern char** environ;

namespace zelvane {

bool StartProgram(const std::string& path) {
  if (!std::filesystem::path(path).is_absolute()) return false;
  posix_spawn_file_actions_t streams;
  if (::posix_spawn_file_actions_init(&streams) != 0) return false;
  // The program must not use our streams, where a script may run.
  bool good = true;
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    good = good && ::posix_spawn_file_actions_addopen(&streams, stream, "/dev/null", O_RDWR, 0) == 0;
  std::string name = path;
  std::array<char*, 2> arguments = {name.data(), nullptr};
  pid_t process = 0;
  good = good && ::posix_spawn(&process, path.c_str(), &streams, nullptr, arguments.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&streams);
  return good;
}

}  // namespace zelvane
