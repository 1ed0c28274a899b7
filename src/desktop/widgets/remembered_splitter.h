// Parts of a page whose sizes the user sets and the settings keep.
#pragma once

#include <QSplitter>

namespace zelvane {

class Settings;

/// Shows a grip on each handle. The settings keep the sizes of the parts under a key; a window of another
/// size divides its room in the same proportions.
class RememberedSplitter : public QSplitter {
  Q_OBJECT
 public:
  RememberedSplitter(Qt::Orientation orientation, Settings& settings, QString key, QWidget* parent);

  /// Gives the parts the remembered sizes, or else `sizes`. Call after the last part was added.
  void restore(const QList<int>& sizes);

 protected:
  QSplitterHandle* createHandle() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  Settings& settings_;
  QString key_;
  QList<int> proportions_;
};

}  // namespace zelvane
