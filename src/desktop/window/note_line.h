// The note in the status bar.
#pragma once

#include <QTimer>

#include "desktop/widgets/elided_label.h"

namespace zelvane {

/// Shows one note for ten seconds. A click asks for the list of all notes.
class NoteLine : public ElidedLabel {
  Q_OBJECT
 public:
  explicit NoteLine(QWidget* parent);

  void showNote(const QString& sentence);

 signals:
  void shown();  // or hidden
  void clicked();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QTimer end_;
};

}  // namespace zelvane
