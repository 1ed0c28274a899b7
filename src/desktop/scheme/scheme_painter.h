// The kinetic scheme as a drawing.
#pragma once

#include <QPalette>

#include "desktop/scheme/scheme_layout.h"

class QPainter;

namespace zelvane {

/// The marked items while the user works on the scheme; nullptr = no item.
struct SchemeMarks {
  const SchemeItem* hovered = nullptr;
  const SchemeItem* focused = nullptr;
  const SchemeItem* edited = nullptr;  // hidden under its field
};

/// Draws the scheme as `layout` places it, in the colours of `palette`.
void PaintScheme(QPainter& painter, const SchemeLayout& layout, const QPalette& palette,
                 const SchemeMarks& marks);

}  // namespace zelvane
