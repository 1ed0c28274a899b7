// The window: from a start to its first paint, and from a typed value to the redrawn stimulus graph. Drawn
// into memory: QT_QPA_PLATFORM=offscreen.
#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QApplication>
#include <QEvent>
#include <clocale>
#include <memory>

#include "desktop/desktop_front_end.h"
#include "desktop/graph_widget.h"
#include "desktop/main_window.h"
#include "desktop/settings.h"
#include "desktop/task_page.h"
#include "desktop/theme.h"
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
    SetFrontEnd(frontEnd.functions());
    StartApplication({});
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
