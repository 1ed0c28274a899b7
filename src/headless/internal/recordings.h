// Recordings as the jobs of one line read them: through the bare readers, so that nothing is asked.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zelvane {

struct RecordedInput {
  int number = 0;  // physical input of an ABF, signal of a text from 1, profile of a stimulus from 0
  std::string name;
  std::string units;
  double gain = 1.0;
};

struct RecordingAccount {
  std::string kind;      // "ABF", "OBF", "ATF", "single column", "stimulus"
  double version = 0.0;  // of an ABF
  std::vector<RecordedInput> inputs{};
  double intervalMs = 0.0;  // 0 where the file does not tell it
  int sweeps = 1;
  int samples = 0;  // of one input in the longest sweep
};

/// What a file says of itself. Nothing, with the reason in `why`, when it is no recording.
std::optional<RecordingAccount> AccountOf(const std::string& path, std::string& why);

/// The samples of one sweep, from 1, of one input. Nothing, with the reason in `why`, when there are none.
std::optional<std::vector<float>> SweepOf(const std::string& path, const RecordingAccount& account, int input,
                                          int sweep, std::string& why);

}  // namespace zelvane
