// Conductances and starting occupancies of the states.
#include "model/model.h"
#include "model/model_panels.h"
#include "screen/screen.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

using StatePanelsTest = DriveTest;

TEST_F(StatePanelsTest, ConductancesAboveZeroStandBesideTheStates) {
  EXPECT_EQ(Told("press FxnConductance; panels; set StateConductance[20] 12.4; enter StateConductance[3] 50; "
                 "control GridConductance[3]; control GridConductance[20]; control GridConductance[4]; "
                 "set StateConductance[3] 0; press CloseConductance; panels; get StateConductance[3]; "
                 "control GridConductance[3]"),
            (Values{{"MainPanel", "ConductancePanel"}, "50pS\n", "12pS\n", "", {"MainPanel"}, 0, ""}));
}

TEST_F(StatePanelsTest, StartingProportionsAreEditedAndCleared) {
  EXPECT_EQ(Told("press FxnStartState; enter StartOccupancy[1] 0.75; set StartOccupancy[2] 0.25; "
                 "press CloseInitialConditions; panels; slice StartOccupancy 1 3; "
                 "press ClearInitialConditions; slice StartOccupancy 1 20; control StartOccupancy[1]"),
            (Values{{"MainPanel"}, {0.75, 0.25, 0}, std::vector<int>(20), 0}));
}

TEST_F(StatePanelsTest, ProportionsAboveOneAreToldWhenThePanelOpens) {
  struct Case {
    float each;  // in ten states
    int subunits;
    std::vector<SeenPopup> told;
  };
  Run("");
  for (const Case& c : {Case{0.1F, 0, {}}, Case{0.1001F, 1, {}},
                        Case{0.1001F, 0, {{"! Error", "Initial state starting proportions >1.0"}}}}) {
    popups.clear();
    Model.MultiSubunit = c.subunits;
    for (int s = 1; s <= 10; ++s) Model.StartOccupancy[s] = c.each;
    Press(*FindCommand("FxnStartState"));
    EXPECT_EQ(popups, c.told) << c.each << " with " << c.subunits;
    EXPECT_EQ(Model.StartOccupancy[1], c.each) << "nothing is changed by itself";
  }
}

}  // namespace
}  // namespace zelvane
