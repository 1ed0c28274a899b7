// Watching what a user does: undo takes its copies and the recorder writes its script from here.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zelvane {

/// Lines are those of the command language, so that each repeats what it tells.
struct UserObserver {
  std::function<void()> before;                      // an action is about to begin; stores are as they were
  std::function<void(const std::string& line)> did;  // an action or an edit of a control has ended
  std::function<void(const std::string& line)>
      queued;  // an answer, a choice, a press during the action under way
};

/// Adds an observer; it stays until the process ends or RemoveUserObservers.
void AddUserObserver(UserObserver observer);
void RemoveUserObservers();

/// A word of the command language: in double quotes, with \ before quotes and backslashes, where it holds
/// blanks or is empty.
std::string QuoteWord(std::string_view word);

}  // namespace zelvane
