// The program without a display: the command language, and jobs of one line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>

#include "headless/commands/average_command.h"
#include "headless/commands/dose_command.h"
#include "headless/commands/fit_command.h"
#include "headless/commands/measure_command.h"
#include "headless/commands/model_command.h"
#include "headless/commands/q_matrix_command.h"
#include "headless/commands/recording_commands.h"
#include "headless/commands/simulate_command.h"
#include "headless/drive/drive.h"
#include "headless/time_limit.h"
#include "kinetics/monte_carlo.h"
#include "model/model_store.h"
#include "screen/fields.h"
#include "screen/memory_guard.h"

namespace zelvane {
namespace {

/// Returns why an option is no positive finite number, or an empty text.
std::string PositiveFinite(const std::string& text) {
  const auto number = ParseNumber(text);
  return number && std::isfinite(*number) && *number > 0.0 ? std::string() : text + " is no positive number";
}

constexpr char Description[] = "Kinetic schemes of ion channels, without a display.";

constexpr char Examples[] =
    "Examples\n"
    "  zelvane-cli simulate ampa.mod --units pA --out current.atf\n"
    "  zelvane-cli model ampa.mod\n"
    "  zelvane-cli measure cell.abf --set StartAnalysis=20 --out cell.csv\n"
    "  zelvane-cli qmatrix ampa.mod --time 5.5\n"
    "  zelvane-cli fit doses.lst --free KOn[1] KOff[1] --out fitted.mod\n"
    "  echo 'get ModelTitle' | zelvane-cli drive\n\n"
    "zelvane-cli COMMAND --help describes a command.\n"
    "Exit status: 0 done, 1 failed (the reason is on standard error), 2 wrong usage.";

constexpr double LongestTimeout = 1e9;  // seconds

constexpr char DriveText[] = "Run the whole program from a script";

constexpr char SimulateText[] = "Run a model file and print a summary of the response";
constexpr char ModelText[] = "Describe a model file, or convert it to the newest format";

constexpr char QMatrixText[] =
    "Print the Q matrix, relaxation time constants and equilibrium of a model "
    "file";

constexpr char MeasureText[] = "Measure every sweep of a recording";

constexpr char MeasureFooter[] =
    "The settings are those of the analysis panel (docs/manual/measures.md). Without --out the rows go to\n"
    "standard output as comma-separated text. A measure that is not possible is an empty cell. Example:\n"
    "  zelvane-cli measure cell.abf --set BaselineStart=5 --set BaselinePts=50 --set StartAnalysis=20 \\\n"
    "    --set PeakSearchPts=400 --out cell.csv";

constexpr char QMatrixFooter[] =
    "Without --time the command uses the stimulus of the first point, normally the resting one. Example:\n"
    "  zelvane-cli qmatrix ampa.mod --time 5.5 --set AutoValue=1e-4";

constexpr char FitText[] = "Fit the rates of a model to recorded waveforms";
constexpr char FitFooter[] =
    "A list file (.lst) names a model and its pairs of recording and stimulus; --pair names a pair without a list.\n"
    "Rates are named as in drive (KOn[1], KOff[1], TableRate[1][2]) or by their states (K1,2). Without --free and\n"
    "--fixed the flags of the model hold. Ctrl-C ends the fit and keeps the best rates so far. Examples:\n"
    "  zelvane-cli fit doses.lst --limits KOn[1]=1e5:1e8 --restarts 3 --iterations 5000 --out fitted.mod\n"
    "  zelvane-cli fit --model ampa.mod --pair pulse.stm:cell.abf --sweep 3 --starts 20 --seed 1,2,3";

constexpr char InfoText[] = "Describe recordings and stimulus files";
constexpr char ConvertText[] = "Write a recording in another format";
constexpr char ConvertFooter[] =
    "With several sweeps, an ABF file gets one episode per sweep, .atf and .csv get one column per sweep,\n"
    "and a single column gets the sweeps one after the other. Between .stm and .asc, --channel selects the\n"
    "profile: 0 voltage, 1 to 6 drugs. Example:\n"
    "  zelvane-cli convert cell.abf cell.atf --channel 1 --sweep all --every 5";

constexpr char DriveFooter[] =
    "The command reads one command per line from SCRIPT or from standard input. It writes what the program\n"
    "shows to standard output, one JSON object per line. docs/drive.md describes the commands. Example:\n"
    "  printf 'enter NumPoints 20000\\npress AcquireData\\ngraph MainPanel\\n' | zelvane-cli drive\n"
    "Exit status: 0; 1 after --timeout; 2 when a line was not a command or named an item that does not exist.";

constexpr char SimulateFooter[] =
    "A model file brings at least 100000 points; --points sets another number. --set takes the names of the\n"
    "store fields (docs/drive.md): KOn[2], StartOccupancy[1], AutoValue, ModelIs2D (0 runs the table).\n"
    "Ctrl-C stops the run, and no file is written. Examples:\n"
    "  zelvane-cli simulate ampa.mod --simulator adaptive --set AutoValue=1e-4 --out dose.csv\n"
    "Single channels, with their dwell times in single.ops, single.sht and single.lat:\n"
    "  zelvane-cli simulate ampa.mod --simulator montecarlo --channels 100 --seed 1,2,3 --dwells single";

constexpr char ModelFooter[] =
    "Example\n"
    "  zelvane-cli model --upgrade old.mod new.mod\n"
    "reads old.mod in any of the four formats and writes new.mod in the newest format.";

/// Set by Ctrl-C, except in `drive`, and by --timeout. A run reads it when it lets user events through, a writer
/// between the parts of a file.
std::atomic<bool> StopAsked{false};
static_assert(std::atomic<bool>::is_always_lock_free);  // a signal handler may write it

extern "C" void OnInterrupt(int) {
  StopAsked = true;
  std::signal(SIGINT, SIG_DFL);  // a second Ctrl-C ends the process
}

JobStreams Streams() {
  return StandardStreams(StopAsked);
}

struct DriveArguments {
  StartOptions start;
  std::string seeds;
  std::string script;
};

struct ModelArguments {
  std::vector<std::string> files;
  bool upgrade = false;
  bool json = false;
  bool lenient = false;
};

/// Returns the three seeds of a `--seed`. On wrong usage throws an exception of the parser.
std::optional<Seeds> SeedsOf(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const auto seeds = ParseSeeds(text);
  if (!seeds)
    throw CLI::ValidationError("--seed", "three whole numbers split by commas, such as 1234,5678,9012");
  return seeds;
}

int RunDriveCommand(DriveArguments& arguments) {
  arguments.start.seeds = SeedsOf(arguments.seeds);
  const DriveHost host{.stop = &StopAsked};
  if (arguments.script.empty()) return RunDrive(std::cin, std::cout, arguments.start, host);
  std::error_code error;
  std::ifstream script(arguments.script, std::ios::binary);
  if (!script.is_open() || std::filesystem::is_directory(arguments.script, error)) {
    Streams().err << arguments.script << ": cannot be opened\n";
    return JobFailed;
  }
  return RunDrive(script, std::cout, arguments.start, host);
}

int RunModelCommand(const ModelArguments& arguments) {
  if (arguments.files.size() != (arguments.upgrade ? 2U : 1U)) {
    throw CLI::ValidationError(
        "model", arguments.upgrade ? "--upgrade takes OLD.mod and NEW.mod" : "takes one model file");
  }
  if (arguments.upgrade)
    return UpgradeModelCommand(arguments.files[0], arguments.files[1], Streams(), arguments.lenient);
  return ModelCommand(arguments.files[0], arguments.json, Streams(), arguments.lenient);
}

/// Adds an option that takes one of a few words.
CLI::Option* AddWords(CLI::App& app, const char* name, std::string& value,
                      const std::vector<std::string>& words, const char* help) {
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : "|") + word;
  return app.add_option(name, value, help)->check(CLI::IsMember(words).description(""))->type_name(list);
}

/// Returns the position of `word` in `words`, which must hold it.
int IndexOf(const std::vector<std::string>& words, const std::string& word) {
  return static_cast<int>(std::find(words.begin(), words.end(), word) - words.begin());
}

CLI::App* AddDrive(CLI::App& app, DriveArguments& arguments) {
  CLI::App* drive = app.add_subcommand("drive", DriveText)->footer(DriveFooter);
  drive->add_option("--seed", arguments.seeds, "seeds of the random generators; default: from the clock")
      ->type_name("S1,S2,S3");
  drive->add_option("--dir", arguments.start.folder, "program's folder, where config.mod lies")
      ->type_name("FOLDER")
      ->check(CLI::ExistingDirectory.description(""));
  drive->add_option("--open", arguments.start.files, "open a file at the start (may be repeated)")
      ->type_name("FILE")
      ->allow_extra_args(false);
  drive->add_option("SCRIPT", arguments.script, "file of commands; default: standard input")->type_name("");
  return drive;
}

/// The options of `simulate` as words; they are converted after the parse.
struct SimulateArguments {
  SimulateOptions options;
  std::string simulator;
  std::string units;
  std::string seeds;
};

const std::vector<std::string> SimulatorWords = {"fixed", "adaptive", "montecarlo"};
constexpr int SimulatorCodes[] = {FixedStepIntegrator, AdaptiveIntegrator, MonteCarlo};
const std::vector<std::string> UnitWords = {"channels", "pS", "pA", "probability"};
constexpr int UnitCodes[] = {UnitsChannels, UnitsConductance, UnitsCurrent, UnitsProbability};

/// Returns why a word is not a time between points, or an empty string. The time is kept as a 32-bit float.
std::string IntervalFault(const std::string& word) {
  const auto intervalMs = ParseNumber(word);
  const bool good = intervalMs && static_cast<float>(*intervalMs) > 0.0F &&
                    *intervalMs <= static_cast<double>(std::numeric_limits<float>::max());
  return good ? "" : word + " is not a time above 0 ms";
}

CLI::App* AddSimulate(CLI::App& app, SimulateArguments& arguments) {
  CLI::App* simulate = app.add_subcommand("simulate", SimulateText)->footer(SimulateFooter);
  SimulateOptions& options = arguments.options;
  simulate->add_option("MODEL", options.model, "model file (.mod)")->required()->type_name("");
  AddWords(*simulate, "--simulator", arguments.simulator, SimulatorWords, "default: as in the model");
  simulate->add_option("--points", options.points, "points of the run")
      ->check(CLI::Range(1, MaxPoints).description(""))
      ->type_name("N");
  simulate->add_option("--interval", options.intervalMs, "time between points")
      ->check(CLI::Validator(IntervalFault, ""))
      ->type_name("MS");
  AddWords(*simulate, "--units", arguments.units, UnitWords, "of the trace");
  simulate->add_option("--channels", options.channels, "channels")
      ->check(CLI::Range(0, MaxChannelsOfRun).description(""))
      ->type_name("N");
  simulate->add_option("--runs", options.runs, "runs of a Monte Carlo simulation")
      ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""))
      ->type_name("N");
  simulate->add_option("--set", options.settings, "set any store field (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  simulate
      ->add_option("--seed", arguments.seeds,
                   "seeds of the random generators; default: from the "
                   "clock")
      ->type_name("S1,S2,S3");
  simulate
      ->add_option("--stimulus", options.stimulusFile,
                   "take the stimulus, its interval and points from a file")
      ->type_name("FILE.stm");
  simulate
      ->add_option("--autosave", options.autosaveFile, "append the run to a file: .abf, or a column of text")
      ->type_name("FILE");
  simulate->add_option("--out", options.traceFile, "write the trace: .txt, .atf or .csv")->type_name("FILE");
  simulate->add_option("--mean", options.meanFile, "write the mean over the runs, in the same formats")
      ->type_name("FILE");
  simulate
      ->add_option("--occupancy", options.occupancyFile, "write the occupancies of the states that are on")
      ->type_name("FILE.csv");
  simulate
      ->add_option("--dwells", options.dwellFile,
                   "write open times, closed times and latencies: .ops, .sht, .lat")
      ->type_name("FILE");
  simulate->add_flag("--json", options.json, "print the summary as one JSON object");
  return simulate;
}

int RunSimulateCommand(SimulateArguments& arguments) {
  SimulateOptions& options = arguments.options;
  options.seeds = SeedsOf(arguments.seeds);
  if (!arguments.simulator.empty()) {
    options.simulator = SimulatorCodes[IndexOf(SimulatorWords, arguments.simulator)];
  }
  if (!arguments.units.empty()) options.units = UnitCodes[IndexOf(UnitWords, arguments.units)];
  return SimulateCommand(options, Streams());
}

CLI::App* AddModel(CLI::App& app, ModelArguments& arguments) {
  CLI::App* model = app.add_subcommand("model", ModelText)->footer(ModelFooter);
  model->add_option("MODEL", arguments.files, "MODEL.mod, or with --upgrade OLD.mod NEW.mod")
      ->required()
      ->type_name("");
  model->add_flag("--upgrade", arguments.upgrade, "write the newest format");
  model->add_flag("--json", arguments.json, "print the description as one JSON object");
  model->add_flag("--lenient", arguments.lenient,
                  "accept a file that ends early or has words in place of numbers; without this option the "
                  "exit status is 1");
  return model;
}

/// Returns why a word is not a time in the stimulus, or an empty string.
std::string TimeFault(const std::string& word) {
  const auto timeMs = ParseNumber(word);
  return timeMs && *timeMs >= 0.0 && *timeMs < 1e30 ? "" : word + " is not a time of 0 ms or more";
}

CLI::App* AddQMatrix(CLI::App& app, QMatrixOptions& options) {
  CLI::App* qmatrix = app.add_subcommand("qmatrix", QMatrixText)->footer(QMatrixFooter);
  qmatrix->add_option("MODEL", options.model, "model file (.mod)")->required()->type_name("");
  qmatrix->add_option("--time", options.timeMs, "time of the stimulus")
      ->check(CLI::Validator(TimeFault, ""))
      ->type_name("MS");
  qmatrix->add_option("--set", options.settings, "set any store field (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  qmatrix->add_flag("--json", options.json, "print all results as one JSON object");
  return qmatrix;
}

struct InfoArguments {
  std::vector<std::string> files;
  bool json = false;
  std::optional<double> intervalMs;
};

constexpr char TextInterval[] =
    "time between the samples of a text without an interval; without this\noption the first line of a "
    "single column is the interval";

void AddTextInterval(CLI::App& app, std::optional<double>& intervalMs) {
  app.add_option("--interval", intervalMs, TextInterval)
      ->check(CLI::Validator(IntervalFault, ""))
      ->type_name("MS");
}

CLI::App* AddInfo(CLI::App& app, InfoArguments& arguments) {
  CLI::App* info = app.add_subcommand("info", InfoText);
  info->add_option("FILE", arguments.files, "recordings and stimulus files")->required()->type_name("");
  info->add_flag("--json", arguments.json, "print one JSON object per file");
  AddTextInterval(*info, arguments.intervalMs);
  return info;
}

CLI::App* AddConvert(CLI::App& app, ConvertOptions& options) {
  CLI::App* convert = app.add_subcommand("convert", ConvertText)->footer(ConvertFooter);
  convert->add_option("IN", options.in, "recording or stimulus file")->required()->type_name("");
  convert->add_option("OUT", options.out, "new file: .atf, .txt or .asc, .csv, .abf, .stm")
      ->required()
      ->type_name("");
  convert->add_option("--channel", options.channel, "number of a channel as in info; default: the first")
      ->type_name("N");
  convert->add_option("--sweep", options.sweep, "number of a sweep from 1, or all; default: the first")
      ->type_name("N|all");
  convert->add_option("--start", options.startMs, "begin at this time of a sweep")->type_name("MS");
  convert->add_option("--length", options.lengthMs, "take at most this length of a sweep")->type_name("MS");
  convert->add_option("--every", options.every, "keep every n-th sample")->type_name("N");
  AddTextInterval(*convert, options.intervalMs);
  return convert;
}

/// The options of `measure` as words; they are converted after the parse.
struct MeasureArguments {
  MeasureOptions options;
  std::string sweeps;
  std::string fit;
  std::string seeds;
};

const std::vector<std::string> ExponentialWords = {"none", "1", "2", "rise"};  // by their FitMode

CLI::App* AddMeasure(CLI::App& app, MeasureArguments& arguments) {
  CLI::App* measure = app.add_subcommand("measure", MeasureText)->footer(MeasureFooter);
  MeasureOptions& options = arguments.options;
  measure->add_option("FILE", options.file, "recording: ABF, ATF or a column of numbers")
      ->required()
      ->type_name("");
  measure->add_option("--channel", options.channel, "channel of an ABF file, signal of a text")
      ->type_name("N");
  AddTextInterval(*measure, options.intervalMs);
  measure->add_option("--sweeps", arguments.sweeps, "sweeps to measure; default: all")->type_name("A-B");
  measure->add_option("--settings", options.model, "take the analysis settings from this model file")
      ->type_name("MODEL.mod");
  measure->add_option("--set", options.settings, "set any store field (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  AddWords(*measure, "--fit", arguments.fit, ExponentialWords, "fit exponentials: one decay, two, or a rise");
  const auto count = CLI::Range(1, 1'000'000'000).description("");
  measure
      ->add_option("--fit-start", options.fitStart,
                   "skip samples after the peak, or after the foot of a rise")
      ->check(CLI::Range(0, 1'000'000'000).description(""))
      ->type_name("N");
  measure->add_option("--fit-points", options.fitPoints, "points of the fit")->check(count)->type_name("N");
  measure->add_option("--fit-every", options.fitEvery, "samples between its points")
      ->check(count)
      ->type_name("N");
  measure
      ->add_option("--seed", arguments.seeds,
                   "seeds of the starting values of a fit; default: always the same")
      ->type_name("S1,S2,S3");
  measure->add_option("--filter", options.filterKHz, "filter first, with a Gaussian filter of this corner")
      ->type_name("KHZ");
  measure->add_flag("--rscm", options.correct,
                    "correct for series resistance, with the settings of the "
                    "model");
  measure->add_option("--out", options.outFile, "write the rows: .csv, .res or .tbl")->type_name("FILE");
  measure->add_flag("--json", options.json, "print the rows as one JSON object");
  return measure;
}

int RunMeasureCommand(MeasureArguments& arguments) {
  if (!arguments.sweeps.empty()) {
    const auto sweeps = ParseSweeps(arguments.sweeps);
    if (!sweeps) throw CLI::ValidationError("--sweeps", "two sweeps from 1, such as 3-10, or one");
    arguments.options.sweeps = *sweeps;
  }
  if (!arguments.fit.empty()) arguments.options.fit = IndexOf(ExponentialWords, arguments.fit);
  arguments.options.seeds = SeedsOf(arguments.seeds);
  return MeasureCommand(arguments.options, Streams());
}

/// The options of `fit` as words; they are converted after the parse.
struct FitArguments {
  FitOptions options;
  std::vector<std::string> pairs;
  std::string form;
  std::string seeds;
};

const std::vector<std::string> FormWords = {"table", "grid"};

void AddFitRows(CLI::App& fit, FitOptions& options) {
  fit.add_option("--free", options.free, "these rates are free, all others fixed")->type_name("RATE...");
  fit.add_option("--fixed", options.fixed, "these rates are fixed, all others free")->type_name("RATE...");
  fit.add_option("--limits", options.limits, "limits of rates")->type_name("RATE=LO:HI...");
  fit.add_option("--set", options.settings, "set any store field (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
}

void AddFitRun(CLI::App& fit, FitArguments& arguments) {
  FitOptions& options = arguments.options;
  const auto count = CLI::Range(1, 1'000'000).description("");
  AddWords(fit, "--form", arguments.form, FormWords, "form of the scheme; default: as in the model");
  fit.add_option("--restarts", options.restarts, "runs of the simplex")->check(count)->type_name("N");
  fit.add_option("--iterations", options.iterations, "most accepted steps of a run")
      ->check(count)
      ->type_name("N");
  fit.add_option("--tolerance", options.tolerance, "spread of the residuals at which a run has converged")
      ->check(PositiveFinite)
      ->type_name("T");
  fit.add_option("--starts", options.starts, "repeat from the same rates with other seeds, and compare")
      ->check(count)
      ->type_name("K");
  fit.add_option("--seed", arguments.seeds, "seeds of the random generators; default: from the clock")
      ->type_name("S1,S2,S3");
  fit.add_flag("--normalize", options.normalize, "normalise all waveforms to the first");
  fit.add_flag("--step-up", options.stepUp, "lengthen a short integration step to half the interval");
  fit.add_flag("--any-interval", options.anyInterval,
               "fit although the intervals of data and stimuli differ");
}

CLI::App* AddFit(CLI::App& app, FitArguments& arguments) {
  CLI::App* fit = app.add_subcommand("fit", FitText)->footer(FitFooter);
  FitOptions& options = arguments.options;
  fit->add_option("LIST", options.list, "list file (.lst)")->type_name("");
  fit->add_option("--pair", arguments.pairs, "a stimulus and a recording (may be repeated)")
      ->type_name("STIM.stm:DATA")
      ->allow_extra_args(false);
  fit->add_option("--model", options.model, "model to fit; default: that of the list")
      ->type_name("MODEL.mod");
  fit->add_option("--sweep", options.sweep, "sweep of the recordings of the pairs; default: the first")
      ->type_name("N");
  fit->add_option("--channel", options.channel, "their channel; default: the first")->type_name("N");
  AddTextInterval(*fit, options.intervalMs);
  AddFitRows(*fit, options);
  AddFitRun(*fit, arguments);
  fit->add_option("--out", options.outFile, "write the model with the best rates")->type_name("BEST.mod");
  fit->add_option("--curves", options.curvesFile, "write the compared curves")->type_name("X.fit");
  fit->add_option("--log", options.logFile, "append to a log of the fit")->type_name("X.log");
  fit->add_flag("--json", options.json, "print the results as one JSON object");
  return fit;
}

/// Splits "STIM.stm:DATA" behind the extension of the stimulus, because a path may have colons.
FitPair PairOf(const std::string& text) {
  const std::size_t end = text.find(".stm:");
  if (end == std::string::npos) throw CLI::ValidationError("--pair", "takes STIM.stm:DATA, not " + text);
  return {text.substr(0, end + 4), text.substr(end + 5)};
}

int RunFitCommand(FitArguments& arguments) {
  FitOptions& options = arguments.options;
  options.seeds = SeedsOf(arguments.seeds);
  if (!arguments.form.empty()) options.form = IndexOf(FormWords, arguments.form);
  for (const std::string& pair : arguments.pairs) options.pairs.push_back(PairOf(pair));
  return FitCommand(options, Streams());
}

constexpr char AverageText[] = "Average the sweeps of recordings";
constexpr char AverageFooter[] =
    "Each sweep is laid on the first one: by the best fit of its rise to the average so far (fit), at a time (free, with\n"
    "--at), at its steepest rise (rise), at its peak (peak), or as it lies (none). Settings of the measures are WaveBaselineStart,\n"
    "WaveBaselinePts, WaveStartAnalysis, WavePeakSearchPts (docs/manual/averages.md). Example:\n"
    "  zelvane-cli average cell1.abf cell2.abf --set WaveStartAnalysis=20 --out mean.atf --variance variance.csv";

/// The options of `average` as words; they are converted after the parse.
struct AverageArguments {
  AverageOptions options;
  std::string align;
  std::string sweeps;
};

const std::vector<std::string> AlignWords = {"fit", "free", "rise", "peak", "none"};  // by their code, from 1

CLI::App* AddAverage(CLI::App& app, AverageArguments& arguments) {
  CLI::App* average = app.add_subcommand("average", AverageText)->footer(AverageFooter);
  AverageOptions& options = arguments.options;
  average->add_option("FILE", options.files, "recordings: ABF, ATF or columns of numbers")
      ->required()
      ->type_name("");
  AddWords(*average, "--align", arguments.align, AlignWords, "what lays a sweep on the first; default: fit");
  average->add_option("--at", options.cursorMs, "time of the alignment free")->type_name("MS");
  average->add_option("--channel", options.channel, "channel of an ABF file, signal of a text")
      ->type_name("N");
  AddTextInterval(*average, options.intervalMs);
  average->add_option("--sweeps", arguments.sweeps, "sweeps of each file; default: all")->type_name("A-B");
  average->add_flag("--subtract-baseline", options.subtractBaseline, "subtract the baseline of each sweep");
  average->add_option("--settings", options.model, "take settings from this model file")
      ->type_name("MODEL.mod");
  average->add_option("--set", options.settings, "set any store field (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  average->add_option("--out", options.outFile, "write the mean: .atf, .csv, .txt")->type_name("FILE");
  average->add_option("--variance", options.varianceFile, "write mean and variance at each time")
      ->type_name("FILE.csv");
  average->add_flag("--json", options.json, "print the summary as one JSON object");
  return average;
}

int RunAverageCommand(AverageArguments& arguments) {
  if (!arguments.align.empty()) arguments.options.align = 1 + IndexOf(AlignWords, arguments.align);
  if (!arguments.sweeps.empty()) {
    const auto sweeps = ParseSweeps(arguments.sweeps);
    if (!sweeps) throw CLI::ValidationError("--sweeps", "two sweeps from 1, such as 3-10, or one");
    arguments.options.sweeps = *sweeps;
  }
  return AverageCommand(arguments.options, Streams());
}

constexpr char DoseText[] = "Simulate a concentration-response curve of a model and fit it";
constexpr char DoseFooter[] =
    "The command scales the stimulus of a drug so that its largest sample is the dose, one run for each dose, and fits\n"
    "the Hill equation to the responses. Examples:\n"
    "  zelvane-cli dose ampa.mod --concentrations 1e-6:1e-2:13 --out curve.csv\n"
    "  zelvane-cli dose ampa.mod --concentrations 0,1e-5,1e-4,1e-3 --measure steady --json";
constexpr char BatchText[] = "Run a model with each stimulus file of a script";
constexpr char BatchFooter[] =
    "A script (.ms) begins with MULTISTIM, then has a line with the number of files and the profile that carries the\n"
    "dose (0 voltage, 1 to 6 drugs), then a name a line. --out gets the trace of each run and doses.csv. Example:\n"
    "  zelvane-cli batch doses.ms --model ampa.mod --out results";

/// The options of `dose` as words; they are converted after the parse.
struct DoseArguments {
  DoseOptions options;
  std::string concentrations;
  std::string measure;
  std::string seeds;
};

const std::vector<std::string> DoseMeasureWords = {"peak", "steady", "area"};  // by their code

CLI::App* AddDose(CLI::App& app, DoseArguments& arguments) {
  CLI::App* dose = app.add_subcommand("dose", DoseText)->footer(DoseFooter);
  DoseOptions& options = arguments.options;
  dose->add_option("MODEL", options.model, "model file (.mod)")->required()->type_name("");
  dose->add_option(
          "--concentrations", arguments.concentrations,
          "doses in M, or N of them with equal ratios; default: four decades around that of the stimulus")
      ->type_name("A,B,...|LO:HI:N");
  AddWords(*dose, "--measure", arguments.measure, DoseMeasureWords, "what is measured; default: peak");
  dose->add_option("--drug", options.drug, "drug whose stimulus is scaled; default: 1")
      ->check(CLI::Range(1, MaxDrugs).description(""))
      ->type_name("N");
  dose->add_option("--points", options.points, "points of each run")
      ->check(CLI::Range(1, MaxPoints).description(""))
      ->type_name("N");
  dose->add_option("--set", options.settings, "set any store field (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  dose->add_option("--seed", arguments.seeds, "seeds of the random generators; default: from the clock")
      ->type_name("S1,S2,S3");
  dose->add_option("--out", options.outFile, "write doses, responses and curve")->type_name("FILE.csv");
  dose->add_flag("--json", options.json, "print the results as one JSON object");
  return dose;
}

int RunDoseCommand(DoseArguments& arguments) {
  DoseOptions& options = arguments.options;
  if (!arguments.concentrations.empty()) {
    const auto doses = ParseConcentrations(arguments.concentrations);
    if (!doses)
      throw CLI::ValidationError("--concentrations",
                                 "1 to 100 concentrations of 0 or above, such as 1e-6,1e-5 or 1e-6:1e-2:13");
    options.concentrations = *doses;
  }
  if (!arguments.measure.empty()) options.measure = IndexOf(DoseMeasureWords, arguments.measure);
  options.seeds = SeedsOf(arguments.seeds);
  return DoseCommand(options, Streams());
}

/// The options of `batch`, and its seeds as words.
struct BatchArguments {
  BatchOptions options;
  std::string seeds;
};

CLI::App* AddBatch(CLI::App& app, BatchArguments& arguments) {
  CLI::App* batch = app.add_subcommand("batch", BatchText)->footer(BatchFooter);
  BatchOptions& options = arguments.options;
  batch->add_option("SCRIPT", options.script, "script of stimulus files (.ms)")->required()->type_name("");
  batch->add_option("--model", options.model, "model file (.mod)")->required()->type_name("MODEL.mod");
  batch->add_option("--out", options.outFolder, "write the traces and doses.csv into this folder")
      ->type_name("FOLDER");
  batch->add_option("--set", options.settings, "set any store field (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  batch->add_option("--seed", arguments.seeds, "seeds of the random generators; default: from the clock")
      ->type_name("S1,S2,S3");
  batch->add_flag("--json", options.json, "print the results as one JSON object");
  return batch;
}

int RunBatchCommand(BatchArguments& arguments) {
  arguments.options.seeds = SeedsOf(arguments.seeds);
  return BatchCommand(arguments.options, Streams());
}

/// Gives every command a limit on its time.
void AddTimeouts(CLI::App& app, std::optional<double>& seconds) {
  const auto fault = [](const std::string& word) -> std::string {
    const auto value = ParseNumber(word);
    return value && *value > 0.0 && *value <= LongestTimeout ? ""
                                                             : word + " is not a number of seconds above 0";
  };
  for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
    command->add_option("--timeout", seconds, "stop after this time; nothing half done is written")
        ->check(CLI::Validator(fault, ""))
        ->type_name("S");
  }
}

int RunCli(int argc, char** argv) {
  CLI::App app(Description, "zelvane-cli");
  app.set_version_flag("--version", "zelvane-cli " ZELVANE_VERSION);
  app.footer(Examples);
  app.require_subcommand(1);
  DriveArguments driveArguments;
  SimulateArguments simulateArguments;
  ModelArguments modelArguments;
  QMatrixOptions qMatrixOptions;
  const CLI::App* drive = AddDrive(app, driveArguments);
  const CLI::App* simulate = AddSimulate(app, simulateArguments);
  const CLI::App* qmatrix = AddQMatrix(app, qMatrixOptions);
  InfoArguments infoArguments;
  ConvertOptions convertOptions;
  const CLI::App* info = AddInfo(app, infoArguments);
  const CLI::App* convert = AddConvert(app, convertOptions);
  FitArguments fitArguments;
  const CLI::App* fit = AddFit(app, fitArguments);
  MeasureArguments measureArguments;
  const CLI::App* measure = AddMeasure(app, measureArguments);
  DoseArguments doseArguments;
  BatchArguments batchArguments;
  AverageArguments averageArguments;
  const CLI::App* average = AddAverage(app, averageArguments);
  const CLI::App* dose = AddDose(app, doseArguments);
  const CLI::App* batch = AddBatch(app, batchArguments);
  AddModel(app, modelArguments);
  std::optional<double> timeout;
  AddTimeouts(app, timeout);
  if (argc < 2) {
    std::cerr << app.help();
    return JobMisused;
  }
  try {
    app.parse(argc, argv);
    std::optional<TimeLimit> limit;
    if (timeout) limit.emplace(*timeout, StopAsked);
    if (drive->parsed()) return RunDriveCommand(driveArguments);
    std::signal(SIGINT, OnInterrupt);
    if (info->parsed())
      return InfoCommand(infoArguments.files, infoArguments.json, Streams(), infoArguments.intervalMs);
    if (convert->parsed()) return ConvertCommand(convertOptions, Streams());
    if (fit->parsed()) return RunFitCommand(fitArguments);
    if (measure->parsed()) return RunMeasureCommand(measureArguments);
    if (average->parsed()) return RunAverageCommand(averageArguments);
    if (dose->parsed()) return RunDoseCommand(doseArguments);
    if (batch->parsed()) return RunBatchCommand(batchArguments);
    if (qmatrix->parsed()) return QMatrixCommand(qMatrixOptions, Streams());
    return simulate->parsed() ? RunSimulateCommand(simulateArguments) : RunModelCommand(modelArguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error, Streams().out, Streams().err) == 0 ? JobDone : JobMisused;
  } catch (const std::bad_alloc&) {
    const auto commands = app.get_subcommands();
    std::cerr << "Not enough memory for "
              << (commands.empty() ? "the command line" : commands.front()->get_name()) << ".\n";
    return JobFailed;
  }
}

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  zelvane::KeepMemoryReserve();
  try {
    return zelvane::RunCli(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "Not enough memory for zelvane-cli.\n";
    return zelvane::JobFailed;
  }
}
