#include "desktop/pages/task_page.h"

#include <QContextMenuEvent>
#include <QLabel>

#include "desktop/pages/analysis_page.h"
#include "desktop/pages/model_page.h"
#include "desktop/pages/rscm_page.h"
#include "desktop/pages/stimulus_page.h"

namespace zelvane {
namespace {

template <typename Page>
TaskPage* Make(Panel& panel, QWidget* parent) {
  return new Page(panel, parent);
}

// clang-format off
constexpr TaskDecl TaskTable[] = {
    {"MainPanel",     "Model",    "model",    "Model",    Make<ModelPage>},
    {"StimulusPanel", "Stimulus", "stimulus", "Stimulus", Make<StimulusPage>},
    {"AnalysisPanel", "Analysis", "analysis", "Analysis", Make<AnalysisPage>},
    {"RsCorrectionPanel", "Series R", "rscm", "RsCmFilterFxn", Make<RscmPage>},
};
// clang-format on

}  // namespace

void TaskPage::contextMenuEvent(QContextMenuEvent* event) {
  if (!panel_.help.empty()) MessagePopup(HelpTitle, panel_.help);
  event->accept();
}

QLabel* SectionLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setProperty("role", "section");
  label->setIndent(0);
  return label;
}

std::span<const TaskDecl> Tasks() {
  return TaskTable;
}

}  // namespace zelvane
