// Menu commands of the model file, and the panels that follow it.
#include "model/model_events.h"
#include "model/model_file.h"
#include "model/model_file_panels.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

// clang-format off
constexpr MenuDecl ModelFileMenu[] = {
    // path                      command              action                  shortcut
    {"File/Read Parameters...", "OpenParameterFile", Run<OpenParameterFile>, "Ctrl+O"},
    {"File/Save Parameters...", "SaveParameters",    Run<SaveParameters>,    "Ctrl+S"},
};
// clang-format on

bool PanelsStand() {
  return FindPanel("MainPanel") != nullptr && FindPanel("StimulusPanel") != nullptr;
}

}  // namespace

void AddModelFileMenu() {
  AddMenu(ModelFileMenu);
}

void ReadPanelsOfModelFile() {
  if (!PanelsStand()) return;
  GetTableNames();
  ReadGridRates();
  ReadTableRates();
  ModelFileToSave.Tell();
}

void ShowModelOfFile() {
  if (!PanelsStand()) return;
  // Whatever has no listener follows its field here; the stimulus is rebuilt from what its panel shows, and so
  // comes after it.
  WriteAllControls();
  RefreshModelPanels();
  ModelFileCameIn.Tell();
}

void ShowModelFileName() {
  if (FindControl("ModelFileName") != nullptr) ShowText("ModelFileName", Model.ModelFileName);
}

}  // namespace zelvane
