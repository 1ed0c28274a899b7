// The schemes under data/: they run unchanged, and their responses are those of their papers.
#include <numbers>
#include <vector>

#include "model/constraints_store.h"
#include "model/model.h"
#include "model/model_file.h"
#include "model/model_panels.h"
#include "run/result_store.h"
#include "run/run.h"
#include "run/run_panel.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_store.h"
#include "support/store_test.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// The response of the monitored states as a probability, one value per point, and its measures.
struct Response {
  std::vector<double> po;
  double interval = 0.0;  // ms
  std::size_t peak = 0;   // sample of the largest deviation from the first sample

  double Top() const { return po[peak] - po[0]; }
  /// Returns the time from the crossing of `low` to that of `high` before the peak, in ms; both are fractions
  /// of the peak.
  double Rise(double low, double high) const { return interval * double(Crossing(high) - Crossing(low)); }
  /// Returns the ms from the peak until the response has fallen to `fraction` of it.
  double Decay(double fraction) const {
    std::size_t i = peak;
    while (i < po.size() && po[i] - po[0] > fraction * Top()) ++i;
    EXPECT_LT(i, po.size()) << "no decay to " << fraction;
    return interval * double(i - peak);
  }
  double At(double ms) const { return po.at(static_cast<std::size_t>(std::lround(ms / interval))); }

 private:
  std::size_t Crossing(double fraction) const {
    std::size_t i = 0;
    while (i < peak && po[i] - po[0] < fraction * Top()) ++i;
    return i;
  }
};

constexpr double OverE = 1.0 / std::numbers::e;

class PublishedModels : public PanelTest {
 protected:
  void Load(const std::string& name) {
    ASSERT_EQ(ModelFileReadNamed(std::string(ZELVANE_DATA) + "/" + name), Outcome::Done) << name;
    Model.DisplayUnits = UnitsProbability;
    WriteRunParameters();
  }

  /// Runs the model in the store with `simulator`.
  Response Run(int simulator) {
    Model.SimulatorKind = simulator;
    WriteRunParameters();
    AcquireData();
    EXPECT_TRUE(popups.empty()) << popups.front().text;
    EXPECT_EQ(Trace.TraceValid, 1);
    Response r;
    r.interval = Model.ADInterval;
    const auto count = static_cast<std::size_t>(Model.NumPoints);
    r.po.assign(Trace.SimTrace.begin(), Trace.SimTrace.begin() + static_cast<std::ptrdiff_t>(count));
    for (std::size_t i = 0; i < count; ++i) {
      if (std::abs(r.po[i] - r.po[0]) > std::abs(r.po[r.peak] - r.po[0])) r.peak = i;
    }
    return r;
  }

  /// Sets a pulse with another start and stop than in the file.
  void Pulse(float start, float stop) {
    Stimulus.AutoStart = start;
    Stimulus.AutoStop = stop;
    StimPanelRefresh();
    StimRebuild();
  }
};

Texts ModelNames() {
  Texts names{"config.mod"};
  for (const auto& entry : std::filesystem::directory_iterator(std::string(ZELVANE_DATA) + "/models")) {
    names.push_back("models/" + entry.path().filename().string());
  }
  return names;
}

TEST_F(PublishedModels, AreAtLeastSixAndKeepTheirBytesWhenReadAndSaved) {
  const Texts names = ModelNames();
  EXPECT_GE(names.size(), 7U);
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const std::string path = std::string(ZELVANE_DATA) + "/" + name;
    ASSERT_EQ(ModelFileReadNamed(path), Outcome::Done);
    Model.ModelFileName = folder.File("saved.mod");
    ASSERT_EQ(ModelFileWrite(), Outcome::Done);
    EXPECT_EQ(ReadWholeFile(folder.File("saved.mod")), ReadWholeFile(path));
    EXPECT_TRUE(popups.empty());
  }
}

TEST_F(PublishedModels, RunAsTheyStandWithoutAMessageAndLoseNoChannel) {
  for (const std::string& name : ModelNames()) {
    SCOPED_TRACE(name);
    ASSERT_EQ(ModelFileReadNamed(std::string(ZELVANE_DATA) + "/" + name), Outcome::Done);
    const float step = Model.MaxStepSize;
    const float precision = Model.Precision;
    const Response r = Run(FixedStepIntegrator);
    EXPECT_GT(std::abs(r.Top()), 1.0) << "less than 1 pA";
    EXPECT_EQ(Model.MaxStepSize, step);
    for (int point = 1; point <= Model.NumPoints; point += 999) {
      double sum = 0.0;
      for (std::size_t s = 1; s <= MaxStates; ++s)
        sum += Result.Occupancy[s][static_cast<std::size_t>(point)];
      ASSERT_NEAR(sum, 1.0, 5e-4) << "point " << point;  // each of 100,000 steps rounds to 32 bits
    }
    // Both integrators give the same response. Compared as probabilities, because in pA the spline of the
    // adaptive path rings where the voltage jumps.
    Model.DisplayUnits = UnitsProbability;
    const Response fixed = Run(FixedStepIntegrator);
    const Response adaptive = Run(AdaptiveIntegrator);
    EXPECT_EQ(Model.Precision, precision);
    double apart = 0.0;
    for (std::size_t i = 0; i < fixed.po.size(); ++i) {
      apart = std::max(apart, std::abs(fixed.po[i] - adaptive.po[i]));
    }
    EXPECT_LT(apart,
              0.01 * fixed.Top() + 1e-4);  // the adaptive path ignores occupancies near its tolerance
  }
}

TEST_F(PublishedModels, ObeyMicroscopicReversibilityAroundEveryCycle) {
  using Case = std::tuple<const char*, int, double>;
  for (const auto& [name, inFile, tolerance] : {
           Case{"models/ampa_jonas_1993.mod", 2, 0.01},  // three printed digits: 0.6 % and 0.1 %
           Case{"models/gabaa_jones_1995.mod", 1, 1e-6},
           Case{"models/nicotinic_colquhoun_1985.mod", 1, 1e-6},
           Case{"models/nicotinic_colquhoun_1982.mod", 1, 1e-6},
           Case{"models/sodium_hodgkin_1952.mod", 3, 1e-6},
       }) {
    SCOPED_TRACE(name);
    Load(name);
    RatesFromGrid();
    int cycles = 0;
    for (const LoopConstraint& loop : Constraints.Loop) {
      std::size_t length = 0;
      while (length < MaxLoopStates && loop.State[length + 1] != 0) ++length;
      if (length == 0) continue;
      ++cycles;
      double ratio = 1.0;   // product of the rates one way over that of the other
      double charge = 0.0;  // sum of the steepnesses: must be 0, else the cycle loses balance away from 0 V
      for (std::size_t i = 0; i < length; ++i) {
        const auto from = static_cast<std::size_t>(loop.State[i + 1]);
        const auto to = static_cast<std::size_t>(loop.State[(i + 1) % length + 1]);
        ratio *= double(Model.RateMatrix[from][to]) / double(Model.RateMatrix[to][from]);
        charge += double(Model.Depend.Steepness[from][to]) - double(Model.Depend.Steepness[to][from]);
      }
      EXPECT_NEAR(ratio, 1.0, tolerance);
      EXPECT_NEAR(charge, 0.0, 1e-6);
    }
    EXPECT_EQ(cycles, inFile);
  }
}

// Colquhoun, Jonas & Sakmann (1992) J Physiol 458:261, patches of CA3 pyramidal cells in 1 mM glutamate:
// after 1 ms the response rises (20-80 %) in 0.2-0.6 ms and decays with 2.5 +- 0.7 ms; a long pulse
// desensitises with 11.3 +- 2.8 ms. The scheme was made for these cells.
TEST_F(PublishedModels, TheAmpaSchemeDeactivatesAndDesensitisesAsInPatches) {
  Load("config.mod");
  const Response brief = Run(FixedStepIntegrator);
  EXPECT_GT(brief.Rise(0.2, 0.8), 0.2);
  EXPECT_LT(brief.Rise(0.2, 0.8), 0.6);
  EXPECT_NEAR(brief.Decay(OverE), 2.5, 0.7);
  Pulse(5.0F, 95.0F);
  const Response lasting = Run(FixedStepIntegrator);
  const double steady = lasting.At(94.0) / lasting.Top();
  EXPECT_LT(steady, 0.05);
  EXPECT_NEAR(lasting.Decay(steady + (1.0 - steady) * OverE), 11.3, 2.8);
}

// Lester, Clements, Westbrook & Jahr (1990) Nature 346:565 and Lester & Jahr (1992): after a pulse of a few
// ms the current rises in about 10 ms and lasts hundreds of ms longer than the transmitter; at its peak at
// most a third of the channels are open.
TEST_F(PublishedModels, TheNmdaSchemeOutlastsItsTransmitter) {
  Load("models/nmda_lester_1992.mod");
  const Response r = Run(FixedStepIntegrator);
  EXPECT_NEAR(r.Rise(0.1, 0.9), 10.0, 3.0);
  EXPECT_GT(r.Decay(OverE), 60.0);
  EXPECT_GT(r.Decay(0.1), 200.0);
  EXPECT_NEAR(r.Top(), 0.26, 0.05);
}

// Jones & Westbrook (1995) Neuron 15:181: the response to a brief pulse decays in two phases. The slow phase
// comes from channels that return from the fast desensitised state; without this state it disappears.
TEST_F(PublishedModels, DesensitisedStatesProlongTheGabaResponse) {
  Load("models/gabaa_jones_1995.mod");
  const Response whole = Run(FixedStepIntegrator);
  EXPECT_GT(whole.Decay(0.1), 5.0 * whole.Decay(OverE)) << "two phases; one exponential would give 2.3";
  Model.StateOn[13] = 0;  // Df
  WriteGridRates();
  const Response without = Run(FixedStepIntegrator);
  EXPECT_LT(without.Decay(0.1), 2.6 * without.Decay(OverE));
  EXPECT_LT(without.Decay(0.1), 0.6 * whole.Decay(0.1));
  EXPECT_GT(without.Top(), whole.Top());
}

// Values of the schemes themselves, from an independent integrator in double precision.
TEST_F(PublishedModels, TheOtherSchemesPeakAndDecayAsTheirEquationsSay) {
  using Case = std::tuple<const char*, double, double>;
  for (const auto& [name, peak, decayMs] : {Case{"models/ampa_patneau_1991.mod", 0.1716, 5.2},
                                            Case{"models/gabaa_busch_1990.mod", 0.8786, 5.3}}) {
    Load(name);
    const Response r = Run(FixedStepIntegrator);
    EXPECT_NEAR(r.Top(), peak, 0.001) << name;
    EXPECT_NEAR(r.Decay(OverE), decayMs, 0.1) << name;
  }
}

// Colquhoun & Sakmann (1985), acetylcholine: short gaps of 20 us, 1.9 of them in a burst, openings of 1.4 ms;
// the current after a pulse must then decay with the length of a burst.
TEST_F(PublishedModels, TheNicotinicSchemeHasTheGapsAndBurstsOfThePaper) {
  Load("models/nicotinic_colquhoun_1985.mod");
  RatesFromGrid();
  const double open = Model.RateMatrix[3][8];
  const double shut = Model.RateMatrix[8][3];
  const double leave = Model.RateMatrix[3][2];
  EXPECT_NEAR(1e6 / (open + leave), 20.0, 2.0);
  EXPECT_NEAR(open / leave, 1.9, 0.05);
  EXPECT_NEAR(1e3 / shut, 1.4, 0.01);
  const Response r = Run(FixedStepIntegrator);
  const double burstMs = (1.0 + open / leave) * 1e3 / shut + open / leave * 1e3 / (open + leave);
  EXPECT_NEAR(r.At(6.0 + burstMs) / r.At(6.0), OverE, 0.02);  // the pulse ends at 6 ms
}

// -- Hodgkin & Huxley (1952): a gate relaxes as one exponential, and gates are independent. --

/// Opening and closing rates of a gate, 1/ms, at -65 mV and at 0 mV, from the paper's equations with rest at
/// -65 mV.
struct Gate {
  double openRest, shutRest, openStep, shutStep;

  double Resting() const { return openRest / (openRest + shutRest); }
  double During(double ms) const {
    const double end = openStep / (openStep + shutStep);
    return end + (Resting() - end) * std::exp(-(openStep + shutStep) * ms);
  }
};

const Gate GateM{0.1 * -25 / (1 - std::exp(2.5)), 4.0, 0.1 * 40 / (1 - std::exp(-4.0)),
                 4 * std::exp(-65 / 18.0)};
const Gate GateH{0.07, 1 / (1 + std::exp(3.0)), 0.07 * std::exp(-65 / 20.0), 1 / (1 + std::exp(-3.5))};
const Gate GateN{0.01 * -10 / (1 - std::exp(1.0)), 0.125, 0.01 * 55 / (1 - std::exp(-5.5)),
                 0.125 * std::exp(-65 / 80.0)};

TEST_F(PublishedModels, TheSodiumSchemeIsM3hAndThePotassiumSchemeN4OfThePaper) {
  struct Case {
    const char* name;
    double (*open)(double ms);
    double tolerance;  // at the edge the time of the run is one point off
  };
  for (const Case& c :
       {Case{"models/sodium_hodgkin_1952.mod",
             [](double ms) { return std::pow(GateM.During(ms), 3) * GateH.During(ms); }, 5e-4},
        Case{"models/potassium_hodgkin_1952.mod", [](double ms) { return std::pow(GateN.During(ms), 4); },
             2e-4}}) {
    Load(c.name);
    const Response r = Run(FixedStepIntegrator);
    EXPECT_NEAR(r.po[0], c.open(0.0), 1e-6);
    const double start = Model.ADInterval * std::trunc(2.0 / double(Model.ADInterval));
    for (double ms = 0.1; ms < 39.0; ms += 0.1) ASSERT_NEAR(r.At(start + ms), c.open(ms), c.tolerance) << ms;
  }
}

}  // namespace
}  // namespace zelvane
