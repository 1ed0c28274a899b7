// Graphs, tables and text boxes as records.
#include <cmath>
#include <limits>

#include "screen/screen.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

int movedCursor = 0;

class GraphsTest : public StoreTest {
 protected:
  GraphsTest() {
    AddPanel({"TestPanel", "Test"});
    graph = &AddGraph("TestPanel", "TestPanel", "Time (ms)", "pA", 2);
    graph->cursorMoved = [](Graph&, int cursor) { movedCursor = cursor; };
  }
  Graph* graph = nullptr;
};

TEST_F(GraphsTest, APlotKeepsItsOwnCopyOfTheData) {
  std::vector<float> data = {1.0F, 2.0F};
  PlotWave(*graph, PlotStyle::Line, Black, data, 0.0, 0.5);
  data[1] = 99.0F;
  EXPECT_EQ(DataRangeOf(*graph, 'y')->max, 2.0);
  EXPECT_EQ(DataRangeOf(*graph, 'x')->max, 0.5);
}

TEST_F(GraphsTest, RangesPassOverWhatIsNotFinite) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  PlotWave(*graph, PlotStyle::Line, Black, std::vector<float>{nan, -3.0F, inf, 4.0F}, 0.0, 1.0);
  EXPECT_EQ(DataRangeOf(*graph, 'y')->min, -3.0);
  EXPECT_EQ(DataRangeOf(*graph, 'y')->max, 4.0);
  ClearPlots(*graph);
  PlotWave(*graph, PlotStyle::Line, Black, std::vector<float>{nan, nan}, 0.0, 1.0);
  EXPECT_FALSE(DataRangeOf(*graph, 'y'));
  PlotWave(*graph, PlotStyle::Line, Black, {}, 0.0, 1.0);
  EXPECT_EQ(ViewRange(*graph, 'y').max, 1.0) << "an axis without data keeps its own range";
}

TEST_F(GraphsTest, OnlyEnabledCursorsWithinTheGraphMove) {
  EXPECT_EQ(MoveCursor(*graph, 2, 5.0, std::nullopt), "");
  EXPECT_EQ(movedCursor, 2);
  EXPECT_EQ(graph->cursors[1].x, 5.0);
  EXPECT_NE(MoveCursor(*graph, 3, 5.0, 1.0), "");
  EXPECT_NE(MoveCursor(*graph, 0, 5.0, 1.0), "");
  EXPECT_NE(MoveCursor(*graph, 1, std::nan(""), 1.0), "");
  graph->cursors[0].enabled = false;
  EXPECT_NE(MoveCursor(*graph, 1, 1.0, 1.0), "");
}

TEST_F(GraphsTest, CellsTakeNumbersWithinTheTable) {
  Table& table = AddTable("TestPanel", "TestTable", 2, 3);
  table.editable = true;
  EXPECT_EQ(EnterCell(table, 2, 3, "1.5"), "");
  EXPECT_EQ(CellText(table, 2, 3), "1.5");
  for (const auto& [row, column] : {std::pair{3, 1}, {1, 4}, {0, 1}})
    EXPECT_NE(EnterCell(table, row, column, "1"), "");
  for (const char* text : {"one", "nan"}) EXPECT_NE(EnterCell(table, 1, 1, text), "");
  table.editable = false;
  EXPECT_NE(EnterCell(table, 1, 1, "1"), "");
}

}  // namespace
}  // namespace zelvane
