// Counts to user units: stores past the caches against plain ones, at every alignment and length about a
// register's width.
#include "formats/abf/user_units.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

namespace zelvane {
namespace {

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
      std::vector<float> plain(64, Untouched);
      std::vector<float> streamed = plain;
      // The counts begin elsewhere than the samples, so that the two are never aligned together by chance.
      const auto from = std::span<const std::int16_t>(counts).subspan(length % 3, length);
      ToUserUnits(from, Scale, Offset, std::span(plain).subspan(start, length));
      ToUserUnitsPastCaches(from, Scale, Offset, std::span(streamed).subspan(start, length));
      ASSERT_EQ(streamed, plain) << length << " samples from " << start;
    }
  }
}

}  // namespace
}  // namespace zelvane
