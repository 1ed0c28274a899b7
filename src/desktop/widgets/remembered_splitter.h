// Parts of a page whose sizes the user sets and the settings keep.
#pragma once

#include <QSplitter>

namespace zelvane {

class Settings;

/// Shows a grip on each handle. Keeps the sizes of its parts under a key of the settings; a window of another
/// size shares its room in the same proportions.
class RememberedSplitter : public QSplitter {
  Q_OBJECT
 public:
  RememberedSplitter(Qt::Orientation orientation, Settings& settings, QString key, QWidget* parent);

  /// Gives the parts the remembered sizes, or else `sizes`. Once all parts are in.
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
