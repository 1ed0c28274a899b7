// Writes the trace to files, as text or as an Axon Binary File, once or after each run.
//
//   Whole files     TraceTextWrite  TraceAbfWrite  LegacyAbfWrite
//   Run after run   ConnectAutosave  AutosaveTrace  AutosaveTextWrite  AutosaveAbfWrite  AutosaveLock
//   Shared          RefusedByAutosave  RefuseSourceOfTrace  AbfTemplateBytes
//
// All write `Model.NumPoints` samples of `Trace.SimTrace`, one every `Model.ADInterval`. Each returns Done;
// Refused, with a message, before the begin (autosave has no file, or `path` is the file of the trace);
// Stopped when the user stopped the writing; or Failed, with a message. Then the existing file stays.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/outcome.h"
#include "platform/safe_file.h"

namespace zelvane {

/// Writes the trace as text. Reads the panels, then asks for the format: ATF, or a single column with the
/// interval in ms and then one sample per line.
Outcome TraceTextWrite(const std::string& path);

/// Writes the trace as an ABF file, version 1.83, gap-free, floats in the units of the trace. Never
/// overwrites a recording (an ABF file of integers).
Outcome TraceAbfWrite(const std::string& path);

/// Writes the trace as an ABF file from the template "SAMPLABF.DAT". Changes length, interval, date, format
/// and creator. The samples begin at byte 2048.
Outcome LegacyAbfWrite(const std::string& path);

/// Appends the trace to a text file, or makes this file. Each run is a block with its own header: a single
/// column, or an ATF block of the saved steps of an adaptive run.
Outcome AutosaveTextWrite(const std::string& path);

/// Appends the trace to an ABF file as another episode, or makes this file from the template. A reader can
/// separate the episodes only when all have the same number of samples.
Outcome AutosaveAbfWrite(const std::string& path);

/// Appends the trace to `Trace.AutosaveFileName` in the format `Model.AutosaveFormat`.
Outcome AutosaveTrace();

/// Returns whether autosave is on. If so, shows the message that reading and writing other data files must
/// wait.
bool RefusedByAutosave();

/// Returns whether the trace is a recording from the file `path`. If so, shows the message that this file may not be
/// overwritten.
bool RefuseSourceOfTrace(const std::string& path);

inline constexpr char GapFreeTemplate[] = "GAPFREE.ABF";
inline constexpr char EpisodicTemplate[] = "EPISODE-10.ABF";
inline constexpr std::size_t AbfTemplateLength = 2048;
using AbfTemplate = std::array<std::byte, AbfTemplateLength>;

/// Returns a template file from the program's folder, without samples: the header of a gap-free file
/// ("SAMPLABF.DAT", "GAPFREE.ABF") or of a file with ten episodes ("EPISODE-10.ABF"). Returns zeros for
/// another name.
AbfTemplate AbfTemplateBytes(std::string_view name);

/// Returns the lock on the autosave file. The first run takes it. While this program holds it, another program
/// cannot append its runs between those of this one.
FileLock& AutosaveLock();

/// Lets each run append its trace to the autosave file while `Model.Autosave` is on.
void ConnectAutosave();

}  // namespace zelvane
