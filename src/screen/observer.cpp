#include "screen/observer.h"

#include <vector>

#include "screen/observe.h"

namespace zelvane {
namespace {

std::vector<UserObserver>& Observers() {
  static std::vector<UserObserver> observers;
  return observers;
}

}  // namespace

void AddUserObserver(UserObserver observer) {
  Observers().push_back(std::move(observer));
}

void RemoveUserObservers() {
  Observers().clear();
}

std::string QuoteWord(std::string_view word) {
  if (!word.empty() && word.find_first_of(" \t\"\\#") == std::string_view::npos) return std::string(word);
  std::string quoted = "\"";
  for (const char c : word) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

void ObserveBefore() {
  for (const UserObserver& observer : Observers()) {
    if (observer.before) observer.before();
  }
}

void ObserveDid(const std::string& line) {
  for (const UserObserver& observer : Observers()) {
    if (observer.did) observer.did(line);
  }
}

void ObserveQueued(const std::string& line) {
  for (const UserObserver& observer : Observers()) {
    if (observer.queued) observer.queued(line);
  }
}

}  // namespace zelvane
