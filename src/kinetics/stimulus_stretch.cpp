// Finds stretches of constant stimulus, and the factors of the rates over them.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>

#include "kinetics/compiled_scheme.h"
#include "platform/index.h"

namespace zelvane {
namespace {

/// Points searched at a time for the end of a stretch: more would slow short runs, fewer long runs.
constexpr int LongestStretch = 16384;

bool SameBits(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// Returns the first point after `first` and below `end` at which the profile differs from its value at
/// `first`, or `end`.
int ConstantUntil(std::span<const float> profile, int first, int end) {
  constexpr int block = 512;
  const float* p = profile.data();
  int i = first + 1;
  // A block that equals itself shifted by one point holds one value.
  const auto wholeBlock = [&] {
    const void* here = p + i - 1;
    const void* moved = p + i;
    return SameBits(p[i - 1], p[i]) && std::memcmp(here, moved, block * sizeof(float)) == 0;
  };
  while (end - i >= block && wholeBlock()) i += block;
  while (i < end && SameBits(p[i - 1], p[i])) ++i;
  return i;
}

/// Returns the earliest time whose point is not below `index`, found in float steps from the product.
float TimeOfPoint(const StimulusView& stimulus, int index) {
  constexpr float never = std::numeric_limits<float>::infinity();
  if (index >= static_cast<int>(stimulus.profile[0].size())) return never;
  const double seconds = 0.001 * static_cast<double>(stimulus.intervalMs);
  auto t = static_cast<float>((index - stimulus.offset) * seconds);
  while (PointIndex(stimulus, t) >= index && t > 0.0F) t = std::nextafter(t, 0.0F);
  while (PointIndex(stimulus, t) < index && t < never) t = std::nextafter(t, never);
  return t;
}

/// Returns one kind of factor: a float after every step, the drugs in their order, the exponential last.
float FactorOf(const FactorKind& kind, const StimulusCursor& cursor, const StimulusView& stimulus,
               std::size_t point) {
  float factor = 1.0F;
  for (std::size_t d = 1; d <= MaxDrugs; ++d) {
    if ((kind.drugs >> d & 1U) != 0) factor *= stimulus.profile[d][point];
  }
  if (kind.exponential < 0) return factor;
  return static_cast<float>(static_cast<double>(factor) * cursor.exponential[Index(kind.exponential)]);
}

void SetExponentials(StimulusCursor& cursor, const CompiledScheme& scheme, float volts) {
  for (std::size_t e = 0; e < Index(scheme.coefficients); ++e) {
    cursor.exponential[e] = std::exp(static_cast<double>(volts) * scheme.coefficient[e]);
  }
  cursor.volts = volts;
}

/// Calculates the factor of each kind at a point.
void CalculateKinds(StimulusCursor& cursor, const CompiledScheme& scheme, const StimulusView& stimulus,
                    std::size_t point, std::span<float> value) {
  const float volts = stimulus.profile[0][point];
  if (!SameBits(volts, cursor.volts)) SetExponentials(cursor, scheme, volts);
  for (std::size_t k = 0; k < Index(scheme.kinds); ++k) {
    value[k] = FactorOf(scheme.kind[k], cursor, stimulus, point);
  }
}

void SetFactors(const CompiledScheme& scheme, std::span<const float> value, StimulusStretch& stretch) {
  for (std::size_t i = 0; i < Index(scheme.slots); ++i) {
    const FactorSlot& slot = scheme.slot[i];
    stretch.factor.row[Index(slot.row)][Index(slot.lane)] = value[Index(slot.kind)];
  }
}

/// Returns the number of the last entry that begins at or before `index`, or the number of entries.
std::size_t PageOf(const StimulusCursor& cursor, int index) {
  const auto& entries = cursor.book->entries;
  for (std::size_t page = cursor.page; page < std::min(cursor.page + 2, entries.size()); ++page) {
    if (index >= entries[page].first && index < entries[page].end) return page;
  }
  const auto after = std::upper_bound(entries.begin(), entries.end(), index,
                                      [](int i, const StretchBook::Entry& entry) { return i < entry.first; });
  return after == entries.begin() ? entries.size() : static_cast<std::size_t>(after - entries.begin()) - 1;
}

/// Takes the stretch with point `index` from the book. Returns false when the book has none.
bool TakeFromBook(StimulusCursor& cursor, const CompiledScheme& scheme, int index, StimulusStretch& stretch) {
  const std::size_t page = PageOf(cursor, index);
  if (page == cursor.book->entries.size() || index >= cursor.book->entries[page].end) return false;
  const StretchBook::Entry& entry = cursor.book->entries[page];
  cursor.page = page;
  stretch.first = entry.first;
  stretch.end = entry.end;
  stretch.endTime = entry.endTime;
  SetFactors(scheme, std::span(cursor.book->values).subspan(entry.values, Index(scheme.kinds)), stretch);
  return true;
}

/// Adds a stretch to the book, if there is room.
void AddToBook(StretchBook& book, const StimulusStretch& stretch, std::span<const float> value) {
  constexpr std::size_t AboutAnEntry = sizeof(StretchBook::Entry) / sizeof(float);
  if (book.values.size() + AboutAnEntry * book.entries.size() + value.size() > MaxBookValues) return;
  const auto place = std::upper_bound(book.entries.begin(), book.entries.end(), stretch.first,
                                      [](int i, const StretchBook::Entry& entry) { return i < entry.first; });
  book.entries.insert(place, {stretch.first, stretch.end, stretch.endTime, book.values.size()});
  book.values.insert(book.values.end(), value.begin(), value.end());
}

}  // namespace

int PointIndex(const StimulusView& stimulus, float t) {
  const int last = static_cast<int>(stimulus.profile[0].size()) - 1;
  const double point = static_cast<double>(t) / (0.001 * static_cast<double>(stimulus.intervalMs));
  if (!(point > 0.0)) return std::min(stimulus.offset, last);
  if (point >= static_cast<double>(last - stimulus.offset)) return last;
  return static_cast<int>(point) + stimulus.offset;
}

void StartCursor(StimulusCursor& cursor, const CompiledScheme& scheme, StretchBook* book) {
  for (StimulusStretch& stretch : cursor.stretch) {
    stretch.first = stretch.end = 0;
    stretch.lastUse = 0;
    // Rates that do not depend on the stimulus keep the factor 1.
    for (std::size_t row = 0; row < Index(scheme.rows); ++row) {
      stretch.factor.row[row].fill(1.0F);
    }
  }
  cursor.book = book;
  cursor.page = 0;
  cursor.uses = 0;
  SetExponentials(cursor, scheme, 0.0F);
}

const StimulusStretch& StretchAt(StimulusCursor& cursor, const CompiledScheme& scheme,
                                 const StimulusView& stimulus, int index) {
  StimulusStretch* oldest = &cursor.stretch[0];
  for (StimulusStretch& stretch : cursor.stretch) {
    if (index >= stretch.first && index < stretch.end) {
      stretch.lastUse = ++cursor.uses;
      return stretch;
    }
    if (stretch.lastUse < oldest->lastUse) oldest = &stretch;
  }
  StimulusStretch& stretch = *oldest;
  stretch.lastUse = ++cursor.uses;
  if (cursor.book != nullptr && TakeFromBook(cursor, scheme, index, stretch)) return stretch;
  const int size = static_cast<int>(stimulus.profile[0].size());
  stretch.first = index;
  stretch.end = std::min(size, index + LongestStretch);
  for (std::size_t p = 0; p <= MaxDrugs; ++p) {
    if ((scheme.profiles >> p & 1U) != 0)
      stretch.end = ConstantUntil(stimulus.profile[p], index, stretch.end);
  }
  stretch.endTime = TimeOfPoint(stimulus, stretch.end);
  std::array<float, MaxRates> room;
  const auto value = std::span(room).first(Index(scheme.kinds));
  CalculateKinds(cursor, scheme, stimulus, Index(stretch.first), value);
  SetFactors(scheme, value, stretch);
  if (cursor.book != nullptr) AddToBook(*cursor.book, stretch, value);
  return stretch;
}

}  // namespace zelvane
