// Zoom graphs: strips, span buttons, bars. Expected ranges are calculated by hand from the rules, with round
// numbers.
#include "screen/zoom_graph.h"

#include "support/store_test.h"

namespace zelvane {
namespace {

int changes = 0;

/// A view of 100..200 by -10..10 in a full range of 0..1000 by -50..50, on a plot area of 1000 by 500 pixels.
class ZoomGraphTest : public StoreTest {
 protected:
  ZoomGraphTest() {
    AddPanel({"TestPanel", "Test"});
    graph = &AddGraph("TestPanel", "TestPanel", "", "");
    ZoomGraphCreate(*graph);
    ZoomSetFullRange(*graph, 'x', 0.0, 1000.0);
    ZoomSetFullRange(*graph, 'y', -50.0, 50.0);
    View('x', 100.0, 200.0);
    View('y', -10.0, 10.0);
    graph->axisChanged = [](Graph&) { ++changes; };
    changes = 0;
  }

  void View(char axis, double min, double max) { SetAxisRange(*graph, axis, min, max); }

  void ExpectView(char axis, double min, double max) const {
    const DataRange view = ViewRange(*graph, axis);
    EXPECT_NEAR(view.min, min, 1e-9) << axis;
    EXPECT_NEAR(view.max, max, 1e-9) << axis;
  }

  Graph* graph = nullptr;
};

TEST_F(ZoomGraphTest, AStripDragShowsTheHighlightedArea) {
  using Case = std::tuple<char, double, double, double, double>;
  for (const auto& [axis, a, b, min, max] :
       {Case{'x', 250.0, 750.0, 125.0, 175.0}, Case{'x', 750.0, 250.0, 125.0, 175.0},
        Case{'x', -300.0, 500.0, 100.0, 150.0}, Case{'x', 500.0, 5000.0, 150.0, 200.0},
        Case{'y', 0.0, 250.0, 0.0, 10.0},  // pixels count from the top
        Case{'y', 250.0, 256.0, -0.24, 0.0}}) {
    SCOPED_TRACE(testing::Message() << axis << ' ' << a << ' ' << b);
    View('x', 100.0, 200.0);
    View('y', -10.0, 10.0);
    changes = 0;
    ZoomStrip(*graph, axis, a, b);
    ExpectView(axis, min, max);
    EXPECT_EQ(changes, 1);
  }
}

TEST_F(ZoomGraphTest, AShortDragAndATooNarrowXZoomLeaveTheView) {
  ZoomStrip(*graph, 'x', 100.0, 105.0);  // 5 pixels
  ZoomStrip(*graph, 'y', 100.0, 95.0);
  ZoomStrip(*graph, 'x', -50.0, 4.0);    // limited to the strip: 4 pixels
  ZoomStrip(*graph, 'x', 100.0, 199.0);  // a span of 9.9
  ExpectView('x', 100.0, 200.0);
  ExpectView('y', -10.0, 10.0);
  EXPECT_EQ(changes, 0);
  ZoomStrip(*graph, 'x', 100.0, 200.0);  // a span of 10
  ExpectView('x', 110.0, 120.0);
}

TEST_F(ZoomGraphTest, ButtonsResizeAndShiftTheViewWithinTheFullRange) {
  using Case = std::tuple<const char*, DataRange, DataRange>;
  for (const auto& [button, before, after] :
       {Case{"xexpand", {100.0, 200.0}, {100.0, 150.0}}, Case{"xexpand", {100.0, 113.0}, {100.0, 106.5}},
        Case{"xexpand", {100.0, 112.9}, {100.0, 110.0}}, Case{"xexpand", {100.0, 110.0}, {100.0, 110.0}},
        Case{"xexpand", {100.0, 109.9}, {100.0, 109.9}}, Case{"xcontract", {100.0, 180.0}, {100.0, 260.0}},
        Case{"xcontract", {900.0, 980.0}, {900.0, 1000.0}},
        Case{"xcontract", {920.0, 1000.0}, {920.0, 1000.0}}, Case{"left", {100.0, 200.0}, {90.0, 190.0}},
        Case{"left", {5.0, 105.0}, {0.0, 100.0}}, Case{"right", {100.0, 200.0}, {110.0, 210.0}},
        Case{"right", {-100.0, 1200.0}, {-100.0, 1200.0}}, Case{"up", {-10.0, 10.0}, {-8.0, 12.0}},
        Case{"down", {-10.0, 10.0}, {-12.0, 8.0}}}) {
    SCOPED_TRACE(testing::Message() << button << ' ' << before.min << ' ' << before.max);
    const char axis = before.min == -10.0 ? 'y' : 'x';
    View(axis, before.min, before.max);
    changes = 0;
    EXPECT_TRUE(ZoomButton(*graph, button));
    ExpectView(axis, after.min, after.max);
    const bool moved = after.min != before.min || after.max != before.max;
    EXPECT_EQ(changes, moved ? 1 : 0);
  }
  EXPECT_FALSE(ZoomButton(*graph, "zexpand"));
}

TEST_F(ZoomGraphTest, YButtonsKeepTheCentreAndContractWidensTheFullRange) {
  View('y', 10.0, 20.0);
  ZoomButton(*graph, "yexpand");
  ExpectView('y', 12.5, 17.5);
  ZoomButton(*graph, "ycontract");
  ExpectView('y', 10.0, 20.0);
  EXPECT_EQ(graph->fullYMin, 10.0);
  EXPECT_EQ(graph->fullYMax, 20.0);
  EXPECT_EQ(ZoomThumbOf(*graph, 'y').length, PlotArea{}.height);  // the whole bar is filled
}

TEST_F(ZoomGraphTest, ThumbsAreTruncatedAndKeepALengthThatCanBeGrasped) {
  EXPECT_EQ(ZoomThumbOf(*graph, 'x').start, 100.0);
  EXPECT_EQ(ZoomThumbOf(*graph, 'x').length, 100.0);
  EXPECT_EQ(ZoomThumbOf(*graph, 'y').start, 200.0);  // (50 - 10) / 100 of 500, from the top
  EXPECT_EQ(ZoomThumbOf(*graph, 'y').length, 100.0);
  View('x', 100.7, 112.6);  // 11.9 pixels
  EXPECT_EQ(ZoomThumbOf(*graph, 'x').start, 100.0);
  EXPECT_EQ(ZoomThumbOf(*graph, 'x').length, 11.0);
  View('x', 500.0, 500.1);
  EXPECT_EQ(ZoomThumbOf(*graph, 'x').length, 10.0);
  ZoomSetFullRange(*graph, 'x', 5.0, 5.0);  // no range: the whole bar
  EXPECT_EQ(ZoomThumbOf(*graph, 'x').length, PlotArea{}.width);
}

TEST_F(ZoomGraphTest, AThumbDragShiftsByItsShareOfTheFullRangeAndStopsAtTheEnds) {
  using Case = std::tuple<char, double, double, double>;
  for (const auto& [axis, pixels, min, max] :
       {Case{'x', 30.0, 130.0, 230.0}, Case{'x', -150.0, 0.0, 100.0}, Case{'x', 5000.0, 900.0, 1000.0},
        Case{'y', 50.0, -20.0, 0.0}, Case{'y', -1000.0, 30.0, 50.0}, Case{'y', 900.0, -50.0, -30.0}}) {
    SCOPED_TRACE(testing::Message() << axis << ' ' << pixels);
    View('x', 100.0, 200.0);
    View('y', -10.0, 10.0);
    ZoomThumb(*graph, axis, pixels);
    ExpectView(axis, min, max);
  }
}

TEST_F(ZoomGraphTest, PagesShiftByOneSpanEachAndStopAtTheEnds) {
  ZoomPage(*graph, 'x', 3);
  ExpectView('x', 400.0, 500.0);
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(pumps, 3);  // the owner may redraw between two pages
  ZoomPage(*graph, 'x', 1000000000);
  ExpectView('x', 900.0, 1000.0);
  EXPECT_EQ(changes, 8);
  ZoomPage(*graph, 'x', -100);
  ExpectView('x', 0.0, 100.0);
  ZoomPage(*graph, 'y', -1);  // up
  ExpectView('y', 10.0, 30.0);
  ZoomPage(*graph, 'y', 2);
  ExpectView('y', -30.0, -10.0);
}

TEST_F(ZoomGraphTest, AViewWiderThanTheFullRangeStays) {
  View('x', -100.0, 1200.0);
  changes = 0;
  ZoomPage(*graph, 'x', 2);
  ZoomThumb(*graph, 'x', -40.0);
  ExpectView('x', -100.0, 1200.0);
  EXPECT_EQ(changes, 0);
}

TEST_F(ZoomGraphTest, AnAutomaticAxisIsFixedAtItsViewWhenZoomed) {
  const Floats samples{0.0F, 1.0F, 4.0F, 2.0F};
  PlotWave(*graph, PlotStyle::Line, Black, samples, 0.0, 100.0);
  SetAxisAuto(*graph, 'x');
  SetAxisAuto(*graph, 'y');
  ZoomStrip(*graph, 'x', 0.0, 500.0);
  EXPECT_FALSE(graph->x.automatic);
  ExpectView('x', 0.0, 150.0);
  EXPECT_TRUE(graph->y.automatic);
  ZoomButton(*graph, "yexpand");
  ExpectView('y', 1.0, 3.0);
}

}  // namespace
}  // namespace zelvane
