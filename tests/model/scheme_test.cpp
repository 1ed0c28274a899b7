// The two forms of the scheme: how each becomes rates, how one is copied into the other, and how they are
// cleared.
#include <tuple>

#include "model/model.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

void SetLink(int link, double on, double off) {
  Model.KOn[link] = on;
  Model.KOff[link] = off;
}

/// Switches the states of links 1..4 on and gives each link its own pair of rates.
void SetFirstRow() {
  for (int s = 1; s <= 5; ++s) Model.StateOn[s] = 1;
  for (int n = 1; n <= 4; ++n) SetLink(n, 10.0 * n, 10.0 * n + 1.0);
}

/// Return the fields of the grid and those of the table, for comparisons.
auto GridPart(const ModelStore& m) {
  const DependenceTables& d = m.Depend;
  return std::tie(m.KOn, m.KOff, m.RateMatrix, d.Drug, d.Volt, d.Steepness, d.Range, m.StateOn,
                  m.StateMonitored, m.StateLabel, m.DrugLabel, m.ModelTitle, m.ModelFileName);
}
auto TablePart(const ModelStore& m) {
  const DependenceTables& d = m.TableDepend;
  return std::tie(m.TableRate, m.TableStateOn, d.Drug, d.Volt, d.Steepness, d.Range, m.TableStateLabel);
}

using SchemeTest = StoreTest;

TEST_F(SchemeTest, ALinkWithAStateOffGivesNoRatesButKeepsItsValues) {
  SetFirstRow();
  Model.StateOn[3] = 0;
  Model.RateMatrix[9][9] = 1.0F;
  RatesFromGrid();
  EXPECT_EQ(Model.RateMatrix[1][2], 10.0F);
  EXPECT_EQ(Model.RateMatrix[2][1], 11.0F);
  EXPECT_EQ(Model.RateMatrix[2][3], 0.0F);
  EXPECT_EQ(Model.RateMatrix[3][2], 0.0F);
  EXPECT_EQ(Model.RateMatrix[9][9], 0.0F);
  EXPECT_EQ(Model.KOn[2], 20.0);
  Model.RateMatrix[1][2] = 0.1F;
  Model.StateOn[5] = 0;
  GridFromRates();
  EXPECT_EQ(Model.KOn[1], static_cast<double>(0.1F));
  EXPECT_EQ(Model.KOff[1], 11.0);
  EXPECT_EQ(Model.KOn[4], 40.0) << "rates come back only where both states are on";
  EXPECT_EQ(Model.KOff[4], 41.0);
}

TEST_F(SchemeTest, AStateOfTheTableIsOnWhenARateLeadsIntoIt) {
  Model.TableRate[4][9] = 2.0F;
  Model.TableRate[9][12] = -3.0F;
  Model.TableRate[6][6] = 1.0F;  // there is no cell; a file can have it
  Model.TableDepend.Volt[4][9] = 2;
  ActivateTableModel();
  for (int s = 1; s <= MaxStates; ++s) EXPECT_EQ(Model.TableStateOn[s], s == 9 ? 1 : 0) << s;
  EXPECT_EQ(Model.RateMatrix[4][9], 2.0F);
  EXPECT_EQ(Model.RateMatrix[6][6], 0.0F);
  EXPECT_EQ(Model.Depend.Volt[4][9], 2);
}

TEST_F(SchemeTest, AGridOfPositiveRatesSurvivesTheWayThroughTheTable) {
  for (int s = 1; s <= MaxStates; ++s) Model.StateOn[s] = 1;
  for (int n = 1; n <= MaxLinks; ++n) {
    SetLink(n, n, 100.0 + n);
    const auto [low, high] = LinkTable[n];
    Model.Depend.Drug[1 + n % MaxDrugs][low][high] = 1;
    Model.Depend.Volt[high][low] = 1;
    Model.Depend.Steepness[high][low] = 0.5F;
  }
  Model.StateLabel[20] = "End";
  RatesFromGrid();
  const ModelStore before = Model;
  CopyGridToTable();
  Model.KOn = {};
  Model.KOff = {};
  Model.StateLabel = {};
  Model.Depend = {};
  EXPECT_FALSE(CopyTableToGrid());
  EXPECT_TRUE(GridPart(Model) == GridPart(before));
}

TEST_F(SchemeTest, ARateBetweenStatesThatAreNoNeighboursStaysInTheTable) {
  Model.TableRate[1][2] = 4.0F;
  Model.TableRate[1][7] = 5.0F;
  EXPECT_TRUE(CopyTableToGrid());
  EXPECT_EQ(Model.KOn[1], 4.0);
  EXPECT_EQ(Model.KOff[1], 0.0);
  EXPECT_EQ(Model.StateOn[1], 0) << "no rate leads into it";
  EXPECT_EQ(Model.StateOn[2], 1);
  EXPECT_EQ(Model.RateMatrix[1][7], 0.0F);
  EXPECT_EQ(Model.StateOn[7], 0);
  EXPECT_EQ(Model.TableRate[1][7], 5.0F);
  Model.TableRate[1][7] = 0.0F;
  Model.TableRate[5][6] = 5.0F;  // neighbours in number, not on the grid
  EXPECT_TRUE(CopyTableToGrid());
}

TEST_F(SchemeTest, EachClearReachesItsFormAndNoMore) {
  SetFirstRow();
  RatesFromGrid();
  Model.Depend.Drug[2][1][2] = Model.Depend.Volt[2][1] = 1;
  Model.Depend.Steepness[2][1] = Model.Depend.Range[2][1] = 25.0F;
  Model.TableRate[3][17] = Model.StateConductance[0] = Model.StateConductance[3] = 7.0F;
  Model.TableDepend = Model.Depend;
  UpdateTableStates();
  Model.StateMonitored[3] = 1;
  Model.StateLabel[1] = Model.TableStateLabel[1] = Model.DrugLabel[2] = "A label";
  Model.ModelTitle = Model.ModelFileName = "a.mod";
  Model.StartOccupancy[1] = 1.0F;
  const ModelStore filled = Model;
  ModelStore empty;
  empty.TableStateLabel = {};  // clearing also removes the numbers of the start
  for (const auto& [clear, grid, table] : {std::tuple{&ClearModel, true, true},
                                           {&ClearGridModel, true, false},
                                           {&ClearTableModel, false, true}}) {
    SCOPED_TRACE(testing::Message() << grid << table);
    Model = filled;
    clear();
    EXPECT_TRUE(GridPart(Model) == GridPart(grid ? empty : filled));
    EXPECT_TRUE(TablePart(Model) == TablePart(table ? empty : filled));
    EXPECT_EQ(Model.StateConductance, empty.StateConductance);
    EXPECT_EQ(Model.StartOccupancy, filled.StartOccupancy);
  }
}

TEST_F(SchemeTest, TheDissociationConstantDividesByTheRateThatDepends) {
  SetLink(1, 1e7, 100.0);
  EXPECT_EQ(LinkKd(1), std::nullopt);
  Model.Depend.Drug[6][1][2] = 1;
  EXPECT_EQ(LinkKd(1), 100.0 / 1e7);
  Model.Depend.Volt[2][1] = 1;
  EXPECT_EQ(LinkKd(1), 1e7 / 100.0) << "both depend";
  Model.Depend.Drug[6][1][2] = 0;
  EXPECT_EQ(LinkKd(1), 1e7 / 100.0);
  Model.KOff[1] = 0.0;
  EXPECT_EQ(LinkKd(1), std::nullopt);
  SetLink(1, 0.0, 100.0);
  EXPECT_EQ(LinkKd(1), std::nullopt);
}

}  // namespace
}  // namespace zelvane
