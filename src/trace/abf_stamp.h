// The date and time for the header of a recording.
#pragma once

namespace zelvane {

struct AbfStamp {
  int fullDate = 0;   // 10000 x year + 100 x month + day
  int shortDate = 0;  // the same with the year in two digits
  int seconds = 0;    // since midnight
};

/// Returns the present local time.
AbfStamp StampNow();

}  // namespace zelvane
