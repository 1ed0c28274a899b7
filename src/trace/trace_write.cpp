#include "trace/trace_write.h"

#include <algorithm>
#include <filesystem>
#include <span>

#include "formats/abf/abf.h"
#include "formats/number_text.h"
#include "formats/row_blocks.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/abf_stamp.h"
#include "trace/trace_events.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"
#include "trace/trace_write_panels.h"

namespace zelvane {
namespace {

constexpr char AutosaveIsOn[] = "Turn off autosave before reading or writing other datafiles.";
constexpr char NoAutosaveFile[] =
    "Autosave is on, but no file is chosen for it. Switch it off and on again to choose one.";
constexpr char AtfTitle[] = "?";
constexpr char AtfQuestion[] = "Export ASCII in ATF format?";
constexpr MessageTitle RecordingTitle{MessageKind::Error, "Error!"};
constexpr char IsRecording[] =
    " is in integer format, which usually means it is an acquired data file.\nCannot overwrite an acquired "
    "data file";
constexpr char IsSource[] = " is the file that the trace was read from. Choose another name.";
constexpr char Creator[] = "Zelvane v2.0";
constexpr double MicrosecondsPerMs = 1000.0;
constexpr double MsPerSecond = 1000.0;

/// Words of TraceStore::TraceUnits in recordings.
constexpr std::array UnitWords = {"#", "pS", "pA", "Po", "uV", "mV", "nA"};

/// Returns the samples to write: NumPoints, limited for a text file.
std::size_t TextCount() {
  return static_cast<std::size_t>(Model.NumPoints > MaxStimPoints ? MaxPoints : std::max(Model.NumPoints, 0));
}

bool FileExists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

/// Returns whether the file is a recording. If so, shows the message that it will not be overwritten.
bool RefuseRecording(const std::string& path) {
  int format = AbfFloats;
  if (!FileExists(path) || !IsABFFile(path, format) || format != AbfIntegers) return false;
  MessagePopup(RecordingTitle, path + IsRecording);
  return true;
}

AbfHeader HeaderOfTrace() {
  const AbfStamp stamp = StampNow();
  AbfHeader header;
  InitializeHeader(header);
  header.operationMode = GapFreeMode;
  header.acquisitionLength = Model.NumPoints;
  header.samplesPerEpisode = Model.NumPoints;
  header.startDate = stamp.fullDate;
  header.startTime = stamp.seconds;
  header.sampleInterval = MicrosecondsPerMs * static_cast<double>(Model.ADInterval);
  header.channelUnits[0] = UnitWords[static_cast<std::size_t>(
      std::clamp(Trace.TraceUnits, 0, static_cast<int>(UnitWords.size()) - 1))];
  header.creator = Creator;
  return header;
}

/// Returns the saved steps of an adaptive run as an ATF block with blanks.
NextBlock SavedStepBlocks(const TraceSteps& steps) {
  const std::string head =
      "ATF 1.0\n2 2\n\"Type=\"\n\"Comment=\"\n\"Time (s)\" \"" + ShownTraceTitle() + "\"\n";
  return MakeRowBlocks(head, steps.values.size(), [&steps](std::string& text, std::size_t i) {
    AppendExponent(text, steps.timeMs[i] / MsPerSecond);
    text += ' ';
    AppendExponent(text, static_cast<double>(steps.values[i]));
    text += '\n';
  });
}

}  // namespace

bool RefusedByAutosave() {
  if (Model.Autosave != 0) MessagePopup(ErrorTitle, AutosaveIsOn);
  return Model.Autosave != 0;
}

bool RefuseSourceOfTrace(const std::string& path) {
  std::error_code error;
  if (Trace.TraceFromFile == 0 || !std::filesystem::equivalent(path, Trace.TraceFileName, error))
    return false;
  MessagePopup(ErrorTitle, path + IsSource);
  return true;
}

Outcome TraceTextWrite(const std::string& path) {
  const std::span<const float> samples = Trace.SimTrace.first(TextCount());
  if (RefuseSourceOfTrace(path)) return Outcome::Refused;
  if (FileReplacement::Begin(path) == nullptr) {
    FileErrorPopup(FileOpenFailed);
    return Outcome::Failed;
  }
  RunSettingsWanted.Tell();
  const TraceFormat format =
      ConfirmPopup(AtfTitle, AtfQuestion) ? TraceFormat::Atf : TraceFormat::SingleColumn;
  return SaveFile(path, TraceTextBlocks(format, samples, Model.ADInterval, ShownTraceTitle()));
}

Outcome TraceAbfWrite(const std::string& path) {
  if (RefuseRecording(path) || RefuseSourceOfTrace(path)) return Outcome::Refused;
  const AbfHeader header = HeaderOfTrace();
  AbfWriteHandle writer = OldABF_OpenWrite(path, header);
  if (writer == nullptr) {
    FileErrorPopup(FileOpenFailed);
    return Outcome::Failed;
  }
  const auto samples =
      Trace.SimTrace.first(static_cast<std::size_t>(std::clamp(Model.NumPoints, 0, MaxStimPoints)));
  const bool good =
      OldABF_WriteRawSweep(*writer, samples) && OldABF_UpdateHeader(*writer, header) && OldABF_Close(writer);
  if (good) return Outcome::Done;
  TellNotWritten(path);
  return WriteStopped() ? Outcome::Stopped : Outcome::Failed;
}

Outcome AutosaveTextWrite(const std::string& path) {
  const std::size_t count = TextCount();
  if (RefuseSourceOfTrace(path)) return Outcome::Refused;
  RunSettingsWanted.Tell();
  TraceSteps steps;
  StepsToWrite.Tell(steps);
  if (!steps.values.empty())
    return ExtendFile(AutosaveLock(), path, BehindLastLine(path, SavedStepBlocks(steps)));
  const NextBlock column =
      TraceTextBlocks(TraceFormat::SingleColumn, Trace.SimTrace.first(count), Model.ADInterval, {});
  return ExtendFile(AutosaveLock(), path, BehindLastLine(path, column));
}

FileLock& AutosaveLock() {
  static FileLock lock;
  return lock;
}

Outcome AutosaveTrace() {
  if (Trace.AutosaveFileName.empty()) {
    MessagePopup(ErrorTitle, NoAutosaveFile);
    return Outcome::Refused;
  }
  return Model.AutosaveFormat == 0 ? AutosaveTextWrite(Trace.AutosaveFileName)
                                   : AutosaveAbfWrite(Trace.AutosaveFileName);
}

void ConnectAutosave() {
  RunCompleted.Add([](Outcome& saved) {
    if (Model.Autosave != 0)
      saved = FirstNotDone(saved, AutosaveTrace());
    else
      AutosaveLock().Release();
  });
}

}  // namespace zelvane
