// The memory of the large arrays: zero at first, and zero again exactly where it is returned.
#include "platform/zero_pages.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zelvane {
namespace {

TEST(ZeroPagesTest, GivingBackAPartClearsThatPartAndNoNeighbour) {
  constexpr std::size_t Count = 100'000;
  const std::span<float> floats = TakeZeroPages(Count);
  ASSERT_EQ(floats.size(), Count);
  EXPECT_TRUE(std::ranges::all_of(floats, [](float value) { return value == 0.0F; }));
  using Part = std::pair<std::size_t, std::size_t>;
  for (const auto& [first, count] : {Part{0, 1}, Part{1, 0}, Part{5, 300}, Part{1023, 2}, Part{1000, 50'000},
                                     Part{1024, 1024}, Part{99'000, 1000}, Part{0, Count}}) {
    SCOPED_TRACE(testing::Message() << count << " from " << first);
    std::ranges::fill(floats, -1.0F);
    ReleaseZeroPages(floats.subspan(first, count));
    for (std::size_t i = 0; i < Count; ++i) {
      const bool inside = i >= first && i < first + count;
      ASSERT_EQ(floats[i], inside ? 0.0F : -1.0F) << i;
    }
  }
}

}  // namespace
}  // namespace zelvane
