#include "platform/terminal.h"

#include <unistd.h>

namespace zelvane {

bool OutputStreamIsTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}

bool ErrorStreamIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

}  // namespace zelvane
