// The reporter for a long work with a user in front of it.
#pragma once

#include "platform/run_reporter.h"

namespace zelvane {

/// Returns a reporter that shows messages, questions and progress, and reacts to the stop button.
///
/// Between two reports of progress it lets a window handle events, about 40 times per second. The clock
/// decides when, so the result of a run does not depend on it.
RunReporter WindowReporter();

}  // namespace zelvane
