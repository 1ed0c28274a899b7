// Parts of the sweeps of other programs' recordings. What the whole sweeps hold is told in
// trace/recordings_test.cpp.
#include <algorithm>
#include <vector>

#include "formats/abf/abf.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

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
    struct Nothing {
      int channel, sweep, first;
    };
    for (const Nothing& none :
         {Nothing{channel, 2, samples}, Nothing{channel, 2, -1}, Nothing{channel, sweeps + 1, 0},
          Nothing{channel, 0, 0}, Nothing{9, 1, 0}, Nothing{-1, 1, 0}}) {
      EXPECT_EQ(ReadSweep(*file, none.channel, none.sweep, none.first, whole), 0)
          << none.channel << ' ' << none.sweep << ' ' << none.first;
    }
  }
}

}  // namespace
}  // namespace zelvane
