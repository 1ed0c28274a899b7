// Colours that mean something about a rate.
#pragma once

#include <QPalette>

#include "desktop/graph/graph_colours.h"

namespace zelvane {

/// Returns the green of a rate that depends on the stimulus, on the ground of `palette`.
inline QColor DependentColour(const QPalette& palette) {
  const GraphColours colours = ColoursOf(palette);
  const bool dark = colours.background.lightness() < colours.text.lightness();
  return VisibleColour(dark ? Colour{95, 210, 135} : Colour{0, 125, 55}, colours);
}

}  // namespace zelvane
