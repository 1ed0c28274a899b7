#include "screen/graph_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/index.h"
#include "platform/safe_file.h"

namespace zelvane {
namespace {

constexpr std::size_t BlockBytes = 1 << 20;
constexpr int TimeDigits = 10;  // start + i x step has rounding errors beyond these digits

/// Returns "ms" for "Time (ms)".
std::string_view UnitOf(std::string_view title) {
  const std::size_t open = title.rfind('(');
  const std::size_t close = title.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
  return title.substr(open + 1, close - open - 1);
}

std::string Position(double x, double y, std::string_view unit) {
  std::string text = FormatText("%.6g", x);
  if (!unit.empty()) text += ' ' + std::string(unit);
  return text + ", " + FormatText("%.5g", y);
}

double XOf(const Plot& plot, std::size_t i) {
  return plot.x.empty() ? plot.start + plot.step * static_cast<double>(i) : plot.x[i];
}

bool SameTimes(const Plot& a, const Plot& b) {
  return a.x == b.x && (!a.x.empty() || (a.start == b.start && a.step == b.step));
}

void AppendNumber(std::string& text, double value, int digits) {
  char buffer[32];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
  text.append(buffer, result.ptr);
}

void AppendNumber(std::string& text, float value) {
  char buffer[32];
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

void AppendTitle(std::string& text, std::string_view title, char separator) {
  if (title.find(separator) == std::string_view::npos && title.find('"') == std::string_view::npos) {
    text += title;
    return;
  }
  text += '"';
  for (const char c : title) text.append(c == '"' ? 2 : 1, c);
  text += '"';
}

/// The rows of a graph, one after the other.
class GraphRows {
 public:
  GraphRows(const Graph& graph, DataRange view, char separator) : graph_(graph), separator_(separator) {
    for (const Plot& plot : graph.plots) {
      const bool ownTimes = columns_.empty() || !SameTimes(plot, *columns_.front().plot);
      columns_.push_back({&plot, ownTimes, {}});
      for (std::size_t i = 0; i < plot.y.size(); ++i) {
        const double x = XOf(plot, i);
        if (x >= view.min && x <= view.max) Extend(columns_.back().stretches, i);
      }
      count_ = std::max(count_, columns_.back().Count());
    }
  }

  std::size_t Count() const { return count_; }

  void AppendTitles(std::string& text) const {
    bool first = true;
    for (const Column& column : columns_) {
      if (column.ownTimes) {
        if (!first) text += separator_;
        AppendTitle(text, graph_.x.title, separator_);
      }
      text += separator_;
      AppendTitle(text, graph_.y.title, separator_);
      first = false;
    }
    text += '\n';
  }

  void AppendNext(std::string& text) {
    bool first = true;
    for (Column& column : columns_) {
      const std::optional<std::size_t> sample = column.Next();
      if (column.ownTimes) {
        if (!first) text += separator_;
        if (sample) AppendNumber(text, XOf(*column.plot, *sample) * graph_.x.gain, TimeDigits);
      }
      text += separator_;
      if (sample) AppendNumber(text, column.plot->y[*sample]);
      first = false;
    }
    text += '\n';
  }

 private:
  /// Samples first..last - 1.
  struct Stretch {
    std::size_t first = 0;
    std::size_t last = 0;
  };
  struct Column {
    const Plot* plot = nullptr;
    bool ownTimes = true;
    std::vector<Stretch> stretches;
    std::size_t stretch = 0;
    std::size_t next = 0;  // position within the stretch

    std::size_t Count() const {
      std::size_t count = 0;
      for (const Stretch& s : stretches) count += s.last - s.first;
      return count;
    }
    std::optional<std::size_t> Next() {
      while (stretch < stretches.size()) {
        const Stretch& s = stretches[stretch];
        if (s.first + next < s.last) return s.first + next++;
        ++stretch;
        next = 0;
      }
      return std::nullopt;
    }
  };

  static void Extend(std::vector<Stretch>& stretches, std::size_t i) {
    if (!stretches.empty() && stretches.back().last == i) {
      ++stretches.back().last;
    } else {
      stretches.push_back({i, i + 1});
    }
  }

  const Graph& graph_;
  char separator_;
  std::vector<Column> columns_;
  std::size_t count_ = 0;
};

/// Returns the last sample of `plot` with an x at or below `x`; nullopt outside the plot.
std::optional<std::size_t> SampleBefore(const Plot& plot, double x) {
  if (plot.y.size() < 2) return std::nullopt;
  if (plot.x.empty()) {
    const double place = (x - plot.start) / plot.step;
    const auto last = static_cast<double>(plot.y.size() - 1);
    if (!(place >= 0.0) || !(place <= last)) return std::nullopt;
    return std::min(static_cast<std::size_t>(place), plot.y.size() - 2);
  }
  if (!(x >= plot.x.front()) || !(x <= plot.x.back())) return std::nullopt;
  const auto above = std::upper_bound(plot.x.begin() + 1, plot.x.end() - 1, x);
  return Index(above - plot.x.begin()) - 1;
}

}  // namespace

std::string CursorReadout(std::span<const Cursor> cursors, std::string_view xTitle, double gain) {
  const std::string_view unit = UnitOf(xTitle);
  std::string text;
  std::vector<const Cursor*> enabled;
  for (std::size_t k = 0; k < cursors.size(); ++k) {
    const Cursor& cursor = cursors[k];
    if (!cursor.enabled) continue;
    enabled.push_back(&cursor);
    if (!text.empty()) text += "    ";
    text += std::to_string(k + 1) + ": " + Position(cursor.x * gain, cursor.y, unit);
  }
  if (enabled.size() == 2) {
    text += "    \u0394: " +
            Position((enabled[1]->x - enabled[0]->x) * gain, enabled[1]->y - enabled[0]->y, unit);
  }
  return text;
}

std::optional<double> HeightAt(const Plot& plot, double x) {
  const auto before = SampleBefore(plot, x);
  if (!before) return std::nullopt;
  const double x0 = XOf(plot, *before);
  const double x1 = XOf(plot, *before + 1);
  const auto y0 = static_cast<double>(plot.y[*before]);
  const auto y1 = static_cast<double>(plot.y[*before + 1]);
  const double y = x1 > x0 ? y0 + (y1 - y0) * (x - x0) / (x1 - x0) : y0;
  if (!std::isfinite(y)) return std::nullopt;
  return y;
}

std::optional<std::string> GraphText(const Graph& graph, DataRange view, char separator,
                                     std::size_t maxRows) {
  GraphRows rows(graph, view, separator);
  if (rows.Count() > maxRows) return std::nullopt;
  std::string text;
  rows.AppendTitles(text);
  for (std::size_t i = 0; i < rows.Count(); ++i) rows.AppendNext(text);
  return text;
}

bool WriteGraphFile(const Graph& graph, const std::string& path) {
  constexpr double everywhere = std::numeric_limits<double>::infinity();
  GraphRows rows(graph, {-everywhere, everywhere}, ',');
  std::string block;
  rows.AppendTitles(block);
  std::size_t written = 0;
  bool atStart = true;
  return ReplaceFileInBlocks(path, [&]() -> std::string_view {
    if (!atStart) block.clear();
    atStart = false;
    while (written < rows.Count() && block.size() < BlockBytes) {
      rows.AppendNext(block);
      ++written;
    }
    return block;
  });
}

}  // namespace zelvane
