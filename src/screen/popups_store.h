// The wishes of the user for the running work. Data only. RequestStop and StopAsked are in popups.h.
#pragma once

namespace zelvane {

struct UserRequests {
  int StopRequested = 0;  // 1 = end the work and keep its results
};

inline UserRequests Requests;

}  // namespace zelvane
