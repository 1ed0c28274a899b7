// Damaged recordings and wrong headers: the reader refuses them in one sentence, or reads what the file truly
// holds.
#include <sys/stat.h>

#include <map>
#include <random>

#include "formats/abf/abf_layout.h"
#include "formats/allocations.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

struct Opened {
  AbfHandle file;
  AbfHeader header;
  int longest = 0;
  int sweeps = 0;
  std::string why;
};

Opened OpenBytes(std::string_view bytes) {
  Opened opened;
  opened.file = OpenAbfSource(MemorySource(std::as_bytes(std::span(bytes))), opened.header, opened.longest,
                              opened.sweeps, &opened.why);
  return opened;
}

Opened OpenPath(const std::string& path) {
  Opened opened;
  opened.file = OpenABFFile(path, opened.header, opened.longest, opened.sweeps, &opened.why);
  return opened;
}

void ExpectOneSentence(const std::string& why) {
  EXPECT_TRUE(why.size() > 10 && why.find('.') == why.size() - 1) << why;
}

/// Expects a refusal with a reason, or sweeps that are inside the file and have a value for each count.
void ExpectRefusedOrWhole(const Opened& opened, std::size_t fileBytes) {
  if (opened.file == nullptr) {
    EXPECT_FALSE(opened.why.empty());
    return;
  }
  std::int64_t samples = 0;
  ASSERT_TRUE(GetActualSamples(*opened.file, samples));
  ASSERT_LE(2 * samples, static_cast<std::int64_t>(fileBytes));
  ASSERT_GE(opened.longest, 1);
  ASSERT_LE(opened.sweeps, samples);
  Floats sweep(static_cast<std::size_t>(opened.longest));
  for (const int number : {1, opened.sweeps}) {
    for (int place = 0; place < opened.header.channels; ++place) {
      const int channel = opened.header.samplingSequence[static_cast<std::size_t>(place)];
      const int read = ReadSweep(*opened.file, channel, number, 0, sweep);
      ASSERT_EQ(read, SweepLength(*opened.file, number));
      ASSERT_GE(read, 1);
      if (opened.header.dataFormat == AbfIntegers) {
        ASSERT_TRUE(
            std::all_of(sweep.begin(), sweep.begin() + read, [](float v) { return std::isfinite(v); }));
      }
    }
  }
}

/// Opens the bytes and reads from them. Compares the memory for this with their number.
void ExpectHarmless(const std::string& bytes) {
  const std::size_t before = AllocatedBytes();
  const Opened opened = OpenBytes(bytes);
  ASSERT_LE(AllocatedBytes() - before, 8 * bytes.size() + 16384);
  ExpectRefusedOrWhole(opened, bytes.size());
}

TEST(AbfHostile, SmallRecordingsCutOrChangedAnywhere) {
  std::mt19937 random(20);
  int recordings = 0;
  for (const char* folder : {"abf1", "abf2", "derived"}) {
    for (const auto& entry : fs::directory_iterator(Recordings + folder)) {
      if (entry.path().extension() != ".abf" || entry.file_size() > 200'000) continue;
      SCOPED_TRACE(entry.path().filename().string());
      const std::string whole = ReadWholeFile(entry.path().string());
      ++recordings;
      for (std::size_t cut = 0; cut < 200; ++cut) {
        ASSERT_NO_FATAL_FAILURE(ExpectHarmless(whole.substr(0, whole.size() * cut / 200)));
        ASSERT_NO_FATAL_FAILURE(ExpectHarmless(whole.substr(0, cut * 37))) << "within the header";
      }
      for (int change = 0; change < 2000; ++change) {
        std::string changed = whole;
        // Every second change in the header, where most of the faults are.
        const std::size_t range = change % 2 == 0 ? whole.size() : std::min<std::size_t>(whole.size(), 6144);
        changed[random() % range] = static_cast<char>(random());
        ASSERT_NO_FATAL_FAILURE(ExpectHarmless(changed)) << "change " << change;
      }
    }
  }
  EXPECT_GE(recordings, 9);
}

/// Samples of all channels that the files with an early end should have.
const std::map<std::string, std::int64_t> SamplesAnnounced = {
    {"abf1_data_60pc.abf", 1000},
    {"abf1_data_odd.abf", 1000},
    {"abf1_samples_max.abf", 0x7FFFFFFF},
    {"abf2_data_cut.abf", 738},
    {"abf2_data_count_huge.abf", std::int64_t{1} << 40}};

/// Samples of all channels that the readable damaged files really have. The other files are refused.
const std::map<std::string, std::int64_t> SamplesHeld = {
    {"abf1_data_60pc.abf", 600},        {"abf1_data_odd.abf", 601},        {"abf1_samples_max.abf", 1000},
    {"abf1_samples_minus.abf", 1000},   {"abf1_episodes_max.abf", 1000},   {"abf1_gain_zero.abf", 1000},
    {"abf1_resolution_zero.abf", 1000}, {"abf1_synch_negative.abf", 1000}, {"abf1_synch_far.abf", 1000},
    {"abf2_data_count_huge.abf", 738},  {"abf2_string_index.abf", 738},    {"abf2_strings_none.abf", 738},
    {"abf2_data_cut.abf", 369}};

TEST(AbfHostile, DamagedFilesAreRefusedOrGiveWhatTheyHold) {
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(Recordings + "broken")) {
    if (entry.path().extension() != ".abf") continue;
    const std::string name = entry.path().filename().string();
    SCOPED_TRACE(name);
    const Opened opened = OpenPath(entry.path().string());
    ASSERT_EQ(opened.file != nullptr, SamplesHeld.contains(name)) << opened.why;
    if (opened.file == nullptr) {
      ExpectOneSentence(opened.why);
    } else {
      EXPECT_EQ(opened.header.acquisitionLength, SamplesHeld.at(name));
      const auto announced = SamplesAnnounced.find(name);
      EXPECT_EQ(opened.header.announcedSamples, announced == SamplesAnnounced.end() ? 0 : announced->second);
    }
    ASSERT_NO_FATAL_FAILURE(ExpectRefusedOrWhole(opened, entry.file_size()));
    ++files;
  }
  EXPECT_EQ(files, 36U);
}

TEST(AbfHostile, WhatIsNoReadableFileIsRefused) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0600), 0);
  for (const std::string& path : {folder.Path().string(), folder.File("pipe"), folder.File("absent"),
                                  std::string("/dev/zero"), std::string(), std::string("a\0b", 3)}) {
    const Opened opened = OpenPath(path);
    EXPECT_EQ(opened.file, nullptr) << path;
    ExpectOneSentence(opened.why);
    int format = 0;
    EXPECT_FALSE(IsABFFile(path, format)) << path;
  }
}

// -- Wrong headers, made from a small intact file: version 1.65, two sweeps of 500 counts, telegraph 0.5 --

class AbfHeaderLies : public ::testing::Test {
 protected:
  template <class Number>
  void Put(std::size_t offset, Number number) {
    WriteLittleEndian(std::as_writable_bytes(std::span(bytes)).data() + offset, number);
  }

  float FirstSample() {
    opened = OpenBytes(bytes);
    float sample = 0.0F;
    if (opened.file == nullptr || ReadSweep(*opened.file, 0, 1, 0, std::span(&sample, 1)) != 1)
      ADD_FAILURE() << opened.why;
    return sample;
  }

  Opened opened;
  std::string bytes = ReadWholeFile(Recordings + "derived/base_of_broken.abf");
  float scale = OpenBytes(bytes).header.scale[0];
  float count = FirstSample() / scale;
};

TEST_F(AbfHeaderLies, AllGainsAndOffsetsCount) {
  Put(730, 2.0F);    // programmable
  Put(1050, 5.0F);   // signal
  Put(986, 7.5F);    // instrument offset
  Put(1114, -2.5F);  // signal offset
  EXPECT_NEAR(FirstSample(), count * scale / 10.0F + 10.0F, 1e-4F);
  Put(4512, std::int16_t{2});  // only 1 means that the telegraph (0.5) was on
  EXPECT_NEAR(FirstSample(), count * scale / 20.0F + 10.0F, 1e-4F);
  Put(1050, 0.0F);  // a gain that was not set
  EXPECT_NEAR(FirstSample(), count * scale / 4.0F + 10.0F, 1e-4F);
}

TEST_F(AbfHeaderLies, ShortHeadersHaveAnAutoSampleGainAndNoTelegraph) {
  Put(40, std::int32_t{4});
  Put(262, std::int16_t{1});
  Put(268, 4.0F);
  FirstSample();
  EXPECT_NEAR(opened.header.scale[0], scale / 8.0F, 1e-6F);
  Put(264, std::int16_t{3});  // another input
  FirstSample();
  EXPECT_NEAR(opened.header.scale[0], scale / 2.0F, 1e-6F);
}

TEST_F(AbfHeaderLies, ASequenceOfZerosMeansInputsInOrder) {
  for (std::size_t place = 0; place < 16; ++place) Put(410 + 2 * place, std::int16_t{0});
  EXPECT_EQ(FirstSample(), count * scale);
  Put(120, std::int16_t{2});
  FirstSample();
  EXPECT_EQ(opened.header.samplingSequence[1], 1);
  EXPECT_EQ(opened.longest, 250);
}

TEST_F(AbfHeaderLies, SweepsComeFromTheirLengthWhenThereIsNoSynchArray) {
  Put(92, std::int64_t{0});
  for (const std::int32_t episodes : {2, 1, 0, -1, 1'000'000}) {
    Put(16, episodes);
    FirstSample();
    EXPECT_EQ(opened.sweeps, 2) << episodes;
  }
  Put(138, std::int32_t{300});
  FirstSample();
  EXPECT_EQ(opened.sweeps, 4);
  EXPECT_EQ(SweepLength(*opened.file, 4), 100);
  Put(138, std::int32_t{0});
  Put(16, std::int32_t{5});
  FirstSample();
  EXPECT_EQ(opened.sweeps, 5);
  EXPECT_EQ(opened.longest, 200);
}

TEST_F(AbfHeaderLies, TheNumberOfSamplesIsThatOfTheSweepsInTheFile) {
  for (const std::int32_t samples : {0, 1, 700, 1'000'000}) {
    Put(10, samples);
    FirstSample();
    EXPECT_EQ(opened.header.acquisitionLength, 1000) << samples;
    EXPECT_EQ(opened.sweeps, 2) << samples;
  }
  // Without a synch array uses a smaller number of samples, or else all samples before the end.
  Put(92, std::int64_t{0});
  bytes.resize(8192 + 2000);
  for (const auto& [samples, held] :
       std::map<std::int32_t, int>{{700, 700}, {0, 1000}, {-5, 1000}, {5000, 1000}}) {
    Put(10, samples);
    FirstSample();
    EXPECT_EQ(opened.header.acquisitionLength, held) << samples;
  }
}

TEST_F(AbfHeaderLies, DatesOfAllFormsAreOneOrNone) {
  const std::map<std::int32_t, int> dates = {
      {20190619, 20190619}, {130618, 20130618}, {980131, 19980131}, {0, 0}, {-1, 0}, {20191399, 0}};
  for (const auto& [written, date] : dates) {
    Put(20, written);
    FirstSample();
    EXPECT_EQ(opened.header.startDate, date);
  }
}

TEST_F(AbfHeaderLies, TextIsTurnedIntoUtf8) {
  bytes.replace(602, 8, "\xB5V\0\xFFxxxx", 8);
  bytes.replace(442, 10, "  r\xE9s \x07ult");
  FirstSample();
  EXPECT_EQ(opened.header.channelUnits[0], "\xC2\xB5V");
  EXPECT_EQ(opened.header.channelName[0], "r\xC3\xA9s ult");
}

}  // namespace
}  // namespace zelvane
