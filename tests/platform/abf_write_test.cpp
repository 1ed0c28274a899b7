// Files written here: read back by this program, byte by byte, and by other programs.
#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <vector>

#include "platform/abf/abf.h"
#include "platform/abf/byte_source.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

std::vector<float> Wave(std::size_t samples, float amplitude) {
  std::vector<float> wave(samples);
  for (std::size_t k = 0; k < samples; ++k)
    wave[k] = amplitude * static_cast<float>(std::sin(0.01 * static_cast<double>(k)));
  return wave;
}

class AbfWrite : public ::testing::Test {
 protected:
  AbfWrite() {
    InitializeHeader(header);
    header.sampleInterval = 25.0;
    header.startDate = 20261123;
    header.startTime = 5025;
  }

  void Write(const std::vector<std::vector<float>>& sweeps) {
    AbfWriteHandle writer = OldABF_OpenWrite(path, header);
    ASSERT_NE(writer, nullptr);
    for (const auto& sweep : sweeps) ASSERT_TRUE(OldABF_WriteRawSweep(*writer, sweep));
    ASSERT_TRUE(OldABF_UpdateHeader(*writer, header));
    ASSERT_TRUE(OldABF_Close(writer));
    ASSERT_EQ(writer, nullptr);
  }

  /// The sweeps of the file as they are read.
  std::vector<std::vector<float>> ReadBack() {
    int longest = 0;
    int count = 0;
    const AbfHandle file = OpenABFFile(path, read, longest, count);
    std::vector<std::vector<float>> sweeps;
    for (int sweep = 1; file != nullptr && sweep <= count; ++sweep) {
      sweeps.emplace_back(static_cast<std::size_t>(SweepLength(*file, sweep)));
      ReadSweep(*file, 0, sweep, 0, sweeps.back());
    }
    return sweeps;
  }

  template <class Number>
  Number Field(std::size_t offset) const {
    const std::string bytes = ReadWholeFile(path);
    return NumberAt<Number>(std::as_bytes(std::span(bytes)), offset);
  }

  TemporaryFolder folder;
  std::string path = folder.File("written.abf");
  AbfHeader header;
  AbfHeader read;
};

TEST_F(AbfWrite, AGapFreeFileReadsBackWhole) {
  header.channelUnits[0] = "\xC2\xB5V";
  header.channelName[0] = "a name too long";
  const std::vector<float> wave = Wave(5000, 80.0F);
  Write({{wave.begin(), wave.begin() + 1234}, {wave.begin() + 1234, wave.end()}});
  EXPECT_EQ(ReadBack(), std::vector<std::vector<float>>{wave});
  EXPECT_EQ(read.version, 1.83);
  EXPECT_EQ(read.operationMode, 3);
  EXPECT_EQ(read.dataFormat, AbfFloats);
  EXPECT_EQ(read.sampleInterval, 25.0);
  EXPECT_EQ(read.startDate, 20261123);
  EXPECT_EQ(read.startTime, 5025);
  EXPECT_EQ(read.channelUnits[0], "\xC2\xB5V");
  EXPECT_EQ(read.channelName[0], "a name too");
  EXPECT_EQ(read.creator, "Zelvane v2.0");
  int format = AbfIntegers;
  EXPECT_TRUE(IsABFFile(path, format));
  EXPECT_EQ(format, AbfFloats);
}

TEST_F(AbfWrite, TheHeaderHasTheValuesThatOtherProgramsNeed) {
  Write({Wave(300, 1.0F)});
  EXPECT_EQ(Field<std::int32_t>(10), 300);
  EXPECT_EQ(Field<std::int32_t>(16), 1);
  EXPECT_EQ(Field<std::int32_t>(40), 4);
  EXPECT_EQ(Field<std::int32_t>(138), 300);
  EXPECT_EQ(Field<float>(32), 1.83F);
  EXPECT_EQ(Field<float>(244), 10.0F);
  EXPECT_EQ(Field<std::int32_t>(252), 32768);
  EXPECT_EQ(Field<std::int16_t>(410), 0);
  EXPECT_EQ(Field<std::int16_t>(412), -1);
  EXPECT_EQ(Field<std::int16_t>(440), -1);
  EXPECT_EQ(Field<float>(922 + 4 * 15), 10.0F / 32768.0F);
  EXPECT_EQ(ReadWholeFile(path).size(), 6144U) << "shorter files are refused elsewhere";
  EXPECT_EQ(ReadBack().at(0).size(), 300U) << "what fills the file up is no sample";
}

TEST_F(AbfWrite, EpisodesOfAnyLengthReadBackBySynchArray) {
  header.operationMode = 5;
  const std::vector<std::vector<float>> sweeps = {Wave(700, 1.0F), Wave(31, 2.0F), Wave(1500, 3.0F)};
  Write(sweeps);
  EXPECT_EQ(ReadBack(), sweeps);
  EXPECT_EQ(Field<std::int32_t>(16), 3);
  EXPECT_EQ(Field<std::int32_t>(96), 3);
  const auto synch = static_cast<std::size_t>(Field<std::int32_t>(92)) * 512;
  EXPECT_EQ(Field<std::int32_t>(synch + 16), 731);
  EXPECT_EQ(Field<std::int32_t>(synch + 20), 1500);
}

TEST_F(AbfWrite, TheHeaderMayBeWrittenBackBetweenSweeps) {
  header.operationMode = 5;
  AbfWriteHandle writer = OldABF_OpenWrite(path, header);
  std::vector<std::vector<float>> sweeps;
  for (int sweep = 0; sweep < 4; ++sweep) {
    sweeps.push_back(Wave(400, static_cast<float>(sweep)));
    ASSERT_TRUE(OldABF_WriteRawSweep(*writer, sweeps.back()));
    if (sweep < 3) {
      ASSERT_TRUE(OldABF_UpdateHeader(*writer, header));
    }
  }
  ASSERT_TRUE(OldABF_Close(writer)) << "which counts the last sweep";
  EXPECT_EQ(ReadBack(), sweeps);
}

TEST_F(AbfWrite, TheOldFileStandsUntilTheNewOneIsClosed) {
  WriteWholeFile(path, "old");
  AbfWriteHandle writer = OldABF_OpenWrite(path, header);
  ASSERT_TRUE(OldABF_WriteRawSweep(*writer, Wave(5000, 1.0F)));
  ASSERT_TRUE(OldABF_UpdateHeader(*writer, header));
  EXPECT_EQ(ReadWholeFile(path), "old");
  writer.reset();
  EXPECT_EQ(ReadWholeFile(path), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
  EXPECT_EQ(OldABF_OpenWrite(folder.Path().string(), header), nullptr);
  EXPECT_EQ(OldABF_OpenWrite(folder.File("absent/written.abf"), header), nullptr);
  EXPECT_FALSE(OldABF_Close(writer));
}

TEST_F(AbfWrite, AFullDiskLeavesTheOldFile) {
  WriteWholeFile(path, "old");
  // A limit on the size of files fails a write as a full disk does.
  rlimit former{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{1 << 16, former.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  AbfWriteHandle writer = OldABF_OpenWrite(path, header);
  const bool begun = writer != nullptr && OldABF_WriteRawSweep(*writer, Wave(1000, 1.0F));
  const bool written = begun && OldABF_WriteRawSweep(*writer, Wave(100'000, 1.0F));
  const bool closed = OldABF_Close(writer);
  ::setrlimit(RLIMIT_FSIZE, &former);
  std::signal(SIGXFSZ, handler);
  EXPECT_TRUE(begun);
  EXPECT_FALSE(written);
  EXPECT_FALSE(closed) << "although its last steps would have had room";
  EXPECT_EQ(ReadWholeFile(path), "old");
}

TEST_F(AbfWrite, AFileMayTakeThePlaceOfTheOneThatIsRead) {
  Write({Wave(3000, 1.0F)});
  int longest = 0;
  int count = 0;
  const AbfHandle file = OpenABFFile(path, read, longest, count);
  std::vector<float> samples(3000);
  Write({Wave(10, 9.0F)});
  EXPECT_EQ(ReadSweep(*file, 0, 1, 0, samples), 3000);
  EXPECT_EQ(samples, Wave(3000, 1.0F));
}

// -- Other programs --

/// Runs a check in the system's Python. The module's absence skips the test.
void CheckWithPython(const std::string& module, const std::string& check) {
  const std::string python = "/usr/bin/python3";
  if (std::system((python + " -c 'import " + module + "' 2>/dev/null").c_str()) != 0)
    GTEST_SKIP() << "python3-" << module << " is not installed";
  const TemporaryFolder folder;
  WriteWholeFile(folder.File("check.py"), check);
  EXPECT_EQ(std::system((python + " " + folder.File("check.py")).c_str()), 0);
}

/// What both checks begin with: the samples that the test wrote.
std::string Preamble(const std::string& path, std::size_t sweeps, std::size_t samples) {
  return "import sys\nimport numpy as np\npath = '" + path + "'\nsweeps = " + std::to_string(sweeps) +
         "\nsamples = " + std::to_string(samples) +
         "\nraw = np.fromfile(path, '<f4', sweeps * samples, offset=2048).reshape(sweeps, samples)\n";
}

const std::string ReadWithNeo = R"(
import neo
block = neo.io.AxonIO(path).read_block()
signals = [segment.analogsignals[0] for segment in block.segments]
assert len(signals) == sweeps, len(signals)
for read, written in zip(signals, raw):
    assert np.array_equal(np.asarray(read.magnitude[:, 0], 'f4'), written), read
    assert read.units.dimensionality.string == 'pA', read.units
    assert abs(float(read.sampling_period.rescale('us')) - 25) < 1e-9
)";

const std::string ReadWithStfio = R"(
import stfio
record = stfio.read(path, 'abf')
assert len(record) == 1 and len(record[0]) == sweeps, (len(record), len(record[0]))
for k in range(sweeps):
    assert np.array_equal(np.asarray(record[0][k].asarray(), 'f4'), raw[k]), k
assert record[0].yunits == 'pA', record[0].yunits
assert abs(record.dt - 0.025) < 1e-9, record.dt
)";

class AbfWriteOtherPrograms : public AbfWrite, public ::testing::WithParamInterface<int> {
 protected:
  /// 300 samples gap-free, which is a short file, or five sweeps.
  std::string WriteOne() {
    const bool episodic = GetParam() == 5;
    header.operationMode = GetParam();
    std::vector<std::vector<float>> sweeps;
    for (int sweep = 0; sweep < (episodic ? 5 : 1); ++sweep)
      sweeps.push_back(Wave(episodic ? 1000 : 300, 100.0F + static_cast<float>(sweep)));
    Write(sweeps);
    return Preamble(path, sweeps.size(), sweeps[0].size());
  }
};

TEST_P(AbfWriteOtherPrograms, Neo) {
  const std::string preamble = WriteOne();
  CheckWithPython("neo", preamble + ReadWithNeo);
}

TEST_P(AbfWriteOtherPrograms, Stfio) {
  const std::string preamble = WriteOne();
  CheckWithPython("stfio", preamble + ReadWithStfio);
}

INSTANTIATE_TEST_SUITE_P(Modes, AbfWriteOtherPrograms, ::testing::Values(3, 5));

}  // namespace
}  // namespace zelvane
