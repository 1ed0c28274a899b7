#include "fit/fit_progress.h"

#include "fit/fit_events.h"
#include "fit/session_store.h"
#include "parameters/vertex_store.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds BreathInterval{20};
constexpr std::chrono::milliseconds ShowInterval{50};
constexpr std::chrono::seconds LongestFinalRun{2};  // after a stop
constexpr std::size_t MostProgressPoints = 2000;

Clock::time_point lastBreath;  // of the process

/// Adds a point to the curve. A full curve loses every second point.
void AddProgressPoint() {
  std::vector<double>& evals = FitSession.progressEvals;
  std::vector<float>& residual = FitSession.progressResidual;
  if (evals.size() >= MostProgressPoints) {
    for (std::size_t i = 0; 2 * i < evals.size(); ++i) {
      evals[i] = evals[2 * i];
      residual[i] = residual[2 * i];
    }
    evals.resize(MostProgressPoints / 2);
    residual.resize(MostProgressPoints / 2);
  }
  evals.push_back(static_cast<double>(FitSession.evaluations));
  residual.push_back(static_cast<float>(Fit.FitNormResidual));
}

}  // namespace

void BeginFitProgress() {
  ForgetStop();
  FitSession.stopped = false;
  FitSession.finalRun = false;
  FitSession.evaluations = 0;
  FitSession.progressEvals.clear();
  FitSession.progressResidual.clear();
  FitSession.began = FitSession.lastShown = lastBreath = Clock::now();
  Fit.FitNormResidual = 0.0;
}

bool StopInPass() {
  ProcessSystemEvents();
  lastBreath = Clock::now();
  if (StopAsked()) FitSession.stopped = true;
  return FitSession.stopped;
}

bool StopOfEvaluation() {
  const Clock::time_point now = Clock::now();
  if (now - lastBreath >= BreathInterval) {
    Breathe(0.0);
    lastBreath = Clock::now();
  }
  if (FitSession.finalRun && now - FitSession.finalBegan < LongestFinalRun) return false;
  return StopAsked();
}

void ShowFitProgress(bool now) {
  const Clock::time_point time = Clock::now();
  if (!now && time - FitSession.lastShown < ShowInterval) return;
  FitSession.lastShown = time;
  const SimplexTable& table = Vertices.simplex;
  const double best = table.At(0, table.BestVertex);
  Fit.FitNormResidual = FitSession.points > 0 ? best / FitSession.points : 0.0;
  AddProgressPoint();
  FitProgressed.Tell();
}

double FitSeconds() {
  return std::chrono::duration<double>(Clock::now() - FitSession.began).count();
}

double EvaluationsPerSecond() {
  const double seconds = FitSeconds();
  return seconds > 0.0 ? static_cast<double>(FitSession.evaluations) / seconds : 0.0;
}

}  // namespace zelvane
