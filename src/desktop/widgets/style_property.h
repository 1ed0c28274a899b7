// Properties that the style sheet reads.
#pragma once

#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace zelvane {

/// Sets a property of a visible widget and applies the rules of the style sheet that depend on the property.
inline void SetStyleProperty(QWidget* widget, const char* name, const QVariant& value) {
  if (widget->property(name) == value) return;
  widget->setProperty(name, value);
  widget->style()->unpolish(widget);
  widget->style()->polish(widget);
}

}  // namespace zelvane
