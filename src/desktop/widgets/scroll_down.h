// A column that scrolls up and down.
#pragma once

#include <QScrollArea>

namespace zelvane {

/// Makes `content` the content of `area`: as wide as the area, on its background, without a bar along x.
inline void ScrollDown(QScrollArea& area, QWidget* content) {
  area.setWidget(content);
  area.setWidgetResizable(true);
  area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area.setFocusPolicy(Qt::NoFocus);
  area.viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
}

}  // namespace zelvane
