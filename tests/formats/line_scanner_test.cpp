#include "formats/line_scanner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>

namespace zelvane {
namespace {

/// Compares our scan of `text` with that of scanf: the value and the characters used.
template <typename T>
void ExpectAsScanf(const std::string& text, const char* format) {
  T theirs = -77;
  int used = 0;
  const bool scanned = std::sscanf(text.c_str(), format, &theirs, &used) == 1;
  T ours = -77;
  std::string_view rest = text;
  const Scan scan = ScanNumber(rest, ours);
  if (!scanned) {
    EXPECT_EQ(scan, Scan::Missing) << text;
    return;
  }
  EXPECT_EQ(text.size() - rest.size(), static_cast<std::size_t>(used)) << text;
  if (scan == Scan::Refused) {
    // scanf gives infinity here, or any int.
    if constexpr (std::is_floating_point_v<T>) {
      EXPECT_FALSE(std::isfinite(theirs)) << text;
    }
    EXPECT_EQ(ours, -77) << text;
  } else {
    EXPECT_EQ(scan, Scan::Taken) << text;
    EXPECT_EQ(ours, theirs) << text;
  }
}

TEST(LineScanner, ScansWhatScanfScans) {
  // clang-format off
  const char* parts[] = {
      "0", "1", "9", "12", "3.7", ".", "5", "e", "E", "+", "-", "e5", "e-3", " ", "\t", "x", "0x", "f",
      "1p3", "nan", "INF", "1.", ".5", "1e999", "1e-999", "1e-40", "abc", "p", "1e+", "00000", "2147483647",
      "2147483648", "-2147483649", "0.0000001", "99999999999999999999", "123456789012345678901234567890",};
  // clang-format on
  std::mt19937 random(20);
  for (int n = 0; n < 200'000 && !::testing::Test::HasFailure(); ++n) {
    std::string text;
    for (auto k = 1 + random() % 4; k > 0; --k) text += parts[random() % std::size(parts)];
    // There scanf reads a single point as 0, and fails for the begin of "infinity".
    if (text.find("0x.") != std::string::npos || text.find("INFI") != std::string::npos) continue;
    ExpectAsScanf<int>(text, "%d%n");
    ExpectAsScanf<float>(text, "%f%n");
    ExpectAsScanf<double>(text, "%lf%n");
  }
}

TEST(LineScanner, ANumberOfManyDigitsTooSmallForItsTypeIs0) {
  const std::string tiny = "0." + std::string(500, '0') + "1e3";
  std::string_view rest = tiny;
  float value = 5;
  EXPECT_EQ(ScanNumber(rest, value), Scan::Taken);
  EXPECT_EQ(value, 0.0F);
}

TEST(LineScanner, GivesEachLineOnceAndTellsWhetherItEnded) {
  std::string_view text = "one\r\n\ntwo\rthree\nlast";
  std::string seen;
  while (const auto line = NextLine(text)) {
    seen.append("<").append(line->text).append(line->ended ? ">" : "");
  }
  EXPECT_EQ(seen, "<one><><two\rthree><last");
  EXPECT_FALSE(NextLine(text));
}

}  // namespace
}  // namespace zelvane
