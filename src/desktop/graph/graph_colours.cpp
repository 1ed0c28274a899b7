#include "desktop/graph/graph_colours.h"

#include <algorithm>
#include <cmath>

namespace zelvane {
namespace {

constexpr int BlackBelow = 40;  // largest channel of a colour that counts as black
constexpr double LeastContrast =
    3.0;  // for graphical objects: Web Content Accessibility Guidelines 2.1, 1.4.11
constexpr double LightnessStep = 0.04;
constexpr double FaintShare = 0.25;

double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// Returns the relative luminance by the same source.
double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) + 0.0722 * Linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

QColor MixedColour(const QColor& a, const QColor& b, double shareOfB) {
  const auto mix = [shareOfB](int from, int to) {
    return static_cast<int>(std::lround(from + (to - from) * shareOfB));
  };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

GraphColours ColoursFrom(const QColor& background, const QColor& text) {
  return {background, text, MixedColour(background, text, 0.37), MixedColour(background, text, 0.55)};
}

}  // namespace

GraphColours ColoursOf(const QPalette& palette) {
  return ColoursFrom(palette.color(QPalette::Base), palette.color(QPalette::Text));
}

GraphColours PaperColours() {
  return ColoursFrom(Qt::white, Qt::black);
}

QColor VisibleColour(Colour colour, const GraphColours& colours) {
  if (std::max({colour.red, colour.green, colour.blue}) < BlackBelow) return colours.text;
  QColor seen(colour.red, colour.green, colour.blue);
  const double direction = Luminance(colours.background) < 0.18 ? LightnessStep : -LightnessStep;
  while (Contrast(seen, colours.background) < LeastContrast) {
    const double lightness = static_cast<double>(seen.lightnessF()) + direction;
    if (lightness < 0.0 || lightness > 1.0) return colours.text;
    seen.setHslF(seen.hslHueF(), seen.hslSaturationF(), static_cast<float>(lightness));
  }
  return seen;
}

QColor FaintColour(Colour colour, const GraphColours& colours) {
  return MixedColour(colours.background, VisibleColour(colour, colours), FaintShare);
}

QColor TextOn(const QColor& ground) {
  return Contrast(Qt::white, ground) >= Contrast(Qt::black, ground) ? Qt::white : Qt::black;
}

}  // namespace zelvane
