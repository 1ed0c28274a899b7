// What the user asks of the work that is under way. Data only; RequestStop and StopAsked are in popups.h.
#pragma once

namespace zelvane {

struct UserRequests {
  int StopRequested = 0;  // 1 = the work is to end and to keep what it has made
};

inline UserRequests Requests;

}  // namespace zelvane
