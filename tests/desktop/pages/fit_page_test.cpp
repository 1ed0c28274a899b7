// The page of the fit: files dropped on it, the table of rates, and the page while a fit runs.
#include <qcustomplot.h>

#include <QElapsedTimer>
#include <QTimer>

#include "desktop/widgets/table_widget.h"
#include "desktop/window_fixture.h"
#include "fit/fit_store.h"
#include "model/model_store.h"
#include "parameters/vertex_store.h"
#include "screen/entry.h"

namespace zelvane {
namespace {

constexpr int FixedColumn = 4;  // from 0
constexpr int ValueColumn = 1;
constexpr int UpperColumn = 3;
constexpr int BeforeColumn = 6;

class FitPageTest : public WindowTest {
 protected:
  FitPageTest() {
    clickTool("Fit");
    std::vector<std::string> files;
    for (const char* name :
         {"nmda_start.mod", "nmda_10uM.stm", "nmda_50uM.abf", "nmda_10uM.abf", "nmda_50uM.stm"})
      files.push_back(std::string(ZELVANE_DATA "/examples/fit/") + name);
    drop(files);
  }

  /// Starts a fit that goes on for minutes. It asks twice about normalising and about a log, at its end about saving
  /// and exporting.
  void fit(int iterations = 100'000'000) {
    EnterTyped(ControlNamed("FitNumIterations"), std::to_string(iterations));
    EnterTyped(ControlNamed("FitTolerance"), "1e-30");
    answers = {false, true, false, false, false};
    clickControl("FitStart");
  }

  QAbstractItemModel& rates() { return *window->page()->findChild<TableWidget*>("FitRatesTable")->model(); }
  QString rate(int column) { return rates().index(row, column).data().toString(); }

  static constexpr int row = 4;  // from 0; opens the channel
};

TEST_F(FitPageTest, DroppedFilesBecomePairsByName) {
  EXPECT_EQ(window->page()->panel().name, "FitPanel");
  EXPECT_EQ(Fit.FitWaveCount, 2);
  for (int w = 1; w <= 2; ++w) {
    const FitWaveform& wave = Fit.Wave[static_cast<std::size_t>(w)];
    EXPECT_EQ(wave.DataName.substr(0, 9), wave.StimName.substr(0, 9));
    EXPECT_EQ(wave.StimOn, 1);
  }
  EXPECT_EQ(ControlNumber("NumPoints"), Model.NumPoints);
  EXPECT_EQ(rates().rowCount(), 8);
}

TEST_F(FitPageTest, AFitRepaintsDimsOtherWorkAndStopsAtOnce) {
  int repaints = 0;
  for (auto* shown : window->page()->findChildren<GraphWidget*>()) {
    if (shown->graph().name == "FitPanel.fit")
      QObject::connect(&shown->plot(), &QCustomPlot::afterReplot, window.get(), [&repaints] { ++repaints; });
  }
  QElapsedTimer sinceStop;
  QTimer::singleShot(500, window.get(), [&] {
    EXPECT_GE(repaints, 2);
    EXPECT_EQ(Vertices.FitResultCode, FitRunning);
    EXPECT_FALSE(widget("FitStart")->findChild<QAbstractButton*>()->isEnabled());
    EXPECT_TRUE(widget("FitStart")->toolTip().contains("A fit runs."));
    EXPECT_NE(Press(ControlNamed("FitOneStep")), "");
    sinceStop.start();
    clickControl("FitStop");
  });
  fit();
  ASSERT_TRUE(sinceStop.isValid()) << "the fit has ended before the stop";
#ifndef ZELVANE_SANITIZED
  EXPECT_LT(sinceStop.elapsed(), 300) << "0.1 s, and room for a machine that others use";
#endif
  EXPECT_EQ(Vertices.FitResultCode, FitUserBreak);
  EXPECT_TRUE(widget("FitStart")->findChild<QAbstractButton*>()->isEnabled());
}

TEST_F(FitPageTest, RatesAreTypedTickedAndTakenBack) {
  rates().setData(rates().index(row, UpperColumn), "300", Qt::EditRole);
  rates().setData(rates().index(row, FixedColumn), true, Qt::CheckStateRole);
  EXPECT_EQ(Fit.WaveFitLimits[row + 1].hi, 300.0);
  EXPECT_EQ(Fit.WaveFitFixed[row + 1], 1);
  fit(30);
  const QString fixed = rate(ValueColumn);
  EXPECT_EQ(rate(BeforeColumn), fixed) << "a fixed rate stays";
  const QModelIndex freeRate = rates().index(row + 1, ValueColumn);
  const QString fitted = freeRate.data().toString();
  const QString before = freeRate.siblingAtColumn(BeforeColumn).data().toString();
  EXPECT_NE(fitted, before);
  clickControl("FitTakeBack");
  EXPECT_EQ(freeRate.data().toString(), before);
  EXPECT_EQ(freeRate.siblingAtColumn(BeforeColumn).data().toString(), fitted);
}

TEST_F(FitPageTest, AWindowClosedDuringAFitEndsTheFitFirst) {
  QTimer::singleShot(200, window.get(), [this] {
    answers.push_back(true);  // to the end of the program
    window->close();
    EXPECT_FALSE(quit);
  });
  fit();
  EXPECT_EQ(Vertices.FitResultCode, FitUserBreak);
  QTRY_VERIFY_WITH_TIMEOUT(quit, 2000);
}

}  // namespace
}  // namespace zelvane
