// The dose-response curve of the present trace: a template names its stretches.
#include <string>

#include "analysis/analysis_views.h"
#include "analysis/dose_response.h"
#include "analysis/dose_store.h"
#include "analysis/dose_views.h"
#include "formats/input_file.h"
#include "parameters/fit_modes.h"
#include "screen/screen.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

constexpr char TemplateTitle[] = "Read Dose Response Analysis Template";
constexpr char TemplateFiles[] = "*.tmp";
constexpr char NoRows[] = "The template names no stretch with a concentration above 0.";
constexpr std::size_t ExtensionLength = 4;
constexpr std::size_t LongestTemplate = 1U << 20U;  // bytes; 99 lines are far shorter

/// Returns the text of the template beside the stimulus file, or of one that the user chooses.
std::optional<std::string> TemplateText() {
  const std::string& stimulus = Stimulus.StimFileName;
  const std::size_t stem = stimulus.size() > ExtensionLength ? stimulus.size() - ExtensionLength : 0;
  if (auto text = ReadBytes(stimulus.substr(0, stem) + ".tmp", LongestTemplate)) return text;
  const auto path =
      FileSelectPopup({.title = TemplateTitle, .defaultName = TemplateFiles, .filter = TemplateFiles});
  if (!path) return std::nullopt;
  auto text = ReadBytes(*path, LongestTemplate);
  if (!text) FileErrorPopup(FileOpenFailed);
  return text;
}

void FxnAnalyzeDR(const ControlEvent&) {
  KeepLastDoses();
  const auto text = TemplateText();
  if (!text) return;
  const auto stretches = ReadDoseTemplate(*text);
  if (stretches.empty()) {
    MessagePopup(NoticeTitle, NoRows);
    return;
  }
  TakeTemplate(stretches);
  DrawTemplate(false);
  ForgetStop();
  if (AnalyzeTemplate() == Outcome::Refused) return;
  ShowNumber("TemplateMax", Dose.DoseMax);
  ShowNumber("TemplateEC50", Dose.DoseEC50);
  ShowNumber("TemplateSlope", Dose.DoseSlope);
  ShowText("TemplateResult", FitResultWord(Dose.DoseResultCode));
  DrawTemplate(true);
}

void FxnShowLast(const ControlEvent&) {
  DrawLastTemplate();
}

// clang-format off
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;
constexpr ControlDecl TemplateControls[] = {
    {.name = "AnalyzeDR", .kind = Button, .label = "Doses of this trace...", .format = "", .command = "FxnAnalyzeDR",
     .action = FxnAnalyzeDR,
     .help = "Measure a dose-response curve in the trace. A template (*.tmp) has a line for each concentration: first sample, "
     "last sample, concentration (M). The program looks for it beside the stimulus file."},
    {.name = "ShowLastCurve", .kind = Button, .label = "Show last curve", .format = "", .command = "FxnShowLast",
     .action = FxnShowLast, .help = "Add the dose-response curve before this one, as a grey broken line."},
    {.name = "TemplateEC50", .kind = Readout, .label = "EC50", .unit = "M", .format = "%.4g",
     .help = "Concentration of half the response, of the last template."},
    {.name = "TemplateSlope", .kind = Readout, .label = "Slope", .format = "%.4g",
     .help = "Hill coefficient of the last template."},
    {.name = "TemplateMax", .kind = Readout, .label = "Max", .format = "%.4g",
     .help = "Response to a saturating concentration, of the last template."},
    {.name = "TemplateResult", .kind = Readout, .label = "Fit", .format = "",
     .help = "How the fit of the last template ended."},
    {.name = "TemplateCursorConc", .kind = Readout, .label = "Cursor", .unit = "M", .format = "%.4g",
     .help = "Concentration at the cursor of the small graph."},
    {.name = "TemplateCursorResponse", .kind = Readout, .label = "Response there", .format = "%.4g",
     .help = "Response at the cursor of the small graph."},
};
// clang-format on

}  // namespace

void AddDoseTemplate() {
  AddControls(AnalysisPanelName, "template", TemplateControls);
}

}  // namespace zelvane
