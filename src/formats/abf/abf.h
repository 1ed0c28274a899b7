// Axon Binary Files: the reader and the writer.
//
//   Reading   IsABFFile  InitializeHeader  OpenABFFile  GetActualSamples  ReadSweep  GetADCScaleFactor
//             CloseABFFile
//   Writing   OldABF_OpenWrite  OldABF_WriteRawSweep  OldABF_UpdateHeader  OldABF_Close
//
// The reader reads versions 1.x and 2.x, 16-bit integers and floats, up to 16 channels in any sampling
// sequence, and gap-free, episodic, fixed-length and variable-length sweeps. The writer writes version 1.83
// with floats. The reader checks every length in a header against the length of the file.
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

/// The header of a recording. The index of an array over channels is the physical input in the sampling
/// sequence.
struct AbfHeader {
  double version = 0.0;  // 1.83, 2.06 ...
  int operationMode =
      3;  // 1 variable-length events, 2 fixed-length events, 3 gap-free, 4 oscilloscope, 5 episodic
  int dataFormat = AbfFloats;
  int channels = 1;
  double sampleInterval = 0.0;         // us between two samples of one channel
  std::int64_t acquisitionLength = 0;  // samples of all channels and sweeps
  std::int64_t announcedSamples = 0;   // count in the header of an incomplete file; else 0
  int episodes = 1;
  int samplesPerEpisode = 0;                           // of all channels, in the longest episode
  int startDate = 0;                                   // YYYYMMDD; 0 unknown
  int startTime = 0;                                   // s since midnight
  int adcResolution = 32768;                           // counts of full scale
  float adcRange = 10.0F;                              // volts of full scale
  std::array<int, AbfMaxChannels> samplingSequence{};  // physical inputs in order; -1 ends it
  // UTF-8 without blanks at the ends. Micro is its sign (U+00B5, "\xC2\xB5" here) or a plain u, as in the
  // file.
  std::array<std::string, AbfMaxChannels> channelName{};
  std::array<std::string, AbfMaxChannels> channelUnits{};
  std::array<float, AbfMaxChannels> scale{};   // user units per count; 1 where the samples are floats
  std::array<float, AbfMaxChannels> offset{};  // user units; 0 where the samples are floats
  std::array<float, AbfMaxChannels> gain{};    // product of all gains with telegraphs; never 0
  // The factors of `gain`, as in the file.
  std::array<float, AbfMaxChannels> programmableGain{};
  std::array<float, AbfMaxChannels> instrumentGain{};  // V per user unit
  std::array<float, AbfMaxChannels> signalGain{};
  std::array<float, AbfMaxChannels> additionalGain{};  // telegraphed by the amplifier; 1 without telegraph
  std::string creator;
};

/// An open recording, made by OpenABFFile. It holds the position of each sweep, but no samples.
struct AbfFile;
struct AbfFileCloser {
  void operator()(AbfFile* file) const;
};
using AbfHandle = std::unique_ptr<AbfFile, AbfFileCloser>;

/// Returns whether the file at `path` begins as an Axon Binary File. Writes the data format to `dataFormat`;
/// AbfIntegers when the format is unknown. OpenABFFile may still refuse the file, because its header is
/// damaged or because it has no samples.
bool IsABFFile(const std::string& path, int& dataFormat);

/// Prepares a header record for writing: one channel of floats on input 0, pA, gap-free.
void InitializeHeader(AbfHeader& header);

/// Opens a recording and fills `header`. Lengths and sweeps are those that the file really contains. On
/// failure (the file is not readable or has no samples) returns nullptr, writes the reason in one sentence to
/// `why` if it is given, and leaves the other arguments unchanged.
/// @param samplesPerSweep  samples of one channel in the longest sweep
/// @param sweepCount       sweeps, at least 1
AbfHandle OpenABFFile(const std::string& path, AbfHeader& header, int& samplesPerSweep, int& sweepCount,
                      std::string* why = nullptr);

/// Writes the number of samples of all channels and sweeps in the file to `samples`. Returns false when the
/// file has no samples.
bool GetActualSamples(const AbfFile& file, std::int64_t& samples);

/// Returns the number of samples of one channel in sweep `sweep` (from 1); 0 for a sweep that does not exist.
int SweepLength(const AbfFile& file, int sweep);

/// Reads a sweep, or a part of a sweep, of one channel, in user units. Reads only the bytes of this part.
/// Does not change the samples of float files, even if they are not numbers.
/// @param channel  physical input in the sampling sequence
/// @param sweep    from 1
/// @param first    first sample of the channel within the sweep
/// @param buffer   its size is the number of samples to read
/// @return number of samples read: 0 for a channel or sweep that does not exist, fewer than the size of
///         `buffer` at the end of the sweep
int ReadSweep(const AbfFile& file, int channel, int sweep, int first, std::span<float> buffer);

/// Writes the user units per count and the offset of one channel to `scale` and `offset`.
bool GetADCScaleFactor(const AbfHeader& header, int channel, float& scale, float& offset);

void CloseABFFile(AbfHandle& file);

// -- Writing. OldABF_Close replaces the target; until then the old file stays --

struct AbfWriter;
struct AbfWriterCloser {
  void operator()(AbfWriter* writer) const;  // drops a writer that was not closed and keeps the old file
};
using AbfWriteHandle = std::unique_ptr<AbfWriter, AbfWriterCloser>;

/// Begins a file with this header: version 1.83, one channel of floats, data at byte 6144. Returns nullptr
/// when the target is not writable.
AbfWriteHandle OldABF_OpenWrite(const std::string& path, const AbfHeader& header);

/// Appends samples in user units: a sweep of an episodic file (operation mode 5), or the next part of a
/// gap-free file (mode 3). Returns false when the write fails, or when there are more samples than the format
/// can count.
bool OldABF_WriteRawSweep(AbfWriter& writer, std::span<const float> samples);

/// Writes the header again, with the present lengths and sweeps of the file instead of those in `header`.
/// Writes the synch array of an episodic file.
bool OldABF_UpdateHeader(AbfWriter& writer, const AbfHeader& header);

/// Replaces the target by the new file. Updates the header first, if necessary. Returns false and keeps the
/// old file when this step or any step before it failed.
bool OldABF_Close(AbfWriteHandle& writer);

/// Returns the 2048 bytes of a header that other programs accept: one channel of floats on input 0. The
/// samples follow directly after the header, without tags and synch array. `header` gives version (1.x),
/// mode (episodic or else gap-free), lengths, episodes, interval, date, time and creator, and the name and
/// units of the first channel in its sampling sequence. The scale of counts is the usual one: 10 V for
/// 32768 counts, gains of 1.
std::array<std::byte, 2048> AbfHeaderBytes(const AbfHeader& header);

}  // namespace zelvane
