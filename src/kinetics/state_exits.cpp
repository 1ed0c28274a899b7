#include "kinetics/state_exits.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "kinetics/rate_factor.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::size_t MaxKeptStretches = std::size_t{1} << 18;  // limit for one state
constexpr unsigned VoltageBit = 1U;                             // of a set of profiles
constexpr std::size_t MaxKeptExits = std::size_t{1} << 20;      // limit for all states: 64 MB

/// Returns the profiles that the rate from `a` to `b` depends on.
unsigned ProfilesOf(const DependenceTables& depend, std::size_t a, std::size_t b) {
  unsigned profiles = depend.Volt[a][b] == 1 ? VoltageBit : 0U;
  for (unsigned d = 1; d <= MaxDrugs; ++d) {
    if (depend.Drug[d][a][b] != 0) profiles |= 1U << d;
  }
  return profiles;
}

std::size_t Connection(const ChannelTables& tables, std::size_t state, int k) {
  return Index(tables.connection[state][Index(k)]);
}

unsigned ProfilesOfState(const ChannelTables& tables, std::size_t state) {
  unsigned profiles = 0;
  for (int k = 1; k <= tables.connectionCount[state]; ++k) {
    profiles |= ProfilesOf(tables.depend, state, Connection(tables, state, k));
  }
  return profiles;
}

/// Returns the points at which a profile differs from the point before. Values are compared as floats.
std::vector<std::int32_t> ChangesOf(std::span<const float> profile) {
  std::vector<std::int32_t> changes;
  for (std::size_t p = 1; p < profile.size(); ++p) {
    if (profile[p] != profile[p - 1]) changes.push_back(static_cast<std::int32_t>(p));
  }
  return changes;
}

StimulusSteps StepsOf(const ExitBook& book, unsigned profiles) {
  StimulusSteps steps;
  steps.profiles = profiles;
  if (profiles == 0) return steps;
  steps.stretch.assign(Index(book.last) + 1, 0);
  for (std::size_t k = 0; k <= MaxDrugs; ++k) {
    if ((profiles >> k & 1U) == 0) continue;
    for (const std::int32_t p : book.changes[k]) steps.stretch[Index(p)] = 1;
  }
  int changes = 0;
  for (std::int32_t& stretch : steps.stretch) stretch = changes += stretch;
  steps.stretches = changes + 1;
  return steps;
}

void AssignSteps(ExitBook& book) {
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    const unsigned profiles = ProfilesOfState(book.tables, s);
    const auto same = [profiles](const StimulusSteps& steps) { return steps.profiles == profiles; };
    const auto found = std::find_if(book.steps.begin(), book.steps.end(), same);
    book.stepsOf[s] = Index(found - book.steps.begin());
    if (found == book.steps.end()) book.steps.push_back(StepsOf(book, profiles));
  }
}

void FindDrugs(ExitBook& book) {
  bool former = false;
  for (int p = 0; p <= book.last; ++p) {
    bool present = false;
    for (std::size_t d = 1; d <= MaxDrugs; ++d) present |= book.profile[d][Index(p)] > 0.0F;
    if (present == former) continue;
    (present ? book.drugFrom : book.drugUntil).push_back(p);
    former = present;
  }
  if (former) book.drugUntil.push_back(NeverChanges);
}

void ForgetPlaces(ExitBook& book) {
  book.known.clear();
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    const auto stretches = Index(book.steps[book.stepsOf[s]].stretches);
    const bool used = book.tables.connectionCount[s] > 0;
    book.place[s].assign(used ? std::min(stretches, MaxKeptStretches) : 1, -1);
  }
}

/// Returns the effective rate from `a` to `b`: a float after every step, drugs in their order, the
/// exponential (formed in double) last.
float EffectiveRate(const ExitBook& book, std::size_t a, std::size_t b, std::size_t point) {
  const DependenceTables& depend = book.tables.depend;
  float factor = 1.0F;
  for (std::size_t d = 1; d <= MaxDrugs; ++d) {
    if (depend.Drug[d][a][b] != 0) factor *= book.profile[d][point];
  }
  if (depend.Volt[a][b] == 1) {
    const double coefficient = VoltageCoefficient(depend.Steepness[a][b], book.tables.temperature);
    const auto volts = static_cast<double>(book.profile[0][point]);
    factor = static_cast<float>(static_cast<double>(factor) * std::exp(volts * coefficient));
  }
  const float rate = book.tables.rate[a][b] * factor;
  return rate > 0.0F ? rate : 0.0F;
}

/// The exits of a state that can be taken, and their rates.
struct OpenExits {
  std::array<std::size_t, MaxConnections> to{};
  std::array<float, MaxConnections> rate{};
  std::size_t count = 0;
  unsigned profiles = 0;   // that the exits depend on
  unsigned watched = 0;    // that all exits with a rate depend on
  float total = 0.0F;      // sum of all exits
  float openTotal = 0.0F;  // sum of the exits that can be taken
  bool waits = false;      // the model's rate of some exit is above MinRate
};

OpenExits FindOpenExits(const ExitBook& book, std::size_t state, std::size_t point) {
  OpenExits open;
  for (int k = 1; k <= book.tables.connectionCount[state]; ++k) {
    const std::size_t to = Connection(book.tables, state, k);
    const float rate = EffectiveRate(book, state, to, point);
    const unsigned profiles = ProfilesOf(book.tables.depend, state, to);
    open.waits |= book.tables.rate[state][to] > MinRate;
    if (book.tables.rate[state][to] != 0.0F) open.watched |= profiles;
    open.total += rate;
    if (rate <= MinRate) continue;
    open.profiles |= profiles;
    open.openTotal += rate;
    open.to[open.count] = to;
    open.rate[open.count++] = rate;
  }
  return open;
}

void SetChances(const OpenExits& open, StateExits& exits) {
  exits.count = static_cast<std::uint8_t>(open.count);
  float sum = 0.0F;
  for (std::size_t k = 0; k < open.count; ++k) {
    exits.next[k] = static_cast<std::int8_t>(open.to[k]);
    sum += open.rate[k];
    if (k + 1 < open.count) exits.bound[k] = static_cast<double>(sum / open.openTotal);
  }
}

/// Returns the first point after `point` at which one of `profiles` changes.
int NextChange(const ExitBook& book, unsigned profiles, int point) {
  int next = NeverChanges;
  for (std::size_t k = 0; k <= MaxDrugs; ++k) {
    if ((profiles >> k & 1U) == 0) continue;
    const auto& changes = book.changes[k];
    const auto found = std::upper_bound(changes.begin(), changes.end(), point);
    if (found != changes.end()) next = std::min(next, static_cast<int>(*found));
  }
  return next;
}

}  // namespace

Connections ConnectionsOf(const StateTable<float>& rate) {
  Connections connections;
  for (std::size_t from = 1; from <= MaxStates; ++from) {
    std::size_t count = 0;
    for (std::size_t to = 1; to <= MaxStates; ++to) {
      if (to != from && rate[from][to] > 0.0F) connections.to[from][++count] = static_cast<int>(to);
    }
    connections.count[from] = static_cast<int>(count);
  }
  return connections;
}

ExitBook PrepareExits(const ChannelTables& tables,
                      const std::array<std::span<const float>, MaxDrugs + 1>& profile, float intervalMs,
                      int numPoints) {
  ExitBook book;
  book.tables = tables;
  book.intervalMs = intervalMs;
  const std::size_t points = std::min(Index(numPoints) + 1, profile[0].size());
  book.last = static_cast<int>(points) - 1;
  unsigned used = 0;
  for (std::size_t s = 1; s <= MaxStates; ++s) used |= ProfilesOfState(tables, s);
  for (std::size_t k = 0; k <= MaxDrugs; ++k) {
    book.profile[k] = profile[k].first(points);
    if ((used >> k & 1U) != 0) book.changes[k] = ChangesOf(book.profile[k]);
  }
  AssignSteps(book);
  FindDrugs(book);
  ForgetPlaces(book);
  return book;
}

void ForgetExits(ExitBook& book, const StateTable<float>& rate) {
  book.tables.rate = rate;
  ForgetPlaces(book);
}

StateExits CompileExits(const ExitBook& book, int state, int point) {
  StateExits exits;
  const auto s = Index(state);
  const int connections = book.tables.connectionCount[s];
  if (connections == 0) return exits;
  const int p = std::min(point, book.last);
  const OpenExits open = FindOpenExits(book, s, Index(p));
  if (open.count == 0) {
    exits.kind = open.waits ? ExitKind::Waiting : ExitKind::Shut;
    exits.changeAt = NextChange(book, open.watched & VoltageBit, p);
    return exits;
  }
  SetChances(open, exits);
  const auto total = static_cast<double>(connections == 2 ? open.total : open.openTotal);
  exits.kind = open.profiles == 0 ? ExitKind::Constant : ExitKind::Dependent;
  exits.scaleMs = -1000.0 / total;
  if (open.profiles != 0) {
    exits.leave = 1.0 - std::exp(-total * static_cast<double>(book.intervalMs) / 1000.0);
  }
  exits.changeAt = NextChange(book, open.watched, p);
  return exits;
}

const StateExits& LearnExits(ExitBook& book, int state, int point) {
  const auto s = Index(state);
  const StimulusSteps& steps = book.steps[book.stepsOf[s]];
  const auto p = Index(std::min(point, book.last));
  const auto stretch = Index(steps.profiles == 0 ? 0 : steps.stretch[p]);
  if (stretch >= book.place[s].size() || book.known.size() >= MaxKeptExits) {
    book.unkept = CompileExits(book, state, point);
    return book.unkept;
  }
  book.place[s][stretch] = static_cast<std::int32_t>(book.known.size());
  return book.known.emplace_back(CompileExits(book, state, point));
}

int NextDrug(const ExitBook& book, int point) {
  const int p = std::min(point, book.last);
  const auto until = std::upper_bound(book.drugUntil.begin(), book.drugUntil.end(), p);
  if (until == book.drugUntil.end()) return NeverChanges;
  const auto interval = Index(until - book.drugUntil.begin());
  return std::max(point, static_cast<int>(book.drugFrom[interval]));
}

}  // namespace zelvane
