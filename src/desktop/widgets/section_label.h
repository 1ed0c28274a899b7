// The title of a part of a page or form.
#pragma once

#include <QLabel>

namespace zelvane {

inline QLabel* NewSectionLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setProperty("role", "section");
  label->setIndent(0);
  return label;
}

}  // namespace zelvane
