#include "desktop/widgets/text_box_widget.h"

#include <QFontDatabase>
#include <algorithm>
#include <cmath>

#include "desktop/widgets/text.h"

namespace zelvane {
namespace {

constexpr int FewestLines = 4;
constexpr int MostLines = 24;
constexpr int FewestColumns = 40;
constexpr int MostColumns = 100;
constexpr int Prose = 64;  // columns of a text that is wrapped
constexpr char ProseBox[] = "AboutText";
constexpr int TabColumns = 8;

/// Returns the columns that a line takes with its tabs expanded.
int WidthOf(const std::string& line) {
  int columns = 0;
  for (const char c : line) columns += c == '\t' ? TabColumns - columns % TabColumns : 1;
  return columns;
}

}  // namespace

TextBoxWidget::TextBoxWidget(TextBox& box, QWidget* parent) : QPlainTextEdit(parent), box_(box) {
  setObjectName(ToQt(box.name));
  setReadOnly(true);
  setTabChangesFocus(true);
  if (box.name != ProseBox) {  // a report, whose columns must be aligned
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(NoWrap);
    setMinimumWidth(FewestColumns * fontMetrics().averageCharWidth());
  }
  refresh();
}

void TextBoxWidget::refresh() {
  const std::vector<std::string>& lines = LinesOf(box_);
  if (shown_ == lines) return;
  shown_ = lines;
  QString text;
  for (const std::string& line : shown_) text += ToQt(line) + '\n';
  text.chop(1);
  setPlainText(text);
  moveCursor(shown_.size() > MostLines && box_.renew == nullptr ? QTextCursor::End : QTextCursor::Start);
}

QSize TextBoxWidget::sizeHint() const {
  const int lines =
      std::clamp(document()->blockCount() + 1, FewestLines, MostLines);  // and one more line to show the end
  int longest = FewestColumns;
  for (const std::string& line : box_.lines) longest = std::max(longest, WidthOf(line));
  const int margins = static_cast<int>(std::ceil(2.0 * document()->documentMargin()));
  const int columns = lineWrapMode() == NoWrap ? std::min(longest, MostColumns) + 3 : Prose;
  return {columns * fontMetrics().averageCharWidth(),
          lines * fontMetrics().lineSpacing() + 2 * frameWidth() + margins};
}

}  // namespace zelvane
