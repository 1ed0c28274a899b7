// ABF files of every writer, read by other programs: Neo and Stimfit's Python module, if they are installed.
#include <cstdlib>
#include <functional>
#include <vector>

#include "formats/abf/abf.h"
#include "run/run_panel.h"
#include "support/store_test.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr double IntervalMs = 0.025;
constexpr std::size_t Long = 30'000;  // gap-free: programs may read such a file in pieces of 8192

Floats Wave(std::size_t samples, double amplitude) {
  Floats wave(samples);
  for (std::size_t k = 0; k < samples; ++k)
    wave[k] = static_cast<float>(amplitude * std::sin(0.01 * static_cast<double>(k)));
  return wave;
}

/// The files, each with its sweeps.
class AbfOtherPrograms : public PanelTest {
 protected:
  AbfOtherPrograms() {
    BySweeps("gapfree.abf", 3, {Wave(Long, 80.0)});
    BySweeps("short.abf", 3, {Wave(300, 80.0)});
    BySweeps("episodic.abf", 5, {Wave(1000, 1.0), Wave(1000, 2.0), Wave(1000, 3.0)});
    OfTrace("trace.abf", TraceAbfWrite, {Wave(Long, 50.0)});
    OfTrace("legacy.abf", LegacyAbfWrite, {Wave(Long, 60.0)});
    OfTrace("autosave.abf", AutosaveAbfWrite, {Wave(10'000, 1.0), Wave(10'000, 2.0), Wave(10'000, 3.0)});
  }

  /// Runs a check of `files` in the system's Python. Skips the test if the module is not installed.
  void Check(const std::string& module, const std::string& check) {
    const std::string python = "/usr/bin/python3 ";
    if (std::system((python + "-c 'import " + module + "' 2>/dev/null").c_str()) != 0)
      GTEST_SKIP() << "python3-" << module << " is not installed";
    const std::string dictionary = "import numpy as np\nfiles = {" + files + "}\n";
    WriteWholeFile(folder.File("check.py"), dictionary + check);
    EXPECT_EQ(std::system((python + folder.File("check.py")).c_str()), 0);
  }

 private:
  void Note(const std::string& name, const std::vector<Floats>& sweeps) {
    std::string samples;
    for (const auto& sweep : sweeps)
      samples.append(reinterpret_cast<const char*>(sweep.data()), 4 * sweep.size());
    WriteWholeFile(folder.File(name + ".raw"), samples);
    files += FormatText("'%s': %d, ", folder.File(name).c_str(), static_cast<int>(sweeps.size()));
  }

  void BySweeps(const std::string& name, int mode, const std::vector<Floats>& sweeps) {
    AbfHeader header;
    InitializeHeader(header);
    header.operationMode = mode;
    header.sampleInterval = 1000.0 * IntervalMs;
    AbfWriteHandle writer = OldABF_OpenWrite(folder.File(name), header);
    for (const auto& sweep : sweeps) ASSERT_TRUE(OldABF_WriteRawSweep(*writer, sweep));
    ASSERT_TRUE(OldABF_Close(writer));
    Note(name, sweeps);
  }

  void OfTrace(const std::string& name, const std::function<Outcome(const std::string&)>& write,
               const std::vector<Floats>& runs) {
    for (const auto& run : runs) {
      std::copy(run.begin(), run.end(), Trace.SimTrace.begin());
      Trace.SimTraceUsed = Model.NumPoints = static_cast<int>(run.size());
      Model.ADInterval = static_cast<float>(IntervalMs);
      Trace.TraceUnits = TracePicoamps;
      WriteRunParameters();
      ASSERT_EQ(write(folder.File(name)), Outcome::Done);
    }
    Note(name, runs);
  }

  std::string files;  // entries of a Python dictionary: path and number of sweeps
};

TEST_F(AbfOtherPrograms, Neo) {
  // A growing file cannot have a synch array, so Neo joins its sweeps.
  Check("neo", R"(
import neo
for path, sweeps in files.items():
    raw = np.fromfile(path + '.raw', '<f4')
    signals = [s.analogsignals[0] for s in neo.io.AxonIO(path).read_block().segments]
    assert len(signals) == (1 if 'autosave' in path else sweeps), (path, len(signals))
    read = np.concatenate([np.asarray(s.magnitude[:, 0], 'f4') for s in signals])
    assert np.array_equal(read, raw), path
    assert all(s.units.dimensionality.string == 'pA' for s in signals), path
    assert all(abs(float(s.sampling_period.rescale('us')) - 25) < 1e-5 for s in signals), path
)");
}

TEST_F(AbfOtherPrograms, Stfio) {
  Check("stfio", R"(
import stfio
for path, sweeps in files.items():
    raw = np.fromfile(path + '.raw', '<f4').reshape(sweeps, -1)
    record = stfio.read(path, 'abf')
    assert len(record) == 1 and len(record[0]) == sweeps, (path, len(record), len(record[0]))
    for k in range(sweeps):
        assert np.array_equal(np.asarray(record[0][k].asarray(), 'f4'), raw[k]), (path, k)
    assert record[0].yunits == 'pA', (path, record[0].yunits)
    assert abs(record.dt - 0.025) < 1e-7, (path, record.dt)
)");
}

}  // namespace
}  // namespace zelvane
