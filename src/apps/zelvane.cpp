// The desktop program.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <QTimer>
#include <clocale>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "desktop/widgets/text.h"
#include "desktop/window/desktop_front_end.h"
#include "desktop/window/grabs.h"
#include "desktop/window/main_window.h"
#include "desktop/window/settings.h"
#include "desktop/window/theme.h"
#include "headless/commands/one_job.h"
#include "headless/drive/drive.h"
#include "screen/memory_guard.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char Description[] = "Kinetic schemes of ion channels: build, simulate, measure.";
constexpr char Footer[] =
    "The program opens the files at the start. With --drive it runs a script of the command language\n"
    "(docs/drive.md) in its window, writes what it shows to standard output as zelvane-cli drive does,\n"
    "and ends after the script.";

struct Arguments {
  StartOptions start;
  std::string seeds;
  std::string script;
  std::string grabFolder;
  std::string theme;
  std::string size;
  bool welcome = false;
};

void AddOptions(CLI::App& app, Arguments& arguments) {
  app.set_version_flag("--version", "zelvane " ZELVANE_VERSION);
  app.footer(Footer);
  app.add_option("--drive", arguments.script, "run a script against the window")
      ->type_name("SCRIPT")
      ->check(CLI::ExistingFile.description(""));
  app.add_option("--grab", arguments.grabFolder, "save a picture of every visible panel, then quit")
      ->type_name("FOLDER");
  app.add_option("--seed", arguments.seeds, "seeds of the random generators; default: from the clock")
      ->type_name("S1,S2,S3");
  app.add_option("--dir", arguments.start.folder, "program's folder, where config.mod lies")
      ->type_name("FOLDER")
      ->check(CLI::ExistingDirectory.description(""));
  app.add_option("--theme", arguments.theme, "colours of the window")
      ->check(CLI::IsMember({"light", "dark", "system"}).description(""))
      ->type_name("light|dark|system");
  app.add_option("--size", arguments.size, "size of the window; default: the whole screen")
      ->type_name("WIDTHxHEIGHT");
  app.add_flag("--welcome", arguments.welcome, "show the welcome of a first start");
  app.add_option("FILE", arguments.start.files, "files to open")->type_name("");
}

/// Returns the parts of "1280x720". On wrong usage throws an exception of the parser.
QSize SizeOf(const std::string& text) {
  const QStringList parts = ToQt(text).split('x');
  const QSize size(parts.value(0).toInt(), parts.value(1).toInt());
  if (parts.size() != 2 || size.width() < 1 || size.height() < 1 || size.width() > 16384 ||
      size.height() > 16384) {
    throw CLI::ValidationError("--size", "two numbers, such as 1280x720");
  }
  return size;
}

/// The toolkit with a last guard: painting, too, may find no memory.
class Application : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    bool handled = false;
    WithinMemory("the window", [&] { handled = QApplication::notify(receiver, event); });
    return handled;
  }
};

/// The program with its window.
class Desktop {
 public:
  Desktop(const Arguments& arguments, QSize size)
      : arguments_(arguments), size_(size), settings_(!IsScripted()), frontEnd_(settings_) {}

  int run() {
    const QString remembered = settings_.value("window/theme", "system").toString();
    const QString theme = arguments_.theme.empty() ? remembered : ToQt(arguments_.theme);
    ApplyTheme(ThemeNamed(theme).value_or(Theme::System));
    const int status = arguments_.script.empty() ? runWithUser() : runScript();
    window_.reset();
    SetFrontEnd({});
    return status;
  }

 private:
  bool IsScripted() const { return !arguments_.script.empty() || !arguments_.grabFolder.empty(); }

  void openWindow() {
    frontEnd_.playScript = [this](std::istream& script, std::ostream& events) {
      PlayDrive(script, events,
                {.frontEnd = frontEnd_.functions(), .afterLine = [this] { frontEnd_.refreshNow(); }});
    };
    window_ = std::make_unique<MainWindow>(frontEnd_, settings_);
    if (size_.isValid()) {
      window_->setWindowState(Qt::WindowNoState);
      window_->resize(size_);
    }
    window_->show();
  }

  bool grab() {
    if (arguments_.grabFolder.empty()) return true;
    if (GrabPanels(*window_, ToQt(arguments_.grabFolder))) return true;
    std::cerr << arguments_.grabFolder << ": a picture could not be written\n";
    return false;
  }

  int runScript() {
    std::ifstream script(arguments_.script, std::ios::binary);
    frontEnd_.setUnattended(true);
    frontEnd_.modalShown = [this] { grab(); };
    StartOptions options = arguments_.start;
    options.shown = [this] { openWindow(); };
    const int status = RunDrive(script, std::cout, options,
                                {.frontEnd = frontEnd_.functions(), .afterLine = [this] {
                                   frontEnd_.refreshNow();
                                   QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
                                 }});
    return grab() ? status : JobFailed;
  }

  /// Ends with a picture of what shows: when all files are read, or while one of them waits for an answer.
  void grabAndEnd() {
    QTimer::singleShot(0, window_.get(), [this] {
      if (Screen.busy > 0 && QApplication::activeModalWidget() == nullptr) return grabAndEnd();
      grabbed_ = grab();
      QCoreApplication::exit(0);
    });
  }

  int runWithUser() {
    SetFrontEnd(frontEnd_.functions());
    const bool grabs = !arguments_.grabFolder.empty();
    StartOptions options = arguments_.start;
    options.shown = [this, grabs] {  // questions about the files then have the window behind them
      openWindow();
      if (arguments_.welcome) window_->showWelcome();
      if (grabs) grabAndEnd();
    };
    StartApplication(options);
    if (grabbed_) return *grabbed_ ? JobDone : JobFailed;
    if (!grabs && !arguments_.welcome && arguments_.start.files.empty() &&
        !settings_.value("welcome/shown", false).toBool()) {
      settings_.setValue("welcome/shown", true);
      QTimer::singleShot(0, window_.get(), &MainWindow::showWelcome);
    }
    const int status = QCoreApplication::exec();
    return grabbed_.value_or(true) ? status : JobFailed;
  }

  const Arguments& arguments_;
  QSize size_;
  Settings settings_;
  DesktopFrontEnd frontEnd_;
  std::unique_ptr<MainWindow> window_;
  std::optional<bool> grabbed_;  // whether the pictures could be written, once they were taken
};

/// Returns whether there is a display, or a script, which without a display gets a window in memory. On
/// failure the caller shows a message, because the toolkit would abort.
bool FindDisplay(std::span<char*> arguments) {
#if defined(__linux__)
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    if (qEnvironmentVariableIsSet(name)) return true;
  }
  bool forUser = true;
  for (const std::string_view word : arguments) {
    if (word == "-platform") return true;
    for (const std::string_view option : {"--drive", "--grab", "--help", "-h", "--version"}) {
      if (word == option || word.starts_with(std::string(option) + '=')) forUser = false;
    }
  }
  if (!forUser) qputenv("QT_QPA_PLATFORM", "offscreen");
  return !forUser;
#else
  return !arguments.empty();
#endif
}

int RunProgram(int argc, char** argv) {
  if (!FindDisplay({argv, static_cast<std::size_t>(argc)})) {
    std::cerr << "zelvane: there is no display (DISPLAY, WAYLAND_DISPLAY). zelvane-cli needs none.\n";
    return JobFailed;
  }
  Application application(argc, argv);  // takes the toolkit's own options out of argv
  std::setlocale(LC_NUMERIC, "C");      // numbers in files have a full stop whatever the user's locale
  QApplication::setApplicationName("Zelvane");
  QApplication::setDesktopFileName("zelvane");
  CLI::App app(Description, "zelvane");
  Arguments arguments;
  AddOptions(app, arguments);
  try {
    app.parse(argc, argv);
    if (!arguments.seeds.empty()) {
      arguments.start.seeds = ParseSeeds(arguments.seeds);
      if (!arguments.start.seeds) {
        throw CLI::ValidationError("--seed", "three whole numbers split by commas, such as 1234,5678,9012");
      }
    }
    const QSize size = arguments.size.empty() ? QSize() : SizeOf(arguments.size);
    return Desktop(arguments, size).run();
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? JobDone : JobMisused;
  } catch (const std::bad_alloc&) {
    std::cerr << "Not enough memory for the window.\n";
    return JobFailed;
  }
}

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  zelvane::KeepMemoryReserve();
  try {
    return zelvane::RunProgram(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "Not enough memory for zelvane.\n";
    return zelvane::JobFailed;
  }
}
