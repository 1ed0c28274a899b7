// Graphs, tables and text boxes as records: readouts and data as text, and the view with wheel, drag and
// keys.
#include <limits>

#include "screen/graph_text.h"
#include "screen/zoom_graph.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class GraphsTest : public StoreTest {
 protected:
  GraphsTest() {
    AddPanel({.name = "Panel"});
    graph = &AddGraph("Panel", "Graph", "Time (ms)", "Current", 3);
    graph->cursors[1].enabled = false;
  }
  void Wave(Floats y, double start = 0.0, double step = 0.5) {
    PlotWave(*graph, PlotStyle::Line, Black, y, start, step);
  }
  std::string Text(DataRange view) { return GraphText(*graph, view, ',', 100).value_or("too many"); }

  static constexpr double Inf = std::numeric_limits<double>::infinity();
  Graph* graph = nullptr;
};

TEST_F(GraphsTest, APlotKeepsItsOwnCopyOfTheData) {
  Floats data = {1.0F, 2.0F};
  PlotWave(*graph, PlotStyle::Line, Black, data, 0.0, 0.5);
  data[1] = 99.0F;
  EXPECT_EQ(DataRangeOf(*graph, 'y')->max, 2.0);
  EXPECT_EQ(DataRangeOf(*graph, 'x')->max, 0.5);
}

TEST_F(GraphsTest, RangesPassOverWhatIsNotFinite) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  PlotWave(*graph, PlotStyle::Line, Black, Floats{nan, -3.0F, inf, 4.0F}, 0.0, 1.0);
  EXPECT_EQ(DataRangeOf(*graph, 'y')->min, -3.0);
  EXPECT_EQ(DataRangeOf(*graph, 'y')->max, 4.0);
  ClearPlots(*graph);
  PlotWave(*graph, PlotStyle::Line, Black, Floats{nan, nan}, 0.0, 1.0);
  EXPECT_FALSE(DataRangeOf(*graph, 'y'));
  PlotWave(*graph, PlotStyle::Line, Black, {}, 0.0, 1.0);
  EXPECT_EQ(ViewRange(*graph, 'y').max, 1.0) << "an axis without data keeps its own range";
}

TEST_F(GraphsTest, OnlyEnabledCursorsWithinTheGraphMove) {
  static int moved = 0;
  graph->cursorMoved = [](Graph&, int cursor) { moved = cursor; };
  EXPECT_EQ(MoveCursor(*graph, 3, 5.0, std::nullopt), "");
  EXPECT_EQ(moved, 3);
  EXPECT_EQ(graph->cursors[2].x, 5.0);
  for (const int cursor : {0, 2, 4}) EXPECT_NE(MoveCursor(*graph, cursor, 5.0, 1.0), "") << cursor;
  EXPECT_NE(MoveCursor(*graph, 1, std::nan(""), 1.0), "");
}

TEST_F(GraphsTest, CellsTakeNumbersWithinTheTable) {
  Table& table = AddTable("Panel", "TestTable", 2, 3);
  table.editable = true;
  EXPECT_EQ(EnterCell(table, 2, 3, "1.5"), "");
  EXPECT_EQ(CellText(table, 2, 3), "1.5");
  for (const auto& [row, column] : {std::pair{3, 1}, {1, 4}, {0, 1}})
    EXPECT_NE(EnterCell(table, row, column, "1"), "");
  for (const char* text : {"one", "nan"}) EXPECT_NE(EnterCell(table, 1, 1, text), "");
  table.editable = false;
  EXPECT_NE(EnterCell(table, 1, 1, "1"), "");
}

TEST_F(GraphsTest, PlotsAtTheSameTimesShareAColumn) {
  Wave({1.0F, 2.0F, 3.0F});
  Wave({4.0F, 5.0F});
  EXPECT_EQ(Text({-Inf, Inf}), "Time (ms),Current,Current\n0,1,4\n0.5,2,5\n1,3,\n");
  EXPECT_EQ(Text({0.4, 0.6}), "Time (ms),Current,Current\n0.5,2,5\n");
  graph->x.gain = 0.5;  // an axis of samples uses the unit of its title
  EXPECT_EQ(Text({-Inf, Inf}), "Time (ms),Current,Current\n0,1,4\n0.25,2,5\n0.5,3,\n");
}

TEST_F(GraphsTest, PlotsAtOtherTimesHaveTheirOwn) {
  Wave({1.0F, 2.0F});
  PlotPoints(*graph, PlotStyle::Points, Black, std::vector<double>{7.0, 0.25}, Floats{8.0F, 9.0F});
  SetAxisTitle(*graph, 'y', "I, \"A\"");
  EXPECT_EQ(Text({-Inf, Inf}),
            "Time (ms),\"I, \"\"A\"\"\",Time (ms),\"I, \"\"A\"\"\"\n0,1,7,8\n0.5,2,0.25,9\n");
}

TEST_F(GraphsTest, MoreRowsThanAllowedGiveNothing) {
  Wave(Floats(101));
  EXPECT_EQ(Text({-Inf, Inf}), "too many");
  EXPECT_NE(Text({0.0, 10.0}), "too many");
}

TEST_F(GraphsTest, AFileHoldsAllSamplesAndAFailedOneLeavesTheOld) {
  Wave(Floats(300'000, 0.125F), 0.0, 0.01);
  ASSERT_TRUE(WriteGraphFile(*graph, folder.File("a.csv")));
  const std::string content = ReadWholeFile(folder.File("a.csv"));
  EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 300'001);
  EXPECT_TRUE(content.ends_with("\n2999.99,0.125\n"));
  EXPECT_FALSE(WriteGraphFile(*graph, folder.Path().string()));
}

TEST_F(GraphsTest, HeightIsLinearBetweenSamples) {
  Wave({0.0F, 10.0F, NAN, 2.0F}, 1.0);
  const Plot& plot = graph->plots[0];
  EXPECT_EQ(HeightAt(plot, 1.25), 5.0);
  EXPECT_EQ(HeightAt(plot, 1.0), 0.0);
  for (const double x : {0.9, 2.6, 1.75, static_cast<double>(NAN), Inf}) EXPECT_FALSE(HeightAt(plot, x)) << x;
  EXPECT_FALSE(HeightAt(Plot{}, 0.0));
}

TEST_F(GraphsTest, ThePictureLeavesRoomAboveAndBelowAutomaticData) {
  EXPECT_EQ(PictureRange(*graph, 'y').max, 1.0);
  Wave({0.0F, 18.0F});
  EXPECT_EQ(PictureRange(*graph, 'y').min, -1.0);
  EXPECT_EQ(PictureRange(*graph, 'y').max, 19.0);
  SetAxisRange(*graph, 'y', 0.0, 18.0);
  EXPECT_EQ(PictureRange(*graph, 'y').max, 18.0);
  SetAxisRange(*graph, 'y', 4.0, 4.0);  // never empty
  EXPECT_EQ(PictureRange(*graph, 'y').max, 6.0);
  SetAxisLog(*graph, 'y', true);
  SetAxisRange(*graph, 'y', -1.0, 100.0);  // above 0
  EXPECT_NEAR(PictureRange(*graph, 'y').min, 1e-4, 1e-18);
}

TEST_F(GraphsTest, AZoomKeepsThePlaceOfItsPoint) {
  SetAxisRange(*graph, 'x', 100.0, 200.0);
  ZoomAbout(*graph, 'x', 120.0, 0.5);
  EXPECT_EQ(graph->x.min, 110.0);
  EXPECT_EQ(graph->x.max, 160.0);
  ZoomAbout(*graph, 'x', 120.0, 1e-12);  // narrower than doubles resolve
  EXPECT_EQ(graph->x.max, 160.0);
  SetAxisLog(*graph, 'x', true);
  SetAxisRange(*graph, 'x', 1.0, 10000.0);
  ZoomAbout(*graph, 'x', 100.0, 0.5);
  EXPECT_NEAR(graph->x.min, 10.0, 1e-12);
  EXPECT_NEAR(graph->x.max, 1000.0, 1e-9);
}

TEST_F(GraphsTest, TheXViewOfAZoomGraphStopsAtItsFullRange) {
  ZoomGraphCreate(*graph);
  ZoomSetFullRange(*graph, 'x', 0.0, 1000.0);
  SetAxisRange(*graph, 'x', 100.0, 300.0);
  ZoomPan(*graph, 'x', {100.0, 300.0}, -5.0);
  EXPECT_EQ(graph->x.min, 0.0);
  EXPECT_EQ(graph->x.max, 200.0);
  ZoomAbout(*graph, 'x', 100.0, 100.0);
  EXPECT_EQ(graph->x.min, 0.0);
  EXPECT_EQ(graph->x.max, 1000.0);
  ZoomPan(*graph, 'y', {0.0, 1.0}, 3.0);  // y has no limit
  EXPECT_EQ(graph->y.min, 3.0);
}

TEST_F(GraphsTest, TheOwnerIsToldOfEveryChangeOfTheView) {
  static int told = 0;
  told = 0;
  graph->axisChanged = [](Graph&) { ++told; };
  ZoomAbout(*graph, 'x', 0.5, 0.5);
  ZoomPan(*graph, 'y', {0.0, 1.0}, 0.1);
  ZoomFullScale(*graph);
  ZoomFullScale(*graph);  // nothing more to change
  EXPECT_EQ(told, 3);
  EXPECT_TRUE(graph->x.automatic && graph->y.automatic);
}

TEST_F(GraphsTest, CursorsAreBroughtToThirdsOfTheView) {
  Wave({0.0F, 30.0F}, 0.0, 30.0);
  ZoomBringCursors(*graph);
  EXPECT_EQ(graph->cursors[0].x, 10.0);
  EXPECT_EQ(graph->cursors[0].y, 10.0);
  EXPECT_EQ(graph->cursors[2].x, 20.0);
  EXPECT_EQ(graph->cursors[1].x, 0.0);  // disabled
  EXPECT_EQ(CursorReadout(graph->cursors, graph->x.title),
            "1: 10 ms, 10    3: 20 ms, 20    \u0394: 10 ms, 10");
  EXPECT_EQ(CursorReadout({}, "Time"), "");
}

}  // namespace
}  // namespace zelvane
