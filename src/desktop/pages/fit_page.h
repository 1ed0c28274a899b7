// The page of the fit: pairs of recording and stimulus, the windows of one of them, the comparison with the model,
// the rates and the log.
#pragma once

#include <QElapsedTimer>

#include "desktop/pages/task_page.h"

namespace zelvane {

class FitPairs;
class GraphLegend;
class TextBoxWidget;

class FitPage : public TaskPage {
  Q_OBJECT
 public:
  FitPage(Panel& panel, Settings& settings, QWidget* parent);

 protected:
  void refreshMore() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// Two graphs with one time axis.
  struct Stack {
    GraphWidget* upper = nullptr;
    GraphWidget* lower = nullptr;
  };

  void addPairs();
  void addRecording();
  void addComparison();
  Stack addStack(const Part& part, Graph& above, Graph& below);
  void addLog();
  void addRates();
  void addFoot();
  void showRates();
  void showLog();

  ControlWidget* stop_ = nullptr;
  FitPairs* pairs_ = nullptr;
  GraphLegend* legend_ = nullptr;
  Stack recording_;
  Stack comparison_;
  TableWidget* rates_ = nullptr;
  TextBoxWidget* log_ = nullptr;
  QElapsedTimer sinceLog_;
};

}  // namespace zelvane
