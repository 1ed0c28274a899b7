#include "trace/recording_facts.h"

#include <array>
#include <cmath>
#include <string_view>

#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "trace/trace_store.h"

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

RecordingFacts StoredFacts() {
  return {.path = Trace.TraceFileName,
          .text = Trace.TraceIsText != 0,
          .episodes = Trace.EpisodeCount,
          .episode = Trace.EpisodeIndex,
          .sweepSamples = Trace.SweepSamples,
          .totalSamples = Trace.TotalSamples,
          .channels = Trace.RecordedChannels,
          .channel = Trace.RecordedChannel,
          .operationMode = Trace.OperationMode,
          .finalGain = Trace.FinalGain,
          .adcResolution = Trace.AdcResolution,
          .adcRange = Trace.AdcRange,
          .units = Trace.TraceUnits,
          .parse = StoredParse(),
          .signal = Trace.RecordedSignal,
          .intervalLine = Trace.IntervalLine != 0,
          .typedIntervalMs = Trace.TypedInterval,
          .scale = Trace.ScaleFactor,
          .points = Model.NumPoints,
          .intervalMs = Model.ADInterval,
          .runs = Model.NumRuns};
}

void StoreRecording(const RecordingFacts& facts) {
  Trace.TraceFileName = facts.path;
  Trace.TraceIsText = facts.text ? 1 : 0;
  Trace.EpisodeCount = facts.episodes;
  Trace.EpisodeIndex = facts.episode;
  Trace.SweepSamples = facts.sweepSamples;
  Trace.TotalSamples = facts.totalSamples;
  Trace.RecordedChannels = facts.channels;
  Trace.RecordedChannel = facts.channel;
  Trace.OperationMode = facts.operationMode;
  Trace.FinalGain = facts.finalGain;
  Trace.AdcResolution = facts.adcResolution;
  Trace.AdcRange = facts.adcRange;
  Trace.TraceUnits = facts.units;
  if (!facts.infoLines.empty()) Trace.FileInfo = facts.infoLines;
  StoreParse(facts.parse);
  Trace.RecordedSignal = facts.signal;
  Trace.IntervalLine = facts.intervalLine ? 1 : 0;
  Trace.TypedInterval = facts.typedIntervalMs;
  Trace.ScaleFactor = facts.scale;
  Model.NumPoints = facts.points;
  Model.ADInterval = facts.intervalMs;
  Model.NumRuns = facts.runs;
}

void SetUnits(RecordingFacts& facts, const std::string& units) {
  for (const UnitCode& unit : UnitCodes) {
    if (units.starts_with(unit.text)) facts.units = unit.code;
  }
}

void SetInterval(RecordingFacts& facts, float intervalMs) {
  if (std::isfinite(intervalMs) && intervalMs > 0.0F) {
    facts.intervalMs = intervalMs;
    return;
  }
  MessagePopup(WarningTitle,
               FormatText(NoInterval, FileNameOf(facts.path).c_str(), static_cast<double>(facts.intervalMs)));
}

std::vector<std::string> AbfInfoLines(const RecordingFacts& facts, const AbfInfo& info) {
  const auto wide = [](float value) { return static_cast<double>(value); };
  std::vector<std::string> lines = {FormatText("ABF %.2f File", info.version), ModeLine(facts.operationMode),
                                    FormatText("Total number of pts %d", facts.totalSamples),
                                    FormatText("Number of  episodes %d", facts.episodes)};
  if (facts.operationMode != GapFreeMode && facts.operationMode != EpisodicMode) {
    lines.push_back(
        FormatText("Number of samples/episode for non-episodic recording %d", facts.sweepSamples));
  }
  lines.emplace_back(info.floats ? "Data stored as IEEE 4 byte floating point"
                                 : "Data stored as 2 byte integer");
  lines.push_back(FormatText("Number of recording channels %d", facts.channels));
  lines.push_back(FormatText("Digitization interval (ms) %f", wide(facts.intervalMs)));
  lines.push_back(FormatText("AD Range (+-) %.2f Volts", wide(facts.adcRange)));
  lines.push_back(FormatText("Computer AD scale (+-) %.2f computer units\n", wide(facts.adcResolution)));
  lines.push_back(FormatText("Auto sample gain %d", info.autoSample));
  lines.push_back(FormatText("Gain multiplier %f", info.gainMultiplier));
  lines.push_back(FormatText("Programmable gain %f", info.programmableGain));
  lines.push_back(FormatText("Instrument gain %f", info.instrumentGain));
  lines.push_back(FormatText("Signal gain %f", info.signalGain));
  lines.push_back(FormatText("Final overall gain %f", wide(facts.finalGain)));
  lines.push_back(FormatText("scale: %f", info.scale));
  lines.push_back(FormatText("fADCtoUUFactor: %f", info.scale));
  lines.push_back(FormatText("Signal units %s", info.units.c_str()));
  return lines;
}

}  // namespace zelvane
