// Files that this program writes: read back by it, and byte by byte.
#include "formats/abf/byte_source.h"
#include "support/abf_sweeps.h"
#include "support/small_disk.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

Floats Wave(std::size_t samples, float amplitude) {
  Floats wave(samples);
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

  void Write(const std::vector<Floats>& sweeps) {
    AbfWriteHandle writer = OldABF_OpenWrite(path, header);
    ASSERT_NE(writer, nullptr);
    for (const auto& sweep : sweeps) ASSERT_TRUE(OldABF_WriteRawSweep(*writer, sweep));
    ASSERT_TRUE(OldABF_UpdateHeader(*writer, header));
    ASSERT_TRUE(OldABF_Close(writer));
    ASSERT_EQ(writer, nullptr);
  }

  std::vector<Floats> ReadBack() { return AbfSweeps(path, read); }

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
  const Floats wave = Wave(5000, 80.0F);
  Write({{wave.begin(), wave.begin() + 1234}, {wave.begin() + 1234, wave.end()}});
  EXPECT_EQ(ReadBack(), std::vector<Floats>{wave});
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
  EXPECT_EQ(Field<std::int32_t>(40), 12);
  EXPECT_EQ(Field<std::int32_t>(138), 300);
  EXPECT_EQ(Field<float>(32), 1.83F);
  EXPECT_EQ(Field<float>(244), 10.0F);
  EXPECT_EQ(Field<std::int32_t>(252), 32768);
  EXPECT_EQ(Field<std::int16_t>(410), 0);
  EXPECT_EQ(Field<std::int16_t>(412), -1);
  EXPECT_EQ(Field<std::int16_t>(440), -1);
  EXPECT_EQ(Field<float>(922 + 4 * 15), 10.0F / 32768.0F);
  EXPECT_EQ(ReadWholeFile(path).size(), 6144U + 4U * 300U);
  EXPECT_EQ(ReadBack().at(0).size(), 300U);
}

TEST_F(AbfWrite, EpisodesOfAnyLengthReadBackBySynchArray) {
  header.operationMode = 5;
  const std::vector<Floats> sweeps = {Wave(700, 1.0F), Wave(31, 2.0F), Wave(1500, 3.0F)};
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
  std::vector<Floats> sweeps;
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
  {
    const SmallDisk disk(1 << 16);
    AbfWriteHandle writer = OldABF_OpenWrite(path, header);
    ASSERT_TRUE(writer != nullptr && OldABF_WriteRawSweep(*writer, Wave(1000, 1.0F)));
    EXPECT_FALSE(OldABF_WriteRawSweep(*writer, Wave(100'000, 1.0F)));
    EXPECT_FALSE(OldABF_Close(writer)) << "although its last steps would have had room";
  }
  EXPECT_EQ(ReadWholeFile(path), "old");
}

TEST_F(AbfWrite, AFileMayTakeThePlaceOfTheOneThatIsRead) {
  Write({Wave(3000, 1.0F)});
  int longest = 0;
  int count = 0;
  const AbfHandle file = OpenABFFile(path, read, longest, count);
  Floats samples(3000);
  Write({Wave(10, 9.0F)});
  EXPECT_EQ(ReadSweep(*file, 0, 1, 0, samples), 3000);
  EXPECT_EQ(samples, Wave(3000, 1.0F));
}

}  // namespace
}  // namespace zelvane
