// Parts of the sweeps of other programs' recordings (trace/recordings_test.cpp checks whole sweeps), and the
// conversion of counts to user units.
#include <limits>
#include <random>
#include <vector>

#include "formats/abf/abf.h"
#include "formats/abf/user_units.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

/// A part of a sweep equals that part of the whole sweep, for every kind of multiplexing.
TEST(AbfRecordings, APartOfASweepIsReadAlone) {
  for (const char* name :
       {"abf1/190619B_0003.abf", "abf2/18702001-step.abf", "derived/float_episodic_2ch.abf"}) {
    AbfHeader header;
    int samples = 0;
    int sweeps = 0;
    const AbfHandle file = OpenABFFile(Recordings + name, header, samples, sweeps);
    ASSERT_NE(file, nullptr) << name;
    const int channel = header.samplingSequence[1];
    Floats whole(static_cast<std::size_t>(samples));
    ASSERT_EQ(ReadSweep(*file, channel, 2, 0, whole), samples);
    for (const int first : {1, samples / 3, samples - 5}) {
      Floats part(100);
      const int count = std::min(100, samples - first);
      ASSERT_EQ(ReadSweep(*file, channel, 2, first, part), count);
      EXPECT_TRUE(std::equal(part.begin(), part.begin() + count, whole.begin() + first)) << name;
    }
    using Nothing = std::tuple<int, int, int>;
    for (const auto& [input, sweep, first] :
         {Nothing{channel, 2, samples}, Nothing{channel, 2, -1}, Nothing{channel, sweeps + 1, 0},
          Nothing{channel, 0, 0}, Nothing{9, 1, 0}, Nothing{-1, 1, 0}}) {
      EXPECT_EQ(ReadSweep(*file, input, sweep, first, whole), 0) << input << ' ' << sweep << ' ' << first;
    }
  }
}

TEST(UserUnits, StoresPastTheCachesGiveTheSameSamplesAndNoOthers) {
  constexpr float Untouched = -1e30F;
  constexpr float Scale = 0.0123F;
  constexpr float Offset = -3.7F;
  std::mt19937 random(7);
  std::vector<std::int16_t> counts(64);
  for (auto& count : counts) count = static_cast<std::int16_t>(random());
  counts[0] = std::numeric_limits<std::int16_t>::min();
  counts[11] = std::numeric_limits<std::int16_t>::max();
  for (std::size_t start = 0; start < 9; ++start) {
    for (std::size_t length = 0; length < 40; ++length) {
      Floats plain(64, Untouched);
      Floats streamed = plain;
      // Counts and samples begin at different places, so that they are never aligned together by chance.
      const auto from = std::span<const std::int16_t>(counts).subspan(length % 3, length);
      ToUserUnits(from, Scale, Offset, std::span(plain).subspan(start, length));
      ToUserUnitsPastCaches(from, Scale, Offset, std::span(streamed).subspan(start, length));
      ASSERT_EQ(streamed, plain) << length << " samples from " << start;
    }
  }
}

}  // namespace
}  // namespace zelvane
