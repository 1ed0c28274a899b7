// Reads ABF 1.x directly from the bytes of its header: the first channel, all episodes one after the other,
// without offsets. Repairs headers that OpenRecordingFile refuses, and divides counts by the product of the
// gains.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <span>
#include <string>

namespace zelvane {

/// Header fields of the first channel.
struct DirectHeader {
  float version = 0.0F;
  int mode = 0;
  int samples = 0;  // all channels and episodes
  int episodes = 1;
  int dataBlock = 4;
  bool floats = false;
  int channels = 1;
  float intervalUs = 0.0F;  // between samples of the multiplexed stream
  float range = 10.24F;
  int resolution = 2048;
  int channel = 0;  // physical input
  std::string units;
  float gainMultiplier = 1.0F;
  bool autoSample = false;
  float programmable = 1.0F;
  float instrument = 1.0F;
  float signal = 1.0F;
  float telegraph = 1.0F;
};

enum class DirectRefusal {
  None,
  Missing,    // the file cannot be opened
  WrongMark,  // it begins with neither "ABF" nor "OBF"
  NoHeader,   // its header is not one of ABF 1.x
};

/// An open file and its header, which is valid only without a refusal.
struct DirectAbf {
  std::ifstream file{};
  DirectHeader header{};
  DirectRefusal refusal = DirectRefusal::None;
};

DirectAbf OpenDirectAbf(const std::string& path);

/// Returns the product of the gains; 0 when it cannot be a divisor.
float DirectGain(const DirectHeader& header);

/// The samples of the channel to read: `count` from `start` on, every `skip`-th.
struct DirectPart {
  std::int64_t start = 0;
  int skip = 1;
  std::int64_t count = 0;
};

/// Reads samples into the front of `destination`, until it is full or the file ends. Divides counts by
/// `gain`, which is not 0, and scales them to the range of the converter.
/// @return number of samples read
std::size_t ReadDirectSamples(DirectAbf& abf, float gain, const DirectPart& part,
                              std::span<float> destination);

}  // namespace zelvane
