// Conductances and starting occupancies of the states.
#include "model/model.h"
#include "model/model_panels.h"
#include "support/pressing.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using StatePanelsTest = PanelTest;

TEST_F(StatePanelsTest, ConductancesAboveZeroStandBesideTheStates) {
  PressCommand("FxnConductance");
  EXPECT_TRUE(PanelVisible("ConductancePanel"));
  TypeOnly("StateConductance[20]", "12.4");
  Enter("StateConductance[3]", "50");
  EXPECT_EQ(Shown("GridConductance[3]"), "50pS\n");
  EXPECT_EQ(Shown("GridConductance[20]"), "12pS\n");
  EXPECT_EQ(Shown("GridConductance[4]"), "");
  TypeOnly("StateConductance[3]", "0");
  PressCommand("CloseConductance");
  EXPECT_FALSE(PanelVisible("ConductancePanel"));
  EXPECT_EQ(Model.StateConductance[3], 0.0F);
  EXPECT_EQ(Shown("GridConductance[3]"), "");
}

TEST_F(StatePanelsTest, StartingProportionsAreEditedAndCleared) {
  PressCommand("FxnStartState");
  Enter("StartOccupancy[1]", "0.75");
  TypeOnly("StartOccupancy[2]", "0.25");
  PressCommand("CloseInitialConditions");
  EXPECT_FALSE(PanelVisible("InitialConditionsPanel"));
  EXPECT_EQ(Model.StartOccupancy[1], 0.75F);
  EXPECT_EQ(Model.StartOccupancy[2], 0.25F);
  PressCommand("ClearInitialConditions");
  for (int s = 1; s <= MaxStates; ++s) EXPECT_EQ(Model.StartOccupancy[s], 0.0F);
  EXPECT_EQ(ControlNumber("StartOccupancy[1]"), 0.0);
}

TEST_F(StatePanelsTest, ProportionsAboveOneAreToldWhenThePanelOpens) {
  struct Case {
    float each;  // in ten states
    int subunits;
    std::vector<SeenPopup> told;
  };
  for (const Case& c : {Case{0.1F, 0, {}}, Case{0.1001F, 1, {}},
                        Case{0.1001F, 0, {{"! Error", "Initial state starting proportions >1.0"}}}}) {
    popups.clear();
    Model.MultiSubunit = c.subunits;
    for (int s = 1; s <= 10; ++s) Model.StartOccupancy[s] = c.each;
    PressCommand("FxnStartState");
    EXPECT_EQ(popups, c.told) << c.each << " with " << c.subunits;
    EXPECT_EQ(Model.StartOccupancy[1], c.each) << "nothing is changed by itself";
  }
}

}  // namespace
}  // namespace zelvane
