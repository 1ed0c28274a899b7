// The page of the analysis, used as a user does.
#include <qcustomplot.h>

#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>

#include "analysis/analysis_store.h"
#include "desktop/window_fixture.h"
#include "model/model_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Three sweeps of 246 samples, each with the current after a voltage step at 2.3 ms.
constexpr char Recording[] = ZELVANE_TEST_DATA "/recordings/abf2/20101002.abf";
constexpr int EpisodeColumn = 2;  // from 0

class AnalysisPageTest : public WindowTest {
 protected:
  AnalysisPageTest() {
    drop(Recording);
    clickTool("Analysis");
    type("StartAnalysis", "2");
    type("PeakSearchPts", "1.5");
    type("BaselinePts", "0.5");
  }

  QString shown(const char* measure) {
    return window->page()->findChild<QLabel*>(QLatin1String(measure) + "Value")->text();
  }

  QTableView& table() { return *window->page()->findChild<QTableView*>("AnalysisTable"); }
  QString cell(int row, int column) { return table().model()->index(row, column).data().toString(); }
};

TEST_F(AnalysisPageTest, ADraggedBaselineCursorShowsLiveNumbersOnRequest) {
  EXPECT_EQ(window->page()->panel().name, "AnalysisPanel");
  EXPECT_EQ(shown("Amplitude"), QString(QChar(0x2013))) << "nothing measured yet";
  clickControl("AnalyzeButton");
  const QString baseline = shown("Baseline");
  const QString amplitude = shown("Amplitude");
  Graph& record = GraphNamed("AnalysisPanel");
  QCustomPlot& plot = graph()->plot();
  const auto pixel = [&](double x) {
    return QPoint(static_cast<int>(std::lround(plot.xAxis->coordToPixel(x))), plot.axisRect()->center().y());
  };
  const int evokedEnd = 80;  // sample within the response, far below the baseline
  Press(ControlNamed("MeasureWhileMoving"));
  QTest::mousePress(&plot, Qt::LeftButton, {}, pixel(record.cursors[0].x));
  MoveWithButton(&plot, pixel(evokedEnd));
  EXPECT_NE(shown("Baseline"), baseline) << "while the cursor moves";
  QTest::keyClick(graph(), Qt::Key_Escape);
  Settle();
  EXPECT_EQ(shown("Baseline"), baseline) << "the cursor went back";
  QTest::mouseRelease(&plot, Qt::LeftButton, {}, pixel(evokedEnd));
  Drag(&plot, pixel(record.cursors[0].x), pixel(evokedEnd));
  EXPECT_NEAR(record.cursors[0].x, evokedEnd, 1.0);
  EXPECT_NEAR(field("BaselineStart")->text().toDouble(), evokedEnd * 0.05, 0.05) << "ms on the form";
  EXPECT_NE(shown("Baseline"), baseline);
  EXPECT_NE(shown("Amplitude"), amplitude);
  EXPECT_EQ(Analysis.TableRow, 2) << "a drag adds no row";
  clickControl("MeasureWhileMoving");
  EXPECT_EQ(shown("Baseline"), baseline) << "the result";
}

TEST_F(AnalysisPageTest, AllSweepsFillTheTableWhichACopyTakesAsColumns) {
  clickControl("AutoAnalyzeButton");
  ASSERT_EQ(Trace.EpisodeCount, 3);
  for (int row = 0; row < 3; ++row) {
    EXPECT_EQ(cell(row, EpisodeColumn).toInt(), row + 1);
    EXPECT_NE(cell(row, 4).toDouble(), 0.0);
  }
  EXPECT_EQ(cell(3, 0), "4");
  EXPECT_EQ(cell(3, 4), "") << "a row that holds nothing looks empty";
  const QModelIndex first = table().model()->index(0, EpisodeColumn);
  table().selectionModel()->select({first, table().model()->index(1, 4)},
                                   QItemSelectionModel::ClearAndSelect);
  QTest::keyClick(&table(), Qt::Key_C, Qt::ControlModifier);
  const QStringList rows = QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
  ASSERT_EQ(rows.size(), 2);
  for (int row = 0; row < 2; ++row) {
    const QStringList cells = rows[row].split('\t');
    ASSERT_EQ(cells.size(), 3);
    EXPECT_EQ(cells[0].toInt(), row + 1);
    EXPECT_EQ(cells[2].toFloat(), Analysis.Rows[static_cast<std::size_t>(row) + 1].value[5]) << "all digits";
  }
}

TEST_F(AnalysisPageTest, AnAreaIsChosenFromCornerToCornerAndAClickBesideThePlotCancels) {
  QCustomPlot& plot = graph()->plot();
  const Graph& record = GraphNamed("AnalysisPanel");
  const auto choose = [&] {
    Press(ControlNamed("ZoomAreaButton"));
    Settle();
    return plot.axisRect()->rect();
  };
  QRect area = choose();
  QTest::mouseMove(&plot, area.center());
  EXPECT_EQ(plot.cursor().shape(), Qt::CrossCursor);
  QTest::mouseClick(&plot, Qt::LeftButton, {}, {area.center().x(), plot.height() - 2});
  EXPECT_FALSE(record.cursors[4].enabled);
  EXPECT_TRUE(record.cursors[0].enabled);
  area = choose();
  EXPECT_FALSE(record.cursors[5].enabled);
  const DataRange x = ViewRange(record, 'x');
  Drag(&plot, {area.left() + area.width() / 2, area.bottom() - 40},
       {area.left() + 4 * area.width() / 5, area.top() + 40});
  Press(ControlNamed("AnalysisZoomButton"));
  EXPECT_NEAR(ViewRange(record, 'x').min, (x.min + x.max) / 2.0, 1.0);
  EXPECT_NEAR(ViewRange(record, 'x').max, x.min + 0.8 * (x.max - x.min), 1.0);
}

TEST_F(AnalysisPageTest, AValueWithoutATrueMeasureIsGreyAndSaysWhy) {
  type("BaselinePts", "0.05");
  clickControl("AnalyzeButton");
  constexpr int baseVar = 19;
  const QModelIndex doubtful = table().model()->index(0, baseVar);
  EXPECT_EQ(doubtful.data().toString(), "nan");
  EXPECT_NE(doubtful.data(Qt::ToolTipRole).toString(), "");
  EXPECT_TRUE(doubtful.data(Qt::ForegroundRole).isValid());
  EXPECT_FALSE(table().model()->index(0, 3).data(Qt::ForegroundRole).isValid());
}

TEST_F(AnalysisPageTest, StopBesideTheProgressEndsTheAnalysisOfAllSweeps) {
  int told = 0;
  QObject::connect(&frontEnd, &DesktopFrontEnd::progressed, window.get(), [&](double fraction) {
    if (fraction < 0.0 || ++told > 1) return;
    auto* stop = window->statusBar()->findChild<QPushButton*>();
    EXPECT_TRUE(stop->isVisible());
    QTimer::singleShot(0, stop, [this, stop] { click(stop); });
    QTest::qSleep(50);  // a slow sweep: the window takes clicks before the next one
  });
  clickControl("AutoAnalyzeButton");
  EXPECT_EQ(told, 1);
  EXPECT_EQ(Analysis.TableRow, 2) << "the sweep under way is the last";
  EXPECT_EQ(Trace.EpisodeIndex, 1);
  EXPECT_EQ(Screen.busy, 0);
}

}  // namespace
}  // namespace zelvane
