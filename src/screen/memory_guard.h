// What happens when an action of the user needs more memory than there is. Only WithinMemory and the main
// functions of the programs catch std::bad_alloc.
//
// A destructor that allocates, such as that of a JSON value, cannot report a failure: the program would end. So
// the program keeps a reserve of two blocks. The first failed allocation releases one block and is tried again:
// a small one succeeds. The next failure releases the other block and throws std::bad_alloc: the destructors on
// the way out use it, and so does the message.
#pragma once

#include <new>
#include <string_view>

#include "screen/listeners.h"

namespace zelvane {

/// Announces that an action ended early, before the user reads the message. Whatever keeps the stores in
/// agreement brings them back.
inline Listeners<> MemoryRanOut;

/// Takes the blocks of the reserve that are not there, as far as there is memory, and makes failed allocations
/// release them. Each program calls it at its start, and WithinMemory after every work.
void KeepMemoryReserve();

/// Announces MemoryRanOut and shows "Not enough memory for ..." under "! Error". When there is not even memory
/// for this, writes the message to standard error. Then fills the reserve again.
void TellMemoryRanOut(std::string_view what);

/// Calls `work`. When the memory is not enough, lets go what the work had made so far, tells it and returns
/// false.
/// @param what  what the work is for, as the user calls it
template <typename Work>
bool WithinMemory(std::string_view what, Work&& work) {
  try {
    work();
    KeepMemoryReserve();  // the work may have gone on with a part of it
    return true;
  } catch (const std::bad_alloc&) {  // the message waits until the stack has unwound
  }
  TellMemoryRanOut(what);
  return false;
}

}  // namespace zelvane
