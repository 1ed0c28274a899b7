#include "platform/terminal.h"

#include <unistd.h>

namespace zelvane {

bool ErrorStreamIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

}  // namespace zelvane
