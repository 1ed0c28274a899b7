// The program without a display: the command language, and jobs of one line.
#include <CLI/CLI.hpp>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>

#include "headless/drive.h"
#include "headless/model_command.h"
#include "headless/simulate_command.h"
#include "model/model_store.h"
#include "platform/terminal.h"

namespace zelvane {
namespace {

constexpr char Description[] =
    "Kinetic schemes of ion channels: simulate them, look into model files, and drive the whole program\n"
    "from a script, all without a display.";

constexpr char Examples[] =
    "Examples\n"
    "  zelvane-cli simulate ampa.mod --simulator fixed --units pA --out current.atf\n"
    "  zelvane-cli model ampa.mod\n"
    "  echo 'press AcquireData' | zelvane-cli drive\n\n"
    "zelvane-cli COMMAND --help tells more of a command. Exit status: 0 done, 1 failed (the reason is on\n"
    "standard error), 2 wrong usage.";

constexpr char DriveText[] =
    "Runs the program without a window: commands from SCRIPT or standard input, one a line, and one JSON\n"
    "object a line on standard output. docs/drive.md tells the commands.";

constexpr char SimulateText[] =
    "Reads a model file, rebuilds its stimulus, runs it, and writes a summary.\n"
    "A file never brings fewer than 100000 points: --points makes the run shorter.";

constexpr char ModelText[] =
    "Tells what a model file holds: states, rates with units and dependences, run settings, stimulus.\n"
    "With --upgrade it reads OLD.mod, of any format, and writes NEW.mod in the newest one.";

/// Set by Ctrl-C; a run looks at it when it lets user events through.
std::atomic<bool> StopAsked{false};
static_assert(std::atomic<bool>::is_always_lock_free);  // a signal handler may write it

extern "C" void OnInterrupt(int) {
  StopAsked = true;
  std::signal(SIGINT, SIG_DFL);  // a second Ctrl-C ends the process
}

JobStreams Streams() {
  return {std::cout, std::cerr, &StopAsked, ErrorStreamIsTerminal()};
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
};

/// The three seeds of a `--seed`; wrong usage is told by an exception of the parser.
std::optional<Seeds> SeedsOf(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const auto seeds = ParseSeeds(text);
  if (!seeds)
    throw CLI::ValidationError("--seed", "three whole numbers split by commas, such as 1234,5678,9012");
  return seeds;
}

int RunDriveCommand(DriveArguments& arguments) {
  arguments.start.seeds = SeedsOf(arguments.seeds);
  if (arguments.script.empty()) return RunDrive(std::cin, std::cout, arguments.start);
  std::error_code error;
  std::ifstream script(arguments.script, std::ios::binary);
  if (!script.is_open() || std::filesystem::is_directory(arguments.script, error)) {
    std::cerr << arguments.script << ": cannot be opened\n";
    return JobFailed;
  }
  return RunDrive(script, std::cout, arguments.start);
}

int RunModelCommand(const ModelArguments& arguments) {
  if (arguments.files.size() != (arguments.upgrade ? 2U : 1U)) {
    throw CLI::ValidationError(
        "model", arguments.upgrade ? "--upgrade takes OLD.mod and NEW.mod" : "takes one model file");
  }
  if (arguments.upgrade) return UpgradeModelCommand(arguments.files[0], arguments.files[1], Streams());
  return ModelCommand(arguments.files[0], arguments.json, Streams());
}

CLI::App* AddDrive(CLI::App& app, DriveArguments& arguments) {
  CLI::App* drive = app.add_subcommand("drive", DriveText);
  drive->add_option("--seed", arguments.seeds, "seeds of the generators in place of the clock")
      ->type_name("S1,S2,S3");
  drive->add_option("--dir", arguments.start.folder, "program's folder, where config.mod lies")
      ->type_name("FOLDER")
      ->check(CLI::ExistingDirectory);
  drive->add_option("--open", arguments.start.files, "open a file at the start (may be repeated)")
      ->type_name("FILE")
      ->allow_extra_args(false);
  drive->add_option("SCRIPT", arguments.script, "file of commands; standard input without it");
  return drive;
}

CLI::App* AddSimulate(CLI::App& app, SimulateOptions& options, std::string& seeds) {
  CLI::App* simulate = app.add_subcommand("simulate", SimulateText);
  const std::map<std::string, int> simulators = {{"fixed", FixedStepIntegrator},
                                                 {"adaptive", AdaptiveIntegrator}};
  const std::map<std::string, int> units = {{"channels", UnitsChannels},
                                            {"pS", UnitsConductance},
                                            {"pA", UnitsCurrent},
                                            {"probability", UnitsProbability}};
  simulate->add_option("MODEL", options.model, "model file (.mod)")->required();
  simulate->add_option("--simulator", options.simulator, "fixed or adaptive; else what the model says")
      ->transform(CLI::CheckedTransformer(simulators, CLI::ignore_case))
      ->type_name("");
  simulate->add_option("--points", options.points, "points of the run")
      ->check(CLI::Range(1, MaxPoints))
      ->type_name("N");
  simulate->add_option("--interval", options.intervalMs, "time between points")
      ->check(CLI::PositiveNumber)
      ->type_name("MS");
  simulate->add_option("--units", options.units, "of the trace")
      ->transform(CLI::CheckedTransformer(units, CLI::ignore_case))
      ->type_name("");
  simulate
      ->add_option("--set", options.settings, "set any store field, such as KOn[2]=4.2e6 (may be repeated)")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  simulate->add_option("--seed", seeds, "seeds of the generators in place of the clock")
      ->type_name("S1,S2,S3");
  simulate->add_option("--out", options.traceFile, "write the trace: .txt, .atf or .csv")->type_name("FILE");
  simulate
      ->add_option("--occupancy", options.occupancyFile, "write the occupancies of the states that are on")
      ->type_name("FILE.csv");
  simulate->add_flag("--json", options.json, "summary as one JSON object");
  return simulate;
}

CLI::App* AddModel(CLI::App& app, ModelArguments& arguments) {
  CLI::App* model = app.add_subcommand("model", ModelText);
  model->add_option("MODEL", arguments.files, "MODEL.mod, or with --upgrade OLD.mod NEW.mod")->required();
  model->add_flag("--upgrade", arguments.upgrade, "write the newest format");
  model->add_flag("--json", arguments.json, "account as one JSON object");
  return model;
}

int RunCli(int argc, char** argv) {
  CLI::App app(Description, "zelvane-cli");
  app.set_version_flag("--version", "zelvane-cli " ZELVANE_VERSION);
  app.footer(Examples);
  app.require_subcommand(1);
  DriveArguments driveArguments;
  SimulateOptions simulateOptions;
  std::string simulateSeeds;
  ModelArguments modelArguments;
  const CLI::App* drive = AddDrive(app, driveArguments);
  const CLI::App* simulate = AddSimulate(app, simulateOptions, simulateSeeds);
  AddModel(app, modelArguments);
  try {
    app.parse(argc, argv);
    if (drive->parsed()) return RunDriveCommand(driveArguments);
    std::signal(SIGINT, OnInterrupt);
    if (!simulate->parsed()) return RunModelCommand(modelArguments);
    simulateOptions.seeds = SeedsOf(simulateSeeds);
    return SimulateCommand(simulateOptions, Streams());
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? JobDone : JobMisused;
  }
}

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  return zelvane::RunCli(argc, argv);
}
