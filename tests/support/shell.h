// The output and exit status of a shell command.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace zelvane {

struct ShellResult {
  int status = -1;  // -1 after a signal
  std::string out;
};

inline ShellResult Shell(const std::string& command) {
  ShellResult result;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  std::array<char, 4096> block{};
  while (const std::size_t got = std::fread(block.data(), 1, block.size(), pipe))
    result.out.append(block.data(), got);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  return result;
}

}  // namespace zelvane
