// A run of the integrators: from the stores to the trace, with its messages and questions.
#include "run/run_fixtures.h"
#include "run/saved_steps.h"
#include "screen/popups.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

constexpr char StepDecreased[] = "Max Step Size was decreased during integration.";
constexpr char StepFailed[] =
    "Integration has failed. You need to decrease Max Step Size or increase Time Interval.";

/// Two states of the grid: closed (1) opens at 1000/s, open (2) of 50 pS closes at 500/s. 1000 points of 0.01
/// ms.
class IntegratorRunTest : public RunTest {
 protected:
  IntegratorRunTest() { Model.NumPoints = 1000; }

  static double Open(double ms) { return 2.0 / 3.0 * (1.0 - std::exp(-1.5 * ms)); }

  static Outcome Integrate(int simulator) {
    Model.SimulatorKind = simulator;
    return RunAsSet();
  }
};

TEST_F(IntegratorRunTest, GivesTheClosedFormInAllUnits) {
  Model.NumChannels = 40;
  Model.VRev = 10.0F;
  Model.Valence = 2;
  std::fill_n(Stimulus.Profile[0].begin(), 1001, -0.06F);
  std::fill_n(Stimulus.Profile[1].begin(), 1001, 1e-3F);
  Model.KOn[1] = 1e6;  // times 1 mM
  Model.Depend.Drug[1][1][2] = 1;
  Model.KOff[1] = 500.0 / std::exp(-0.06 * 0.7 * 11603.0 / 298.16);
  Model.Depend.Volt[2][1] = 1;
  Model.Depend.Steepness[2][1] = 0.7F;
  using Row = std::pair<int, double>;
  for (const auto& [units, factor] : {Row{UnitsChannels, 40.0}, Row{UnitsConductance, 2000.0},
                                      Row{UnitsCurrent, -0.07 * 2 * 2000.0}, Row{UnitsProbability, 1.0}}) {
    Model.DisplayUnits = units;
    for (const int simulator : {FixedStepIntegrator, AdaptiveIntegrator}) {
      SCOPED_TRACE(testing::Message() << "units " << units << " simulator " << simulator);
      Integrate(simulator);
      EXPECT_EQ(Trace.TraceValid, 1);
      const double tolerance =
          simulator == FixedStepIntegrator ? 3e-6 : 1e-3;  // rounding errors; precision and spline
      for (std::size_t i = 0; i < 1000; i += 37) {
        const double expected = factor * Open(0.01 * static_cast<double>(i));
        EXPECT_NEAR(Trace.SimTrace[i], expected, tolerance * std::fabs(factor)) << i;
      }
    }
  }
  EXPECT_TRUE(popups.empty());
}

TEST_F(IntegratorRunTest, StartsTheAdaptiveRunAtALateStep) {
  Model.Depend.Drug[1][1][2] = 1;
  Model.KOn[1] = 1e6;
  Model.NumPoints = 800;
  Model.DisplayUnits = UnitsProbability;
  Model.StartOccupancy[1] = 1.0F;
  std::fill_n(Stimulus.Profile[1].begin() + 300, 700, 1e-3F);
  Integrate(AdaptiveIntegrator);
  EXPECT_EQ(Result.IntegrationOffset, 300);
  EXPECT_EQ(Result.ResultKind, ResultSavedSteps);
  for (std::size_t i = 0; i <= 300; ++i) EXPECT_EQ(Trace.SimTrace[i], 0.0F) << i;
  for (std::size_t i = 301; i < 800; ++i)
    EXPECT_NEAR(Trace.SimTrace[i], Open(0.01 * static_cast<double>(i - 300)), 2e-3) << i;
  EXPECT_EQ(Model.StartOccupancy[1], 1.0F);
}

TEST_F(IntegratorRunTest, ConvertsSavedStepsAgainAndForgetsThoseOfALongerRun) {
  Integrate(AdaptiveIntegrator);
  const Floats first(Trace.SimTrace.begin(), Trace.SimTrace.begin() + 1000);
  EXPECT_NEAR(Result.SavedTime[static_cast<std::size_t>(Result.KeptSteps)], 10.0F, 1e-4);
  ConvertTrace(false, {});
  EXPECT_TRUE(std::equal(first.begin(), first.end(), Trace.SimTrace.begin()));
  Model.ModelIs2D = 0;  // the visible table is not the form that ran
  ConvertTrace(false, {});
  EXPECT_TRUE(std::equal(first.begin(), first.end(), Trace.SimTrace.begin()));
  Model.ModelIs2D = 1;
  Model.NumPoints = 30;
  Integrate(AdaptiveIntegrator);
  const auto last = static_cast<std::size_t>(Result.KeptSteps);
  EXPECT_NEAR(Result.SavedTime[last], 0.3F, 1e-5);
  EXPECT_LE(Result.SavedTime[last + 2], 0.0F);
  EXPECT_NEAR(Trace.SimTrace[29], 50.0 * Open(0.29), 0.1);  // the slope at the end is that of a line
}

TEST_F(IntegratorRunTest, HalvesTheStepSaysSoAndGivesUpAfterFivePasses) {
  const std::vector<SeenPopup> told{{"! Integration Warning", StepDecreased},
                                    {"! Integration Error", StepFailed}};
  using Row = std::tuple<double, int, std::size_t>;
  // A step is stable up to step x 2 x rate = 2.785.
  for (const auto& [perSecond, reductions, messages] :
       {Row{1e5, 0, 0}, Row{2e5, 1, 1}, Row{4e5, 2, 1}, Row{1e7, 5, 2}}) {
    popups.clear();
    Model.KOn[1] = Model.KOff[1] = perSecond;
    Model.MaxStepSize = 0.01F;
    Result.ReductionCount = 0;
    Integrate(FixedStepIntegrator);
    EXPECT_FLOAT_EQ(Model.MaxStepSize, std::ldexp(0.01F, -reductions));
    EXPECT_EQ(ControlNamed("MaxStepSize").number, static_cast<double>(Model.MaxStepSize));
    EXPECT_EQ(Result.ReductionCount, reductions);
    EXPECT_EQ(popups, std::vector<SeenPopup>(told.begin(), told.begin() + static_cast<int>(messages)));
    EXPECT_EQ(Trace.TraceValid, 1);
  }
  popups.clear();
  pumps = 0;
  RunSilently();
  EXPECT_TRUE(popups.empty()) << "a run without a reporter is silent";
  EXPECT_EQ(pumps, 0);
}

TEST_F(IntegratorRunTest, AsksBeforeALongRunWithAReducedStep) {
  Model.NumPoints = 20001;
  Model.MaxStepSize = 0.0009F;
  Result.ReductionCount = 1;
  Integrate(FixedStepIntegrator);  // the user says no
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(popups[0].title, "! Slow Integration");
  EXPECT_EQ(Result.Occupancy[1][1], 0.0F);
  EXPECT_EQ(Trace.TraceValid, 0);
  Model.NumPoints = 20000;
  Integrate(FixedStepIntegrator);
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_EQ(Result.Occupancy[1][1], 1.0F);
}

TEST_F(IntegratorRunTest, StopsAtTheButtonAndConvertsWhatAFixedRunHas) {
  onPump = [](int call) {
    if (call == 10) RequestStop();
  };
  EXPECT_EQ(Integrate(FixedStepIntegrator), Outcome::Stopped);
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_GT(Trace.SimTrace[450], 0.0F);
  EXPECT_EQ(Trace.SimTrace[550], 0.0F);
}

TEST_F(IntegratorRunTest, KeepsAStateThatIsOffAtZeroAlsoAfterARunWithIt) {
  Model.DisplayUnits = UnitsProbability;
  for (const int simulator : {FixedStepIntegrator, AdaptiveIntegrator}) {
    Model.StateOn[2] = 1;
    Integrate(simulator);
    EXPECT_GT(Trace.SimTrace[999], 0.5F);
    Model.StateOn[2] = 0;
    Model.StateOn[6] = 1;  // state 1 now reaches state 6 instead
    Model.KOn[5] = 100.0;
    Model.StartOccupancy[2] = 0.25F;
    Integrate(simulator);
    for (std::size_t p = 1; p <= 1001; ++p) ASSERT_EQ(Result.Occupancy[2][p], 0.0F);
    EXPECT_EQ(Trace.SimTrace[0], 0.0F);
    Model.StateOn[6] = 0;
    Model.StartOccupancy[2] = 0.0F;
  }
}

TEST_F(IntegratorRunTest, AnAdaptiveRunThatDoesNotReachItsEndHasNoTraceAndIsNotSaved) {
  int saved = 0;
  RunCompleted.Add([&](Outcome&) { ++saved; });
  // State 6 makes the run start at 0. From 5 s on state 1 needs steps that do not change the time any more.
  Model.Depend.Drug[1][1][2] = 1;
  Model.StateOn[6] = Model.StateOn[7] = 1;
  Model.KOn[10] = 1e-3;
  Model.StartOccupancy[6] = 0.1F;
  Model.ADInterval = 1000.0F;
  std::fill_n(Stimulus.Profile[1].begin() + 5, 100, 1.0F);
  using Row = std::tuple<double, int, float, float, std::size_t, const char*>;
  for (const auto& [perSecond, points, precision, used, messages, note] :
       {Row{1e12, 20, 1e-9F, 1.0F, 1, "The adaptive integrator would need a precision above 1 for this run"},
        Row{1e3, 20, 0.5F, 0.5F, 0,
            "The adaptive integrator has used up its 200 steps before the end of the run"},
        Row{1.0, 4, 5.0F, 1.0F, 0, nullptr}}) {
    popups.clear();
    notes.clear();
    Model.KOn[1] = Model.KOff[1] = perSecond;
    Model.NumPoints = points;
    Model.Precision = precision;
    const bool whole = note == nullptr;
    EXPECT_EQ(Integrate(AdaptiveIntegrator), whole ? Outcome::Done : Outcome::Failed) << perSecond;
    EXPECT_NEAR(Model.Precision, used, 1e-6F);
    EXPECT_EQ(ControlNumber("Precision"), static_cast<double>(Model.Precision));
    EXPECT_EQ(PopupTexts(), Texts(messages, "Precision reduced during integration."));
    EXPECT_EQ(Trace.TraceValid, whole ? 1 : 0);
    EXPECT_EQ(saved, whole ? 1 : 0);
    ASSERT_EQ(notes.size(), whole ? 0U : 1U);
    EXPECT_TRUE(whole || notes[0].starts_with(note)) << notes.size();
  }
}

TEST_F(IntegratorRunTest, SaysOnceAPassThatAStepIsTooSmall) {
  // 18 million steps just below 2^-36 s: from 2^-12 s on the times of two steps are equal as floats. Without
  // the drug nothing opens, so only the time advances.
  Model.Depend.Drug[1][1][2] = 1;
  Model.NumPoints = 110000;
  Model.ADInterval = 2.3e-6F;
  Model.MaxStepSize = 1.44e-8F;
  Integrate(FixedStepIntegrator);
  EXPECT_EQ(consoleLines, Texts{"Step size too small in routine rkdumb"});
}

}  // namespace
}  // namespace zelvane
