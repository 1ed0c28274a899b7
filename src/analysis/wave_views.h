// Functions that the parts of WaveAnalysisPanel call in each other.
#pragma once

namespace zelvane {

inline constexpr char CompressedName[] = "WaveAnalysisPanel.compressed";
inline constexpr char ExpandedName[] = "WaveAnalysisPanel.expanded";

// -- Panel (wave_panel.cpp) --
/// Copies what is typed into the store.
void ReadWavePanel();

/// Keeps the stretches within the record, measures the sweep and shows everything.
void RefreshWavePanel();

/// Shows the settings and the results of the sweep.
void ShowWaveSettings();
void ShowWaveResults();

// -- Graphs and cursors (wave_graph_panel.cpp) --
void AddWaveGraphs();

/// Draws trace, marks and average.
void DrawWaves();

/// Moves the nine cursors to their fields.
void PlaceWaveCursors();

/// Puts the two compressed cursors at their first places and shows what lies between them.
void BeginWaveView();

/// Takes the stretch between the compressed cursors as the expanded view, and its begin and end as settings.
void TakeCompressedRange();

/// Moves the free cursor 7 to a time (ms) and shows what is there.
void MoveFreeCursor(float ms);
void ShowFreeCursor();

/// The samples at the two compressed cursors, as they stand.
struct CompressedEnds {
  double first = 0.0;
  double second = 0.0;
};
CompressedEnds CompressedCursors();

}  // namespace zelvane
