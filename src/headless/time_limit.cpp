#include "headless/time_limit.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace zelvane {
namespace {

constexpr double Grace = 10.0;   // seconds; a run looks at the flag some 20 times a second
constexpr int EndedByLimit = 1;  // exit status

}  // namespace

TimeLimit::TimeLimit(double seconds, std::atomic<bool>& stop)
    : watch_([this, seconds, &stop](const std::stop_token& ended) { watch(ended, seconds, stop); }) {}

void TimeLimit::watch(const std::stop_token& ended, double seconds, std::atomic<bool>& stop) {
  if (endsWithin(ended, seconds)) return;
  std::fprintf(stderr, "stopped after %g s (--timeout)\n", seconds);
  stop = true;
  if (endsWithin(ended, Grace)) return;
  std::fprintf(stderr, "ended: the work did not stop\n");
  std::_Exit(EndedByLimit);
}

bool TimeLimit::endsWithin(const std::stop_token& ended, double seconds) {
  std::unique_lock lock(mutex_);
  wake_.wait_for(lock, ended, std::chrono::duration<double>(seconds), [] { return false; });
  return ended.stop_requested();
}

}  // namespace zelvane
