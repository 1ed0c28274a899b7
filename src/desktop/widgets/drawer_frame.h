// A drawing with a column of settings at its right, which folds away.
#pragma once

#include <QWidget>

class QSplitter;

namespace zelvane {

class EdgeButton;
class Settings;

/// The column stands beside the main part, and the user sets its width. In a window below `DrawerBelow` it is a
/// drawer: it lies over the main part once the user opens it by the button at the edge. Escape closes the
/// drawer while nothing runs. Whether the column shows in a wide window, and its width, are kept in the settings.
class DrawerFrame : public QWidget {
  Q_OBJECT
 public:
  static constexpr int DrawerBelow = 1100;  // pixels of the window's width

  /// Takes both widgets; `key` is the settings' name of the page.
  DrawerFrame(QWidget* main, QWidget* column, Settings& settings, const QString& key, QWidget* parent);

  bool isOpen() const;
  void setOpen(bool open);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void arrange();
  void changeSides(bool drawer);
  int columnWidth() const;

  Settings& settings_;
  QString key_;
  QSplitter* splitter_;  // the main part, and the column while it is no drawer
  QWidget* main_;
  QWidget* column_;
  EdgeButton* edge_;
  bool isDrawer_ = false;
  bool columnShows_;         // in a wide window
  bool drawerOpen_ = false;  // in a narrow one
};

}  // namespace zelvane
