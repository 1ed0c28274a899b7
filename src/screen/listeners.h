// Lists of listeners of an event. An operation announces the event. Listeners register at start-up, so a
// folder can inform higher folders without knowing them.
#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace zelvane {

/// Forgets all listeners of every list. ClearScreen calls it, because the panels that listened no longer
/// exist.
void RemoveListeners();

/// Calls `clear` in RemoveListeners.
void AtRemovalOfListeners(std::function<void()> clear);

/// The listeners of one kind of event. They are called in the order in which they were added.
///
/// A list is a global object. An event without listeners does nothing.
template <typename... Arguments>
class Listeners {
 public:
  using Listener = std::function<void(Arguments...)>;

  Listeners() {
    AtRemovalOfListeners([this] { listeners_.clear(); });
  }
  Listeners(const Listeners&) = delete;
  Listeners& operator=(const Listeners&) = delete;

  void Add(Listener listener) { listeners_.push_back(std::move(listener)); }

  void Tell(Arguments... arguments) const {
    for (const Listener& listener : listeners_) listener(arguments...);
  }

 private:
  std::vector<Listener> listeners_;
};

}  // namespace zelvane
