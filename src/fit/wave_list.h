// List files: a model and pairs of recording and stimulus, by name.
//
// A list file (.lst) is text, a name a line: "LIST", the model file, the number of pairs, then a data file
// and a stimulus file for each pair.
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

/// What a list says, its names cleaned (CleanedName).
struct WaveList {
  std::string model;
  std::vector<WaveListPair> pairs;  // at most MaxFitWaveforms; names that the file lacks are empty or bare
};

/// Reads a list file. Nothing when its first line does not begin with the magic. Of a line 260 bytes count. A
/// number of pairs that is missing or below 0 is 0.
std::optional<WaveList> ReadWaveList(std::ifstream file);

/// Where the file's own name begins in a path of this system or of another one, and that name.
std::size_t FileNameStart(std::string_view path);
std::string BareFileName(std::string_view path);

/// A name from a list file: cut at the first full stop of the file's name, with the extension put behind it.
/// For a data file, which has no extension given, the full stop and the three characters behind it stay.
std::string CleanedName(std::string_view line, std::string_view extension);

}  // namespace zelvane
