#include "kinetics/fixed_step.h"

#include <algorithm>
#include <limits>

#include "kinetics/fixed_kernels.h"
#include "kinetics/rate_terms.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int ProgressMoments = 20;
/// A limit that no time reaches, not even an infinite time from a huge interval.
constexpr float Never = std::numeric_limits<float>::quiet_NaN();

enum class PassEnded { Finished, OutOfRange, Stopped };

/// Returns a pass at time 0 with its first point stored.
FixedPass StartPass(const FixedStepRun& run, const OccupancyRows& rows, float stepMs) {
  FixedPass pass;
  pass.substeps = SubstepsPerPoint(run.stimulus.intervalMs, stepMs);
  const float totalMs = run.stimulus.intervalMs * static_cast<float>(run.numPoints);
  const auto total = static_cast<float>(static_cast<double>(totalMs) * 0.001);
  pass.h = total / static_cast<float>(run.numPoints * pass.substeps);
  StartLanes(run.scheme, run.start, pass.y);
  for (int lane = 0; lane < run.scheme.lanes; ++lane) {
    if (!run.scheme.on[Index(lane)]) continue;
    const auto state = Index(run.scheme.state[Index(lane)]);
    const auto i = Index(pass.stored++);
    pass.storedLane[i] = lane;
    pass.row[i] = rows[state].data();
    pass.row[i][1] = run.start[state];
  }
  return pass;
}

/// Takes one step whose stages may fall on different points of the stimulus.
StepsEnded StepAcrossEdge(const FixedStepRun& run, StimulusCursor& cursor, FixedPass& pass) {
  const auto factorAt = [&](float t) -> const TermTable<float>& {
    return StretchAt(cursor, run.scheme, run.stimulus, PointIndex(run.stimulus, t)).factor;
  };
  const TermTable<float>& start = factorAt(pass.t);
  const TermTable<float>& middle = factorAt(pass.t + pass.h * 0.5F);
  const TermTable<float>& end = factorAt(pass.t + pass.h);
  return TakeSteps(run.scheme, {start, middle, end}, Never, pass.step + 1, pass);
}

/// Repeats the last occupancies at all points whose steps end before `endTime`, up to step number `limit`.
/// Only the time advances, still by one float addition per step.
void RepeatPoint(FixedPass& pass, float endTime, long long limit) {
  const float h = pass.h;
  float t = pass.t;  // at a stored point
  long long points = 0;
  const long long most = (limit - pass.step) / pass.substeps;
  while (points < most) {
    float next = t;
    for (long long k = 0; k < pass.substeps; ++k) {
      const float moved = next + h;
      if (moved == next) pass.stalled = true;
      next = moved;
    }
    if (!(next < endTime)) break;
    const bool still = next == t;  // the time no longer advances: only the limit ends this
    t = next;
    points = still ? most : points + 1;
  }
  for (std::size_t i = 0; i < Index(pass.stored); ++i) {
    std::fill_n(pass.row[i] + pass.point + 1, points, pass.y[pass.storedLane[i]]);
  }
  pass.t = t;
  pass.point += static_cast<int>(points);
  pass.step += points * pass.substeps;
}

/// Takes steps up to number `limit`. Returns false when an occupancy left its range.
bool AdvanceTo(long long limit, const FixedStepRun& run, StimulusCursor& cursor, FixedPass& pass) {
  while (pass.step < limit) {
    const StimulusStretch& stretch =
        StretchAt(cursor, run.scheme, run.stimulus, PointIndex(run.stimulus, pass.t));
    const TermTable<float>& factor = stretch.factor;
    StepsEnded ended = TakeSteps(run.scheme, {factor, factor, factor}, stretch.endTime, limit, pass);
    if (ended == StepsEnded::Unchanged) RepeatPoint(pass, stretch.endTime, limit);
    if (ended == StepsEnded::Edge) ended = StepAcrossEdge(run, cursor, pass);
    if (ended == StepsEnded::OutOfRange) return false;
  }
  return true;
}

/// Does the same with a breath every BreathSteps steps.
PassEnded AdvanceBreathing(long long limit, const FixedStepRun& run, StimulusCursor& cursor,
                           FixedPass& pass) {
  const auto whole = static_cast<double>(run.numPoints * pass.substeps);
  while (pass.step < limit) {
    const long long next = run.breathe ? std::min(limit, pass.step + BreathSteps) : limit;
    if (!AdvanceTo(next, run, cursor, pass)) return PassEnded::OutOfRange;
    if (run.breathe && run.breathe(static_cast<double>(pass.step) / whole)) return PassEnded::Stopped;
  }
  return PassEnded::Finished;
}

/// Runs one pass from time 0 to the end. Calls `hook` before the steps to every 1/20 of the points.
PassEnded RunPass(const FixedStepRun& run, FixedPass& pass, StimulusCursor& cursor, const RunHook& hook) {
  StartCursor(cursor, run.scheme, run.book);
  const int interval = std::max(1, run.numPoints / ProgressMoments);
  for (int next = interval; next <= run.numPoints; next += interval) {
    const PassEnded ended = AdvanceBreathing((next - 1) * pass.substeps, run, cursor, pass);
    if (ended != PassEnded::Finished) return ended;
    if (hook && hook(static_cast<double>(next) / run.numPoints)) return PassEnded::Stopped;
  }
  return AdvanceBreathing(run.numPoints * pass.substeps, run, cursor, pass);
}

}  // namespace

long long SubstepsPerPoint(float intervalMs, float stepMs) {
  if (!(stepMs < intervalMs)) return 1;
  constexpr double most = 1e12;  // keeps products with the number of points inside 64 bits
  const double substeps = static_cast<double>(intervalMs) / static_cast<double>(stepMs);
  return std::max(1LL, static_cast<long long>(std::min(substeps, most)));
}

FixedStepResult IntegrateFixedStep(const FixedStepRun& run, const OccupancyRows& rows, const RunHook& hook) {
  FixedStepResult result;
  if (run.numPoints < 1 || !(run.stimulus.intervalMs > 0.0F)) return result;
  float stepMs = run.maxStepMs >= SmallestStepMs ? run.maxStepMs : SmallestStepMs;
  StimulusCursor cursor;
  while (true) {
    FixedPass pass = StartPass(run, rows, stepMs);
    const PassEnded ended = RunPass(run, pass, cursor, hook);
    if (pass.stalled) ++result.stalledPasses;
    result.stopped = ended == PassEnded::Stopped;
    if (ended != PassEnded::OutOfRange) return result;
    stepMs *= 0.5F;
    if (++result.reductions == MaxReductions) return result;
  }
}

}  // namespace zelvane
