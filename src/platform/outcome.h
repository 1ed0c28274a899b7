// The result of an operation that a user started.
#pragma once

namespace zelvane {

/// Operations show their messages and return one of these values. The caller reads this value and never the text
/// of a popup.
enum class Outcome {
  Done,
  Stopped,  // by the user, before the end
  Refused,  // before the begin: a question was answered no, a dialog was cancelled, or the settings allow no start
  Failed,  // after the begin; a message gave the reason
};

}  // namespace zelvane
