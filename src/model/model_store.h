// The current kinetic scheme in both forms, and its run settings. Data only. The operations are in model.h.
#pragma once

#include <array>
#include <string>

#include "kinetics/scheme_tables.h"
#include "platform/index.h"
#include "platform/sweep_room.h"

namespace zelvane {

inline constexpr int MaxLinks = 31;         // links of the grid are numbered 1..MaxLinks
inline constexpr int StateLabelBytes = 20;  // terminator included
inline constexpr int DrugLabelBytes = 32;   // terminator included
inline constexpr int TitleBytes = 300;      // terminator included
inline constexpr int GridColumns = 5;       // the grid: four rows of five states

/// Codes of ModelStore::SimulatorKind.
inline constexpr int FixedStepIntegrator = 0;
inline constexpr int MonteCarlo = 1;
inline constexpr int AdaptiveIntegrator = 2;

/// Codes of ModelStore::DisplayUnits.
inline constexpr int UnitsChannels = 0;
inline constexpr int UnitsConductance = 1;  // pS
inline constexpr int UnitsCurrent = 2;      // pA
inline constexpr int UnitsProbability = 3;

/// Arrays over states, links and drugs are indexed from 1. Element 0 is unused, unless its comment says
/// otherwise.
struct ModelStore {
  // -- Scheme: grid form --
  std::array<double, MaxLinks + 1> KOn{};   // 1/s or 1/(M s), lower-numbered state to higher
  std::array<double, MaxLinks + 1> KOff{};  // 1/s or 1/(M s), back
  std::array<int, MaxStates + 1> StateOn{};
  std::array<std::string, MaxStates + 1> StateLabel{};
  DependenceTables
      Depend;  // of the active form: edited directly for the grid, copied from Table before a run
  DependenceTables
      GridDepend;           // those of the grid while Depend holds those of the table; see GridDependences
  int DependIsOfTable = 0;  // 1 = Depend holds those of the table

  // -- Scheme: table form --
  StateTable<float> TableRate{};
  DependenceTables TableDepend;
  std::array<int, MaxStates + 1> TableStateOn{};  // calculated: a rate leads into the state
  std::array<std::string, MaxStates + 1> TableStateLabel = [] {
    std::array<std::string, MaxStates + 1> labels;
    for (int s = 1; s <= MaxStates; ++s) labels[Index(s)] = std::to_string(s);
    return labels;
  }();

  // -- Scheme: common to both forms --
  StateTable<float> RateMatrix{};                       // for the simulators; filled before each run
  std::array<int, MaxStates + 1> StateMonitored{};      // 1 = part of the displayed sum
  std::array<float, MaxStates + 1> StateConductance{};  // pS; element 0 has its own line in the model file
  std::array<float, MaxStates + 1> StartOccupancy{};    // proportion of channels at time 0
  std::array<std::string, MaxDrugs + 1> DrugLabel{};

  // -- Run --
  int ModelIs2D = 1;  // 1 = the grid is active, 0 = the table
  int SimulatorKind = MonteCarlo;
  int NumPoints = 10240;     // points in a run, at most MaxStimPoints
  float ADInterval = 0.01F;  // ms between points
  int NumRuns = 1;
  int NumIntervals = 1;      // interstimulus intervals after each run
  int NumChannels = 1;       // channels, or subunits with MultiSubunit
  int ChannelsGaussian = 0;  // 1 = draw the number of channels of each run
  float ChannelsSTD = 0.0F;  // channels
  int MultiSubunit = 1;      // 1 = cooperative subunits of one channel
  int OpenState = 3;         // state whose exits a Monte Carlo run counts
  int StartState = 1;        // only stored in the file
  int ReseedSimulation = 1;  // 1 = final occupancies start the next run
  int StartAtEquilibrium = 0;
  int FitStartAtEquilibrium = 1;
  int DisplayUnits = UnitsConductance;
  int ShowAllTraces = 1;
  int AutoAnalyze = 0;
  int Autosave = 0;
  int AutosaveFormat = 1;  // 0 single-column text, 1 ABF
  int AutoFilter = 0;
  float AutoFilterFc = 2.0F;  // kHz
  int AutoNoise = 0;
  float AutoNoiseSTD = 1.0F;  // units of the trace

  // -- Electrical --
  float VHold = 0.0F;         // mV
  float VRev = 0.0F;          // mV
  int Valence = 1;            // charge of the permeant ion
  float Temperature = 25.0F;  // degrees Celsius

  // -- Integrators --
  float MaxStepSize = 0.005F;  // ms
  float Precision = 0.0005F;

  // -- Text --
  std::string ModelTitle;     // one line
  std::string ModelFileName;  // path

  // -- Process --
  int RecordPoints = 10240;  // length of the last record: of a run, or of the data under analysis
  int FitActive = 0;         // 1 while a fit runs
};

/// The one model of the process.
inline ModelStore Model;

/// The two states of a link of the grid, the lower number first.
struct Link {
  int low = 0;
  int high = 0;
};

/// The links of the grid in order: along a row, then down to the next row. Element 0 is unused.
inline constexpr std::array<Link, MaxLinks + 1> LinkTable = [] {
  std::array<Link, MaxLinks + 1> links{};
  int n = 0;
  for (int rowStart = 1; rowStart <= MaxStates; rowStart += GridColumns) {
    for (int s = rowStart; s < rowStart + GridColumns - 1; ++s) links[Index(++n)] = {s, s + 1};
    if (rowStart + GridColumns > MaxStates) break;
    for (int s = rowStart; s < rowStart + GridColumns; ++s) {
      links[Index(++n)] = {s, s + GridColumns};
    }
  }
  return links;
}();
static_assert(LinkTable[5].low == 1 && LinkTable[5].high == 6);
static_assert(LinkTable[18].low == 10 && LinkTable[18].high == 15);
static_assert(LinkTable[MaxLinks].low == 19 && LinkTable[MaxLinks].high == 20);

}  // namespace zelvane
