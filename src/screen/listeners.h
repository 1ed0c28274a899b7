// Who wants to hear of an event. What happens is announced where it happens; whoever listens has registered at
// start-up, so a folder tells those above it without knowing them.
#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace zelvane {

/// Forgets all listeners of every list. ClearScreen does so: the panels that listened are gone.
void RemoveListeners();

/// Calls `clear` in RemoveListeners.
void AtRemovalOfListeners(std::function<void()> clear);

/// The listeners of one kind of event. They hear of it in the order in which they were added.
///
/// A list lives from start to end, as a global object. An event without listeners does nothing.
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
