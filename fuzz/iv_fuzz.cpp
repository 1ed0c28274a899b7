// Any bytes as a current-voltage relation: no point is lost, and a correction with the relation stays inside its
// arrays.
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "rscm/iv_text.h"
#include "rscm/rs_circuit.h"
#include "scratch_file.h"

namespace zelvane {
namespace {

constexpr std::size_t MostPoints = 100;

void CheckOne(std::string_view text) {
  const IvPoints points = ParseIv(text, MostPoints);
  if (points.volt.size() != points.current.size()) Fault("a voltage without its current");
  if (points.volt.size() > MostPoints) Fault("more points than asked for");
  const IvRelation relation = MakeIvRelation(points.volt, points.current);
  if (relation.volt.size() != relation.current.size()) Fault("the relation lost a point");
  for (const float volt : points.volt) static_cast<void>(RelativeCurrent(relation, volt));
  std::array<float, 8> current{-100.0F, 0.0F, 1e30F, -1e30F, 1.0F, INFINITY, NAN, 5.0F};
  CorrectNonlinear(current, {}, {}, relation);
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne({reinterpret_cast<const char*>(data), size});
  return 0;
}
