#include "rscm/rs_correct.h"

#include <algorithm>
#include <string_view>

#include "formats/input_file.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "rscm/iv_text.h"
#include "rscm/rs_circuit.h"
#include "rscm/rscm_store.h"
#include "screen/popups.h"
#include "trace/trace.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr float MsPerSecond = 1000.0F;
constexpr char NoInterval[] = "The time between points must be above 0 ms.";
constexpr char NoAccess[] = "Series resistance must be above 0 Ohms. A filter needs a resistance.";
constexpr char NoInput[] = "Input resistance must be above 0 Ohms.";
constexpr char NoCapacitance[] = "Capacitance must not be below 0 Farads.";
constexpr char RevertToLinear[] = "! Revert to linear IV";

constexpr std::size_t FewestIvPoints = 5;
constexpr std::size_t MaxIvFileBytes = std::size_t{1} << 20;

bool Refuse(const char* why) {
  MessagePopup(ErrorTitle, why);
  return false;
}

RsCircuit StoreCircuit() {
  return {RsCm.RcRs, RsCm.RcCm, RsCm.RcRm, RsCm.RcVhold, RsCm.RcVrev, Model.ADInterval / MsPerSecond};
}

bool HasInterval(const RsCircuit& circuit) {
  return circuit.dt > 0.0F || Refuse(NoInterval);
}

bool IsCircuit(const RsCircuit& circuit) {
  if (!HasInterval(circuit)) return false;
  if (!(circuit.rs > 0.0F)) return Refuse(NoAccess);
  if (!(circuit.rm > 0.0F)) return Refuse(NoInput);
  return circuit.cm >= 0.0F || Refuse(NoCapacitance);
}

}  // namespace

Outcome RsCorrectLinear(float fracVolt, float fracCap, float lagFc) {
  const RsCircuit circuit = StoreCircuit();
  if (!HasInterval(circuit)) return Outcome::Refused;
  CorrectLinear(TraceToWrite(Model.NumPoints), circuit, {fracVolt, fracCap, lagFc});
  return Outcome::Done;
}

Outcome RsCorrectNonlinear(float fracVolt, float fracCap, float lagFc) {
  const RsCircuit circuit = StoreCircuit();
  if (!HasInterval(circuit)) return Outcome::Refused;
  const auto count = Index(std::clamp(RsCm.RcIvCount, 0, MaxIvPoints));
  const IvRelation relation =
      MakeIvRelation(std::span(RsCm.RcIvVolt).first(count), std::span(RsCm.RcIvCurrent).first(count));
  CorrectNonlinear(TraceToWrite(Model.NumPoints), circuit, {fracVolt, fracCap, lagFc}, relation);
  return Outcome::Done;
}

Outcome RsCorrectTrace() {
  const Outcome outcome = RsCorrectLinear(RsCm.RcFracVolt, RsCm.RcFracCap, RsCm.RcLagFc);
  if (outcome == Outcome::Done) Trace.RsCorrected = 1;
  return outcome;
}

Outcome RcFilterConductance() {
  const RsCircuit circuit = StoreCircuit();
  if (!IsCircuit(circuit)) return Outcome::Refused;
  FilterConductance(TraceToWrite(Model.RecordPoints), circuit);
  return Outcome::Done;
}

Outcome RcFilterVoltage() {
  const RsCircuit circuit = StoreCircuit();
  if (!IsCircuit(circuit)) return Outcome::Refused;
  FilterVoltage(TraceToWrite(Model.RecordPoints), circuit);
  return Outcome::Done;
}

void SetLinearIv() {
  constexpr float Volts[] = {-0.3F, 0.0F, 0.3F};
  constexpr float Currents[] = {-100.0F, 0.0F, 100.0F};
  std::copy(std::begin(Volts), std::end(Volts), RsCm.RcIvVolt.begin());
  std::copy(std::begin(Currents), std::end(Currents), RsCm.RcIvCurrent.begin());
  RsCm.RcIvCount = 3;
}

IvFile LoadIvFile(const std::string& path) {
  const auto text = ReadBytes(path, MaxIvFileBytes);
  if (!text) {
    ConsoleLine(FormatText("Error Reading Raw Data IV curve [%s]. \n", path.c_str()));
    return IvFile::Unreadable;
  }
  const std::string fault = TextFault(*text);
  if (!fault.empty()) {
    ConsoleLine(FormatText("Error Reading Raw Data IV curve [%s]. \n", path.c_str()) + fault);
    return IvFile::Unreadable;
  }
  const IvPoints points = ParseIv(*text, MaxIvPoints);
  if (points.volt.size() < FewestIvPoints) {
    SetLinearIv();
    ConsoleLine(RevertToLinear);
    return IvFile::TooShort;
  }
  std::copy(points.volt.begin(), points.volt.end(), RsCm.RcIvVolt.begin());
  std::copy(points.current.begin(), points.current.end(), RsCm.RcIvCurrent.begin());
  RsCm.RcIvCount = static_cast<int>(points.volt.size());
  RsCm.RcIvLoaded = 1;
  return IvFile::InUse;
}

}  // namespace zelvane
