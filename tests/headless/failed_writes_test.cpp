// Every writer of the program, while one system call after the other fails.
//
// The linker sends the calls of the program to the functions below (--wrap, see CMakeLists.txt).
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

#include "analysis/analysis_store.h"
#include "analysis/results_files.h"
#include "analysis/results_table.h"
#include "dwells/dwell_lists.h"
#include "dwells/dwell_store.h"
#include "fit/wave_set.h"
#include "model/model_file.h"
#include "noise/pair_files.h"
#include "platform/safe_file.h"
#include "run/occupancy_export.h"
#include "run/result_store.h"
#include "screen/graph_text.h"
#include "stimulus/stimulus_file.h"
#include "support/pressing.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace {

/// The calls that fail: call number `first`, and all after it while `last` is larger.
struct Faults {
  int first = 0;  // 0 = no faults
  int last = 0;
  int calls = 0;  // so far
};
Faults faults;

bool FailsNow() {
  if (faults.first == 0) return false;
  ++faults.calls;
  if (faults.calls < faults.first || faults.calls > faults.last) return false;
  errno = ENOSPC;
  return true;
}

}  // namespace

extern "C" {
int __real_open(const char* path, int flags, ...);
ssize_t __real_pwrite(int file, const void* bytes, size_t count, off_t position);
int __real_fsync(int file);
int __real_linkat(int oldFolder, const char* oldName, int newFolder, const char* newName, int flags);
int __real_rename(const char* from, const char* to);
int __real_close(int file);

int __wrap_open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return FailsNow() ? -1 : __real_open(path, flags, mode);
}
ssize_t __wrap_pwrite(int file, const void* bytes, size_t count, off_t position) {
  return FailsNow() ? -1 : __real_pwrite(file, bytes, count, position);
}
int __wrap_fsync(int file) {
  return FailsNow() ? -1 : __real_fsync(file);
}
int __wrap_linkat(int oldFolder, const char* oldName, int newFolder, const char* newName, int flags) {
  return FailsNow() ? -1 : __real_linkat(oldFolder, oldName, newFolder, newName, flags);
}
int __wrap_rename(const char* from, const char* to) {
  return FailsNow() ? -1 : __real_rename(from, to);
}
int __wrap_close(int file) {
  const int closed = __real_close(file);
  return FailsNow() ? -1 : closed;
}
}

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr int EveryCall = 1'000'000;
constexpr int ReadOnlyFolder = 0;  // in place of the number of a call: the folder may not be written

/// A writer and the file that it writes. `write` returns false when the caller must tell the failure.
struct Writer {
  const char* file;
  std::function<bool(const std::string& path)> write;
  std::string_view old = "old content\n";
  std::string source{};  // a file to choose first
};

bool Pressed(const char* command) {
  PressCommand(command);
  return true;
}

bool AutosaveAs(int format, const std::string& path) {
  Model.AutosaveFormat = format;
  Trace.AutosaveFileName = path;
  AutosaveTrace();
  AutosaveLock().Release();
  return true;
}

bool Recorded(const std::string&) {
  PressCommand("FxnRecord");
  return Pressed("FxnStopRecording");
}

constexpr double Doubles[] = {1.0, 2.0};

const Writer Writers[] = {
    {"a.mod", [](auto&) { return Pressed("SaveParameters"); }},
    {"a.asc", [](auto&) { return Pressed("SaveAsciiData"); }},
    {"a.abf", [](auto&) { return Pressed("SaveBinaryData"); }},
    {"a.abf", [](auto&) { return Pressed("SaveLegacyABFCallback"); }},
    {"a.asc", [](auto& path) { return AutosaveAs(0, path); }},
    {"a.abf", [](auto& path) { return AutosaveAs(1, path); }, ""},
    {"a.asc", [](auto&) { return Pressed("ExportTrace"); }},
    {"cell.tbl", [](auto&) { return Pressed("AN_SaveTable"); }},
    {"a.csv", [](auto&) { return Pressed("FxnExportTable"); }},
    {"cell.res", [](auto&) { return SaveAnalysis(), true; }},
    {"a.res", [](auto&) { return AppendMeanVariance(1.0F, 2.0F), true; }},
    {"a.lst", [](auto&) { return Pressed("FitSaveList"); }},
    {"a.ops", [](auto&) { return Pressed("FxnExportOpenTimes"); }},
    {"a.sht", [](auto&) { return Pressed("FxnExportClosedTimes"); }},
    {"a.stm", [](auto&) { return Pressed("ButtonSaveStim"); }},
    {"a.asc", [](auto&) { return Pressed("ExportStim"); }},
    {"a.abf", [](auto&) { return Pressed("FxnFileCorrect"); }, "old content\n",
     Recordings + "abf1/130618-1-12.abf"},
    {"a.drive", Recorded},
    {"a.txt",
     [](auto& path) { return PairTextWrite(path, Trace.SimTrace.first(3), Trace.SimTrace.first(3)), true; }},
    {"a.txt", [](auto& path) { return TripleTextWrite(path, Doubles, Doubles, 0), true; }},
    {"a.csv", [](auto& path) { return WriteGraphFile(GraphNamed("MainPanel"), path); }},
    {"a.csv", [](auto& path) { return WriteOccupancyCsv(path); }},
    {"a.csv", [](auto& path) { return WriteTraceFile(path, Trace.SimTrace.first(3), 1.0F, "pA"); }},
    {"a.atf",
     [](auto& path) {
       return WriteSweepsFile(path, {{1.0F, 2.0F}}, 1.0F, "IN", "pA");
     }},
};

class FailedWritesTest : public PanelTest {
 protected:
  FailedWritesTest() { Enter("ExportPoints", "5"); }

  /// Lets the writer work over its old file, or make a new one. Returns how often a failure was told.
  int Write(const Writer& writer, bool isNew) {
    const std::string path = folder.File(writer.file);
    for (const std::string& name : folder.Names()) fs::remove(folder.File(name));
    if (!isNew) WriteWholeFile(path, writer.old);
    Model.NumPoints = 3;
    Model.ADInterval = 1.0F;
    Model.ModelFileName = folder.File("cell.mod");
    Analysis.MeasuredFile = Model.ModelFileName;
    Trace.TraceValid = 1;
    Dwell.NumOpenTimes = 2;
    Analysis.Unwritten = {};
    Analysis.MeasuresFileOpen = 0;
    Analysis.MeasuresCount = 0;
    Analysis.MeasuresFileName = path;
    choices = {path};
    if (!writer.source.empty()) choices.push_front(writer.source);
    answers = {true};  // may append to a file of results
    errors = 0;
    faults.calls = 0;
    faults.first = wanted_;
    if (wanted_ == ReadOnlyFolder)
      fs::permissions(folder.Path(), fs::perms::owner_read | fs::perms::owner_exec);
    const bool tells = writer.write(path);
    faults.first = 0;
    fs::permissions(folder.Path(), fs::perms::owner_all);
    return errors + (tells ? 0 : 1);
  }

  int CallsOf(const Writer& writer, bool isNew) {
    wanted_ = faults.last = EveryCall;
    EXPECT_EQ(Write(writer, isNew), 0) << writer.file;
    return faults.calls;
  }

  std::string ContentOf(const Writer& writer) {
    const std::string path = folder.File(writer.file);
    return fs::exists(path) ? ReadWholeFile(path) : std::string();
  }

  int wanted_ = 0;  // first call that fails
};

TEST_F(FailedWritesTest, EachIsToldOnceAndLeavesTheOldFileAndNothingElse) {
  for (const Writer& writer : Writers) {
    for (const bool isNew : {false, true}) {
      const int calls = CallsOf(writer, isNew);
      ASSERT_GT(calls, 3) << writer.file << ": its calls do not come here";
      const std::string good = ContentOf(writer);
      const Texts names = folder.Names();
      const std::string old(isNew ? "" : writer.old);
      for (int k = -1; k <= 2 * calls; ++k) {
        wanted_ = (k + 1) / 2;
        faults.last = k % 2 != 0 ? wanted_ : EveryCall;  // one call, or a disk that stays full
        const int told = Write(writer, isNew);
        const std::string content = ContentOf(writer);
        const std::string where = std::string(writer.file) + (isNew ? ", new" : "") + ", call " +
                                  std::to_string(wanted_) + (k % 2 != 0 ? "" : " and all after it");
        EXPECT_EQ(told, content == old ? 1 : 0) << where;
        EXPECT_EQ(content.size(), content == old ? old.size() : good.size()) << where;
        for (const std::string& name : folder.Names()) {
          EXPECT_TRUE(std::find(names.begin(), names.end(), name) != names.end()) << where << ": " << name;
          EXPECT_TRUE(fs::file_size(folder.File(name)) > 0 || writer.old.empty()) << where << ": " << name;
        }
      }
    }
  }
}

}  // namespace
}  // namespace zelvane
