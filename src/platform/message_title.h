// The title and the kind of a message.
#pragma once

#include <string_view>

namespace zelvane {

/// The kind of a message.
enum class MessageKind { Information, Warning, Error };

/// The title of a message, with its kind, so that no code must read the words.
struct MessageTitle {
  MessageKind kind = MessageKind::Information;
  std::string_view words{};
};

}  // namespace zelvane
