// Numbers along an axis.
#pragma once

#include <qcustomplot.h>

namespace zelvane {

/// Ticks at round numbers, labelled with as many decimals as their distance needs, at least `decimals`
/// (-1 = as they come). The numbers are coordinate x gain, and it is they that are round.
class NumberTicker : public QCPAxisTicker {
 public:
  void setDecimals(int decimals) { decimals_ = decimals; }
  void setGain(double gain) { gain_ = gain != 0.0 ? gain : 1.0; }

 protected:
  double getTickStep(const QCPRange& range) override;
  QString getTickLabel(double tick, const QLocale& locale, QChar formatChar, int precision) override;

 private:
  int decimals_ = -1;
  double gain_ = 1.0;
  double step_ = 1.0;  // of the numbers
  double size_ = 1.0;  // of the largest tick
};

}  // namespace zelvane
