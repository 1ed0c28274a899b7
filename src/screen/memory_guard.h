// What happens when an action of the user needs more memory than there is. The one place that catches
// std::bad_alloc.
#pragma once

#include <new>
#include <string_view>

#include "screen/listeners.h"

namespace zelvane {

/// Announces that an action ended early, before the user reads the message. Whatever keeps the stores in
/// agreement brings them back.
inline Listeners<> MemoryRanOut;

/// Announces MemoryRanOut and shows "Not enough memory for ..." under "! Error". When there is not even memory
/// for this, writes the message to standard error.
void TellMemoryRanOut(std::string_view what);

/// Calls `work`. When the memory is not enough, lets go what the work had made so far, tells it and returns
/// false.
/// @param what  what the work is for, as the user calls it
template <typename Work>
bool WithinMemory(std::string_view what, Work&& work) {
  try {
    work();
    return true;
  } catch (const std::bad_alloc&) {  // the message waits until the stack has unwound
  }
  TellMemoryRanOut(what);
  return false;
}

}  // namespace zelvane
