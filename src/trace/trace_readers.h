// Functions that the readers of recordings share.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/outcome.h"
#include "trace/trace_store.h"

namespace zelvane {

/// The result of a read.
enum class Reading {
  Done,     // the destination begins with `Model.NumPoints` samples
  Refused,  // after a message or a cancel; destination and stores are unchanged
  Emptied,  // stopped during the read; the file fields belong to the new file, and there is no trace
};

/// The source of the answers: the user; a caller, who has set `Trace` (RecordedSignal, IntervalLine,
/// TypedInterval); or the first read of the file. In the last case messages are not repeated either.
enum class Questions { Asked, Answered, AsBefore };

Reading ReadBinary(const std::string& path, std::span<float> destination, Questions questions);

/// With Emptied, the destination begins with the `kept` samples that were read so far.
Reading ReadText(std::span<float> destination, const std::string& path, Questions questions,
                 std::size_t& kept);

/// Returns whether a text with this number of samples is a result.
bool IsResult(int samples);

/// Copies of the file fields and of the length and interval of the run. Its destructor restores them,
/// unless the read succeeded.
class FormerFile {
 public:
  FormerFile();
  ~FormerFile();
  FormerFile(const FormerFile&) = delete;
  FormerFile& operator=(const FormerFile&) = delete;

  void Keep() { kept_ = false; }  // the new fields stay

 private:
  TraceStore trace_;
  int numPoints_ = 0;
  float interval_ = 0.0F;
  int numRuns_ = 0;
  bool kept_ = true;
};

/// Sets `Trace.TraceUnits` from the units of a channel. Does nothing for units without a code.
void TakeTraceUnits(const std::string& units);

/// Sets `Model.ADInterval` from a recording. For an invalid interval such as 0, shows a message and keeps
/// the old one.
void TakeInterval(float intervalMs);

/// Data of an ABF file for the information panel, beside the fields of `Trace` and `Model.ADInterval`.
struct AbfInfo {
  double version = 1.0;
  bool floats = false;
  int autoSample = 1;
  double gainMultiplier = 1.0;
  double programmableGain = 1.0;
  double instrumentGain = 1.0;
  double signalGain = 1.0;
  double scale = 1.0;  // user units per count
  std::string units;
};

/// Writes the lines of the information panel.
void TakeAbfInfo(const AbfInfo& info);

}  // namespace zelvane
