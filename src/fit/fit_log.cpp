#include "fit/fit_log.h"

#include <utility>

#include "fit/session_store.h"
#include "model/model_store.h"
#include "platform/safe_file.h"
#include "screen/popups.h"
#include "screen/save_file.h"

namespace zelvane {
namespace {

constexpr std::size_t MostUnwritten = std::size_t{64} * 1024;

NextBlock OneBlock(std::string_view text) {
  return [text]() mutable { return std::exchange(text, {}); };
}

}  // namespace

Outcome OpenFitLog() {
  FitSession.logOpen = false;
  FitSession.logText.clear();
  if (Fit.FitLogOn == 0) return Outcome::Done;
  const std::string start = FormatText("\nSTARTING NEW FIT using: %s\n", Model.ModelFileName.c_str());
  if (AppendToFile(Fit.FitLogFile, OneBlock(start)) != Appended::Done) {
    FileErrorPopup(FileOpenFailed);
    return Outcome::Failed;
  }
  FitSession.logText.reserve(2 * MostUnwritten);
  FitSession.logOpen = true;
  return Outcome::Done;
}

bool FitLogIsOpen() {
  return FitSession.logOpen;
}

void FitLog(std::string_view text) {
  if (!FitSession.logOpen) return;
  FitSession.logText += text;
  if (FitSession.logText.size() >= MostUnwritten) FlushFitLog();
}

void FlushFitLog() {
  if (!FitSession.logOpen || FitSession.logText.empty()) return;
  if (ExtendFile(Fit.FitLogFile, OneBlock(FitSession.logText)) != Outcome::Done) FitSession.logOpen = false;
  FitSession.logText.clear();
}

void CloseFitLog() {
  FlushFitLog();
  FitSession.logOpen = false;
}

}  // namespace zelvane
