// Dialog 10025: shows the first diagnostic record of an ODBC handle, split
// into its parts. Run through kodbc::ShowDiagnosticsDialog (diagnostics.h).
#pragma once

#include "frame/diagnostics_dialog_ids.h"

#include <windows.h>

namespace kodbc {

// The dialog procedure; lParam of WM_INITDIALOG is the ErrorDisplayRequest.
INT_PTR CALLBACK DiagnosticsDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace kodbc
