// Colours of a graph on a light or dark ground.
#pragma once

#include <QColor>
#include <QPalette>

#include "screen/screen.h"

namespace zelvane {

struct GraphColours {
  QColor background;
  QColor text;
  QColor grid;
  QColor frame;
};

/// The colours of a window's palette.
GraphColours ColoursOf(const QPalette& palette);

/// Black on white, for pictures that go into papers.
GraphColours PaperColours();

/// A colour of a record as it is to be seen on `colours.background`: black becomes the text colour, and a
/// colour with too little contrast is made lighter or darker in its own hue.
QColor VisibleColour(Colour colour, const GraphColours& colours);

/// White or black, whichever reads better on a ground.
QColor TextOn(const QColor& ground);

}  // namespace zelvane
