// Observers of the user's actions. Undo uses one to make its copies, the recorder to write its script.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zelvane {

/// A `line` is the same action in the command language.
struct UserObserver {
  std::function<void()> before;                         // before an action: the stores are unchanged
  std::function<void(const std::string& line)> did;     // after an action or an edit of a control
  std::function<void(const std::string& line)> queued;  // an answer, a choice or a press during an action
};

/// Adds an observer. It stays until RemoveUserObservers or the end of the process.
void AddUserObserver(UserObserver observer);
void RemoveUserObservers();

/// Returns a word for the command language. A word with blanks and an empty word get double quotes; quotes and
/// backslashes in them get a backslash before.
std::string QuoteWord(std::string_view word);

}  // namespace zelvane
