#include "kinetics/scheme_memory.h"

#include "platform/index.h"

namespace zelvane {
namespace {

bool HasRate(const SchemeTables& tables, std::size_t from, std::size_t to) {
  return from != to && tables.rate[from][to] != 0.0F;
}

/// Returns whether the same states are on and the same rates are not 0.
bool HasSameTerms(const SchemeMemory& memory, const SchemeTables& tables) {
  if (!memory.prepared || memory.on != tables.on) return false;
  for (std::size_t a = 1; a <= MaxStates; ++a) {
    for (std::size_t b = 1; b <= MaxStates; ++b) {
      if (HasRate(tables, a, b) != memory.listed[a][b]) return false;
    }
  }
  return true;
}

void Prepare(SchemeMemory& memory, const SchemeTables& tables) {
  memory.scheme = CompileScheme(tables, memory.place, memory.places);
  memory.on = tables.on;
  for (std::size_t a = 1; a <= MaxStates; ++a) {
    for (std::size_t b = 1; b <= MaxStates; ++b) memory.listed[a][b] = HasRate(tables, a, b);
  }
  ClearBook(memory.book, memory.book.offset);
  memory.prepared = true;
}

}  // namespace

const CompiledScheme& PreparedScheme(SchemeMemory& memory, const SchemeTables& tables) {
  if (!HasSameTerms(memory, tables)) {
    Prepare(memory, tables);
    return memory.scheme;
  }
  for (std::size_t i = 0; i < Index(memory.places); ++i) {
    const TermPlace& place = memory.place[i];
    const float rate = tables.rate[Index(place.from)][Index(place.to)];
    memory.scheme.rate.row[Index(place.row)][Index(place.lane)] = place.inflow ? rate : -rate;
  }
  return memory.scheme;
}

}  // namespace zelvane
