// SchemeView: the scheme edited in place, through the controls of its panel.
#include <QLineEdit>
#include <QMenu>

#include "desktop/scheme/scheme_view.h"
#include "desktop/widget_test.h"
#include "model/model_panels.h"

namespace zelvane {
namespace {

using Kind = SchemeItem::Kind;

class SchemeViewTest : public PanelTest {
 protected:
  SchemeViewTest() {
    Model.StateOn[1] = Model.StateOn[2] = Model.StateOn[7] = 1;
    Model.KOn[1] = 4.59e6;  // 1 to 2
    Model.KOff[1] = 4260.0;
    Model.KOn[6] = 2890.0;  // 2 to 7
    Model.Depend.Drug[1][1][2] = 1;
    Model.DrugLabel[1] = "glutamate";
    RefreshModelPanels();
    UpdateDimming();
    view = std::make_unique<SchemeView>();
    ShowAt(*view, {700, 360});
  }

  const SchemeItem* Find(Kind kind, int number) const {
    return view->scheme().find({kind, number, {}, nullptr});
  }
  QPoint PointOf(Kind kind, int number) const {
    const SchemeItem* item = Find(kind, number);
    EXPECT_NE(item, nullptr);
    return item != nullptr ? item->rect.center().toPoint() : QPoint();
  }
  void Click(Kind kind, int number, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(view.get(), button, {}, PointOf(kind, number));
    Settle();
  }
  QLineEdit* Editor() { return view->findChild<QLineEdit*>("inlineEditor"); }
  void Type(const char* text, Qt::Key end = Qt::Key_Return) {
    QTest::keyClicks(Editor(), text);
    QTest::keyClick(Editor(), end);
    Settle();
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(view.get(), static_cast<Qt::Key>(key), modifiers);
  }

  std::unique_ptr<SchemeView> view;
};

TEST_F(SchemeViewTest, AClickSwitchesAStateAndItsLinksFollow) {
  EXPECT_EQ(Find(Kind::RateOn, 2), nullptr);  // 2 to 3, which is off
  Click(Kind::State, 3);
  EXPECT_EQ(Model.StateOn[3], 1);
  EXPECT_NE(Find(Kind::RateOn, 2), nullptr);
  Click(Kind::State, 3);
  EXPECT_EQ(Model.StateOn[3], 0);
  EXPECT_EQ(Find(Kind::RateOn, 2), nullptr);
}

TEST_F(SchemeViewTest, ARateIsEditedInPlace) {
  Click(Kind::RateOn, 1);
  ASSERT_TRUE(Editor()->isVisible());
  EXPECT_EQ(Editor()->selectedText(), "4590000");
  Type("2,5e7");
  EXPECT_FALSE(Editor()->isVisible());
  EXPECT_EQ(Model.KOn[1], 2.5e7);
  EXPECT_TRUE(view->hasFocus());
}

TEST_F(SchemeViewTest, ARefusedTextIsMarkedAndChangesNothing) {
  for (const char* text : {"abc", ""}) {
    SCOPED_TRACE(text);
    Click(Kind::RateOff, 1);
    Editor()->selectAll();
    QTest::keyClick(Editor(), Qt::Key_Delete);
    Type(text);
    EXPECT_TRUE(Editor()->isVisible());
    EXPECT_TRUE(Editor()->property("refused").toBool());
    EXPECT_FALSE(Editor()->toolTip().isEmpty());
    QTest::keyClick(Editor(), Qt::Key_Escape);
    EXPECT_FALSE(Editor()->isVisible());
    EXPECT_EQ(Model.KOff[1], 4260.0);
    EXPECT_EQ(ControlNamed("KOff[1]").number, 4260.0);
  }
}

TEST_F(SchemeViewTest, LeavingTheFieldTakesTheValue) {
  Click(Kind::RateOff, 1);
  QTest::keyClicks(Editor(), "17");
  Click(Kind::RateOn, 6);
  EXPECT_EQ(Model.KOff[1], 17.0);
  EXPECT_EQ(Editor()->text(), "2890");
}

TEST_F(SchemeViewTest, AMarkOpensTheDependenceOfItsRate) {
  Click(Kind::DependOn, 1);
  EXPECT_TRUE(PanelVisible("DependencePanel"));
  EXPECT_EQ(ControlNamed("DependCode").number, 102.0);
  Click(Kind::DependOff, 6);
  EXPECT_EQ(ControlNamed("DependCode").number, 702.0);
}

TEST_F(SchemeViewTest, ARightClickShowsHelpAndChangesNothing) {
  Click(Kind::State, 2, Qt::RightButton);
  const QPoint at = PointOf(Kind::RateOn, 1);
  for (const QPoint point : {PointOf(Kind::State, 2), at, PointOf(Kind::DependOn, 1)}) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, view->mapToGlobal(point));
    QApplication::sendEvent(view.get(), &event);
  }
  const Texts expected = {"Make State 2 available for occupancy", "Forward rate constant in s-1 or M-1s-1",
                          "Displays a panel that alows you to impose concentrations and voltage dependence."};
  EXPECT_EQ(PopupTexts(), expected);
  EXPECT_EQ(Model.StateOn[2], 1);
  EXPECT_FALSE(PanelVisible("DependencePanel"));
}

TEST_F(SchemeViewTest, TheMenuOfAStateEditsWhatBelongsToIt) {
  const auto choose = [&](const char* start) {
    Click(Kind::Menu, 7);
    auto* menu = view->findChild<QMenu*>("stateMenu");
    ASSERT_NE(menu, nullptr);
    for (QAction* action : menu->actions()) {
      if (QString(action->text()).remove('&').startsWith(start)) action->trigger();
    }
    menu->close();
    Settle();
  };
  choose("Label");
  Type("AR*");
  choose("Conductance");
  Type("30");
  choose("Starting");
  Type("0.25");
  choose("Monitored");
  choose("On");
  EXPECT_EQ(Model.StateLabel[7], "AR*");
  EXPECT_EQ(Model.StateConductance[7], 30.0F);
  EXPECT_EQ(Model.StartOccupancy[7], 0.25F);
  EXPECT_EQ(Model.StateMonitored[7], 1);
  EXPECT_EQ(Model.StateOn[7], 0);
  choose("Help");
  EXPECT_EQ(PopupTexts(), Texts{"Make State 7 available for occupancy"});
}

TEST_F(SchemeViewTest, KeysReachStatesRatesAndMarks) {
  view->setFocus(Qt::TabFocusReason);
  Key(Qt::Key_Tab);  // state 1, then K1 on
  Key('3');
  ASSERT_TRUE(Editor()->isVisible());
  Type("00", Qt::Key_Tab);
  EXPECT_EQ(Model.KOn[1], 300.0);
  Key(Qt::Key_Space);  // the mark of K1 on
  EXPECT_EQ(ControlNamed("DependCode").number, 102.0);
  Key(Qt::Key_Right);
  Key(Qt::Key_Down);
  Key(Qt::Key_Space);
  EXPECT_EQ(Model.StateOn[7], 0);
  Key(Qt::Key_F2);
  Type("C2");
  EXPECT_EQ(Model.StateLabel[7], "C2");
  Key(Qt::Key_F1);
  EXPECT_EQ(PopupTexts(), Texts{"Make State 7 available for occupancy"});
}

TEST_F(SchemeViewTest, NumbersAreShortAndMarksNameTheDrug) {
  EXPECT_EQ(SchemeLayout::rateText(ControlNamed("KOn[1]")), "4.59e6");
  EXPECT_EQ(SchemeLayout::badgeText(1, true), "glutamate");
  EXPECT_EQ(SchemeLayout::badgeText(1, false), "");
  EXPECT_NE(Find(Kind::Kd, 1), nullptr);
  EXPECT_EQ(Find(Kind::Kd, 6), nullptr);
}

TEST_F(SchemeViewTest, NothingOverlapsInAFullScheme) {
  for (int s = 1; s <= MaxStates; ++s) Model.StateOn[s] = 1;
  for (int n = 1; n <= MaxLinks; ++n) Model.KOn[n] = Model.KOff[n] = 1.234e-5;
  RefreshModelPanels();
  UpdateDimming();
  for (const QSize size : {QSize(700, 360), QSize(830, 285), QSize(1500, 800)}) {
    view->resize(size);
    view->refresh();
    const std::vector<SchemeItem>& items = view->scheme().items();
    for (const SchemeItem& a : items) {
      EXPECT_TRUE(QRectF(view->rect()).contains(a.rect)) << static_cast<int>(a.kind) << ' ' << a.number;
      for (const SchemeItem& b : items) {
        if (&a == &b || a.kind == Kind::Menu || b.kind == Kind::Menu) continue;
        ASSERT_FALSE(a.rect.intersects(b.rect)) << static_cast<int>(a.kind) << ' ' << a.number << " and "
                                                << static_cast<int>(b.kind) << ' ' << b.number;
      }
    }
  }
}

}  // namespace
}  // namespace zelvane
