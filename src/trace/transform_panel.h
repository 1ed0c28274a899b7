// The panel that changes the trace by a constant.
#pragma once

namespace zelvane {

void AddTransformPanel();

}  // namespace zelvane
