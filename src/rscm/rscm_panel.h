// The panel of series resistance and membrane capacitance.
#pragma once

namespace zelvane {

void AddRsCorrectionPanel();
void AddRsCorrectionMenu();

/// Corrects the trace just read with what the panel shows: RsCorrectTrace after a read of its fields.
void CorrectTraceRead();

/// Draws the trace on the panel again and shows what state it is in.
void RefreshRsCmView();

}  // namespace zelvane
