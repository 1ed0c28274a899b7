// The tasks of the side bar and their pages.
#include "desktop/pages/analysis_page.h"
#include "desktop/pages/dose_page.h"
#include "desktop/pages/fit_page.h"
#include "desktop/pages/model_page.h"
#include "desktop/pages/rscm_page.h"
#include "desktop/pages/stimulus_page.h"
#include "desktop/pages/task_page.h"
#include "desktop/pages/wave_page.h"
#include "fit/fit_panel.h"

namespace zelvane {
namespace {

template <typename Page>
TaskPage* NewPage(Panel& panel, Settings& settings, QWidget* parent) {
  return new Page(panel, settings, parent);
}

// clang-format off
constexpr TaskDecl TaskTable[] = {
    {.panel = MainPanelName,         .title = "Model",    .icon = "model",    .command = "Model",         .make = NewPage<ModelPage>},
    {.panel = "StimulusPanel",     .title = "Stimulus", .icon = "stimulus", .command = "Stimulus",      .make = NewPage<StimulusPage>},
    {.panel = "AnalysisPanel",     .title = "Analysis", .icon = "analysis", .command = "Analysis",      .make = NewPage<AnalysisPage>},
    {.panel = "WaveAnalysisPanel", .title = "Averages", .icon = "averages", .command = "Waveform",      .make = NewPage<WavePage>},
    {.panel = "DoseResponsePanel", .title = "Dose",     .icon = "dose",     .command = "DoseResponse",  .make = NewPage<DosePage>},
    {.panel = FitPanelName,        .title = "Fit",      .icon = "fit",      .command = "FitWaveforms",  .make = NewPage<FitPage>},
    {.panel = "RsCorrectionPanel", .title = "Series R", .icon = "rscm",     .command = "RsCmFilterFxn", .make = NewPage<RscmPage>},
};
// clang-format on

}  // namespace

std::span<const TaskDecl> Tasks() {
  return TaskTable;
}

}  // namespace zelvane
