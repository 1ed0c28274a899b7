#include "headless/commands/model_command.h"

#include <ostream>

#include "headless/commands/model_report.h"
#include "model/model_file.h"
#include "model/model_store.h"

namespace zelvane {

int ModelCommand(const std::string& path, bool json, const JobStreams& streams, bool lenient) {
  const JobScreen screen(streams);
  StartJob({});
  bool faulty = false;
  if (ReadJobModel(path, streams, &faulty) == Outcome::Refused) return JobFailed;
  if (json) {
    Json report = ModelReportJson();
    report["file"] = path;
    streams.out << JsonLine(report) << '\n';
  } else {
    WriteModelReport(streams.out);
  }
  return faulty && !lenient ? JobFailed : JobDone;
}

int UpgradeModelCommand(const std::string& oldPath, const std::string& newPath, const JobStreams& streams,
                        bool lenient) {
  const JobScreen screen(streams);
  StartJob({});
  bool faulty = false;
  if (ReadJobModel(oldPath, streams, &faulty) == Outcome::Refused || (faulty && !lenient)) return JobFailed;
  Model.ModelFileName = newPath;
  return ModelFileWrite() == Outcome::Done ? JobDone : JobFailed;  // the message has been shown
}

}  // namespace zelvane
