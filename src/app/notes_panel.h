// The notes of this session.
#pragma once

namespace zelvane {

/// Adds the panel with the list of notes, and its menu entry.
void AddNotesPanel();

}  // namespace zelvane
