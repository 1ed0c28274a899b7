// Numbers along an axis.
#pragma once

#include <qcustomplot.h>

namespace zelvane {

/// Ticks at round numbers, labelled with as many decimals as their distance needs, at least `decimals`
/// (-1 = as they come).
class NumberTicker : public QCPAxisTicker {
 public:
  void setDecimals(int decimals) { decimals_ = decimals; }

 protected:
  double getTickStep(const QCPRange& range) override;
  QString getTickLabel(double tick, const QLocale& locale, QChar formatChar, int precision) override;

 private:
  int decimals_ = -1;
  double step_ = 1.0;
  double size_ = 1.0;  // of the largest tick
};

}  // namespace zelvane
