// Uses the whole program as a user of the command language does.
#pragma once

#include <nlohmann/json.hpp>

#include "support/store_test.h"
#include "trace/trace_store.h"

namespace zelvane {

/// Returns the JSON object of each line of a text.
std::vector<nlohmann::json> ParsedLines(const std::string& text);

/// Starts the application again (seeds 1234,5678,9012, program folder `folder`), runs the lines of `script`,
/// which "; " may separate too, and returns the objects that it wrote. Writes the exit status to `status`.
std::vector<nlohmann::json> Drive(const std::string& script, const std::string& folder,
                                  int* status = nullptr);

/// Tests in which each Drive starts from the initial values: the program folder has no "config.mod".
class DriveTest : public StoreTest {
 protected:
  std::vector<nlohmann::json> Run(const std::string& script) {
    return Drive(script, folder.Path().string(), &status);
  }

  using Values = std::vector<nlohmann::json>;

  /// Returns the value of the last `get` in the output of a script.
  static nlohmann::json LastValue(const std::vector<nlohmann::json>& lines) {
    return lines.back().at("value");
  }

  /// Returns what the lines of a script show, in order: values with the control's colour, messages, console
  /// lines, errors and the panels on the screen.
  static Values Told(const std::vector<nlohmann::json>& lines);
  Values Told(const std::string& script) { return Told(Run(script)); }

  /// Returns the points of the trace on display.
  static std::vector<float> TraceNow();

  int status = 0;
};

}  // namespace zelvane
