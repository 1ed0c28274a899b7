// The welcome of a first start: what the program is for, and models to begin with.
#pragma once

#include <QDialog>
#include <vector>

namespace zelvane {

struct ExampleModel {
  QString path;
  QString title;
};

/// Returns the model files of a folder, sorted by name, with the title that each file holds.
std::vector<ExampleModel> ExampleModels(const QString& folder);

class Welcome : public QDialog {
  Q_OBJECT
 public:
  Welcome(const QString& modelsFolder, QWidget* parent);

 signals:
  void modelChosen(const QString& path);
};

}  // namespace zelvane
