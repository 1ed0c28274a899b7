// The panel of series resistance and membrane capacitance.
#pragma once

namespace zelvane {

void AddRsCorrectionPanel();

/// Reads the fields of the panel, then corrects the trace that was just read (RsCorrectTrace).
void CorrectTraceRead();

/// Draws the trace on the panel again and shows its state.
void RefreshRsCmView();

}  // namespace zelvane
