// What reading a trace hands on to parts of the program that lie above the readers. Connected at start-up; an
// empty hook does nothing.
#pragma once

namespace zelvane {

struct TraceHooks {
  /// Corrects the trace for series resistance with the settings in force.
  void (*correct)() = nullptr;
  /// Brings every view of the trace up to date: its graphs, names, interval and length on all panels.
  void (*refreshViews)() = nullptr;
};

inline TraceHooks AfterRead;

}  // namespace zelvane
