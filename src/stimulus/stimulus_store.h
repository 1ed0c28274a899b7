// The stimulus: seven sampled profiles and their parameters. Data only.
#pragma once

#include <array>
#include <span>
#include <string>

#include "kinetics/scheme_tables.h"
#include "platform/sweep_room.h"

namespace zelvane {

/// Codes of StimulusStore::StimMode.
inline constexpr int StimAutomatic = 1;
inline constexpr int StimManual = 2;
inline constexpr int StimExponential = 3;
inline constexpr int StimUser = 4;
inline constexpr int StimUnavailable = 5;

inline constexpr int MultiStimGroups = 49;  // groups 0..48
inline constexpr int MultiStimFields = 6;

/// Amplitudes are volts or molar, as the target profile. Times are in ms.
struct StimulusStore {
  // -- Profiles: MaxStimPoints samples each, set once by AllocateStores --
  // Sample i belongs to time i x ADInterval. Index 0 of Profile is the voltage (volts), 1..6 are the drugs
  // (molar).
  std::array<std::span<float>, MaxDrugs + 1> Profile{};

  int StimMode = StimAutomatic;
  int StimTarget = 1;          // profile that is shown and edited: 0 voltage, 1..6 drugs
  int StimFromFile = 0;        // 1 = the profiles are from a file
  float BuiltInterval = 0.0F;  // ms; `Model.ADInterval` when the stimulus was last built

  // -- Automatic step --
  float AutoValue = 0.005F;
  float AutoStart = 1.0F;
  float AutoStop = 99.0F;
  int AutoDrugOrVolt = 0;  // 0 the step is in Drug1, 1 in voltage
  int AutoFilterOn = 0;

  // -- Manual step --
  float StepAmp = 0.005F;
  float StepStart = 1.0F;
  float StepStop = 99.0F;
  int StepRamp = 0;  // 1 = linear ramp from 0 to StepAmp
  float StepRiseTau = 5.0F;
  float StepDecayTau = 5.0F;

  // -- Exponential waveform --
  float ExpStart = 10.0F;
  float ExpAmp1 = 1.0F;
  float ExpAmp2 = 1.0F;
  float ExpTau1 = 1.0F;
  float ExpTau2 = 1.0F;
  float ExpRiseTau = 0.1F;
  float ExpOffset = 1.0F;
  int ExpComponents = 1;  // 1 or 2
  int ExpRiseFlag = 0;    // 1 = exponential rise

  // -- Train --
  int TrainCount = 1;
  float TrainDelay = 100.0F;
  float TrainInterval = 1.0F;
  int TrainExpFlag = 1;   // 0 step pulses, 1 exponential waveforms
  int TrainRiseFlag = 1;  // step pulses: 0 square, 1 exponentially edged

  // -- Filter and display --
  float FilterFc = 1.0F;  // kHz
  int FilterPoles = 1;    // only stored in the model file
  int StimLogAxis = 0;

  // -- Files --
  int ExportPoints = MaxStimPoints;  // number of samples of a profile in an export
  std::string StimFileName;          // path of the last stimulus file that was read
  int ScriptRunning = 0;  // 1 = a script of stimuli has run; the program then reads files without questions

  // -- Multi-sweep table: only stored in the model file --
  std::array<std::array<float, MultiStimFields>, MultiStimGroups> MultiStimTable{};
};

inline StimulusStore Stimulus;

}  // namespace zelvane
