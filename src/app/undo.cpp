#include "app/undo.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "analysis/analysis_panel.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "run/run_panel.h"
#include "screen/fields.h"
#include "screen/memory_guard.h"
#include "screen/observer.h"
#include "screen/screen.h"
#include "stimulus/stimulus.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Returns whether the simulation of subunits forces a field. It is dimmed meanwhile, and its changes by a run
/// are not edits of the user.
bool IsForced(std::string_view name) {
  return std::find(FieldsForcedByMultiSubunit.begin(), FieldsForcedByMultiSubunit.end(), name) !=
         FieldsForcedByMultiSubunit.end();
}

bool IsSetting(const Field& field) {
  return field.kind.role == FieldRole::Setting;
}

/// Calls `visit` with the address of every element of a field.
template <typename Visit>
void ForEachElement(const Field& field, std::byte* address, int depth, Visit&& visit) {
  if (depth == field.rank) {
    visit(address);
    return;
  }
  const FieldIndex& index = field.index[Index(depth)];
  for (int i = index.first; i <= index.last; ++i)
    ForEachElement(field, address + index.step * i, depth + 1, visit);
}

std::size_t SizeOf(FieldType type) {
  return type == FieldType::Double ? sizeof(double) : sizeof(float);
}

/// All settings at one moment.
struct Settings {
  std::vector<std::byte> numbers;
  std::vector<std::string> texts;
  std::vector<std::size_t> forced;  // bytes of `numbers` that subunits force
  bool operator==(const Settings&) const = default;
};

/// Returns whether the settings look the same to the user.
bool Same(Settings a, Settings b) {
  if (a.numbers.size() != b.numbers.size() || a.texts != b.texts) return false;
  if (Model.MultiSubunit != 0) {
    for (const std::size_t at : a.forced) a.numbers[at] = b.numbers[at];
  }
  return a.numbers == b.numbers;
}

Settings CopySettings() {
  Settings copy;
  for (const auto& [name, field] : AllFields()) {
    if (!IsSetting(field)) continue;
    const bool forced = IsForced(field.name);
    ForEachElement(field, field.base, 0, [&, type = field.type](std::byte* address) {
      if (type == FieldType::Text) {
        copy.texts.push_back(*reinterpret_cast<std::string*>(address));
      } else {
        for (std::size_t i = 0; forced && i < SizeOf(type); ++i)
          copy.forced.push_back(copy.numbers.size() + i);
        copy.numbers.insert(copy.numbers.end(), address, address + SizeOf(type));
      }
    });
  }
  return copy;
}

void RestoreSettings(const Settings& copy) {
  std::size_t number = 0;
  std::size_t text = 0;
  for (const auto& [name, field] : AllFields()) {
    if (!IsSetting(field)) continue;
    ForEachElement(field, field.base, 0, [&, type = field.type](std::byte* address) {
      if (type == FieldType::Text) {
        *reinterpret_cast<std::string*>(address) = copy.texts[text++];
      } else {
        std::memcpy(address, copy.numbers.data() + number, SizeOf(type));
        number += SizeOf(type);
      }
    });
  }
  WriteAllControls();
  RefreshModelPanels();
  RefreshLinks();
  WriteRunParameters();
  StimPanelRefresh();
  StimRebuild();
  WriteAnalysisPanel();
}

/// Writes the present value of a field with one number into a copy.
void Refresh(Settings& copy, std::string_view name) {
  std::size_t at = 0;
  for (const auto& [fieldName, field] : AllFields()) {
    if (!IsSetting(field) || field.type == FieldType::Text) continue;
    if (fieldName == name) std::memcpy(copy.numbers.data() + at, field.base, SizeOf(field.type));
    ForEachElement(field, field.base, 0, [&, type = field.type](std::byte*) { at += SizeOf(type); });
  }
}

struct UndoState {
  Settings before;              // before the present action
  int episode = 1;              // the same
  std::deque<Settings> undone;  // newest at the back
  std::deque<Settings> redone;
  bool restoring = false;
  bool stepped = false;  // the step of this undo or redo is complete
};

UndoState& State() {
  static UndoState state;
  return state;
}

void KeepIfChanged() {
  UndoState& state = State();
  state.stepped = false;
  if (std::exchange(state.restoring, false)) return;
  const Settings before = std::exchange(state.before, Settings{});
  if (before.numbers.empty() || Same(before, CopySettings())) return;
  state.undone.push_back(before);
  if (state.undone.size() > MaxUndoSteps) state.undone.pop_front();
  state.redone.clear();
}

/// Brings back the settings and the episode of before an action that ran out of memory. The trace may belong to
/// others, so it is no longer valid when they have changed.
void ForgetAction() {
  UndoState& state = State();
  state.restoring = false;
  if (std::exchange(state.stepped, false)) return;  // the step was complete, and its copies have moved
  if (std::exchange(Trace.EpisodeIndex, state.episode) != state.episode) Trace.TraceValid = 0;
  if (state.before.numbers.empty() || state.before == CopySettings()) return;
  Trace.TraceValid = 0;
  RestoreSettings(state.before);
}

/// Goes from one list of copies to the other. The menu press for it is not an edit itself.
void Step(std::deque<Settings>& from, std::deque<Settings>& to) {
  State().restoring = true;
  if (from.empty()) return;
  Settings present = CopySettings();
  RestoreSettings(from.back());
  to.push_back(std::move(present));
  from.pop_back();
  State().stepped = true;
}

// clang-format off
constexpr MenuDecl UndoMenu[] = {
    {"Edit/Undo", "FxnUndo", Undo, "Ctrl+Z"},
    {"Edit/Redo", "FxnRedo", Redo, "Ctrl+Shift+Z"},
};
// clang-format on

}  // namespace

void StartUndo() {
  State() = UndoState{};
  AddUserObserver({[] {
                     State().episode = Trace.EpisodeIndex;
                     State().before = CopySettings();
                   },
                   [](const std::string&) { KeepIfChanged(); }, nullptr});
  MemoryRanOut.Add([] {
    if (Screen.busy == 0) ForgetAction();
  });
}

void AddUndoMenu() {
  AddMenu(UndoMenu);
  LengthGiven.Add(AdoptGivenLength);
}

void AdoptGivenLength() {
  UndoState& state = State();
  const auto refresh = [](Settings& copy) {
    if (copy.numbers.empty()) return;
    for (const std::string_view name : {"NumPoints", "ADInterval", "NumRuns"}) Refresh(copy, name);
  };
  refresh(state.before);
  for (Settings& copy : state.undone) refresh(copy);
  for (Settings& copy : state.redone) refresh(copy);
}

void Undo() {
  Step(State().undone, State().redone);
}

void Redo() {
  Step(State().redone, State().undone);
}

bool CanUndo() {
  return !State().undone.empty();
}

bool CanRedo() {
  return !State().redone.empty();
}

}  // namespace zelvane
