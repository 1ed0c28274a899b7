#include "desktop/graph/number_ticker.h"

#include <algorithm>
#include <cmath>

#include "screen/entry.h"

namespace zelvane {
namespace {

constexpr double PlainBelow = 1e6;  // larger numbers are written with a power of ten
constexpr int MostDecimals = 5;     // numbers that need more decimals are written with a power of ten, too
constexpr double RoundingOfZero = 1e-6;  // share of a step: ticks are sums of steps

}  // namespace

double NumberTicker::getTickStep(const QCPRange& range) {
  const double gain = std::abs(gain_);
  step_ = QCPAxisTicker::getTickStep({range.lower * gain, range.upper * gain});
  size_ = std::max(std::abs(range.lower), std::abs(range.upper)) * gain;
  return step_ / gain;
}

QString NumberTicker::getTickLabel(double tick, const QLocale& /*locale*/, QChar /*formatChar*/,
                                   int /*precision*/) {
  tick *= gain_;
  if (std::abs(tick) < step_ * RoundingOfZero) tick = 0.0;
  // 0.25 needs two decimals, though its order of magnitude asks for one
  int needed = std::max(0, static_cast<int>(std::ceil(-std::log10(step_) - RoundingOfZero)));
  const double scaled = step_ * std::pow(10.0, needed);
  if (std::abs(scaled - std::round(scaled)) > 1e-3) ++needed;
  if (size_ >= PlainBelow || needed > MostDecimals) {
    const int digits = static_cast<int>(std::ceil(std::log10(std::max(size_ / step_, 1.0)))) + 2;
    return QString::fromStdString(CompactNumber(tick, std::clamp(digits, 1, 15)));
  }
  return QString::number(tick, 'f', std::max(needed, decimals_));
}

}  // namespace zelvane
