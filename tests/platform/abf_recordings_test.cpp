// Recordings of other programs against what those programs read out of them.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <vector>

#include "platform/abf/abf.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using nlohmann::json;

const std::string Recordings = std::string(ZELVANE_TEST_DATA) + "/recordings/";

/// A micro sign as the lists of expected values write it.
std::string PlainMicro(const std::string& text) {
  std::string plain;
  for (const char byte : text)
    if (byte != '\xC2') plain += byte == '\xB5' ? 'u' : byte;
  return plain;
}

double ExpectedVersion(const json& version) {
  if (version.is_number()) return version;
  const std::string text = version;  // "2.6.0.0"
  return 2.0 + (text.at(2) - '0') / 100.0;
}

int SamplesOfSweep(const json& row, int sweep) {
  const json& samples = row["samples_per_sweep"];
  return samples.is_array() ? samples[static_cast<std::size_t>(sweep)] : samples;
}

void CheckHeader(const json& row, const AbfHeader& header) {
  EXPECT_DOUBLE_EQ(header.version, ExpectedVersion(row["version"]));
  EXPECT_EQ(header.operationMode, row["operation_mode"]);
  EXPECT_EQ(header.dataFormat, row["data_format"] == "int16" ? AbfIntegers : AbfFloats);
  EXPECT_NEAR(header.sampleInterval / 1000.0, row["sample_interval_ms"].get<double>(), 1e-9);
  EXPECT_EQ(header.acquisitionLength, row["total_samples"]);
  ASSERT_EQ(header.channels, row["channels"]);
  for (std::size_t place = 0; place < AbfMaxChannels; ++place) {
    const int input = header.samplingSequence[place];
    if (place >= row["sampling_sequence"].size()) {
      EXPECT_EQ(input, -1);
      continue;
    }
    ASSERT_EQ(input, row["sampling_sequence"][place]);
    EXPECT_EQ(header.channelName[static_cast<std::size_t>(input)], row["channel_names"][place]);
    EXPECT_EQ(PlainMicro(header.channelUnits[static_cast<std::size_t>(input)]), row["units"][place]);
    float scale = 0.0F;
    float offset = 0.0F;
    ASSERT_TRUE(GetADCScaleFactor(header, input, scale, offset));
    const double expectedScale = row["scale"][place];
    EXPECT_NEAR(scale, expectedScale, 1e-6 * expectedScale);
    EXPECT_NEAR(offset, row["offset"][place].get<double>(), 1e-6);
  }
}

void CheckSamples(const json& expected, const std::vector<float>& samples) {
  const double low = expected["min"];
  const double high = expected["max"];
  const double tolerance = 1e-6 * std::max(std::abs(low), std::abs(high));
  ASSERT_EQ(samples.size(), expected["count"]);
  for (std::size_t k = 0; k < expected["first5"].size(); ++k)
    EXPECT_NEAR(samples[k], expected["first5"][k].get<double>(), tolerance);
  EXPECT_NEAR(samples.back(), expected["last"].get<double>(), tolerance);
  EXPECT_NEAR(*std::min_element(samples.begin(), samples.end()), low, tolerance);
  EXPECT_NEAR(*std::max_element(samples.begin(), samples.end()), high, tolerance);
  double sum = 0.0;
  for (const float sample : samples) sum += sample;
  EXPECT_NEAR(sum / static_cast<double>(samples.size()), expected["mean"].get<double>(), tolerance);
}

void CheckRow(const json& row, const std::string& path) {
  AbfHeader header;
  int samplesPerSweep = 0;
  int sweeps = 0;
  std::string why;
  const AbfHandle file = OpenABFFile(path, header, samplesPerSweep, sweeps, &why);
  ASSERT_NE(file, nullptr) << why;
  CheckHeader(row, header);
  ASSERT_EQ(sweeps, row["sweeps"]);
  int longest = 0;
  for (int sweep = 0; sweep < sweeps; ++sweep) {
    EXPECT_EQ(SweepLength(*file, sweep + 1), SamplesOfSweep(row, sweep));
    longest = std::max(longest, SamplesOfSweep(row, sweep));
  }
  EXPECT_EQ(samplesPerSweep, longest);
  for (const auto& [sweep, channels] : row["sweep_values"].items()) {
    for (std::size_t place = 0; place < channels.size(); ++place) {
      SCOPED_TRACE("sweep " + sweep + ", place " + std::to_string(place));
      std::vector<float> samples(static_cast<std::size_t>(longest) + 10);
      const int read = ReadSweep(*file, header.samplingSequence[place], std::stoi(sweep) + 1, 0, samples);
      samples.resize(static_cast<std::size_t>(read));
      CheckSamples(channels[place], samples);
    }
  }
}

TEST(AbfRecordings, ReadAsOtherProgramsReadThem) {
  std::ifstream list(Recordings + "expected.json");
  const json expected = json::parse(list);
  int checked = 0;
  for (const json& row : expected["rows"]) {
    const std::string path = Recordings + row["file"].get<std::string>();
    // The longest recording is not kept here.
    if (!row["kind"].get<std::string>().starts_with("ABF") || !std::filesystem::exists(path)) continue;
    SCOPED_TRACE(row["file"]);
    CheckRow(row, path);
    ++checked;
  }
  EXPECT_GE(checked, 17);
}

/// A part of a sweep is the same as that part of the whole sweep, at every kind of multiplexing.
TEST(AbfRecordings, APartOfASweepIsReadAlone) {
  for (const char* name :
       {"abf1/190619B_0003.abf", "abf2/18702001-step.abf", "derived/float_episodic_2ch.abf"}) {
    AbfHeader header;
    int samples = 0;
    int sweeps = 0;
    const AbfHandle file = OpenABFFile(Recordings + name, header, samples, sweeps);
    ASSERT_NE(file, nullptr) << name;
    const int channel = header.samplingSequence[1];
    std::vector<float> whole(static_cast<std::size_t>(samples));
    ASSERT_EQ(ReadSweep(*file, channel, 2, 0, whole), samples);
    for (const int first : {1, samples / 3, samples - 5}) {
      std::vector<float> part(100);
      const int count = std::min(100, samples - first);
      ASSERT_EQ(ReadSweep(*file, channel, 2, first, part), count);
      EXPECT_TRUE(std::equal(part.begin(), part.begin() + count, whole.begin() + first)) << name;
    }
    EXPECT_EQ(ReadSweep(*file, channel, 2, samples, whole), 0);
    EXPECT_EQ(ReadSweep(*file, channel, 2, -1, whole), 0);
    EXPECT_EQ(ReadSweep(*file, channel, sweeps + 1, 0, whole), 0);
    EXPECT_EQ(ReadSweep(*file, channel, 0, 0, whole), 0);
    EXPECT_EQ(ReadSweep(*file, 9, 1, 0, whole), 0) << "an input that was not recorded";
    EXPECT_EQ(ReadSweep(*file, -1, 1, 0, whole), 0) << "an input that was not recorded";
  }
}

}  // namespace
}  // namespace zelvane
