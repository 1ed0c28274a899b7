#include "headless/commands/job_settings.h"

#include <ostream>

#include "headless/nearest_names.h"
#include "headless/words.h"
#include "model/model_panels.h"
#include "run/run_panel.h"
#include "screen/screen.h"
#include "stimulus/stimulus.h"

namespace zelvane {
namespace {

/// Sets one "NAME=VALUE". Writes a message and returns false when the name is not a field or the value does
/// not suit its field.
bool ApplySetting(const std::string& setting, std::ostream& err) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos) {
    err << "--set takes NAME=VALUE, not " << Shortened(setting) << '\n';
    return false;
  }
  const std::string name = setting.substr(0, equals);
  const FieldRef field = FindField(name);
  if (!field) {
    err << "--set " << Shortened(name) << ": no such field" << DidYouMean(NearestNames(name, FieldNames()))
        << '\n';
    return false;
  }
  if (!SetFieldText(field, setting.substr(equals + 1))) {
    err << "--set " << name << ": " << Shortened(setting.substr(equals + 1))
        << (field.field->type == FieldType::Int ? " is not a whole number that the field can hold\n"
                                                : " is not a finite number that the field can hold\n");
    return false;
  }
  return true;
}

}  // namespace

bool ApplySettings(const std::vector<std::string>& settings, std::ostream& err) {
  for (const std::string& setting : settings) {
    if (!ApplySetting(setting, err)) return false;
  }
  return true;
}

Outcome ShowJobStores() {
  RefreshModelPanels();
  WriteRunParameters();
  StimPanelRefresh();
  WriteAllControls();
  return StimRebuild();
}

}  // namespace zelvane
