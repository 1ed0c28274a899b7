// Responses of a real recording, measured on the panel, compared with the definitions calculated in doubles.
#include "analysis/analysis_store.h"
#include "formats/abf/abf.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

// A cell under voltage clamp: the membrane is charged inward at 700 ms and outward at 800 ms, each time with
// a rise of about 0.2 ms and a decay of about 15 ms.
const std::string EvokedCurrents = Recordings + "abf1/130618-1-12.abf";

/// Settings of one response, in samples.
struct Stretches {
  int baseStart, basePoints, searchStart, positions, window, area;
  double latencyMs;
};

constexpr double RiseFrom = 0.2;
constexpr double RiseTo = 0.8;
constexpr double Decayed = 0.4;
constexpr double LatencyTo = 0.1;

/// The definitions in their plain form, without regard to speed.
class PlainMeasures {
 public:
  PlainMeasures(std::vector<double> samples, double interval, const Stretches& s)
      : x_(std::move(samples)), dt_(interval) {
    for (int i = 0; i < s.basePoints; ++i) base += x_[s.baseStart + i] / s.basePoints;
    for (int i = 0; i < s.basePoints; ++i) {
      variance += std::pow(x_[s.baseStart + i] - base, 2) / (s.basePoints - 1);
    }
    FindPeak(s);
    amplitude = peak - base;
    MeasureRise();
    const int down = FirstBelowAfterPeak((1.0 - Decayed) * amplitude);
    const double level = base + (1.0 - Decayed) * amplitude;
    decay = CrossingAfter(down, level) - position * dt_;
    width = CrossingAfter(down, level) - CrossingAfter(LastBelowBeforePeak(1.0 - Decayed), level);
    latencyRise = CrossingAfter(LastBelowBeforePeak(LatencyTo), base + LatencyTo * amplitude) - s.latencyMs;
    latencyPeak = position * dt_ - s.latencyMs;
    for (int i = s.searchStart; i < s.searchStart + s.area; ++i) {
      area += dt_ * ((x_[i] - base) + (x_[i + 1] - base)) / 2.0;
      coastline += std::abs(x_[i + 1] - x_[i]);
    }
  }

  double base = 0.0, variance = 0.0, peak = 0.0, amplitude = 0.0, riseTime = 0.0, points = 0.0, slope = 0.0;
  double decay = 0.0, width = 0.0, latencyRise = 0.0, latencyPeak = 0.0, area = 0.0, coastline = 0.0;
  int position = 0;

 private:
  double Share(int i) const { return std::abs((x_[i] - base) / amplitude); }  // share of the amplitude

  void FindPeak(const Stretches& s) {
    double farthest = -1.0;
    for (int k = s.searchStart; k <= s.searchStart + s.positions; ++k) {
      double mean = 0.0;
      for (int j = 0; j < s.window; ++j) mean += x_[k + j] / s.window;
      if (std::abs(mean - base) <= farthest) continue;
      farthest = std::abs(mean - base);
      peak = mean;
      position = k + s.window / 2;
    }
  }

  int LastBelowBeforePeak(double share) const {
    int i = position;
    while (Share(i) >= share) --i;
    return i;
  }

  int FirstBelowAfterPeak(double size) const {
    int i = position;
    while (std::abs((x_[i] + x_[i + 1] + x_[i + 2]) / 3.0 - base) >= std::abs(size)) ++i;
    return i;
  }

  /// Returns the time at which the line from sample i to the next one reaches a level; without a crossing
  /// that of sample i.
  double CrossingAfter(int i, double level) const {
    const double part = std::abs((level - x_[i]) / (x_[i + 1] - x_[i]));
    return (i + (part < 1.0 ? part : 0.0)) * dt_;
  }

  void MeasureRise() {
    const int foot = LastBelowBeforePeak(RiseFrom);
    int top = foot;
    while (Share(top + 1) < RiseTo) ++top;
    points = top - foot;
    riseTime =
        CrossingAfter(top, base + RiseTo * amplitude) - CrossingAfter(foot, base + RiseFrom * amplitude);
    double t = 0.0, a = 0.0, tt = 0.0, at = 0.0;
    for (int i = foot + 1; i <= top; ++i) {
      t += i * dt_ / points;
      a += x_[i] / points;
    }
    for (int i = foot + 1; i <= top; ++i) {
      tt += std::pow(i * dt_ - t, 2);
      at += (i * dt_ - t) * (x_[i] - a);
    }
    slope = at / tt;
  }

  std::vector<double> x_;
  double dt_;
};

/// Returns the samples of a sweep, as the reader of the format gives them.
std::vector<double> Sweep(int sweep) {
  AbfHeader header;
  int samples = 0;
  int sweeps = 0;
  const AbfHandle file = OpenABFFile(EvokedCurrents, header, samples, sweeps, nullptr);
  Floats trace(static_cast<std::size_t>(SweepLength(*file, sweep)));
  EXPECT_GT(ReadSweep(*file, header.samplingSequence[0], sweep, 0, trace), 0);
  return {trace.begin(), trace.end()};
}

struct Response {
  const char* name;
  const char* settings;  // as the user types it
  Stretches stretches;
};

class RecordedResponseTest : public DriveTest, public testing::WithParamInterface<Response> {};

TEST_P(RecordedResponseTest, EveryMeasureOfEverySweepIsThatOfItsDefinition) {
  Run("open \"" + EvokedCurrents + "\"\npress Analysis\nenter FitMode 0\n" + GetParam().settings +
      "enter RiseStartFrac 0.2\nenter RiseEndFrac 0.8\nenter FracDecay 0.4\nenter AnalysisFitPts 250\n"
      "enter AnalysisParse 10\npress AN_AutoAnalyzeButton\n");
  ASSERT_EQ(Analysis.TableRow, 4);
  for (int sweep = 1; sweep <= 3; ++sweep) {
    SCOPED_TRACE(sweep);
    const PlainMeasures plain(Sweep(sweep), 0.02, GetParam().stretches);
    const AnalysisRow& row = Analysis.Rows[static_cast<std::size_t>(sweep)];
    EXPECT_EQ(row.episode, sweep);
    const auto expect = [&row](std::size_t column, double value, double tolerance) {
      EXPECT_TRUE(row.measured[column]) << column;
      EXPECT_NEAR(row.value[column], value, tolerance) << column;
    };
    constexpr double Time = 3e-4;  // ms: times of about 700 ms are 32-bit floats
    expect(4, plain.base, 1e-3);
    expect(20, plain.variance, 1e-3 * plain.variance);
    expect(5, plain.amplitude, 1e-3);
    expect(6, plain.riseTime, Time);
    expect(17, plain.points, 0.0);
    expect(16, plain.slope, 1e-3 * std::abs(plain.slope));
    expect(19, plain.decay, Time);
    expect(7, plain.width, Time);
    expect(13, plain.latencyRise, Time);
    expect(14, plain.latencyPeak, Time);
    expect(15, plain.area, 1e-4 * std::abs(plain.area));
    expect(18, plain.coastline, 1e-4 * plain.coastline);
    // Facts that are visible on the trace.
    EXPECT_GT(std::abs(plain.amplitude), 800.0);
    EXPECT_LT(plain.riseTime, 0.2);
    EXPECT_GT(plain.decay, 1.0);
  }
}

INSTANTIATE_TEST_SUITE_P(
    EvokedCurrents, RecordedResponseTest,
    testing::Values(Response{"Inward",
                             "enter BaselineStart 600\nenter BaselinePts 80\nenter StartAnalysis 690\n"
                             "enter PeakSearchPts 40\nenter LatencyPos 700\n",
                             {30000, 4000, 34500, 2000, 1, 2500, 700.0}},
                    Response{"Outward",
                             "enter BaselineStart 780\nenter BaselinePts 15\nenter StartAnalysis 798\n"
                             "enter PeakSearchPts 20\nenter PeakAvePts 4\nenter LatencyPos 795\n",
                             {39000, 750, 39900, 1000, 4, 2500, 795.0}}),
    [](const auto& response) { return std::string(response.param.name); });

}  // namespace
}  // namespace zelvane
