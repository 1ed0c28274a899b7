// A text that is shortened where it has no room.
#pragma once

#include <QLabel>

namespace zelvane {

/// Leaves out the middle of its text where it has no room: a path must not widen the form or window around
/// it.
class ElidedLabel : public QLabel {
  Q_OBJECT
 public:
  using QLabel::QLabel;

  /// Shows a text. The tool tip is `tip`; when that is empty, it is the text where the text is cut.
  void showText(const QString& text, const QString& tip = {});

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void fit();

  QString full_;
  QString tip_;
};

}  // namespace zelvane
