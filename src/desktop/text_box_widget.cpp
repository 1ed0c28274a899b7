#include "desktop/text_box_widget.h"

#include <algorithm>

#include "desktop/text.h"

namespace zelvane {
namespace {

constexpr int FewestLines = 4;
constexpr int MostLines = 24;
constexpr int Columns = 64;

}  // namespace

TextBoxWidget::TextBoxWidget(TextBox& box, QWidget* parent) : QPlainTextEdit(parent), box_(box) {
  setObjectName(ToQt(box.name));
  setReadOnly(true);
  setTabChangesFocus(true);
  refresh();
}

void TextBoxWidget::refresh() {
  if (shown_ == box_.lines) return;
  shown_ = box_.lines;
  QString text;
  for (const std::string& line : shown_) text += ToQt(line) + '\n';
  text.chop(1);
  setPlainText(text);
  moveCursor(shown_.size() > MostLines ? QTextCursor::End : QTextCursor::Start);
}

QSize TextBoxWidget::sizeHint() const {
  const int lines = std::clamp(static_cast<int>(box_.lines.size()) + 1, FewestLines, MostLines);
  return {Columns * fontMetrics().averageCharWidth(), lines * fontMetrics().lineSpacing() + 2 * frameWidth()};
}

}  // namespace zelvane
