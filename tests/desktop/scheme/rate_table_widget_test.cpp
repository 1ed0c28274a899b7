// RateTableView: cells, labels, blocks and dependences of the table form.
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>

#include "desktop/scheme/rate_table_model.h"
#include "desktop/scheme/rate_table_view.h"
#include "desktop/widget_test.h"
#include "model/model_panels.h"

namespace zelvane {
namespace {

class RateTableViewTest : public PanelTest {
 protected:
  RateTableViewTest() {
    Model.TableRate[1][2] = 4.59e6F;
    Model.TableDepend.Drug[2][1][2] = 1;
    Model.DrugLabel[2] = "glycine";
    WriteTableRates();
    UpdateDimming();
    view = std::make_unique<RateTableView>();
    ShowAt(*view, {900, 420});
  }

  QTableView& Table() { return view->table(); }
  QModelIndex Cell(int from, int to) { return Table().model()->index(from - 1, to - 1); }
  QString Shown(int from, int to) { return Cell(from, to).data().toString(); }
  void Select(int from, int to, int lastFrom = 0, int lastTo = 0) {
    Table().setCurrentIndex(Cell(from, to));
    if (lastFrom == 0) return;
    Table().selectionModel()->select({Cell(from, to), Cell(lastFrom, lastTo)},
                                     QItemSelectionModel::ClearAndSelect);
  }
  void Type(const char* text) {  // types into the current cell, as in a spreadsheet
    Table().setFocus();
    QTest::keyClicks(&Table(), QString(text).left(1));
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, QString(text).mid(1));
    QTest::keyClick(editor, Qt::Key_Return);
    Settle();
  }
  static void Clip(const char* text) { QGuiApplication::clipboard()->setText(text); }

  std::unique_ptr<RateTableView> view;
};

TEST_F(RateTableViewTest, ATypedRateReachesTheStore) {
  Select(3, 7);
  Type("2,5e3");
  EXPECT_EQ(Model.TableRate[3][7], 2500.0F);
  EXPECT_EQ(Shown(3, 7), "2500");
  EXPECT_EQ(Shown(1, 2), "4.59e6");
  EXPECT_EQ(Shown(1, 3), "");  // no transition
  EXPECT_FALSE(Table().model()->flags(Cell(4, 4)).testFlag(Qt::ItemIsEditable));
}

TEST_F(RateTableViewTest, ARefusedTextIsMarkedAndTheRateStays) {
  Select(1, 2);
  Type("12x");
  EXPECT_EQ(Model.TableRate[1][2], 4.59e6F);
  EXPECT_EQ(Shown(1, 2), "12x");
  EXPECT_TRUE(Cell(1, 2).data(RateTableModel::RefusedRole).toBool());
  EXPECT_EQ(Cell(1, 2).data(Qt::ToolTipRole), "not a number");
  Type("12");
  EXPECT_EQ(Model.TableRate[1][2], 12.0F);
  EXPECT_FALSE(Cell(1, 2).data(RateTableModel::RefusedRole).toBool());
}

TEST_F(RateTableViewTest, ABlockIsCopiedAsASpreadsheetTakesIt) {
  Model.TableRate[2][1] = 0.25F;
  WriteTableRates();
  Select(1, 1, 2, 3);
  QTest::keyClick(&Table(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "\t4590000\t0\n0.25\t\t0\n");
}

TEST_F(RateTableViewTest, ABlockIsPastedWholeAndBlanksLeaveWhatStands) {
  Clip("\t7\t8,5\r\n9\t\t1e3\r\n");
  Select(1, 1);
  QTest::keyClick(&Table(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Model.TableRate[1][2], 7.0F);
  EXPECT_EQ(Model.TableRate[1][3], 8.5F);
  EXPECT_EQ(Model.TableRate[2][1], 9.0F);
  EXPECT_EQ(Model.TableRate[2][3], 1000.0F);
  EXPECT_TRUE(popups.empty());
}

TEST_F(RateTableViewTest, ABadBlockIsRefusedWhole) {
  for (const auto& [text, from, to, reason] :
       {std::tuple{"1\t2\n3\tabc\n", 1, 2, "row 2, column 2: \"abc\" is not a number"},
        {"1\t2\n", 5, 4, "row 1, column 2: there is no cell for this number"},  // the diagonal
        {"1\t2\n", 5, 20, "row 1, column 2: there is no cell for this number"},
        {"1\t1e300\n", 1, 2, "row 1, column 2: too large for this field"},
        {"", 1, 2, "The clipboard holds no numbers."}}) {
    SCOPED_TRACE(text);
    const auto before = Model.TableRate;
    Clip(text);
    Select(from, to);
    view->paste();
    EXPECT_EQ(Model.TableRate, before);
    EXPECT_EQ(ControlNamed("TableRate[1][2]").number, 4.59e6);
    EXPECT_EQ(PopupTexts(), Texts{std::string("Nothing was pasted. ") + reason});
    popups.clear();
  }
}

TEST_F(RateTableViewTest, DeleteSetsTheSelectionToZero) {
  Model.TableRate[2][1] = 5.0F;
  WriteTableRates();
  Select(1, 1, 2, 2);
  QTest::keyClick(&Table(), Qt::Key_Delete);
  EXPECT_EQ(Model.TableRate[1][2], 0.0F);
  EXPECT_EQ(Model.TableRate[2][1], 0.0F);
}

TEST_F(RateTableViewTest, TheMarkAndTheKeyOpenTheDependence) {
  const QRect cell = Table().visualRect(Cell(1, 2));
  EXPECT_EQ(Cell(1, 2).data(RateTableModel::DependenceRole), "glycine");
  EXPECT_EQ(Cell(2, 1).data(RateTableModel::DependenceRole), "");
  QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, cell.center() + QPoint(10, 0));
  Settle();
  EXPECT_FALSE(PanelVisible("DependencePanel"));
  QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, QPoint(cell.left() + 6, cell.center().y()));
  Settle();
  EXPECT_TRUE(PanelVisible("DependencePanel"));
  EXPECT_EQ(ControlNamed("DependCode").number, 102.0);
  Select(13, 19);
  QTest::keyClick(&Table(), Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(ControlNamed("DependCode").number, 1319.0);
}

TEST_F(RateTableViewTest, ADoubleClickOnAHeaderEditsTheLabel) {
  QHeaderView* header = Table().verticalHeader();
  const QPoint at(10, header->sectionViewportPosition(2) + 5);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, at);
  auto* editor = view->findChild<QLineEdit*>("inlineEditor");
  ASSERT_TRUE(editor->isVisible());
  EXPECT_EQ(editor->text(), "3");
  QTest::keyClicks(editor, "Open");
  QTest::keyClick(editor, Qt::Key_Return);
  EXPECT_EQ(Model.TableStateLabel[3], "Open");
  EXPECT_EQ(Table().model()->headerData(2, Qt::Vertical), "3 Open");
}

TEST_F(RateTableViewTest, ARightClickShowsTheHelpOfTheCell) {
  const QPoint at = Table().visualRect(Cell(1, 2)).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, Table().viewport()->mapToGlobal(at));
  QApplication::sendEvent(Table().viewport(), &event);
  EXPECT_EQ(PopupTexts(), Texts{ControlNamed("TableRate[1][2]").help});
}

}  // namespace
}  // namespace zelvane
