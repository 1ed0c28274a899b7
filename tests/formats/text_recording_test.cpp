// Text recordings from people and programs, and damaged ones.
#include "formats/text_recording.h"

#include <bit>
#include <charconv>
#include <limits>
#include <random>
#include <sstream>

#include "support/store_test.h"

namespace zelvane {
namespace {

constexpr std::size_t Most = 1'000'000;

struct Outcome {
  std::string refusal;
  TextShape shape;
  TextSamples read;
};

Outcome ReadBytes(const std::string& bytes, TextRequest request = {}) {
  if (request.most == 0) request.most = Most;
  std::istringstream in(bytes);
  TextRecording recording(in);
  Outcome outcome{recording.Refusal(), recording.Shape(), {}};
  if (outcome.refusal.empty()) outcome.read = recording.Read(request);
  return outcome;
}

Floats Samples(const std::string& bytes, TextRequest request = {}) {
  return ReadBytes(bytes, request).read.samples;
}

std::string Atf(int columns, const std::string& header, const std::string& rows) {
  const auto lines = std::count(header.begin(), header.end(), '\n');
  return FormatText("ATF\t1.0\n%d\t%d\n", static_cast<int>(lines), columns) + header +
         "\"Time (s)\"\t\"x\"\n" + rows;
}

constexpr float Infinity = std::numeric_limits<float>::infinity();

/// Returns plain letters in UTF-16, with its mark.
std::string Utf16(std::string_view text, bool big) {
  std::string bytes = big ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : text) {
    bytes += big ? '\0' : c;
    bytes += big ? c : '\0';
  }
  return bytes;
}

TEST(TextRecording, LineEndsMarksAndBlanksMakeNoDifference) {
  const Floats expected = {1.5F, -2.0F, 3e-5F};
  const std::string plain = "1.5\n-2\n3e-5\n";
  const std::string texts[] = {plain,
                               "1.5\r\n-2\r\n3e-5\r\n",
                               "1.5\r-2\r3e-5\r",
                               "1.5\n-2\n3e-5",
                               "\xEF\xBB\xBF" + plain,
                               " 1.5\n\n \t \n-2 pA\n+3e-5\n",
                               Utf16(plain, false),
                               Utf16("1.5\r\n-2\r\n3e-5", true) + '\0'};
  for (const std::string& text : texts) EXPECT_EQ(Samples(text), expected) << text;
}

TEST(TextRecording, ANulByteAndALineWithoutEndRefuseTheText) {
  const std::string nul(1, '\0');
  const std::string endless(LongestTextLine + 1, '7');
  using Case = std::pair<std::string, const char*>;
  for (const auto& [text, why] : {Case{"1\n2\n3" + nul + "\n4\n", "line 3 holds a NUL byte."},
                                  Case{"1\n" + std::string(400'000, '\0'), "line 2 holds a NUL byte."},
                                  Case{Utf16("1\n2" + nul + "\n", false), "line 2 holds a NUL byte."},
                                  Case{Atf(2, "", "0 1\n1 2\n2" + nul), "line 6 holds a NUL byte."},
                                  Case{"1\n2\n" + endless, "line 3 is longer than 16 MB."}}) {
    const Outcome outcome = ReadBytes(text);
    EXPECT_EQ(outcome.read.fault, why);
    EXPECT_TRUE(outcome.read.samples.empty()) << why;
    EXPECT_EQ(WhyNoSamples(outcome.shape, outcome.read), why);
  }
  std::istringstream header("ATF 1.0" + nul + "\n");
  EXPECT_EQ(TextRecording(header).Refusal(), "line 1 holds a NUL byte.");
  EXPECT_EQ(TextFault("1\n2" + nul), "line 2 holds a NUL byte.");
  EXPECT_EQ(TextFault("1\n2\n"), "");
}

TEST(TextRecording, NumbersAreThoseOfScanfRoundedOnce) {
  using Case = std::pair<const char*, float>;
  for (const auto& [text, value] :
       {Case{"16777217", 16777216.0F}, Case{"1.00000017881393432617187500001", 1.00000024F},
        Case{"0x1.8p1", 3.0F}, Case{"1e-60", 0.0F}, Case{"-1e60", -Infinity}, Case{"INF", Infinity},
        Case{".5", 0.5F}, Case{"5.", 5.0F}, Case{"3.25pA", 3.25F}, Case{"1e", 1.0F}, Case{"1e-40", 1e-40F}}) {
    EXPECT_EQ(Samples(text), Floats{value}) << text;
  }
  EXPECT_TRUE(std::isnan(Samples("nan").at(0)));
}

/// Compares the fast reader with the library, over the usual forms of numbers and every exponent.
TEST(TextRecording, NumbersHaveTheBitsThatTheLibraryGivesThem) {
  std::mt19937_64 random(11);
  const char* forms[] = {"%.6e", "%.9g", "%.3f", "%.17g", "%.0f", "%g"};
  std::string text;
  Floats expected;
  for (int k = 0; k < 60'000; ++k) {
    double value = std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 140) - 120);
    if (k % 3 == 0)
      value = static_cast<double>(static_cast<std::int64_t>(random() % 200'000'000) - 100'000'000) / 1e4;
    if (k % 7 == 0) {  // half-way between two floats
      const auto wide = static_cast<double>(
          std::bit_cast<float>(0x3F000000U + static_cast<std::uint32_t>(random() % 99'999)));
      value = wide + std::ldexp(1.0, -25);
    }
    const char* form = forms[k % 6];
    const std::string number = FormatNumber(form, value);
    text += number + '\n';
    float parsed = 0.0F;
    std::from_chars(number.data(), number.data() + number.size(), parsed);
    expected.push_back(parsed);
  }
  const Floats read = Samples(text);
  ASSERT_EQ(read.size(), expected.size());
  for (std::size_t k = 0; k < read.size(); ++k) {
    ASSERT_EQ(std::bit_cast<std::uint32_t>(read[k]), std::bit_cast<std::uint32_t>(expected[k])) << k;
  }
}

TEST(TextRecording, ACommaIsADecimalMarkOrEndsTheReading) {
  EXPECT_EQ(Samples("1,5\n-0,25e1\n"), (Floats{1.5F, -2.5F}));
  EXPECT_EQ(Samples(Atf(2, "", "0,000\t1,5\n0,001\t2,5\n0,002\t3\n")), (Floats{1.5F, 2.5F, 3.0F}));
  for (const char* text : {"0.1,2.5\n", "1,2,3\n", "1,\n", "1;5,2\n"}) {
    const Outcome outcome = ReadBytes(std::string("7\n") + text + "8\n");
    EXPECT_EQ(outcome.read.samples, Floats{7.0F}) << text;
    EXPECT_EQ(outcome.read.badLine, 2U) << text;
  }
}

TEST(TextRecording, SignalsAndEpisodesFindTheirColumns) {
  const std::string signals = "\"SignalsExported=IN 0,\xB5V b\"\n\"Other=\"\n";
  const std::string text = Atf(5, signals, "0 11 21 12 22\n.001 31 41 32 42\n.002 51 61 52 62\n");
  using Case = std::tuple<int, int, float>;
  for (const auto& [signal, episode, first] : {Case{1, 1, 11}, Case{2, 1, 21}, Case{1, 2, 12}, Case{2, 2, 22},
                                               Case{3, 1, 11}, Case{0, 1, 21}, Case{2, 9, 22}}) {
    const Outcome outcome = ReadBytes(text, {.signal = signal, .episode = episode});
    EXPECT_EQ(outcome.shape.signals, 2);
    EXPECT_EQ(outcome.shape.episodes, 2);
    ASSERT_EQ(outcome.read.samples.size(), 3U);
    EXPECT_EQ(outcome.read.samples[0], first) << signal << ' ' << episode;
  }
  EXPECT_EQ(ReadBytes(Atf(4, "", "0 1 2 3\n")).shape.episodes,
            3);  // without a list each column is an episode
  EXPECT_FALSE(ReadBytes(Atf(3, "\"SignalsExported=a,b,c\"\n", "0 1 2\n")).refusal.empty());
}

TEST(TextRecording, TheIntervalComesFromTheFirstStepAndOnlyALongerOneFails) {
  using Case = std::tuple<const char*, double, bool>;
  for (const auto& [rows, intervalMs, unequal] :
       {Case{"0 1\n.001 2\n.002 3\n", 1.0, false}, Case{"20.00002 1\n20.00004 2\n20.00006 3\n", 0.02, false},
        Case{"0 1\n.001 2\n.0015 3\n", 1.0, false}, Case{"0 1\n.001 2\n.0021 3\n", 1.0, true},
        Case{"0 1\n0 2\n0 3\n", 1e-6, false}, Case{"0 1\n1e9 2\n2e9 3\n", 1e8, true},
        Case{"0 1\nnan 2\n.002 3\n", 0.0, true}, Case{"5 1\n4 2\n6 3\n", 1e-6, true}}) {
    const Outcome outcome = ReadBytes(Atf(2, "", std::string(rows) + ".003 4\n"));
    EXPECT_EQ(outcome.read.unequalSteps, unequal) << rows;
    EXPECT_EQ(outcome.read.samples.size(), unequal ? 3U : 4U) << rows;
    EXPECT_NEAR(outcome.read.intervalMs.value_or(0.0), intervalMs, 1e-9 * intervalMs) << rows;
  }
  EXPECT_FALSE(ReadBytes(Atf(2, "", "0 1\n")).read.intervalMs.has_value());
}

TEST(TextRecording, RowsMayGoOnInFurtherLinesButMustEndWhereTheyShould) {
  EXPECT_EQ(Samples(Atf(4, "", "0 1\n2 3\n\n.1 4 5\n6\n.2 7 8 9 10\n")), (Floats{1, 4, 7}));
  const Outcome short_ = ReadBytes(Atf(4, "", "0 1 2 3\n.1\n.2 7 8 9\n"));
  EXPECT_EQ(short_.read.samples, Floats{1});
  EXPECT_EQ(short_.read.badLine, 5U);
  EXPECT_EQ(Samples(Atf(4, "", "0 1 2 3\n.1 4 5")), Floats{1});  // cut off by the end of the file
}

TEST(TextRecording, TenThousandColumnsAndLinesOfAnyLengthAreRead) {
  std::string rows;
  for (int r = 0; r < 4; ++r) {
    rows += FormatText("%.3f", r * 0.001);
    for (int c = 1; c < 10'000; ++c) rows += FormatText("\t%d", r * 10'000 + c);
    rows += '\n';
  }
  const std::string comment = "\"Comment=" + std::string(700'000, 'x') + "\"\n";
  EXPECT_EQ(Samples(Atf(10'000, comment, rows), {.episode = 9'999}), (Floats{9'999, 19'999, 29'999, 39'999}));
  EXPECT_EQ(Samples("7" + std::string(1'000'000, ' ') + "8\n9"), (Floats{7, 9}));
}

TEST(TextRecording, ReadingStopsAtTheMostThatIsWanted) {
  EXPECT_EQ(Samples("1\n2\n3\n", {.most = 2}).size(), 2U);
  EXPECT_TRUE(ReadBytes("1\n2\n\n3\n", {.most = 2}).read.more);
  EXPECT_FALSE(ReadBytes("1\n2\n\n", {.most = 2}).read.more);
  EXPECT_EQ(Samples(Atf(2, "", "0 1\n1 2\n2 3\n"), {.most = 2}).size(), 2U);
}

/// For any bytes the reader ends, and never returns more samples than the text has words.
TEST(TextRecording, EveryCutAndRandomBytesAreSurvived) {
  const std::string whole = Atf(3, "\"SignalsExported=a,b\"\n", "0 1 2\n.001 3 4\n.002 5 6\n.003 7 8\n");
  for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
    EXPECT_LE(Samples(whole.substr(0, cut)).size(), 4U);
  }
  std::mt19937 random(7);
  for (int round = 0; round < 3'000; ++round) {
    std::string bytes = whole;
    for (int k = 0; k < 3; ++k) bytes[random() % bytes.size()] = static_cast<char>(random());
    EXPECT_LE(Samples(bytes).size(), bytes.size());
  }
}

}  // namespace
}  // namespace zelvane
