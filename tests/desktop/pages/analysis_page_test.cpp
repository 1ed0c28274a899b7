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

TEST_F(AnalysisPageTest, ADraggedBaselineCursorChangesTheNumbers) {
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
  Drag(&plot, pixel(record.cursors[0].x), pixel(evokedEnd));
  EXPECT_NEAR(record.cursors[0].x, evokedEnd, 1.0);
  EXPECT_NEAR(field("BaselineStart")->text().toDouble(), evokedEnd * 0.05, 0.05) << "ms on the form";
  EXPECT_NE(shown("Baseline"), baseline);
  EXPECT_NE(shown("Amplitude"), amplitude);
  EXPECT_EQ(Analysis.TableRow, 2) << "a drag adds no row";
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
