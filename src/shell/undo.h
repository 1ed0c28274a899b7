// Undo and redo of every edit of the scheme, the stimulus parameters and the settings.
#pragma once

namespace zelvane {

/// Starts watching the user's actions: before each one a copy of all settings is taken, and it is kept when
/// the action changed one. The largest number of steps is MaxUndoSteps. Steps kept so far are dropped.
void StartUndo();

inline constexpr int MaxUndoSteps = 200;

/// Adds the Edit menu: Undo and Redo.
void AddUndoMenu();

/// Brings the settings back to before the last action that changed them; every panel follows and the stimulus
/// is rebuilt. Nothing without such an action. Results of a run stay.
void Undo();

/// Does again what Undo took back.
void Redo();

/// Makes the present length and interval of a run part of every step kept, and of the action under way: a
/// recording brought them, and going back to an edit must not take them from under it.
void TakeLengthAsGiven();

bool CanUndo();
bool CanRedo();

}  // namespace zelvane
