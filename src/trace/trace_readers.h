// The readers of recordings: they ask the open questions about a file and return its samples and facts. They
// do not write the stores.
#pragma once

#include <cstddef>
#include <span>

#include "formats/recording_file.h"
#include "trace/recording_facts.h"

namespace zelvane {

inline constexpr char TruncatedFile[] = "Binary file was truncated to fit into memory.";

enum class Reading {
  Done,     // the destination begins with `facts.points` samples
  Refused,  // after a message or a cancel; the destination is unchanged, and the facts are unused
  Emptied,  // stopped during the read; the facts belong to the new file, and there is no trace
};

/// The source of the answers: the user; a caller, who has set them in the facts (signal, intervalLine,
/// typedIntervalMs); or the first read of the file. In the last case messages are not repeated either.
enum class Questions { Asked, Answered, AsBefore };

/// Channel of a caller that wants the first one.
inline constexpr int FirstChannel = -1;

/// The result of a read. The samples are not part of it: they go straight to their destination, because they
/// may be millions.
struct RecordingRead {
  Reading reading = Reading::Refused;
  RecordingFacts facts{};
  std::size_t kept = 0;  // samples in the destination
};

/// Read episode `facts.episode` of the open file `facts.path`. When it could not be opened or has another
/// form, show a message and return Refused.
RecordingRead ReadBinary(const OpenedRecording& opened, RecordingFacts facts, std::span<float> destination,
                         Questions questions);
RecordingRead ReadText(const OpenedRecording& opened, RecordingFacts facts, std::span<float> destination,
                       Questions questions);

}  // namespace zelvane
