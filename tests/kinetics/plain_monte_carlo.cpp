#include "kinetics/plain_monte_carlo.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "dwells/simulated_dwells.h"
#include "kinetics/monte_carlo.h"
#include "kinetics/rate_factor.h"
#include "kinetics/state_exits.h"
#include "model/model_store.h"
#include "run/monte_carlo_loop.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {

double PlainGenerator::Uniform() {
  double u = 0.0;
  while (u == 0.0) {
    seed[0] = std::fmod(171.0 * seed[0], 30269.0);
    seed[1] = std::fmod(172.0 * seed[1], 30307.0);
    seed[2] = std::fmod(170.0 * seed[2], 30323.0);
    u = std::fmod(seed[0] / 30269.0 + seed[1] / 30307.0 + seed[2] / 30323.0, 1.0);
  }
  return u;
}

float PlainGenerator::Gaussian() {
  if (held) {
    const float value = *held;
    held.reset();
    return value;
  }
  for (;;) {
    const double a = 2.0 * Uniform() - 1.0;
    const double b = 2.0 * Uniform() - 1.0;
    const double r = a * a + b * b;
    if (r >= 1.0) continue;
    const double f = std::sqrt(-2.0 * std::log(r) / r);
    held = static_cast<float>(f * a);
    return static_cast<float>(f * b);
  }
}

double WholePointsOfText(float quotient) {
  char text[64];
  std::snprintf(text, sizeof text, "%.6f", static_cast<double>(quotient));
  return std::trunc(std::atof(text));
}

struct PlainMonteCarlo::Step {
  float d = 0.0F;
  int points = 0;
  int next = 0;
  bool moves = false;
  bool ends = false;
};

PlainMonteCarlo::PlainMonteCarlo(const std::array<double, 3>& seeds) : generator_(seeds) {
  // Less room than in the program: all data for the comparison must fit.
  constexpr std::size_t dwells = 200'000;
  constexpr std::size_t events = 600'000;
  room_.resize(4 * dwells + 2 * events);
  const std::span<float> room = room_;
  lists.OpenTimes = room.subspan(0, dwells);
  lists.ClosedTimes = room.subspan(dwells, dwells);
  lists.RawOpenTimes = room.subspan(2 * dwells, dwells);
  lists.Latencies = room.subspan(3 * dwells, dwells);
  lists.IdealDuration = room.subspan(4 * dwells, events);
  lists.IdealClass = room.subspan(4 * dwells + events, events);
}

/// Returns the point for a stimulus: after the sweep its last point.
int Inside(int point) {
  return std::min({point, Model.NumPoints, static_cast<int>(Stimulus.Profile[0].size()) - 1});
}

/// Returns whether a rate depends on profile k: the voltage for 0, else drug k.
bool Depends(std::size_t k, int from, int to) {
  return k == 0 ? Model.Depend.Volt[from][to] == 1 : Model.Depend.Drug[k][from][to] != 0;
}

float PlainMonteCarlo::Factor(int from, int to, int point) const {
  return RateFactor(Model.Depend, Model.Temperature, from, to, StimulusAt(Inside(point)));
}

bool PlainMonteCarlo::StimulusChanged(int state, const std::vector<int>& watched, int noted, int point,
                                      std::size_t lastProfile) const {
  for (std::size_t k = 0; k <= lastProfile; ++k) {
    const auto& profile = Stimulus.Profile[k];
    if (profile[static_cast<std::size_t>(Inside(point))] == profile[static_cast<std::size_t>(Inside(noted))])
      continue;
    for (const int to : watched) {
      if (Depends(k, state, to)) return true;
    }
  }
  return false;
}

void PlainMonteCarlo::TakePoints(Step& step, int state, float t, int point, const std::vector<int>& watched,
                                 float total) {
  for (;;) {
    const bool changed = StimulusChanged(state, watched, point, point + step.points);
    ++step.points;
    step.d += Model.ADInterval;
    if (changed) return;
    const double interval = static_cast<double>(Model.ADInterval);
    step.moves = generator_.Uniform() <= 1.0 - std::exp(-static_cast<double>(total) * interval / 1000.0);
    if (step.moves) return;
    step.moves = step.ends = t + step.d > Model.ADInterval * static_cast<float>(Model.NumPoints);
    if (step.ends) return;
  }
}

PlainMonteCarlo::Step PlainMonteCarlo::Take(int state, float t, int point) {
  const float length = Model.ADInterval * static_cast<float>(Model.NumPoints);
  std::vector<int> exitStates;
  std::vector<float> rates;
  float sumOfAll = 0.0F;
  std::vector<int> watched;  // connections with a rate, open or closed
  bool waits = false;
  int connections = 0;
  for (int to = 1; to <= MaxStates; ++to) {
    if (to == state || !(Model.RateMatrix[state][to] > 0.0F)) continue;
    ++connections;
    waits |= rate_[state][to] > MinRate;
    if (rate_[state][to] != 0.0F) watched.push_back(to);
    const float product = rate_[state][to] * Factor(state, to, point);
    const float effective = product > 0.0F ? product : 0.0F;  // 0 if negative or not a number
    sumOfAll += effective;
    if (effective <= MinRate) continue;
    exitStates.push_back(to);
    rates.push_back(effective);
  }
  Step step;
  step.next = state;
  if (exitStates.empty()) {
    for (bool changed = false; !changed && !step.ends;) {
      ++step.points;
      const int here = point + step.points - 1;
      step.ends = here + 1 > Model.NumPoints;
      for (std::size_t k = 1; k <= MaxDrugs && waits && !step.ends; ++k) {
        changed |= Stimulus.Profile[k][static_cast<std::size_t>(Inside(here))] > 0.0F;
      }
      if (!step.ends && here > point) changed |= StimulusChanged(state, watched, point, here, 0);
    }
    step.d = Model.ADInterval * static_cast<float>(step.points);
    if (!waits && step.ends) {
      step.d = std::max(0.0F, length - t);
      step.points = std::max(0, Model.NumPoints - point);
    }
    return step;
  }
  float total = 0.0F;
  for (const float r : rates) total += r;
  if (connections == 2) total = sumOfAll;
  step.next = exitStates.back();
  if (exitStates.size() > 1) {
    const double u = generator_.Uniform();
    float sum = 0.0F;
    for (std::size_t k = 0; k < rates.size(); ++k) {
      sum += rates[k];
      if (!(u < static_cast<double>(sum / total))) continue;
      step.next = exitStates[k];
      break;
    }
  }
  for (const int to : exitStates) {
    for (std::size_t k = 0; k <= MaxDrugs; ++k) {
      if (!Depends(k, state, to)) continue;
      TakePoints(step, state, t, point, watched, total);
      return step;
    }
  }
  step.d = static_cast<float>(-1000.0 / static_cast<double>(total) * std::log(generator_.Uniform()));
  step.points =
      static_cast<int>(std::min(WholePointsOfText(step.d / Model.ADInterval), Model.NumPoints + 1.0));
  step.moves = true;
  step.ends = t + step.d > length;
  float passed = Model.ADInterval;
  for (int m = 1; m < step.points; ++m) {
    passed += Model.ADInterval;
    if (!StimulusChanged(state, watched, point, point + m)) continue;
    if (t + passed <= length) step = {passed, m + 1, step.next, false, false};
    break;
  }
  return step;
}

bool PlainMonteCarlo::Channel(int startState, float unit) {
  StartSweepRecord(recorder_);
  int state = startState;
  float t = 0.0F;
  int point = 0;
  for (bool ends = false; !ends;) {
    const Step step = Take(state, t, point);
    ends = step.ends;
    if (state == Model.OpenState && step.next != state) ++exits;
    for (int q = point; q <= point + step.points - 1 && q <= Model.NumPoints; ++q) {
      occupancy[static_cast<std::size_t>(state)][static_cast<std::size_t>(q)] += unit;
    }
    RecordDwell(recorder_, state, t, step.d);
    t += step.d;
    point += step.points;
    if (step.moves) state = step.next;
  }
  return recorder_.opened;
}

void PlainMonteCarlo::Sweep(int count, float unit) {
  for (auto& row : occupancy) row.assign(static_cast<std::size_t>(Model.NumPoints) + 1, 0.0F);
  for (int b = 1; b <= MaxStates; ++b) {
    const int starting = ChannelsStartingIn(count, start[static_cast<std::size_t>(b)]);
    for (int k = 0; k < starting; ++k) monitored += Channel(b, unit) ? 1 : 0;
  }
  EndRecord(recorder_);
}

void PlainMonteCarlo::Run() {
  recorder_.monitored = Model.StateMonitored;
  int classes = 0;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    std::size_t former = 1;
    while (Model.StateConductance[former] != Model.StateConductance[s]) ++former;
    recorder_.openClass[s] = former < s ? recorder_.openClass[former] : ++classes;
  }
  recorder_.lists = ListsOf(lists);
  ClearDwells(recorder_);
  start = Model.StartOccupancy;
  const bool subunits = Model.MultiSubunit != 0;
  const int runs = subunits ? Model.NumChannels : Model.NumRuns;
  subunitTrace.assign(static_cast<std::size_t>(Model.NumPoints), 0.0F);
  for (int run = 1; run <= runs; ++run) {
    const bool drawn = Model.ChannelsGaussian != 0 && !subunits;
    const int count = ChannelsOfRun(subunits ? 1 : Model.NumChannels,
                                    drawn ? Model.ChannelsSTD * generator_.Gaussian() : 0.0F);
    exits = monitored = 0;
    for (int sweep = 0; sweep <= (run == runs ? 0 : Model.NumIntervals); ++sweep) {
      rate_ = Model.RateMatrix;
      for (std::size_t k = 1; k <= MaxDrugs && sweep > 0; ++k) {
        for (int a = 1; a <= MaxStates; ++a) {
          for (int b = 1; b <= MaxStates; ++b) {
            if (Depends(k, a, b)) rate_[a][b] = 0.0F;
          }
        }
      }
      Sweep(count, 1.0F / static_cast<float>(subunits ? runs : count));
      if (Model.ReseedSimulation == 0 && Model.NumIntervals == 0) continue;
      for (std::size_t b = 1; b <= MaxStates; ++b)
        start[b] = occupancy[b][static_cast<std::size_t>(ReseedPoint(Model.NumPoints))];
    }
    for (std::size_t s = 1; s <= MaxStates && subunits; ++s) {
      if (Model.StateMonitored[s] == 0) continue;
      for (std::size_t p = 0; p < subunitTrace.size(); ++p) subunitTrace[p] += occupancy[s][p + 1];
    }
  }
  StoreCounts(recorder_.lists, lists);
  KeepRawOpenTimes(lists);
  if (Model.ReseedSimulation == 0) start = Model.StartOccupancy;
}

}  // namespace zelvane
