// WaveAnalysisPanel: sweeps are measured, aligned and averaged.
#pragma once

namespace zelvane {

inline constexpr char WavePanelName[] = "WaveAnalysisPanel";

/// Declares the panel and its menu commands.
void AddWavePanel();

}  // namespace zelvane
