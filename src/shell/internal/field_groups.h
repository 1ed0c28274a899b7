// The parts of the registry, one for each group of stores.
#pragma once

namespace zelvane {

void RegisterTraceFields();     // trace, filters, series resistance
void RegisterAnalysisFields();  // measures of a response and their table
void RegisterDwellFields();     // dwell lists, idealised record, their fit
void RegisterFitFields();       // limits, seeds and settings of every fit, its waveforms

}  // namespace zelvane
