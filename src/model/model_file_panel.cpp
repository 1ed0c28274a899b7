// Menu commands of the model file. The panels of the scheme follow the file.
#include "model/model_events.h"
#include "model/model_file.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "model/scheme_panels.h"
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

void ReadForms() {
  TakeDependencePanel();
  GetTableNames();
  ReadGridRates();
  ReadTableRates();
}

void ShowForms(Outcome& /*shown*/) {
  WriteAllControls();
  RefreshModelPanels();
}

}  // namespace

void AddModelFileMenu() {
  AddMenu(ModelFileMenu);
}

void FollowModelFile() {
  ModelFileToSave.Add(ReadForms);
  ModelFileCameIn.Add(ShowForms);
  ModelFileNamed.Add([] { ShowText("ModelFileName", Model.ModelFileName); });
}

}  // namespace zelvane
