// The memory of the large arrays: zero at first, and zero again where it is given back, exactly there.
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
  struct Part {
    std::size_t first, count;
  };
  for (const Part& part : {Part{0, 1}, Part{1, 0}, Part{5, 300}, Part{1023, 2}, Part{1000, 50'000},
                           Part{1024, 1024}, Part{99'000, 1000}, Part{0, Count}}) {
    SCOPED_TRACE(testing::Message() << part.count << " from " << part.first);
    std::ranges::fill(floats, -1.0F);
    ReleaseZeroPages(floats.subspan(part.first, part.count));
    for (std::size_t i = 0; i < Count; ++i) {
      const bool inside = i >= part.first && i < part.first + part.count;
      ASSERT_EQ(floats[i], inside ? 0.0F : -1.0F) << i;
    }
  }
}

}  // namespace
}  // namespace zelvane
