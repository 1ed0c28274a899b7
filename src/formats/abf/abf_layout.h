// What the reader of Axon Binary Files keeps of a file beside its header record: where the samples lie and
// how they fall into sweeps. The header readers fill it; abf_file.cpp reads samples by it.
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
  std::int64_t samples = 0;       // of all channels, all of them inside the file
  std::int64_t announced = 0;     // as the header counts them, when the file has no room for so many; else 0
  // Sweeps of equal length need no list; a file can claim more of them than a list should hold.
  std::int64_t equalLength = 0;    // used while `sweeps` is empty; the last sweep may be shorter
  std::vector<AbfSweep> sweeps{};  // from a synch array, none empty and none beyond `samples`
};

/// A table of pairs (start, length) that tells the sweeps apart.
struct AbfSynchArray {
  std::int64_t block = 0;  // 0: none
  std::int64_t itemBytes = 8;
  std::int64_t items = 0;
};

/// What a header says about its samples and sweeps. Nothing of it is believed unseen.
struct AbfSweepClaims {
  std::int64_t samples = 0;  // of all channels and sweeps
  std::int64_t episodes = 0;
  std::int64_t samplesPerEpisode = 0;  // of all channels
  AbfSynchArray synch{};
};

/// Gains and offsets of one input as the header has them.
struct AbfInputGains {
  float programmable = 1.0F;
  float instrument = 1.0F;  // V per user unit
  float signal = 1.0F;
  float additional = 1.0F;        // telegraph or auto-sample
  float instrumentOffset = 0.0F;  // user units
  float signalOffset = 0.0F;      // user units
};

/// Bytes of a sample.
inline int AbfSampleBytes(const AbfHeader& header) {
  return header.dataFormat == AbfFloats ? 4 : 2;
}

/// Finds the number of samples at `layout.dataPosition` and their sweeps: one in gap-free files, else by the
/// synch array, else sweeps of equal length.
///
/// A claimed number of samples holds where the file is long enough, also in a longer file. Else the header
/// lies, as that of a recording that was broken off, and the samples end at the first of the other `sections`
/// (blocks) behind them or at the end of the file. A synch array that fits before that point is believed
/// before a smaller number. One that does not lie inside the file or has negative lengths is passed over.
void PlanSweeps(const ByteSource& source, const AbfHeader& header, const AbfSweepClaims& claims,
                std::span<const std::int64_t> sections, AbfLayout& layout);

/// Sets gain, scale and offset of one input; range and resolution have to stand in `header` already.
/// A product of gains of 0, or one that is no number, counts as 1; an offset that is none as 0. Every count
/// has a finite value then.
void SetInputScale(AbfHeader& header, int input, const AbfInputGains& gains);

/// Range and resolution of the converter, with the customary values where a header has none.
void SetConverter(AbfHeader& header, float range, std::int32_t resolution);

/// Seconds since midnight; 0 for what is no time of day.
int AbfTimeOfDay(std::int64_t seconds);

/// A date as YYYYMMDD, from that form or from YYMMDD; 0 for what is no date.
int AbfDate(std::int64_t date);

/// Fill `header` and `layout`, the header reader of each version. Samples are not touched.
/// @return empty, or one sentence that says why the file cannot be read
std::string ReadAbf1Header(const ByteSource& source, AbfHeader& header, AbfLayout& layout);
std::string ReadAbf2Header(const ByteSource& source, AbfHeader& header, AbfLayout& layout);

/// Opens a recording from any source; OpenABFFile is this on a file.
AbfHandle OpenAbfSource(std::unique_ptr<ByteSource> source, AbfHeader& header, int& samplesPerSweep,
                        int& sweepCount, std::string* why);

}  // namespace zelvane
