#include "support/drive_test.h"

#include <regex>
#include <sstream>

#include "headless/drive/drive.h"

namespace zelvane {

std::vector<nlohmann::json> ParsedLines(const std::string& text) {
  std::vector<nlohmann::json> objects;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) objects.push_back(nlohmann::json::parse(line));
  return objects;
}

std::vector<nlohmann::json> Drive(const std::string& script, const std::string& folder, int* status) {
  StartOptions options;
  options.folder = folder;
  options.seeds = {{1234.0, 5678.0, 9012.0}};
  std::istringstream in(std::regex_replace(script, std::regex("; "), "\n"));
  std::ostringstream out;
  const int result = RunDrive(in, out, options);
  if (status != nullptr) *status = result;
  return ParsedLines(out.str());
}

DriveTest::Values DriveTest::Told(const std::vector<nlohmann::json>& lines) {
  Values told;
  for (const auto& line : lines) {
    if (line.value("popup", "message") != "message") continue;
    for (const char* key : {"value", "colour", "text", "console", "error", "panels"}) {
      if (line.contains(key)) told.push_back(line[key]);
    }
  }
  return told;
}

Floats DriveTest::TraceNow() {
  const auto used = Trace.SimTrace.first(static_cast<std::size_t>(Model.NumPoints));
  return {used.begin(), used.end()};
}

}  // namespace zelvane
