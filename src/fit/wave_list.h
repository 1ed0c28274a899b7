// List files: the names of a model and of pairs of recording and stimulus.
//
// A list file (.lst) is text with one name per line: "LIST", the model file, the number of pairs, then a
// data file and a stimulus file for each pair.
#pragma once

#include <cstddef>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

inline constexpr char WaveListMagic[] = "LIST";

struct WaveListPair {
  std::string data;
  std::string stimulus;
};

/// The contents of a list, with clean names (CleanedName).
struct WaveList {
  std::string model;
  std::vector<WaveListPair> pairs;  // at most MaxFitWaveforms; a missing name is empty or only an extension
  std::string fault{};              // reason to refuse the list, as of TextFault
};

/// Reads a list file. Returns an empty result when its first line does not begin with "LIST". Uses the
/// first 260 bytes of a line. If the number of pairs is missing or below 0, uses 0.
std::optional<WaveList> ReadWaveList(std::ifstream file);

/// Return the position of the file name in a path of this or of another system, and this name.
std::size_t FileNameStart(std::string_view path);
std::string BareFileName(std::string_view path);

/// Cleans a name from a list file: cuts it at the first full stop of the file name and appends the
/// extension. Without `extension` (a data file) keeps the full stop and the three characters after it.
std::string CleanedName(std::string_view line, std::string_view extension);

}  // namespace zelvane
