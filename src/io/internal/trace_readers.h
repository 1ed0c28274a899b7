// What the readers of recordings share.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/outcome.h"
#include "trace/trace_store.h"

namespace zelvane {

/// What came of a read.
enum class Reading {
  Done,     // samples stand at the front of the destination, `Model.NumPoints` of them
  Refused,  // the user has been told or has cancelled; destination and stores are as they were
  Emptied,  // given up half-way; the file fields are those of the new file, and no trace came of it
};

/// Who answers questions: the user; a caller, whose answers stand in `Trace` (RecordedSignal, IntervalLine,
/// TypedInterval); or the answers of the first read of the file, when nothing is told again either.
enum class Questions { Asked, Answered, AsBefore };

Reading ReadBinary(const std::string& path, std::span<float> destination, Questions questions);

/// With Emptied the samples read so far stand at the front of the destination, `kept` of them.
Reading ReadText(std::span<float> destination, const std::string& path, Questions questions,
                 std::size_t& kept);

/// Whether a text of that many samples makes a result.
bool IsResult(int samples);

/// Copies of the file fields and of the run's length and interval; they go back into the stores at the end of
/// its life unless the read was a success.
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

/// `Trace.TraceUnits` from the units of a channel; units of no code leave it.
void TakeTraceUnits(const std::string& units);

/// `Model.ADInterval` from a recording; one that is none, such as 0, is told and the former one stays.
void TakeInterval(float intervalMs);

/// What the information panel tells of an ABF file beside the fields of `Trace` and `Model.ADInterval`.
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
