// Undo and redo of every edit of the scheme, the stimulus parameters and the settings.
#pragma once

namespace zelvane {

/// Starts to observe the user. Copies all settings before each action, and keeps the copy when the action
/// changed a setting. Keeps at most MaxUndoSteps copies. Drops earlier copies.
void StartUndo();

inline constexpr int MaxUndoSteps = 200;

/// Adds the Edit menu: Undo and Redo.
void AddUndoMenu();

/// Restores the settings before the last action that changed them, shows them on all panels and builds the
/// stimulus again. Does nothing without an earlier action. Keeps the results of a run.
void Undo();

/// Repeats the action that Undo took back.
void Redo();

/// Writes the present length and interval of a run into all kept copies and into that of the present
/// action. They belong to a recording, and an undo must not change them.
void AdoptGivenLength();

bool CanUndo();
bool CanRedo();

}  // namespace zelvane
