// A text box record: lines of a log or report.
#pragma once

#include <QPlainTextEdit>

#include "screen/screen.h"

namespace zelvane {

class TextBoxWidget : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit TextBoxWidget(TextBox& box, QWidget* parent = nullptr);

  /// Reads what the record holds now; the newest line stays in view.
  void refresh();

  QSize sizeHint() const override;

 private:
  TextBox& box_;
  std::vector<std::string> shown_;
};

}  // namespace zelvane
