// The column of settings beside a page's drawing.
#pragma once

#include <QScrollArea>

#include "desktop/widgets/form_page.h"

class QToolButton;

namespace zelvane {

class Settings;

/// Shows the named sections of a panel as one form that scrolls when the window is low. A button over its
/// lower edge then shows that there is more, and scrolls to it.
class SideForm : public QScrollArea {  // zelvane::Panel: a QFrame has a Panel of its own
  Q_OBJECT
 public:
  SideForm(const zelvane::Panel& panel, Settings& settings, const QString& key, QWidget* parent);

  FormPage& form() { return *form_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showMore();

  FormPage* form_;
  QToolButton* more_;
};

}  // namespace zelvane
