#include "headless/commands/one_job.h"

#include <chrono>
#include <cmath>
#include <filesystem>
#include <iostream>

#include "app/application.h"
#include "app/stores.h"
#include "formats/input_file.h"
#include "headless/terminal_text.h"
#include "model/model_file.h"
#include "platform/index.h"
#include "platform/terminal.h"
#include "screen/screen.h"
#include "trace/program_random.h"

namespace zelvane {
namespace {

constexpr int BarWidth = 40;  // characters
constexpr double LargestSeed = 2147483647.0;
constexpr Seeds SeedModuli = {30269.0, 30307.0, 30323.0};  // AS 183: multiples of them are fixed points

/// Returns why a file cannot be a model, or an empty string.
std::string WhyUnreadable(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) return "no such file";
  if (std::filesystem::is_directory(status)) return "a folder, not a model file";
  if (!std::filesystem::is_regular_file(status)) return "a pipe or a device, not a model file";
  if (!OpenInput(path)) return "cannot be opened";
  return {};
}

}  // namespace

JobStreams StandardStreams(const std::atomic<bool>& stop) {
  static TerminalBuffer safeOut(*std::cout.rdbuf());
  static TerminalBuffer safeErr(*std::cerr.rdbuf());
  static std::ostream terminalOut(&safeOut);
  static std::ostream terminalErr(&safeErr);
  const bool errIsTerminal = ErrorStreamIsTerminal();
  return {OutputStreamIsTerminal() ? terminalOut : std::cout, errIsTerminal ? terminalErr : std::cerr, &stop,
          errIsTerminal ? &std::cerr : nullptr};
}

bool StopAsked(const JobStreams& streams) {
  return streams.stop != nullptr && streams.stop->load();
}

void TellUnwritten(const std::string& path, const JobStreams& streams) {
  streams.err << path << (StopAsked(streams) ? ": stopped; not written\n" : ": cannot be written\n");
}

JobScreen::JobScreen(const JobStreams& streams) : streams_(streams) {
  FrontEnd frontEnd;
  frontEnd.message = [this](MessageTitle title, std::string_view text) { Message(title.words, text); };
  frontEnd.note = [this](std::string_view sentence) { Message("note", sentence); };
  frontEnd.confirm = [this](std::string_view title, std::string_view text) {
    Message(title, std::string(text) + " (answered no)");
    return false;
  };
  frontEnd.files = [this](const FileRequest& request) {
    Message(request.title, "no file is chosen here (cancelled)");
    return std::vector<std::string>{};
  };
  frontEnd.modal = [this](Panel& panel, std::string_view text) {
    Message(panel.title, std::string(text) + " (cancelled)");
    return false;
  };
  const auto takeStop = [this] {
    if (StopAsked(streams_)) RequestStop();
  };
  frontEnd.pump = takeStop;
  frontEnd.breathe = [takeStop](double) { takeStop(); };  // a point of a run can take minutes
  frontEnd.console = [this](std::string_view line) {
    ClearBar();
    streams_.err << line << '\n';
  };
  frontEnd.progress = [this](double fraction, std::string_view text) { Progress(fraction, text); };
  former_ = SetFrontEnd(std::move(frontEnd));
  formerStop_ = SetWriteStop([this] { return StopAsked(streams_); });
}

JobScreen::~JobScreen() {
  ClearBar();
  SetWriteStop(std::move(formerStop_));
  SetFrontEnd(std::move(former_));
}

void JobScreen::Message(std::string_view title, std::string_view text) {
  ClearBar();
  streams_.err << title << (title.empty() ? "" : ": ") << text << std::endl;
}

void JobScreen::Progress(double fraction, std::string_view text) {
  if (streams_.bar == nullptr) return;
  if (fraction < 0.0) {
    ClearBar();
    return;
  }
  const int full = static_cast<int>(std::min(fraction, 1.0) * BarWidth);
  *streams_.bar << "\r\x1b[K[" << std::string(Index(full), '#') << std::string(Index(BarWidth - full), '.')
                << "] " << static_cast<int>(std::min(fraction, 1.0) * 100.0) << " % " << text << std::flush;
  barShown_ = true;
}

void JobScreen::ClearBar() {
  if (barShown_) *streams_.bar << "\r\x1b[K" << std::flush;
  barShown_ = false;
}

void StartJob(const std::optional<Seeds>& seeds) {
  ClearScreen();
  AllocateStores();
  ResetStores();
  ConnectHooks();
  AddAllPanels();
  Screen.PanelTag = "MN";
  if (seeds) {
    SetSeeds(ProgramRandom, *seeds);
    return;
  }
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  SeedGenerators(ProgramRandom,
                 static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::seconds>(now).count()));
}

Outcome ReadJobModel(const std::string& path, const JobStreams& streams, bool* faulty) {
  std::string reason = WhyUnreadable(path);
  const Outcome read = reason.empty() ? ModelFileReadNamed(path, faulty) : Outcome::Refused;
  if (read != Outcome::Refused) return read;
  if (reason.empty()) reason = "not a model file";
  streams.err << path << ": " << reason << std::endl;
  return read;
}

std::optional<Seeds> ParseSeeds(std::string_view text) {
  Seeds seeds{};
  bool moves = false;
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    const std::size_t comma = text.find(',');
    const bool last = i + 1 == seeds.size();
    if (last != (comma == std::string_view::npos)) return std::nullopt;
    const auto value = ParseNumber(text.substr(0, comma));
    if (!value || *value != std::trunc(*value) || *value < 0.0 || *value > LargestSeed) return std::nullopt;
    seeds[i] = *value;
    moves = moves || std::fmod(*value, SeedModuli[i]) != 0.0;
    if (!last) text.remove_prefix(comma + 1);
  }
  return moves ? std::optional<Seeds>(seeds) : std::nullopt;
}

std::string StateName(int state, const std::string& label) {
  return label.empty() ? std::to_string(state) : label;
}

}  // namespace zelvane
