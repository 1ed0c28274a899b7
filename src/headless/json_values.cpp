#include "headless/json_values.h"

#include <charconv>
#include <cmath>

#include "formats/number_text.h"
#include "platform/format_text.h"
#include "screen/zoom_graph.h"

namespace zelvane {
namespace {

constexpr double LargestPlainWhole = 1e15;  // whole numbers below it are written without point and exponent
constexpr int FloatDigits = 9;              // enough digits to read back every 32-bit float

Json RangeJson(const std::optional<DataRange>& range, char axis) {
  if (!range) return nullptr;
  const auto number = [axis](double v) {
    return axis == 'y' ? FloatJson(static_cast<float>(v)) : NumberJson(v);
  };
  return Json::array({number(range->min), number(range->max)});
}

Json ColourJson(const Colour& colour) {
  return Json::array({colour.red, colour.green, colour.blue});
}

const char* StyleWord(PlotStyle style) {
  switch (style) {
    case PlotStyle::Line:
      return "line";
    case PlotStyle::Stair:
      return "stair";
    case PlotStyle::Points:
      return "points";
    case PlotStyle::Cross:
      return "cross";
    case PlotStyle::Dashed:
      break;
  }
  return "dashed";
}

Json AxisJson(const Graph& graph, char which) {
  const Axis& axis = which == 'x' ? graph.x : graph.y;
  const DataRange view = ViewRange(graph, which);
  Json json = Json::object();
  json["title"] = axis.title;
  json["scaling"] = axis.automatic ? "auto" : "manual";
  json["min"] = NumberJson(view.min);
  json["max"] = NumberJson(view.max);
  json["log"] = axis.log;
  if (axis.gain != 1.0) json["gain"] = NumberJson(axis.gain);
  return json;
}

Json PlotJson(const Plot& plot) {
  Json json = Json::object();
  json["style"] = StyleWord(plot.style);
  json["colour"] = ColourJson(plot.colour);
  json["count"] = plot.y.size();
  json["x"] = RangeJson(PlotRange(plot, 'x'), 'x');
  json["y"] = RangeJson(PlotRange(plot, 'y'), 'y');
  return json;
}

Json CursorJson(const Cursor& cursor) {
  Json json = Json::object();
  json["x"] = NumberJson(cursor.x);
  json["y"] = NumberJson(cursor.y);
  json["enabled"] = cursor.enabled;
  json["colour"] = ColourJson(cursor.colour);
  return json;
}

Json ThumbJson(const Graph& graph, char axis) {
  const Thumb thumb = ZoomThumbOf(graph, axis);
  return Json::array({NumberJson(thumb.start), NumberJson(thumb.length)});
}

}  // namespace

Json NumberJson(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0.0 ? "inf" : "-inf";
  const bool negativeZero = value == 0.0 && std::signbit(value);
  if (value == std::trunc(value) && std::abs(value) < LargestPlainWhole && !negativeZero) {
    return static_cast<long long>(value);
  }
  return value;
}

Json FloatJson(float value) {
  if (!std::isfinite(value)) return NumberJson(static_cast<double>(value));
  // The nine digits as a double: its shortest form is those digits again.
  char digits[32];
  const auto written =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, FloatDigits);
  double rounded = 0.0;
  std::from_chars(digits, written.ptr, rounded);
  return NumberJson(rounded);
}

Json TypedJson(float value) {
  return NumberJson(AsTyped(value));
}

Json FieldJson(FieldRef ref) {
  switch (ref.field->type) {
    case FieldType::Text:
      return FieldText(ref);
    case FieldType::Float:
      return FloatJson(static_cast<float>(FieldNumber(ref)));
    case FieldType::Int:
    case FieldType::Double:
      break;
  }
  return NumberJson(FieldNumber(ref));
}

Json ControlValueJson(const Control& control) {
  switch (control.kind) {
    case ControlKind::Number:
    case ControlKind::Switch:
    case ControlKind::Choice: {
      const bool single =
          control.field && (control.field.field->type == FieldType::Float || control.toShown != nullptr);
      return single ? FloatJson(static_cast<float>(control.number)) : NumberJson(control.number);
    }
    case ControlKind::Text:
    case ControlKind::Readout:
      return control.text;
    case ControlKind::Button:
      break;
  }
  return nullptr;
}

Json ControlJson(const Control& control) {
  Json json = Json::object();
  json["name"] = control.name;
  json["panel"] = control.panel->name;
  json["value"] = ControlValueJson(control);
  json["dimmed"] = control.dimmed;
  json["visible"] = control.visible;
  json["help"] = control.help;
  json["callback"] = control.command;
  if (!control.colour.empty()) json["colour"] = control.colour;
  if (!control.label.empty()) json["label"] = control.label;
  if (!control.unit.empty()) json["unit"] = control.unit;
  json["shown"] = ShownText(control);
  return json;
}

Json GraphJson(const Graph& graph) {
  Json json = Json::object();
  json["graph"] = graph.name;
  json["plots"] = Json::array();
  for (const Plot& plot : graph.plots) json["plots"].push_back(PlotJson(plot));
  json["axes"] = Json::object();
  json["axes"]["x"] = AxisJson(graph, 'x');
  json["axes"]["y"] = AxisJson(graph, 'y');
  json["cursors"] = Json::array();
  for (const Cursor& cursor : graph.cursors) json["cursors"].push_back(CursorJson(cursor));
  if (!graph.zooms) return json;
  json["full"] = Json::object();
  json["full"]["x"] = Json::array({NumberJson(graph.fullXMin), NumberJson(graph.fullXMax)});
  json["full"]["y"] = Json::array({NumberJson(graph.fullYMin), NumberJson(graph.fullYMax)});
  json["thumb"] = Json::object();
  json["thumb"]["x"] = ThumbJson(graph, 'x');
  json["thumb"]["y"] = ThumbJson(graph, 'y');
  return json;
}

std::string JsonLine(const Json& object) {
  const std::string line = object.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string safe;
  safe.reserve(line.size());
  for (std::size_t i = 0; i < line.size(); ++i) {
    const auto byte = static_cast<unsigned char>(line[i]);
    const auto next = static_cast<unsigned char>(i + 1 < line.size() ? line[i + 1] : 0);
    if (byte == 0x7F) {
      safe += "\\u007f";
    } else if (byte == 0xC2 && next < 0xA0) {
      safe += FormatText("\\u%04x", next);
      ++i;
    } else {
      safe += line[i];
    }
  }
  return safe;
}

}  // namespace zelvane
