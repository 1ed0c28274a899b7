// Pressing the whole program as a user of the command language does.
#pragma once

#include <nlohmann/json.hpp>

#include "support/store_test.h"
#include "trace/trace_store.h"

namespace zelvane {

/// The object that each line of a text holds.
std::vector<nlohmann::json> ParsedLines(const std::string& text);

/// Starts the application anew (seeds 1234,5678,9012, program folder `folder`), runs the lines of `script`, which
/// "; " may part as well, and gives the objects that it wrote. `status` receives the exit status.
std::vector<nlohmann::json> Drive(const std::string& script, const std::string& folder,
                                  int* status = nullptr);

/// Tests in which each Drive starts from the initial values: the program folder holds no "config.mod".
class DriveTest : public StoreTest {
 protected:
  std::vector<nlohmann::json> Run(const std::string& script) {
    return Drive(script, folder.Path().string(), &status);
  }

  using Values = std::vector<nlohmann::json>;

  /// The value of the last `get` in what a script wrote.
  static nlohmann::json LastValue(const std::vector<nlohmann::json>& lines) {
    return lines.back().at("value");
  }

  /// What lines tell, or those of a script: values with the control's colour, messages, console lines, errors
  /// and the panels on the screen, in their order.
  static Values Told(const std::vector<nlohmann::json>& lines);
  Values Told(const std::string& script) { return Told(Run(script)); }

  /// The points of the trace on display.
  static std::vector<float> TraceNow();

  int status = 0;
};

}  // namespace zelvane
