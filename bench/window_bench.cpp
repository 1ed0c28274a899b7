// The window: from a start to its first paint, from a typed value to the redrawn stimulus graph, and what a
// run loses to it. Drawn into memory: QT_QPA_PLATFORM=offscreen.
#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <ctime>
#include <memory>

#include "desktop/desktop_front_end.h"
#include "desktop/graph_widget.h"
#include "desktop/main_window.h"
#include "desktop/settings.h"
#include "desktop/task_page.h"
#include "desktop/theme.h"
#include "long_run.h"
#include "paint_count.h"
#include "screen/screen.h"
#include "shell/application.h"
#include "shell/entry.h"

namespace zelvane {
namespace {

/// The program with its window, as after a start.
struct Program {
  Program() : frontEnd(settings) {
    ApplyTheme(Theme::Light);
    FrontEnd shown = frontEnd.functions();
    shown.message = nullptr;  // nobody is there to close a message
    shown.confirm = [](std::string_view, std::string_view) { return true; };
    SetFrontEnd(shown);
    StartApplication({ZELVANE_DATA, {}, {}});
    window = std::make_unique<MainWindow>(frontEnd, settings);
    window->setWindowState(Qt::WindowNoState);
    window->resize(1280, 720);
  }
  ~Program() {
    window.reset();
    SetFrontEnd({});
  }

  Settings settings{false};
  DesktopFrontEnd frontEnd;
  std::unique_ptr<MainWindow> window;
};

void StartToPaintedWindow(benchmark::State& state) {
  for (auto _ : state) {
    Program program;
    PaintCount paints(*program.window);
    program.window->show();
    paints.await();
  }
}
BENCHMARK(StartToPaintedWindow)->Unit(benchmark::kMillisecond);

void TypedValueToPaintedStimulus(benchmark::State& state) {
  Program program;
  program.window->show();
  Press(ControlNamed("StimulusButton"));
  program.frontEnd.refreshNow();
  QApplication::processEvents();
  PaintCount paints(program.window->page()->findChild<GraphWidget*>()->plot());
  int count = 0;
  for (auto _ : state) {
    EnterTyped(ControlNamed("AutoValue"), ++count % 2 == 0 ? "1e-3" : "2e-3");
    paints.await();
  }
}
BENCHMARK(TypedValueToPaintedStimulus)->Unit(benchmark::kMillisecond);

// -- While a run computes --

double ProcessorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Times the run in wall and processor time.
struct RunTimes {
  double wall = 0.0;
  double processor = 0.0;
};
RunTimes TimeRun() {
  QElapsedTimer wall;
  wall.start();
  const double before = ProcessorSeconds();
  Press(*FindCommand("AcquireData"));
  return {static_cast<double>(wall.nsecsElapsed()) * 1e-9, ProcessorSeconds() - before};
}

/// The same run without and with the window, in turn: processor time, since others use the machine too.
void RunUnderTheWindow(benchmark::State& state) {
  RunTimes bare;
  RunTimes shown;
  int paints = 0;
  for (auto _ : state) {
    {
      SetFrontEnd({});
      StartApplication({ZELVANE_DATA, {}, {}});
      SetUpLongRun();
      const RunTimes times = TimeRun();
      bare.wall += times.wall;
      bare.processor += times.processor;
    }
    Program program;
    program.window->show();
    SetUpLongRun();
    QApplication::processEvents();
    PaintCount count(*program.window->statusBar());
    const RunTimes times = TimeRun();
    shown.wall += times.wall;
    shown.processor += times.processor;
    paints += count.count();
  }
  // Others use the machine too: what the window does is counted by the processor's clock.
  state.counters["paints_per_processor_s"] = paints / shown.processor;
  state.counters["run_s"] = shown.wall / static_cast<double>(state.iterations());
  state.counters["paints_per_s"] = paints / shown.wall;
  state.counters["lost_percent"] = 100.0 * (shown.processor / bare.processor - 1.0);
  state.counters["lost_wall_percent"] = 100.0 * (shown.wall / bare.wall - 1.0);
}
BENCHMARK(RunUnderTheWindow)->Iterations(4)->Unit(benchmark::kSecond);

/// From the press of stop, at a moment within the run, to the end of the run.
void StopToEndOfRun(benchmark::State& state) {
  Program program;
  program.window->show();
  SetUpLongRun();
  double worst = 0.0;
  int moment = 0;
  for (auto _ : state) {
    QElapsedTimer sinceStop;
    QTimer::singleShot(200 + 37 * ++moment, [&] {
      sinceStop.start();
      Press(ControlNamed("StopRun"));
    });
    Press(*FindCommand("AcquireData"));
    const double seconds = static_cast<double>(sinceStop.nsecsElapsed()) * 1e-9;
    if (!sinceStop.isValid()) state.SkipWithError("the run has ended before the stop");
    state.SetIterationTime(seconds);
    worst = std::max(worst, seconds);
  }
  state.counters["worst_ms"] = worst * 1e3;
}
BENCHMARK(StopToEndOfRun)->Iterations(10)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
