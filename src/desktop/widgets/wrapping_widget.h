// A widget that breaks its content into as many rows as its width asks for.
#pragma once

#include <QWidget>

namespace zelvane {

/// Keeps its height at what its content needs at its width. A page's splitters and columns ask for least
/// sizes without giving a width, so the height is fixed again whenever the width or the content changes.
class WrappingWidget : public QWidget {
  Q_OBJECT
 public:
  explicit WrappingWidget(QWidget* parent);

 protected:
  /// Places the content in rows of `width` pixels and returns their height.
  virtual int place(int width) = 0;

  /// Places the content at the present width.
  void arrange();

  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
};

}  // namespace zelvane
