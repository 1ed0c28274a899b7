#include "trace/trace_export.h"

#include "model/model_lines.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class TraceExportTest : public StoreTest {
 protected:
  TemporaryFolder folder;
};

TEST_F(TraceExportTest, WritesEachFormatByItsExtension) {
  const float samples[] = {0.0F, -1.5F, 3.4e-7F};
  struct Case {
    const char* file;
    const char* content;
  };
  const Case cases[] = {
      {"a.txt", "1.000000e-02\n0.000000e+00\n-1.500000e+00\n3.400000e-07\n"},
      {"a.ATF",
       "ATF\t1.0\n3\t2\n\"Type=\"\n\"Comment=\"\n\"SignalsExported=Current pA\"\n\"Time (s)\"\t\"Current "
       "pA\"\n"
       "0.000000e+00\t0.000000e+00\n1.000000e-05\t-1.500000e+00\n2.000000e-05\t3.400000e-07\n"},
      {"a.csv", "time_ms,Current pA\n0,0\n0.01,-1.5\n0.02,3.40000014e-07\n"}};
  for (const Case& test : cases) {
    const std::string path = folder.File(test.file);
    ASSERT_TRUE(WriteTraceFile(path, samples, 0.01F, "Current pA")) << path;
    EXPECT_EQ(ReadWholeFile(path), test.content) << path;
  }
  for (const char* name : {"a.abf", "a", "a.", ".csv"}) {
    EXPECT_FALSE(WriteTraceFile(folder.File(name), samples, 0.01F, "Current pA")) << name;
  }
  EXPECT_FALSE(WriteTraceFile(folder.File("none/a.csv"), samples, 0.01F, "Current pA"));
}

TEST_F(TraceExportTest, QuotesTheNamesThatNeedIt) {
  const float sample[] = {1.0F};
  const std::string csv = folder.File("a.csv");
  const std::string atf = folder.File("a.atf");
  ASSERT_TRUE(WriteTraceFile(csv, sample, 1.0F, "a \"b\", c"));
  EXPECT_EQ(LinesOf(ReadWholeFile(csv))[0], "time_ms,\"a \"\"b\"\", c\"");
  ASSERT_TRUE(WriteTraceFile(atf, sample, 1.0F, "a \"b\"\tc\nd"));
  EXPECT_EQ(LinesOf(ReadWholeFile(atf))[4], "\"SignalsExported=a 'b' c d\"");
}

}  // namespace
}  // namespace zelvane
