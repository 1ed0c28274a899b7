// The title of a message and how grave the message is.
#pragma once

#include <string_view>

namespace zelvane {

/// How grave a message is.
enum class MessageKind { Information, Warning, Error };

/// The title of a message, with its kind: nobody reads the words to learn it.
struct MessageTitle {
  MessageKind kind = MessageKind::Information;
  std::string_view words{};
};

}  // namespace zelvane
