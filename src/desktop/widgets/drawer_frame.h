// A main part with a column of settings at its right, which folds away.
#pragma once

#include <QWidget>

class QSplitter;

namespace zelvane {

class EdgeButton;
class Settings;

/// The column is beside the main part, and the user sets its width. In a window narrower than `DrawerBelow`
/// it is a drawer: the button at the edge opens it over the main part. Escape closes the drawer while nothing
/// runs. The settings keep the width of the column and whether it shows in a wide window.
class DrawerFrame : public QWidget {
  Q_OBJECT
 public:
  static constexpr int DrawerBelow = 1100;  // pixels of the window's width

  /// Takes over both widgets; `key` is the settings' name of the page.
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
  QSplitter* splitter_;  // the main part, and the column unless it is a drawer
  QWidget* main_;
  QWidget* column_;
  EdgeButton* edge_;
  bool isDrawer_ = false;
  bool columnShows_;         // in a wide window
  bool drawerOpen_ = false;  // in a narrow one
};

}  // namespace zelvane
