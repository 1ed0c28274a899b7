// A limit on the time of unattended work.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace zelvane {

/// Sets a stop flag after some seconds, as Ctrl-C does. Work that has not ended ten seconds later does not look at
/// the flag: the process then ends with exit status 1. Files are replaced whole, so this harms none.
class TimeLimit {
 public:
  /// @param seconds  above 0
  TimeLimit(double seconds, std::atomic<bool>& stop);

  /// Ends the watch.
  ~TimeLimit() = default;
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;

 private:
  void watch(const std::stop_token& ended, double seconds, std::atomic<bool>& stop);
  bool endsWithin(const std::stop_token& ended, double seconds);

  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::jthread watch_;  // last: it uses the others
};

}  // namespace zelvane
