// The Monte Carlo simulation in its plain form: the generator uses doubles, every rate factor is calculated
// at each use, every dwell adds to each of its points, and whole points are read from a text. The simulator
// must give the same bits.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "dwells/dwell_store.h"
#include "kinetics/dwell_recorder.h"

namespace zelvane {

/// AS 183 and the polar method as published.
struct PlainGenerator {
  explicit PlainGenerator(const std::array<double, 3>& seeds) : seed(seeds) {}
  double Uniform();
  float Gaussian();

  std::array<double, 3> seed;
  std::optional<float> held;
};

/// Returns the integer part of a number written with six decimals.
double WholePointsOfText(float quotient);

/// Runs the model of the stores with prepared rates (RatesFromGrid or ActivateTableModel) and does not change
/// the stores. The results are in the members.
struct PlainMonteCarlo {
  explicit PlainMonteCarlo(const std::array<double, 3>& seeds);
  PlainMonteCarlo(const PlainMonteCarlo&) = delete;
  PlainMonteCarlo& operator=(const PlainMonteCarlo&) = delete;
  void Run();

  std::array<std::vector<float>, MaxStates + 1> occupancy;  // [state][point] of the last sweep
  std::vector<float> subunitTrace;                          // sum over the subunits, in probabilities
  std::array<float, MaxStates + 1> start{};
  DwellStore lists;
  int exits = 0;
  int monitored = 0;

 private:
  struct Step;
  float Factor(int from, int to, int point) const;
  void Sweep(int count, float unit);
  bool Channel(int startState, float unit);
  Step Take(int state, float t, int point);
  void TakePoints(Step& step, int state, float t, int point, const std::vector<int>& watched, float total);
  bool StimulusChanged(int state, const std::vector<int>& watched, int noted, int point,
                       std::size_t lastProfile = MaxDrugs) const;

  PlainGenerator generator_;
  DwellRecorder recorder_{};
  StateTable<float> rate_{};
  std::vector<float> room_;
};

}  // namespace zelvane
