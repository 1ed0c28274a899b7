// The help window: pages by topic number.
#pragma once

#include <QWidget>

class QTextBrowser;

namespace zelvane {

/// Shows the Markdown pages "help/<topic>.md" of the data folder; topic 0 is "contents.md".
class HelpWindow : public QWidget {
  Q_OBJECT
 public:
  /// Takes the folder of the pages.
  explicit HelpWindow(const QString& folder);

  /// Opens a topic. When its page is missing, shows nothing and returns false.
  bool open(int topic);

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QString folder_;
  QTextBrowser* browser_;
};

}  // namespace zelvane
