#include "screen/listeners.h"

namespace zelvane {
namespace {

std::vector<std::function<void()>>& Lists() {
  static std::vector<std::function<void()>> lists;
  return lists;
}

}  // namespace

void RemoveListeners() {
  for (const std::function<void()>& clear : Lists()) clear();
}

void AtRemovalOfListeners(std::function<void()> clear) {
  Lists().push_back(std::move(clear));
}

}  // namespace zelvane
