// The program's scheme, stimulus and units as the engines take them: views of the stores.
#pragma once

#include "kinetics/compiled_scheme.h"
#include "kinetics/occupancy_trace.h"
#include "kinetics/scheme_tables.h"

namespace zelvane {

/// Returns the tables of the active form, whose rates `Model.RateMatrix` holds.
SchemeTables ActiveTables();

StimulusView ActiveStimulus();

/// Returns what makes the trace of the occupancies in `Result`, by `Model` and the voltage profile.
TraceConversion ActiveConversion();

}  // namespace zelvane
