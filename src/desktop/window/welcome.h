// The welcome of a first start: what the program is for, and models to begin with.
#pragma once

#include <QDialog>
#include <vector>

namespace zelvane {

struct ExampleModel {
  QString path;
  QString title;
};

/// The model files of a folder, by name, with the title that stands in each.
std::vector<ExampleModel> ExampleModels(const QString& folder);

class Welcome : public QDialog {
  Q_OBJECT
 public:
  Welcome(const QString& modelsFolder, QWidget* parent);

 signals:
  void modelChosen(const QString& path);
};

}  // namespace zelvane
