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

/// Returns the colours of a window's palette.
GraphColours ColoursOf(const QPalette& palette);

/// Returns black on white, for pictures that go into papers.
GraphColours PaperColours();

/// Returns a colour of a record in the form that is visible on `colours.background`: black becomes the text
/// colour, and a colour with too little contrast becomes lighter or darker in its own hue.
QColor VisibleColour(Colour colour, const GraphColours& colours);

/// Returns the colour of a plot behind others: little of its own and much of the background.
QColor FaintColour(Colour colour, const GraphColours& colours);

/// Returns white or black, whichever reads better on a ground.
QColor TextOn(const QColor& ground);

}  // namespace zelvane
