// The program's scheme, stimulus and units in the form of the engines: views of the stores.
#pragma once

#include "kinetics/compiled_scheme.h"
#include "kinetics/occupancy_trace.h"
#include "kinetics/scheme_tables.h"

namespace zelvane {

/// Returns the tables of the active form, whose rates `Model.RateMatrix` holds.
SchemeTables ActiveTables();

StimulusView ActiveStimulus();

/// Returns the conversion of the occupancies in `Result` to the trace, by `Model` and the voltage profile.
TraceConversion ActiveConversion();

}  // namespace zelvane
