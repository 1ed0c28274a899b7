// Numbers along an axis.
#pragma once

#include <qcustomplot.h>

namespace zelvane {

/// Puts ticks at round numbers and labels them with as many decimals as their distance needs, at least
/// `decimals` (-1 = no minimum). A number is coordinate x gain; the numbers are round, not the coordinates.
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
  double step_ = 1.0;  // between the numbers of two ticks
  double size_ = 1.0;  // the largest number
};

}  // namespace zelvane
