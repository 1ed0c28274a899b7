// The column of settings beside a page's drawing.
#pragma once

#include <QScrollArea>

#include "desktop/form_page.h"

namespace zelvane {

/// The named sections of a panel as one form that scrolls when the window is low.
class SideForm : public QScrollArea {  // zelvane::Panel: a QFrame has a Panel of its own
  Q_OBJECT
 public:
  SideForm(const zelvane::Panel& panel, QWidget* parent);

  FormPage& form() { return *form_; }

 private:
  FormPage* form_;
};

}  // namespace zelvane
