// What every reader of recordings leaves in the stores beside the samples.
#include <array>
#include <cmath>
#include <string_view>

#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "trace/trace_readers.h"

namespace zelvane {
namespace {

constexpr char NoInterval[] =
    "%s does not hold the time between its samples. The present interval, %g "
    "ms, stays.";

struct UnitCode {
  std::string_view text;
  int code;
};
constexpr std::array UnitCodes = {UnitCode{"pS", TracePicosiemens},      UnitCode{"pA", TracePicoamps},
                                  UnitCode{"nA", TraceNanoamps},         UnitCode{"mV", TraceMillivolts},
                                  UnitCode{"uV", TraceMicrovolts},       UnitCode{"\xB5V", TraceMicrovolts},
                                  UnitCode{"\xC2\xB5V", TraceMicrovolts}};

std::string ModeLine(int mode) {
  if (mode == GapFreeMode) return FormatText("Gap-free Mode (%d)", mode);
  if (mode == EpisodicMode) return FormatText("Episodic Mode (%d)", mode);
  return FormatText("Non episodic and non gap-free recording mode (%d)", mode);
}

}  // namespace

FormerFile::FormerFile()
    : trace_(Trace), numPoints_(Model.NumPoints), interval_(Model.ADInterval), numRuns_(Model.NumRuns) {}

FormerFile::~FormerFile() {
  if (!kept_) return;
  Trace = trace_;
  Model.NumPoints = numPoints_;
  Model.ADInterval = interval_;
  Model.NumRuns = numRuns_;
}

void TakeTraceUnits(const std::string& units) {
  for (const UnitCode& unit : UnitCodes) {
    if (units.starts_with(unit.text)) Trace.TraceUnits = unit.code;
  }
}

void TakeInterval(float intervalMs) {
  if (std::isfinite(intervalMs) && intervalMs > 0.0F) {
    Model.ADInterval = intervalMs;
    return;
  }
  MessagePopup(WarningTitle, FormatText(NoInterval, FileNameOf(Trace.TraceFileName).c_str(),
                                        static_cast<double>(Model.ADInterval)));
}

void TakeAbfInfo(const AbfInfo& info) {
  const auto wide = [](float value) { return static_cast<double>(value); };
  std::vector<std::string>& lines = Trace.FileInfo;
  lines = {FormatText("ABF %.2f File", info.version), ModeLine(Trace.OperationMode),
           FormatText("Total number of pts %d", Trace.TotalSamples),
           FormatText("Number of  episodes %d", Trace.EpisodeCount)};
  if (Trace.OperationMode != GapFreeMode && Trace.OperationMode != EpisodicMode) {
    lines.push_back(
        FormatText("Number of samples/episode for non-episodic recording %d", Trace.SweepSamples));
  }
  lines.emplace_back(info.floats ? "Data stored as IEEE 4 byte floating point"
                                 : "Data stored as 2 byte integer");
  lines.push_back(FormatText("Number of recording channels %d", Trace.RecordedChannels));
  lines.push_back(FormatText("Digitization interval (ms) %f", wide(Model.ADInterval)));
  lines.push_back(FormatText("AD Range (+-) %.2f Volts", wide(Trace.AdcRange)));
  lines.push_back(FormatText("Computer AD scale (+-) %.2f computer units\n", wide(Trace.AdcResolution)));
  lines.push_back(FormatText("Auto sample gain %d", info.autoSample));
  lines.push_back(FormatText("Gain multiplier %f", info.gainMultiplier));
  lines.push_back(FormatText("Programmable gain %f", info.programmableGain));
  lines.push_back(FormatText("Instrument gain %f", info.instrumentGain));
  lines.push_back(FormatText("Signal gain %f", info.signalGain));
  lines.push_back(FormatText("Final overall gain %f", wide(Trace.FinalGain)));
  lines.push_back(FormatText("scale: %f", info.scale));
  lines.push_back(FormatText("fADCtoUUFactor: %f", info.scale));
  lines.push_back(FormatText("Signal units %s", info.units.c_str()));
}

}  // namespace zelvane
