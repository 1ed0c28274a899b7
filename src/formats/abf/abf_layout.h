// The layout of an Axon Binary File: the position of the samples and their sweeps. The header readers fill
// it; abf_sweeps.cpp uses it to read samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "formats/abf/abf.h"
#include "formats/abf/byte_source.h"

namespace zelvane {

inline constexpr std::int64_t AbfBlockBytes = 512;  // every section pointer counts blocks

inline constexpr int AbfGapFree = 3;  // code of AbfHeader::operationMode

/// One sweep in the multiplexed data, counted in samples of all channels.
struct AbfSweep {
  std::int64_t first = 0;
  std::int64_t length = 0;
};

struct AbfLayout {
  std::int64_t dataPosition = 0;  // bytes
  std::int64_t samples = 0;       // of all channels that are really in the file
  std::int64_t announced = 0;     // count of the header when the file is too short for it; else 0
  // Sweeps of equal length need no list. A damaged header may name too many of them for a list.
  std::int64_t equalLength = 0;    // used while `sweeps` is empty; the last sweep may be shorter
  std::vector<AbfSweep> sweeps{};  // from a synch array; each has samples and ends within `samples`
};

/// A table of the sweeps as pairs (start, length).
struct AbfSynchArray {
  std::int64_t block = 0;  // 0: no synch array
  std::int64_t itemBytes = 8;
  std::int64_t items = 0;
};

/// Numbers of samples and sweeps in a header, before PlanSweeps has checked them.
struct AbfSweepClaims {
  std::int64_t samples = 0;  // of all channels and sweeps
  std::int64_t episodes = 0;
  std::int64_t samplesPerEpisode = 0;  // of all channels
  AbfSynchArray synch{};
};

/// Gains and offsets of one input, as in the header.
struct AbfInputGains {
  float programmable = 1.0F;
  float instrument = 1.0F;  // V per user unit
  float signal = 1.0F;
  float additional = 1.0F;        // telegraph or auto-sample
  float instrumentOffset = 0.0F;  // user units
  float signalOffset = 0.0F;      // user units
};

/// Returns the number of bytes of a sample.
inline int AbfSampleBytes(const AbfHeader& header) {
  return header.dataFormat == AbfFloats ? 4 : 2;
}

/// Finds the number of samples at `layout.dataPosition`, and their sweeps. A gap-free file has one sweep.
/// Other files have the sweeps of the synch array, or sweeps of equal length.
///
/// Uses the number of samples in the header when the file is long enough. Otherwise the header is wrong,
/// for example that of an interrupted recording. Then the samples end at the first of the other `sections`
/// (blocks) after them, or at the end of the file. A synch array that fits before this point has priority
/// over a smaller number. Ignores a synch array that is not inside the file or has negative lengths.
void PlanSweeps(const ByteSource& source, const AbfHeader& header, const AbfSweepClaims& claims,
                std::span<const std::int64_t> sections, AbfLayout& layout);

/// Sets gain, scale and offset of one input. `header` must already have range and resolution. If the
/// product of the gains is 0 or not a number, uses 1. If an offset is not a number, uses 0. So every count
/// has a finite value.
void SetInputScale(AbfHeader& header, int input, const AbfInputGains& gains);

/// Sets range and resolution of the converter. Uses the usual values when the header has no valid ones.
void SetConverter(AbfHeader& header, float range, std::int32_t resolution);

/// Returns the seconds since midnight; 0 for a number that is not a time of day.
int AbfTimeOfDay(std::int64_t seconds);

/// Returns a date as YYYYMMDD, from this form or from YYMMDD; 0 for a number that is not a date.
int AbfDate(std::int64_t date);

/// The header readers of the two versions. Fill `header` and `layout` and read no samples.
/// @return empty on success, else the reason in one sentence
std::string ReadAbf1Header(const ByteSource& source, AbfHeader& header, AbfLayout& layout);
std::string ReadAbf2Header(const ByteSource& source, AbfHeader& header, AbfLayout& layout);

/// Opens a recording from any source. OpenABFFile calls it for a file.
AbfHandle OpenAbfSource(std::unique_ptr<ByteSource> source, AbfHeader& header, int& samplesPerSweep,
                        int& sweepCount, std::string* why);

}  // namespace zelvane
