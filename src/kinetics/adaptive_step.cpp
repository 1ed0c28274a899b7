#include "kinetics/adaptive_step.h"

#include <algorithm>
#include <cmath>

#include "kinetics/adaptive_kernels.h"
#include "kinetics/cash_karp.h"
#include "kinetics/rate_terms.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int ProgressMoments = 20;
constexpr int RoundsPerPoint = 10;
constexpr int BreathRounds = 512;  // a round is a step of six stages
constexpr long long LastRoundAtSmallestStep = 1'000'001;

// Step control of rkqs: an error of 1 is tolerated; below SmallError the next step is five times this one.
constexpr double Safety = 0.9;
constexpr double MostShrinking = 0.1;
constexpr double ShrinkPower = -0.25;
constexpr double GrowPower = -0.2;
constexpr float SmallError = 0.000189F;
constexpr float MostGrowth = 5.0F;

/// The state of the stepping loop. Times are seconds.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): one per run; the order is for readers
struct Stepper {
  const AdaptiveRun& run;
  StimulusCursor cursor;
  float x = 0.0F;
  float h = 0.0F;
  float nextStep = 0.0F;
  float workingPrecision = 0.0F;  // loosened when a step no longer moves the time
  bool reduced = false;
  bool lost = false;     // a step needs a tolerance above CoarsestPrecision
  bool stalled = false;  // the step has shrunk to 0
  LaneValues y;
  LaneValues slope;
  LaneValues scale;
};

/// Makes the tolerance ten times coarser, up to CoarsestPrecision. Returns false when it is there already.
bool LoosenPrecision(Stepper& stepper) {
  stepper.lost = stepper.workingPrecision >= CoarsestPrecision;
  if (stepper.lost) return false;
  stepper.workingPrecision = std::min(stepper.workingPrecision * 10.0F, CoarsestPrecision);
  stepper.reduced = true;
  return true;
}

const StimulusStretch& StretchAtTime(Stepper& stepper, float t) {
  return StretchAt(stepper.cursor, stepper.run.scheme, stepper.run.stimulus,
                   PointIndex(stepper.run.stimulus, t));
}

/// Returns the factors at the later stages of a step of size `h`. They are the factors of its start when its
/// end lies in the same stretch.
LaterStages FactorsOfStages(Stepper& stepper, float h) {
  using namespace cash_karp;
  const StimulusStretch& start = StretchAtTime(stepper, stepper.x);
  LaterStages factor;
  if (stepper.x + h < start.endTime) {
    factor.fill(&start.factor);
    return factor;
  }
  constexpr std::array<float, 5> node{A2, A3, A4, A5, A6};
  for (std::size_t k = 0; k < node.size(); ++k) {
    factor[k] = &StretchAtTime(stepper, stepper.x + node[k] * h).factor;
  }
  return factor;
}

/// Takes a step of size stepper.h, or a shorter one that `tolerance` allows, and sets the next size. Returns
/// false when no step is possible: the precision is lost, or the step is 0 because a rate is too large.
bool ControlledStep(Stepper& stepper, float tolerance) {
  float h = stepper.h;
  float worst = 0.0F;
  LaneValues end;
  while (true) {
    worst = TrialStep(stepper.run.scheme, FactorsOfStages(stepper, h), h, stepper.y, stepper.slope,
                      stepper.scale, end) /
            tolerance;
    if (worst <= 1.0F) break;
    const double full = static_cast<double>(h);
    const auto shorter =
        static_cast<float>(Safety * full * std::pow(static_cast<double>(worst), ShrinkPower));
    h = std::max(shorter, static_cast<float>(MostShrinking * full));
    if (stepper.x + h == stepper.x && !LoosenPrecision(stepper)) return false;
    stepper.stalled = h == 0.0F;
    if (stepper.stalled) return false;
  }
  const double grown = Safety * static_cast<double>(h) * std::pow(static_cast<double>(worst), GrowPower);
  stepper.nextStep = worst > SmallError ? static_cast<float>(grown) : MostGrowth * h;
  stepper.x += h;
  stepper.y = end;
  return true;
}

/// Saves the present step as number `index`.
void SaveStep(const Stepper& stepper, int index, std::span<float> savedTime, const OccupancyRows& rows) {
  const auto q = Index(index);
  savedTime[q] = stepper.x * 1000.0F;
  const CompiledScheme& scheme = stepper.run.scheme;
  for (std::size_t lane = 0; lane < Index(scheme.lanes); ++lane) {
    if (scheme.on[lane]) rows[Index(scheme.state[lane])][q] = stepper.y.lane[lane];
  }
}

/// Runs the stepping loop from time 0 to the end of the run.
void RunLoop(Stepper& stepper, std::span<float> savedTime, const OccupancyRows& rows, const RunHook& hook,
             AdaptiveResult& result) {
  const AdaptiveRun& run = stepper.run;
  const auto intervalMs = static_cast<double>(run.stimulus.intervalMs);
  const float totalMs = run.stimulus.intervalMs * static_cast<float>(run.numPoints);
  const auto end = static_cast<float>(static_cast<double>(totalMs) * 0.001);
  const auto spacing = static_cast<float>(intervalMs * 0.001);
  const auto smallest = static_cast<float>(intervalMs * 1e-5);
  const int rounds = RoundsPerPoint * run.numPoints;
  const int moment = std::max(1, rounds / ProgressMoments);
  StartCursor(stepper.cursor, run.scheme, run.book);
  StartLanes(run.scheme, run.start, stepper.y.lane);
  stepper.x = 0.0F;
  stepper.h = spacing;
  float lastSaved = -2.0F * spacing;
  float tolerance = stepper.workingPrecision;
  result.saved = 0;
  for (result.rounds = 1; result.rounds <= rounds; ++result.rounds) {
    const auto stops = [&](const RunHook& asked, int every) {
      return asked && result.rounds % every == 0 &&
             asked(static_cast<double>(stepper.x) / static_cast<double>(end));
    };
    if (stops(hook, moment) || stops(run.breathe, BreathRounds)) {
      result.stopped = true;
      return;
    }
    StartSlopes(run.scheme, StretchAtTime(stepper, stepper.x).factor, stepper.h, stepper.y, stepper.slope,
                stepper.scale);
    if (result.saved < run.numPoints - 1 && std::fabs(stepper.x - lastSaved) > spacing) {
      SaveStep(stepper, ++result.saved, savedTime, rows);
      lastSaved = stepper.x;
    }
    if (stepper.x + stepper.h > end) stepper.h = end - stepper.x;
    if (!ControlledStep(stepper, tolerance)) return;
    if (stepper.reduced) tolerance = stepper.workingPrecision;
    if (stepper.x >= end) {
      SaveStep(stepper, ++result.saved, savedTime, rows);
      result.finished = true;
      return;
    }
    stepper.h = stepper.nextStep;
    if (!(stepper.h > smallest)) {
      if (result.rounds >= LastRoundAtSmallestStep) return;
      stepper.h = smallest;
    }
  }
  --result.rounds;  // all rounds were used up
}

/// Returns the first point below `limit` at which `profile` is not 0, or `limit`.
int FirstNonZero(std::span<const float> profile, int limit) {
  const auto points = profile.first(std::min(profile.size(), Index(std::max(0, limit))));
  const auto found = std::find_if(points.begin(), points.end(), [](float value) { return value != 0.0F; });
  return found == points.end() ? limit : static_cast<int>(found - points.begin());
}

}  // namespace

int FirstActivePoint(const SchemeTables& tables, const std::array<float, MaxStates + 1>& start,
                     const StimulusView& stimulus, int numPoints) {
  unsigned waitsFor = 0;  // bit p = some rate waits for profile p
  for (std::size_t a = 1; a <= MaxStates; ++a) {
    for (std::size_t c = 1; c <= MaxStates; ++c) {
      if (!(start[a] > 0.0F) || !(tables.rate[a][c] > 0.0F)) continue;
      unsigned profiles = tables.depend.Volt[a][c] == 1 ? 1U : 0U;
      for (unsigned d = 1; d <= MaxDrugs; ++d) {
        if (tables.depend.Drug[d][a][c] != 0) profiles |= 1U << d;
      }
      if (profiles == 0) return 0;
      waitsFor |= profiles;
    }
  }
  int first = numPoints;
  for (std::size_t p = 0; p <= MaxDrugs; ++p) {
    if ((waitsFor >> p & 1U) != 0) first = FirstNonZero(stimulus.profile[p], first);
  }
  return first;
}

AdaptiveResult IntegrateAdaptive(const AdaptiveRun& run, std::span<float> savedTime,
                                 const OccupancyRows& rows, const RunHook& hook) {
  AdaptiveResult result;
  result.precision =
      run.precision >= FinestPrecision ? std::min(run.precision, CoarsestPrecision) : FinestPrecision;
  if (run.numPoints < 1 || !(run.stimulus.intervalMs > 0.0F)) return result;
  Stepper stepper{.run = run, .cursor = {}, .y = {}, .slope = {}, .scale = {}};
  stepper.workingPrecision = result.precision;
  RunLoop(stepper, savedTime, rows, hook, result);
  if (stepper.reduced && !result.finished && !result.stopped && LoosenPrecision(stepper)) {
    RunLoop(stepper, savedTime, rows, hook, result);
  }
  result.precision = stepper.workingPrecision;
  result.precisionReduced = stepper.reduced;
  result.precisionLost = stepper.lost && !result.finished;
  result.stalled = stepper.stalled;
  return result;
}

}  // namespace zelvane
