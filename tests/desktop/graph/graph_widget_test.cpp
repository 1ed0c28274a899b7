// GraphWidget: the effect of the mouse, the keys and the menu on a graph record.
#include "desktop/graph/graph_widget.h"

#include <qcustomplot.h>

#include <QClipboard>
#include <array>

#include "desktop/graph/graph_colours.h"
#include "desktop/graph/place_bar.h"
#include "desktop/graph/zoom_bar.h"
#include "desktop/widget_test.h"
#include "desktop/widgets/table_widget.h"
#include "screen/zoom_graph.h"

namespace zelvane {
namespace {

constexpr QSize WindowSize(900, 420);

class GraphWidgetTest : public StoreTest {
 protected:
  GraphWidgetTest() {
    AddPanel({.name = "Panel"});
    graph = &AddGraph("Panel", "Graph", "Time (ms)", "Current (pA)", 3);
    graph->cursors[0] = {200.0, 0.5, true, DarkBlue};
    graph->cursors[1] = {600.0, 0.5, true, DarkRed};
    graph->cursors[2] = {400.0, 0.5, false, DarkRed};
    Floats wave(10001);
    for (std::size_t i = 0; i < wave.size(); ++i) wave[i] = std::sin(static_cast<float>(i) * 0.001F);
    PlotWave(*graph, PlotStyle::Line, DarkBlue, wave, 0.0, 0.1);  // 1000 ms
    ZoomGraphCreate(*graph);
    widget = std::make_unique<GraphWidget>(*graph);
    ShowAt(*widget, WindowSize);
  }

  QCustomPlot& Plot() { return widget->plot(); }
  QRect Area() { return Plot().axisRect()->rect(); }
  QPoint PixelOf(double x, double y) {
    return {static_cast<int>(std::lround(Plot().xAxis->coordToPixel(x))),
            static_cast<int>(std::lround(Plot().yAxis->coordToPixel(y)))};
  }
  QWidget* Child(const char* name) { return widget->findChild<QWidget*>(name); }
  double XSpan() const { return graph->x.max - graph->x.min; }

  Graph* graph = nullptr;
  std::unique_ptr<GraphWidget> widget;
};

TEST_F(GraphWidgetTest, WheelZoomsAtThePointer) {
  const QPoint at = PixelOf(250.0, 0.0);
  const double before = Plot().xAxis->pixelToCoord(at.x());
  Wheel(&Plot(), at, 2);
  EXPECT_NEAR(XSpan(), 1000.0 * 0.64, 1e-6);  // 0.8 a notch
  EXPECT_NEAR(Plot().xAxis->pixelToCoord(at.x()), before, 1e-6);
  EXPECT_FALSE(graph->y.automatic);
}

TEST_F(GraphWidgetTest, WheelWithAKeyOrBesideTheAreaZoomsOneAxis) {
  Wheel(&Plot(), Area().center(), 1, Qt::ControlModifier);
  EXPECT_FALSE(graph->x.automatic);
  EXPECT_TRUE(graph->y.automatic);
  widget->showAll();
  Wheel(&Plot(), Area().center(), 1, Qt::ShiftModifier);
  EXPECT_TRUE(graph->x.automatic);
  EXPECT_FALSE(graph->y.automatic);
}

TEST_F(GraphWidgetTest, DragPansAndKeepsWhatIsUnderTheMouse) {
  SetAxisRange(*graph, 'x', 300.0, 500.0);
  widget->refresh();
  Settle();
  const QPoint from = Area().center() + QPoint(30, 0);
  const double held = Plot().xAxis->pixelToCoord(from.x());
  Drag(&Plot(), from, from - QPoint(100, 40));
  EXPECT_NEAR(XSpan(), 200.0, 1e-9);
  EXPECT_NEAR(Plot().xAxis->pixelToCoord(from.x() - 100), held, 1e-6);
  Drag(&Plot(), Area().center(), Area().center() + QPoint(5000, 0));
  EXPECT_NEAR(graph->x.min, 0.0, 1e-9);  // x stops at the full range
}

TEST_F(GraphWidgetTest, AClickPansNothingAndADoubleClickShowsAll) {
  QTest::mouseClick(&Plot(), Qt::LeftButton, {}, Area().center());
  EXPECT_TRUE(graph->x.automatic);
  SetAxisRange(*graph, 'x', 300.0, 500.0);
  QTest::mouseDClick(&Plot(), Qt::LeftButton, {}, Area().center());
  EXPECT_TRUE(graph->x.automatic);
  EXPECT_TRUE(graph->y.automatic);
}

TEST_F(GraphWidgetTest, ADraggedCursorMovesOnceAndTakesTheHeightOfTheTrace) {
  static int moves = 0;
  moves = 0;
  graph->cursorMoved = [](Graph&, int cursor) { moves += cursor; };
  Drag(&Plot(), PixelOf(200.0, -0.3), PixelOf(300.0, -0.3));
  EXPECT_EQ(moves, 1);
  EXPECT_NEAR(graph->cursors[0].x, 300.0, 2.0);
  EXPECT_NEAR(graph->cursors[0].y, std::sin(graph->cursors[0].x * 0.01), 1e-4);
  EXPECT_TRUE(graph->x.automatic);  // nothing panned
  widget->setCursorsFollow(false);
  Drag(&Plot(), PixelOf(600.0, 0.2), PixelOf(700.0, 0.7));
  EXPECT_NEAR(graph->cursors[1].y, 0.7, 0.02);
}

TEST_F(GraphWidgetTest, ADisabledCursorCannotBeGrabbed) {
  SetAxisRange(*graph, 'x', 300.0, 500.0);
  widget->refresh();
  Settle();
  Drag(&Plot(), PixelOf(400.0, 0.0), PixelOf(450.0, 0.0));
  EXPECT_EQ(graph->cursors[2].x, 400.0);
  EXPECT_NEAR(graph->x.min, 250.0, 1.0);  // a pan
}

TEST_F(GraphWidgetTest, AStripZoomsToTheStretchDraggedOver) {
  QWidget* strip = Child("xStrip");
  ASSERT_EQ(strip->width(), Area().width());
  Drag(strip, {100, 5}, {300, 5});
  EXPECT_NEAR(graph->x.min, 1000.0 * 100 / strip->width(), 1e-9);
  EXPECT_NEAR(graph->x.max, 1000.0 * 300 / strip->width(), 1e-9);
  Drag(strip, {100, 5}, {105, 5});  // five pixels or less
  EXPECT_NEAR(XSpan(), 1000.0 * 200 / strip->width(), 1e-9);
}

TEST_F(GraphWidgetTest, TheYStripZoomsToWhatStandsBesideIt) {
  QWidget* strip = Child("yStrip");
  const auto yAt = [&](int pixel) {
    return Plot().yAxis->pixelToCoord(strip->mapTo(widget.get(), QPoint(0, pixel)).y() - Plot().y());
  };
  const double top = yAt(50);
  const double bottom = yAt(150);
  Drag(strip, {10, 50}, {10, 150});
  EXPECT_NEAR(graph->y.max, top, 0.01);
  EXPECT_NEAR(graph->y.min, bottom, 0.01);
}

TEST_F(GraphWidgetTest, ARightClickOnAStripShowsItsHelpAlone) {
  QTest::mouseClick(Child("xStrip"), Qt::RightButton);
  EXPECT_EQ(PopupTexts(), Texts{"Click and drag to zoom the axis to the highlighted area"});
  EXPECT_TRUE(graph->x.automatic);
}

TEST_F(GraphWidgetTest, TheThumbScrollsByItsShareOfTheBar) {
  SetAxisRange(*graph, 'x', 200.0, 400.0);
  auto* bar = static_cast<ZoomBar*>(Child("xBar"));
  const QPoint grip = bar->thumb().center().toPoint();
  Drag(bar, grip, grip + QPoint(60, 0));
  EXPECT_NEAR(graph->x.min, 200.0 + 1000.0 * 60 / bar->width(), 1e-6);
  EXPECT_NEAR(XSpan(), 200.0, 1e-9);
}

TEST_F(GraphWidgetTest, ABarPagesAgainWhileItIsHeld) {
  SetAxisRange(*graph, 'x', 0.0, 100.0);
  QWidget* bar = Child("xBar");
  const QPoint end(bar->width() - 2, 7);
  QTest::mousePress(bar, Qt::LeftButton, {}, end);
  EXPECT_EQ(graph->x.min, 100.0);
  QTest::qWait(1150);  // to the right every wait is 0.5 s
  QTest::mouseRelease(bar, Qt::LeftButton, {}, end);
  EXPECT_EQ(graph->x.min, 300.0);
}

TEST_F(GraphWidgetTest, AScrollButtonActsOnThePressAndRepeats) {
  SetAxisRange(*graph, 'x', 800.0, 900.0);
  QWidget* left = Child("left");
  QTest::mousePress(left, Qt::LeftButton);
  EXPECT_NEAR(graph->x.min, 790.0, 1e-9);
  QTest::qWait(760);  // 0.5 s, then every 0.1 s
  QTest::mouseRelease(left, Qt::LeftButton);
  EXPECT_LE(graph->x.min, 770.0 + 1e-9);
  EXPECT_GE(graph->x.min, 740.0);
}

TEST_F(GraphWidgetTest, KeysScrollZoomAndMoveTheCursor) {
  SetAxisRange(*graph, 'x', 300.0, 500.0);
  QTest::keyClick(widget.get(), Qt::Key_Right);
  EXPECT_NEAR(graph->x.min, 320.0, 1e-9);
  QTest::keyClick(widget.get(), Qt::Key_Plus);
  EXPECT_NEAR(XSpan(), 160.0, 1e-9);
  QTest::keyClick(widget.get(), Qt::Key_Home);
  EXPECT_TRUE(graph->x.automatic);
  Settle();
  QTest::keyClick(widget.get(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_NEAR(graph->cursors[0].x, 200.0 + 1000.0 / Area().width(), 0.01);
}

TEST_F(GraphWidgetTest, TheMenuExportsPicturesAndData) {
  const std::pair<const char*, std::string> cases[] = {
      {".png", "\x89PNG"}, {".svg", "<?xml"}, {".pdf", "%PDF"}, {".csv", "Time (ms),Current (pA)"}};
  for (const auto& [ending, start] : cases) {
    SCOPED_TRACE(ending);
    choices.push_back(folder.File("out"));  // without the extension, which is added
    widget->saveAs(ending);
    EXPECT_EQ(fileRequests.back().filter, std::string("*") + ending);
    const std::string content = ReadWholeFile(folder.File("out") + ending);
    EXPECT_EQ(content.substr(0, start.size()), start);
    EXPECT_GT(content.size(), 2000U);
  }
  choices.push_back(folder.File("none/out"));
  widget->saveAs(".png");
  EXPECT_EQ(PopupTexts(), Texts{"IO Error 100: FileOpen failed"});
}

TEST_F(GraphWidgetTest, ARightClickOpensTheMenu) {
  SetAxisRange(*graph, 'x', 300.0, 500.0);
  const QPoint at = Area().center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, Plot().mapToGlobal(at));
  QApplication::sendEvent(&Plot(), &event);
  auto* menu = widget->findChild<QMenu*>("graphMenu");
  ASSERT_NE(menu, nullptr);
  menu->actions().front()->trigger();  // full scale
  EXPECT_TRUE(graph->x.automatic);
  menu->close();
}

TEST_F(GraphWidgetTest, EscapeLetsADraggedCursorGoBack) {
  QTest::mousePress(&Plot(), Qt::LeftButton, {}, PixelOf(200.0, 0.0));
  MoveWithButton(&Plot(), PixelOf(300.0, 0.0));
  EXPECT_TRUE(widget->findChild<QLabel*>()->text().startsWith("1: 300"));
  QTest::keyClick(widget.get(), Qt::Key_Escape);
  MoveWithButton(&Plot(), PixelOf(300.0, 0.0));
  QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, PixelOf(300.0, 0.0));
  EXPECT_EQ(graph->cursors[0].x, 200.0);
}

TEST_F(GraphWidgetTest, CopiesTheDataInView) {
  SetAxisRange(*graph, 'x', 0.0, 0.25);
  widget->copyData();
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "Time (ms)\tCurrent (pA)\n0\t0\n0.1\t0.0009999999\n0.2\t0.0019999987\n");
  widget->copyPicture();
  EXPECT_GT(QGuiApplication::clipboard()->image().width(), 2 * WindowSize.width());
}

TEST_F(GraphWidgetTest, OneSampleAmongMillionsIsSeen) {
  Floats wave(3'000'000, 0.0F);
  wave[1'234'567] = 1.0F;
  ClearPlots(*graph);
  graph->cursors.clear();
  PlotWave(*graph, PlotStyle::Line, {255, 0, 0}, wave, 0.0, 0.001);
  widget->refresh();
  Settle();
  const QImage shown = Plot().grab(Area()).toImage();
  const int column = static_cast<int>(1'234'567.0 / 3'000'000.0 * Area().width());
  int red = 0;
  for (int y = 0; y < shown.height(); ++y) {
    const QColor pixel = shown.pixelColor(column, y);
    red += pixel.red() > pixel.blue() + 30;
  }
  EXPECT_GT(red, shown.height() / 2);
}

TEST_F(GraphWidgetTest, NonFiniteAndHugeValuesAreDrawnWithoutHarm) {
  const float inf = std::numeric_limits<float>::infinity();
  const Floats y{0.0F, 1.0F, NAN, 3e38F, -3e38F, inf, 2.0F, 1.0F};
  const std::vector<double> x{0.0, 1.0, 2.0, 3.0, 4.0, 5.0, NAN, 1e300};
  for (const PlotStyle style :
       {PlotStyle::Line, PlotStyle::Stair, PlotStyle::Points, PlotStyle::Cross, PlotStyle::Dashed}) {
    PlotWave(*graph, style, Black, y, 0.0, 1.0);
    PlotWave(*graph, style, Black, y, 0.0, 0.0);
    PlotPoints(*graph, style, Black, x, y);
  }
  PlotWave(*graph, PlotStyle::Line, Black, {}, 0.0, 1.0);
  for (const bool log : {false, true}) {
    SetAxisLog(*graph, 'y', log);
    for (const auto& [min, max] : {std::pair{0.0, 8.0}, {-1e300, 1e300}, {3.0, 3.0}}) {
      SetAxisRange(*graph, 'x', min, max);
      widget->refresh();
      Settle();
    }
    widget->showAll();
    Settle();
  }
}

TEST(GraphColours, BlackShowsOnDarkAndHuesKeepTheirContrast) {
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(25, 25, 25));
  dark.setColor(QPalette::Text, QColor(230, 230, 230));
  const GraphColours colours = ColoursOf(dark);
  EXPECT_EQ(VisibleColour(Black, colours), colours.text);
  EXPECT_GT(VisibleColour(DarkBlue, colours).lightness(), 110);
  EXPECT_EQ(VisibleColour(DarkBlue, colours).hslHue(), QColor(0, 0, 128).hslHue());
  EXPECT_EQ(VisibleColour(DarkBlue, PaperColours()), QColor(0, 0, 128));
}

TEST_F(GraphWidgetTest, ABarShowsWhereAPartLiesInItsWhole) {
  AddPanel({"PlacePanel", "Place"});
  Graph& record = AddGraph("PlacePanel", "PlacePanel", "Part", "");
  SetAxisRange(record, 'x', 0.0, 1.0);
  PlaceBar bar(record);
  bar.resize(400, 18);
  EXPECT_TRUE(bar.part().isEmpty());
  const std::array<double, 2> x = {0.25, 0.75};
  const std::array<float, 2> y{};
  PlotPoints(record, PlotStyle::Line, Black, x, y);
  EXPECT_EQ(bar.part(), QRectF(100.0, 0.0, 200.0, 18.0));
  ClearPlots(record);
  const std::array<double, 2> end = {1.0, 1.0};
  PlotPoints(record, PlotStyle::Line, Black, end, y);
  EXPECT_EQ(bar.part(), QRectF(398.0, 0.0, 2.0, 18.0)) << "a part of nothing is still seen";
}

int clickedCell = 0;

TEST_F(GraphWidgetTest, ATableScrollsToItsCornerMarksItsRowAndPassesClicks) {
  AddPanel({"CellsPanel", "Cells"});
  Table& record = AddTable("CellsPanel", "Cells", 1000, 8);
  record.clicked = [](Table&, int row, int column) { clickedCell = 10 * row + column; };
  TableWidget table(record);
  ShowAt(table, {400, 300});
  MarkRow(record, 3);
  table.refresh();
  EXPECT_TRUE(table.model()->index(2, 0).data(Qt::BackgroundRole).isValid());
  EXPECT_FALSE(table.model()->index(3, 0).data(Qt::BackgroundRole).isValid());
  const QPoint cell = table.visualRect(table.model()->index(4, 1)).center();
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::ShiftModifier, cell);
  EXPECT_EQ(clickedCell, 0) << "that extends the selection";
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, cell);
  EXPECT_EQ(clickedCell, 52);
  ScrollTable(record, 500, 2);
  table.refresh();
  EXPECT_EQ(table.rowAt(1), 499);
}

}  // namespace
}  // namespace zelvane
