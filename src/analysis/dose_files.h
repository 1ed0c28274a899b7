// Texts about doses: scripts of stimulus files, and templates of traces.
//
//   ParseBatchScript  ReadDoseTemplate
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

inline constexpr int MaxScriptFiles = 20;

/// The contents of a script.
struct BatchScript {
  int count = 0;                   // files that it announces, at most MaxScriptFiles; below 0 = run nothing
  int profile = 1;                 // that carries the varied stimulus: 0 voltage, 1 to 6 drugs
  std::vector<std::string> names;  // of the files, with ".stm"; may be fewer than `count`
};

/// Reads the text of a script: "MULTISTIM", then a line with the number of files and the profile, then a name a line. A
/// name ends at its first full stop.
/// @return empty when the first line is another
std::optional<BatchScript> ParseBatchScript(std::string_view text);

/// A stretch of a trace with one concentration: samples start .. stop - 1.
struct DoseStretch {
  int start = 0;
  int stop = 0;
  float concentration = 0.0F;  // M
};

/// Reads the text of a template, "start, stop, concentration" a line. Leaves out lines with a concentration of 0 or
/// below; keeps at most 99.
std::vector<DoseStretch> ReadDoseTemplate(std::string_view text);

}  // namespace zelvane
