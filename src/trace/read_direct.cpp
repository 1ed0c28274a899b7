// The questions and messages of the direct reader of ABF 1.x, which the correction of a file uses.
#include <algorithm>
#include <cmath>
#include <string>

#include "formats/abf/abf_direct.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "trace/recording_facts.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char InvalidAbf[] = " Invalid ABF file.";
constexpr MessageTitle GainTitle{MessageKind::Error, "! File I/O Error"};
constexpr char NoGain[] = "Gain=0\n";
constexpr char NoSamples[] = "%s holds no samples.";
constexpr char PleaseWait[] = "Please wait";

constexpr int ManySamples = 200'000;  // a larger file takes a moment

/// Returns whether the file was opened; otherwise shows the reason.
bool CheckOpened(DirectRefusal refusal) {
  if (refusal == DirectRefusal::Missing) FileErrorPopup(FileOpenFailed);
  if (refusal == DirectRefusal::WrongMark) FileErrorPopup(WrongFileFormat);
  if (refusal == DirectRefusal::NoHeader) MessagePopup(WarningTitle, InvalidAbf);
  return refusal == DirectRefusal::None;
}

void FillFacts(const DirectHeader& header, RecordingFacts& facts) {
  facts.operationMode = header.mode;
  facts.sweepSamples = header.samples;
  facts.totalSamples = header.samples;
  facts.episodes = header.mode == GapFreeMode ? 1 : header.episodes;
  facts.channels = header.channels;
  facts.channel = header.channel;
  facts.adcRange = header.range;
  facts.adcResolution = static_cast<float>(header.resolution);
  SetInterval(facts, header.intervalUs / 1000.0F * static_cast<float>(header.channels));
  SetUnits(facts, header.units);
  facts.finalGain = DirectGain(header);
  if (facts.finalGain == 0.0F) {
    MessagePopup(GainTitle, NoGain);
    facts.finalGain = 1.0F;
  }
}

void FillInfo(const DirectHeader& header, RecordingFacts& facts) {
  AbfInfo info;
  info.version = static_cast<double>(header.version);
  info.floats = header.floats;
  info.autoSample = header.autoSample ? 1 : 0;
  info.gainMultiplier = static_cast<double>(header.gainMultiplier);
  info.programmableGain = static_cast<double>(header.programmable);
  info.instrumentGain = static_cast<double>(header.instrument);
  info.signalGain = static_cast<double>(header.signal);
  info.scale = static_cast<double>(facts.adcRange / (facts.finalGain * facts.adcResolution));
  info.units = header.units;
  facts.infoLines = AbfInfoLines(facts, info);
}

/// Asks with the parse panel for a part of a file that is too long for the trace, or of any file on request.
/// Returns false on cancel.
bool ChoosePart(const DirectHeader& header, RecordingFacts& facts) {
  const int ofChannel = header.samples / header.channels;
  facts.parse.skip = header.channels;
  if (ofChannel > MaxStimPoints) facts.parse.requested = 1;
  if (facts.parse.requested == 0) return true;
  const float most = static_cast<float>(MaxParseCount) * static_cast<float>(header.channels);
  const int skip = static_cast<int>(std::ceil(static_cast<float>(header.samples) / most));
  facts.parse = AskParse(facts.path, ofChannel, skip, facts.intervalMs);
  if (facts.parse.result != 1) return false;
  facts.intervalMs = facts.parse.interval;
  return true;
}

/// Returns the whole channel or, after the parse panel, the chosen part.
DirectPart PartOf(const DirectHeader& header, const ParseSettings& parse) {
  if (parse.requested == 0) return {.count = header.samples / header.channels};
  return {.start = parse.start, .skip = parse.skip, .count = std::min(parse.count, MaxStimPoints)};
}

}  // namespace

bool AbfDirectRead(const std::string& path, std::span<float> destination) {
  DirectAbf abf = OpenDirectAbf(path);
  if (!CheckOpened(abf.refusal)) return false;
  RecordingFacts facts = StoredFacts();
  facts.path = path;
  facts.text = false;
  FillFacts(abf.header, facts);
  if (!ChoosePart(abf.header, facts)) return false;
  const bool slow = abf.header.samples > ManySamples;
  if (slow) ShowProgress(0.0, PleaseWait);
  const std::size_t read =
      ReadDirectSamples(abf, facts.finalGain, PartOf(abf.header, facts.parse), destination);
  if (slow) ResetProgress();
  if (read == 0) {
    MessagePopup(FileErrorTitle, FormatText(NoSamples, FileNameOf(path).c_str()));
    return false;
  }
  facts.points = static_cast<int>(read);
  FillInfo(abf.header, facts);
  StoreRecording(facts);
  return true;
}

}  // namespace zelvane
