// A graph of 5,000,000 samples, from the simulated trace to the painted widget, and each later step of a pan
// or zoom. Drawn into memory: QT_QPA_PLATFORM=offscreen.
#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QApplication>
#include <cmath>
#include <random>

#include "app/application.h"
#include "app/stores.h"
#include "desktop/graph/graph_widget.h"
#include "model/model_store.h"
#include "paint_count.h"
#include "screen/pyramid.h"
#include "screen/zoom_graph.h"
#include "trace/trace_graph.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr QSize WindowSize(1280, 420);

/// The shape of the trace.
enum Shape { Calm, Noisy };

void FillTrace(Shape shape) {
  std::mt19937 random(20240501);
  std::normal_distribution<float> noise(0.0F, 5.0F);
  Model.NumPoints = MaxPoints;
  Trace.SimTraceUsed = MaxPoints;
  for (int i = 0; i < MaxPoints; ++i) {
    const auto time = static_cast<float>(i % 1'000'000) * 1e-5F;
    const float wave = -300.0F * (1.0F - std::exp(-time * 3.0F)) * std::exp(-time);
    Trace.SimTrace[static_cast<std::size_t>(i)] = wave + (shape == Noisy ? noise(random) : 0.0F);
  }
}

/// The main graph in its own window.
class Window {
 public:
  Window() : widget_(GraphNamed("MainPanel")), count_(widget_.plot()) {
    widget_.resize(WindowSize);
    widget_.show();
    paint();
  }

  GraphWidget& widget() { return widget_; }

  /// Runs the event loop until the plot is on the widget.
  void paint() {
    widget_.refresh();
    count_.await();
  }

 private:
  GraphWidget widget_;
  PaintCount count_;
};

void TraceToPaintedGraph(benchmark::State& state) {
  FillTrace(static_cast<Shape>(state.range(0)));
  Window window;
  for (auto _ : state) {
    PlotTrace(true);
    window.paint();
  }
}
BENCHMARK(TraceToPaintedGraph)->Arg(Calm)->Arg(Noisy)->ArgName("noisy")->Unit(benchmark::kMillisecond);

/// `step` changes the view a little, back or forth by the sign of its argument.
template <typename Step>
void TimeSteps(benchmark::State& state, Step&& step) {
  FillTrace(static_cast<Shape>(state.range(0)));
  Window window;
  PlotTrace(true);
  Graph& graph = window.widget().graph();
  const DataRange full = PictureRange(graph, 'x');
  SetAxisRange(graph, 'x', full.max * 0.1, full.max * 0.6);
  window.paint();
  int count = 0;
  for (auto _ : state) {
    step(graph, ++count % 20 < 10 ? 1.0 : -1.0);
    window.paint();
  }
}

void PanStep(benchmark::State& state) {
  TimeSteps(state, [](Graph& graph, double direction) {
    ZoomPan(graph, 'x', PictureRange(graph, 'x'), 0.01 * direction);
    ZoomPan(graph, 'y', PictureRange(graph, 'y'), 0.01 * direction);
  });
}
BENCHMARK(PanStep)->Arg(Calm)->Arg(Noisy)->ArgName("noisy")->Unit(benchmark::kMillisecond);

void ZoomStep(benchmark::State& state) {
  TimeSteps(state, [](Graph& graph, double direction) {
    const DataRange x = PictureRange(graph, 'x');
    ZoomAbout(graph, 'x', (x.min + x.max) / 2.0, direction > 0.0 ? 0.8 : 1.25);
  });
}
BENCHMARK(ZoomStep)->Arg(Calm)->Arg(Noisy)->ArgName("noisy")->Unit(benchmark::kMillisecond);

void PyramidOfTrace(benchmark::State& state) {
  FillTrace(Noisy);
  const std::span<const float> samples = Trace.SimTrace.first(MaxPoints);
  for (auto _ : state) benchmark::DoNotOptimize(BuildPyramid(samples));
}
BENCHMARK(PyramidOfTrace)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  zelvane::AllocateStores();
  zelvane::ResetStores();
  zelvane::ClearScreen();
  zelvane::AddAllPanels();
  zelvane::WriteAllControls();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
