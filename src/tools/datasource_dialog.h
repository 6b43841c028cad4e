// Dialog 103, the data-source picker, for the library's own dialogs that
// run it over themselves rather than over the active window.
#pragma once

#include <kodbc/kodbc_types.h>

namespace kodbc::tools {

// Shows the picker over owner on a copy of record. 1 when a data source was
// confirmed and could be connected: the copy (all 220 bytes) then replaces
// record; 2 when cancelled or the dialog could not be shown.
int PickDataSource(HWND owner, DataSourceRecord &record);

} // namespace kodbc::tools
