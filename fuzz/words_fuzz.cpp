// Any bytes as a line of a script: its words, quoted again, are the same words.
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "headless/words.h"
#include "scratch_file.h"
#include "screen/number_entry.h"
#include "screen/observer.h"

namespace zelvane {
namespace {

void CheckOne(std::string_view line) {
  const auto words = SplitWords(line);
  if (!words) return;
  std::string again;
  for (const std::string& word : *words) {
    again += QuoteWord(word) + ' ';
    static_cast<void>(WholeNumber(word));
    static_cast<void>(Shortened(word));
    for (const char* unit : {"", "M", "mV", "ms"}) {
      const auto value = ParseEntry(word, unit);
      if (value && std::isfinite(*value) && ParseEntry(EntryText(*value), "") != value)
        Fault("a number written is another one");
    }
  }
  if (SplitWords(again) != words) Fault("quoted words are other words");
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne({reinterpret_cast<const char*>(data), size});
  return 0;
}
