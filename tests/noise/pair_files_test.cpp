#include "noise/pair_files.h"

#include <vector>

#include "parameters/parameters_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class PairFilesTest : public StoreTest {
 protected:
  std::string path = folder.File("pairs.txt");
};

TEST_F(PairFilesTest, PairsComeBackAsTheyWereWritten) {
  const Floats first{1.5F, -2e-9F, 0.0F};
  const Floats second{0.1F, 3e8F, -1.0F};
  ASSERT_EQ(PairTextWrite(path, first, second), Outcome::Done);
  EXPECT_EQ(ReadWholeFile(path),
            "1.500000e+00, 1.000000e-01\n-2.000000e-09, 3.000000e+08\n0.000000e+00, -1.000000e+00\n");
  Floats a(10);
  Floats b(10);
  EXPECT_EQ(PairTextRead(path, a, b), 3);
  EXPECT_EQ(Model.RecordPoints, 3);
  a.resize(3);
  b.resize(3);
  EXPECT_EQ(a, first);
  EXPECT_EQ(b, second);
  EXPECT_EQ(PairTextRead(path, a, b), 2) << "one row less than there is room for";
  Parameters.FitMode = FitSublevels;
  EXPECT_EQ(PairTextRead(path, a, b), 3);
}

TEST_F(PairFilesTest, ReadingEndsAtARowWithoutTwoNumbers) {
  Floats a(10);
  Floats b(10);
  for (const auto& [text, rows] :
       {std::pair{"1,2\r\n\r\n 3 ,4\r\n", 1}, {"1, 2\n\n3, 4\n5\n6, 7\n", 2}, {"x", 0}, {"", 0}}) {
    WriteWholeFile(path, text);
    EXPECT_EQ(PairTextRead(path, a, b), rows) << text;
  }
  EXPECT_EQ(PairTextRead(folder.File("none"), a, b), 0);
  EXPECT_EQ(PopupTexts(), Texts{"IO Error 100: FileOpen failed"});
}

TEST_F(PairFilesTest, TriplesBeginAtTimeZero) {
  Model.ADInterval = 0.5F;
  const std::vector<double> first{9, 1, 2};
  const std::vector<double> second{9, 3, 1e-100};
  ASSERT_EQ(TripleTextWrite(path, first, second, 1), Outcome::Done);
  EXPECT_EQ(ReadWholeFile(path),
            "0.000000e+00, 1.000000e+00, 3.000000e+00\n5.000000e-01, 2.000000e+00, 1.000000e-100\n");
}

}  // namespace
}  // namespace zelvane
