// Dialog 10025: shows the first diagnostic record of an ODBC handle, split
// into its parts. Run through kodbc::ShowDiagnosticsDialog (diagnostics.h).
#pragma once

#include "frame/diagnostics_dialog_ids.h"
