// Terms and factor kinds of a scheme.
#include "kinetics/compiled_scheme.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>

#include "kinetics/lanes.h"
#include "kinetics/rate_factor.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int NoKind = -1;

bool Feeds(const SchemeTables& tables, int from) {
  for (std::size_t to = 1; to <= MaxStates; ++to) {
    const auto source = Index(from);
    if (to != source && tables.on[to] != 0 && tables.rate[source][to] != 0.0F) return true;
  }
  return false;
}

void AssignLanes(const SchemeTables& tables, CompiledScheme& scheme) {
  for (int s = 1; s <= MaxStates; ++s) {
    const bool on = tables.on[Index(s)] != 0;
    if (!on && !Feeds(tables, s)) continue;
    const auto lane = Index(scheme.lanes++);
    scheme.state[lane] = s;
    scheme.on[lane] = on;
  }
  scheme.vectors = std::max(1, (scheme.lanes + LanesPerVector - 1) / LanesPerVector);
}

/// Returns the index of `wanted` among the first `count` of `items`. Appends `wanted` when `same` finds no
/// equal item.
template <typename Items, typename Item, typename Same>
int IndexOf(Items& items, int& count, const Item& wanted, Same same) {
  for (int i = 0; i < count; ++i) {
    if (same(items[Index(i)], wanted)) return i;
  }
  items[Index(count)] = wanted;
  return count++;
}

/// Returns the kind of factor of the rate from `a` to `b`; NoKind when the rate does not depend on the
/// stimulus.
int KindOf(const SchemeTables& tables, std::size_t a, std::size_t b, CompiledScheme& scheme) {
  FactorKind kind;
  for (unsigned d = 1; d <= MaxDrugs; ++d) {
    if (tables.depend.Drug[d][a][b] != 0) kind.drugs |= 1U << d;
  }
  scheme.profiles |= kind.drugs;
  if (tables.depend.Volt[a][b] == 1) {
    const double coefficient = VoltageCoefficient(tables.depend.Steepness[a][b], tables.temperature);
    kind.exponential = IndexOf(scheme.coefficient, scheme.coefficients, coefficient, [](double x, double y) {
      return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
    });
    scheme.profiles |= 1U;
  }
  if (kind.drugs == 0 && kind.exponential < 0) return NoKind;
  return IndexOf(scheme.kind, scheme.kinds, kind, [](const FactorKind& x, const FactorKind& y) {
    return x.drugs == y.drugs && x.exponential == y.exponential;
  });
}

struct Term {
  int lane = 0;   // lane to which the flow is added
  int other = 0;  // lane at the other end
  bool inflow = true;
  float rate = 0.0F;
  int kind = NoKind;
};

struct TermList {
  std::array<Term, MaxTerms> term{};
  int count = 0;
};

/// Returns all terms in their order: for each state, and each other state, the inflow and then the outflow.
TermList ListTerms(const SchemeTables& tables, CompiledScheme& scheme) {
  TermList list;
  const auto add = [&](int lane, int other, bool inflow) {
    const auto here = Index(scheme.state[Index(lane)]);
    const auto there = Index(scheme.state[Index(other)]);
    const std::size_t from = inflow ? there : here;
    const std::size_t to = inflow ? here : there;
    const float rate = tables.rate[from][to];
    if (rate == 0.0F) return;
    const int kind = KindOf(tables, from, to, scheme);
    list.term[Index(list.count++)] = {lane, other, inflow, inflow ? rate : -rate, kind};
  };
  for (int lane = 0; lane < scheme.lanes; ++lane) {
    if (!scheme.on[Index(lane)]) continue;
    for (int other = 0; other < scheme.lanes; ++other) {
      if (other == lane) continue;
      add(lane, other, true);
      add(lane, other, false);
    }
  }
  return list;
}

/// Returns the length of the longest list of a state.
int LongestList(const TermList& list) {
  std::array<int, MaxLanes> length{};
  for (int i = 0; i < list.count; ++i) ++length[Index(list.term[Index(i)].lane)];
  return *std::max_element(length.begin(), length.end());
}

/// Returns whether gathering the k-th terms is quicker than visiting all pairs of lanes. One vector gets the
/// sources of a row with one permutation. With two or three vectors each row needs as many permutations, and
/// a choice between them.
bool GatheringPays(const CompiledScheme& scheme, int longest) {
  if (scheme.vectors == 1) return true;
  return longest * scheme.vectors <= 2 * scheme.lanes;
}

/// Places every term in its row. A row without a term for a lane adds 0 times the lane's own occupancy.
void PlaceTerms(const TermList& list, CompiledScheme& scheme, std::span<TermPlace> place) {
  for (auto& row : scheme.source.row) {
    for (int lane = 0; lane < MaxLanes; ++lane) row[Index(lane)] = lane;
  }
  std::array<int, MaxLanes> used{};
  for (int i = 0; i < list.count; ++i) {
    const Term& term = list.term[Index(i)];
    const auto lane = Index(term.lane);
    const int row = scheme.gathered ? used[lane]++ : 2 * term.other + (term.inflow ? 0 : 1);
    scheme.source.row[Index(row)][lane] = term.inflow ? term.other : term.lane;
    scheme.rate.row[Index(row)][lane] = term.rate;
    if (term.kind != NoKind) scheme.slot[Index(scheme.slots++)] = {row, term.lane, term.kind};
    if (place.empty()) continue;
    const int here = scheme.state[lane];
    const int there = scheme.state[Index(term.other)];
    place[Index(i)] = {row, term.lane, term.inflow ? there : here, term.inflow ? here : there, term.inflow};
  }
}

}  // namespace

CompiledScheme CompileScheme(const SchemeTables& tables) {
  int places = 0;
  return CompileScheme(tables, {}, places);
}

CompiledScheme CompileScheme(const SchemeTables& tables, std::span<TermPlace> place, int& places) {
  CompiledScheme scheme;
  AssignLanes(tables, scheme);
  const TermList list = ListTerms(tables, scheme);
  const int longest = LongestList(list);
  scheme.gathered = GatheringPays(scheme, longest);
  scheme.rows = scheme.gathered ? std::max(1, longest) : 2 * scheme.lanes;
  PlaceTerms(list, scheme, place);
  places = list.count;
  return scheme;
}

}  // namespace zelvane
