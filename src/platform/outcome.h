// The result of an operation that a user started.
#pragma once

namespace zelvane {

/// Operations show their messages and return one of these values. The caller reads this value and never the
/// text of a popup.
enum class Outcome {
  Done,
  Stopped,  // the user stopped it before the end
  Refused,  // before the start: a question answered no, a dialog cancelled, or settings that allow no start
  Failed,   // after the start; a message gave the reason
};

/// Returns the first of two outcomes that is not Done.
constexpr Outcome FirstNotDone(Outcome first, Outcome second) {
  return first != Outcome::Done ? first : second;
}

}  // namespace zelvane
