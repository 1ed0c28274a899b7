// The window: from a start to its first paint, from a typed value to the redrawn stimulus graph, and the time
// that it costs a run. Drawn into memory: QT_QPA_PLATFORM=offscreen.
#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QStatusBar>
#include <algorithm>
#include <chrono>
#include <clocale>
#include <ctime>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

#include "app/application.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/pages/task_page.h"
#include "desktop/window/desktop_front_end.h"
#include "desktop/window/main_window.h"
#include "desktop/window/settings.h"
#include "desktop/window/theme.h"
#include "long_run.h"
#include "paint_count.h"
#include "screen/entry.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

/// The program with its window, as after a start.
struct Program {
  Program() : frontEnd(settings) {
    ApplyTheme(Theme::Light);
    FrontEnd shown = frontEnd.functions();
    shown.message = nullptr;  // nobody can close a message here
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

/// Times of runs, in seconds of wall and processor time.
struct RunTimes {
  std::vector<double> wall;
  std::vector<double> processor;

  void timeRun() {
    QElapsedTimer timer;
    timer.start();
    const double before = ProcessorSeconds();
    Press(*FindCommand("AcquireData"));
    wall.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
    processor.push_back(ProcessorSeconds() - before);
  }
};

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Returns by how much `shown` is longer than `bare`: the median over pairs of consecutive runs.
double LostPercent(const std::vector<double>& bare, const std::vector<double>& shown) {
  std::vector<double> lost;
  for (std::size_t i = 0; i < bare.size(); ++i) lost.push_back(100.0 * (shown[i] / bare[i] - 1.0));
  return Median(std::move(lost));
}

LongRun RunOf(benchmark::State& state) {
  state.SetLabel(LongRunNames[state.range(0)]);
  return static_cast<LongRun>(state.range(0));
}

/// Runs the same model without and with the window, in turn. Also counts processor time, because other
/// programs use the machine too.
void RunUnderTheWindow(benchmark::State& state) {
  const LongRun run = RunOf(state);
  RunTimes bare;
  RunTimes shown;
  int paints = 0;
  for (auto _ : state) {
    SetFrontEnd({});
    StartApplication({ZELVANE_DATA, {}, {}});
    SetUpLongRun(run);
    bare.timeRun();
    Program program;
    program.window->show();
    SetUpLongRun(run);
    QApplication::processEvents();
    const PaintCount count(*program.window->statusBar());
    shown.timeRun();
    paints += count.count();
  }
  state.counters["run_s"] = Median(shown.wall);
  state.counters["paints_per_s"] = paints / std::accumulate(shown.wall.begin(), shown.wall.end(), 0.0);
  state.counters["lost_percent"] = LostPercent(bare.processor, shown.processor);
  state.counters["lost_wall_percent"] = LostPercent(bare.wall, shown.wall);
}
BENCHMARK(RunUnderTheWindow)->DenseRange(0, 3)->Iterations(7)->Unit(benchmark::kSecond);

/// Measures the time from a click on stop, which comes from outside during the run, to the end of the run.
void StopToEndOfRun(benchmark::State& state) {
  const LongRun run = RunOf(state);
  Program program;
  program.window->show();
  SetUpLongRun(run);
  auto* stop = program.window->findChild<QAction*>("tool/stop");
  std::vector<double> seconds;
  for (auto _ : state) {
    using Clock = std::chrono::steady_clock;
    const std::chrono::milliseconds moment(60 + 17 * static_cast<int>(seconds.size()));
    Clock::time_point clicked;
    std::thread user([&] {
      std::this_thread::sleep_for(moment);
      clicked = Clock::now();
      QMetaObject::invokeMethod(stop, "trigger", Qt::QueuedConnection);
    });
    Press(*FindCommand("AcquireData"));
    const Clock::time_point ended = Clock::now();
    user.join();
    if (ended < clicked) state.SkipWithError("the run has ended before the stop");
    seconds.push_back(std::chrono::duration<double>(ended - clicked).count());
    state.SetIterationTime(seconds.back());
    QApplication::processEvents();
  }
  state.counters["median_ms"] = Median(seconds) * 1e3;
  state.counters["worst_ms"] = *std::max_element(seconds.begin(), seconds.end()) * 1e3;
}
BENCHMARK(StopToEndOfRun)->DenseRange(0, 3)->Iterations(15)->UseManualTime()->Unit(benchmark::kMillisecond);

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
