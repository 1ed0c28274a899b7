// What came of an operation that a user started.
#pragma once

namespace zelvane {

/// Operations return one of these and show their messages besides: whoever started one reads this, never the text
/// of a popup.
enum class Outcome {
  Done,
  Stopped,  // by the user, before the end
  Refused,  // nothing was begun: a question was answered no, a dialog cancelled, or the settings allow no start
  Failed,  // begun and not finished; the user has been told why
};

}  // namespace zelvane
