// Shared by the tests of the one-line commands.
#pragma once

#include <atomic>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "headless/commands/one_job.h"
#include "support/store_test.h"

namespace zelvane {

/// Runs a job in its own folder and keeps its output and messages.
class JobTest : public StoreTest {
 protected:
  /// Returns the exit status of a job, a function of its streams.
  int Run(auto job) {
    out.str("");
    err.str("");
    return job(JobStreams{out, err, &stop});
  }

  /// Returns the output of a job as JSON. The job must succeed.
  nlohmann::json Written(auto job) {
    EXPECT_EQ(Run(job), JobDone) << err.str();
    return nlohmann::json::parse(out.str(), nullptr, false);
  }

  bool Told(const std::string& text) const { return err.str().find(text) != std::string::npos; }

  void ExpectParts(const std::vector<std::string>& parts) const {
    for (const std::string& part : parts) {
      EXPECT_NE(out.str().find(part), std::string::npos) << part << '\n' << out.str();
    }
  }

  std::ostringstream out;
  std::ostringstream err;
  std::atomic<bool> stop{false};
};

}  // namespace zelvane
