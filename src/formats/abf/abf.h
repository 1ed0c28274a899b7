// Axon Binary Files: what the program asks of a reader and of a writer of recordings.
//
//   Reading   IsABFFile  InitializeHeader  OpenABFFile  GetActualSamples  ReadSweep  GetADCScaleFactor
//             CloseABFFile
//   Writing   OldABF_OpenWrite  OldABF_WriteRawSweep  OldABF_UpdateHeader  OldABF_Close
//
// Read: versions 1.x and 2.x, 16-bit integers and floats, up to 16 channels in any sampling sequence,
// gap-free, episodic, fixed-length and variable-length sweeps. Written: version 1.83 with floats. What a file
// claims is believed only as far as its own length can back it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace zelvane {

inline constexpr int AbfMaxChannels = 16;

/// Codes of AbfHeader::dataFormat.
inline constexpr int AbfIntegers = 0;  // 16-bit counts of the converter
inline constexpr int AbfFloats = 1;    // 32-bit floats in user units

/// What is known of a recording. Arrays over channels are indexed by the physical input that the sampling
/// sequence names.
struct AbfHeader {
  double version = 0.0;  // 1.83, 2.06 ...
  int operationMode =
      3;  // 1 variable-length events, 2 fixed-length events, 3 gap-free, 4 oscilloscope, 5 episodic
  int dataFormat = AbfFloats;
  int channels = 1;
  double sampleInterval = 0.0;         // us between two samples of one channel
  std::int64_t acquisitionLength = 0;  // samples of all channels and sweeps
  std::int64_t announcedSamples = 0;   // as a file counts them that was cut off; 0 for a whole one
  int episodes = 1;
  int samplesPerEpisode = 0;                           // all channels; of the longest one
  int startDate = 0;                                   // YYYYMMDD; 0 unknown
  int startTime = 0;                                   // s since midnight
  int adcResolution = 32768;                           // counts of full scale
  float adcRange = 10.0F;                              // volts of full scale
  std::array<int, AbfMaxChannels> samplingSequence{};  // physical inputs in order; -1 ends it
  // UTF-8 without blanks at the ends. Micro is its sign (U+00B5, "\xC2\xB5" here) or a plain u, as the
  // recording program wrote it.
  std::array<std::string, AbfMaxChannels> channelName{};
  std::array<std::string, AbfMaxChannels> channelUnits{};
  std::array<float, AbfMaxChannels> scale{};   // user units per count; 1 where the samples are floats
  std::array<float, AbfMaxChannels> offset{};  // user units; 0 where the samples are floats
  std::array<float, AbfMaxChannels> gain{};    // product of all gains, telegraphs included; never 0
  // The factors of `gain` as the file has them.
  std::array<float, AbfMaxChannels> programmableGain{};
  std::array<float, AbfMaxChannels> instrumentGain{};  // V per user unit
  std::array<float, AbfMaxChannels> signalGain{};
  std::array<float, AbfMaxChannels> additionalGain{};  // told by the amplifier; 1 without one
  std::string creator;
};

/// An open recording; OpenABFFile makes one. It knows where each sweep lies and holds no samples.
struct AbfFile;
struct AbfFileCloser {
  void operator()(AbfFile* file) const;
};
using AbfHandle = std::unique_ptr<AbfFile, AbfFileCloser>;

/// Whether the file at `path` begins as an Axon Binary File; its data format comes out in `dataFormat`,
/// integers where it cannot be told. OpenABFFile may still refuse it, for a damaged header or for want of
/// samples.
bool IsABFFile(const std::string& path, int& dataFormat);

/// Prepares a header record for writing: one channel of floats on input 0, pA, gap-free.
void InitializeHeader(AbfHeader& header);

/// Opens a recording and fills `header`, with lengths and sweeps as the file truly holds them. Nothing when
/// it cannot be read or holds no samples; `why`, where given, then tells the reason in one sentence, and the
/// other arguments are as they were.
/// @param samplesPerSweep  samples of one channel in the longest sweep
/// @param sweepCount       sweeps, at least 1
AbfHandle OpenABFFile(const std::string& path, AbfHeader& header, int& samplesPerSweep, int& sweepCount,
                      std::string* why = nullptr);

/// Samples of all channels and sweeps that the file truly holds. False when it holds none.
bool GetActualSamples(const AbfFile& file, std::int64_t& samples);

/// Samples of one channel in sweep `sweep`, from 1; 0 for a sweep that does not exist.
int SweepLength(const AbfFile& file, int sweep);

/// Reads one sweep, or a part of it, of one channel, in user units. Only the bytes of that part are read.
/// Samples of float files come as they stand, also where they are no numbers.
/// @param channel  physical input, one of the sampling sequence
/// @param sweep    from 1
/// @param first    sample of the channel within the sweep to begin with
/// @param buffer   as many samples as it holds are read
/// @return samples read; 0 for a channel or sweep that does not exist, fewer than asked at the sweep's end
int ReadSweep(const AbfFile& file, int channel, int sweep, int first, std::span<float> buffer);

/// User units per count and their offset for one channel.
bool GetADCScaleFactor(const AbfHeader& header, int channel, float& scale, float& offset);

void CloseABFFile(AbfHandle& file);

// -- Writing. The target is replaced whole when it is closed; until then the old file stands --

struct AbfWriter;
struct AbfWriterCloser {
  void operator()(AbfWriter* writer) const;  // gives up a writer that was not closed: the old file stands
};
using AbfWriteHandle = std::unique_ptr<AbfWriter, AbfWriterCloser>;

/// Begins a file with that header: version 1.83, one channel of floats, data at byte 6144. Nothing when the
/// target cannot be written.
AbfWriteHandle OldABF_OpenWrite(const std::string& path, const AbfHeader& header);

/// Appends samples in user units: a sweep of an episodic file (operation mode 5), a further part of a
/// gap-free one (mode 3). False when they could not be written or are more than the format can count.
bool OldABF_WriteRawSweep(AbfWriter& writer, std::span<const float> samples);

/// Writes the header back, with the lengths and sweeps that the file now has, whatever `header` says of them.
/// An episodic file gets its synch array.
bool OldABF_UpdateHeader(AbfWriter& writer, const AbfHeader& header);

/// Puts the new file in place of the target, its header written back if it was not since the last sweep.
/// False when that or any step before it failed; the old file then stands.
bool OldABF_Close(AbfWriteHandle& writer);

/// The 2048 bytes of a header that other programs accept: one channel of floats on input 0, which begin right
/// behind it, without tags and synch array. From `header` come version (1.x), mode (episodic or else
/// gap-free), lengths, episodes, interval, date, time, creator, and name and units of the first channel of
/// its sampling sequence. The scale of counts is the customary one of 10 V over 32768 counts with gains of 1.
std::array<std::byte, 2048> AbfHeaderBytes(const AbfHeader& header);

}  // namespace zelvane
