// The library's dialog kit on Windows: translated dialogs and tabs, the
// modal-dialog entry, the catch of a dialog procedure, control texts, list
// views and the remembered file dialog. Only the Win32 dialog and wizard
// files include it; the portable services are in library.h.
#pragma once

#ifndef _WIN32
#error "dialog_kit_win.h is for the Windows build only"
#endif

#include <kodbc/kodbc_types.h>

#include <string>

namespace kodbc {

void TranslateDialog(HWND dialog);
// The object an exported dialog procedure works on: the lParam of
// WM_INITDIALOG, kept in the window's user data, with the dialog translated
// there before the procedure fills it. Null when the caller handed none.
template <class T> T *ExportedDialogObject(HWND dialog, UINT message, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, GWLP_USERDATA, lParam);
        TranslateDialog(dialog);
    }
    return reinterpret_cast<T *>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
}
void TranslateTabItems(HWND tabControl);
INT_PTR LibraryDialogBox(DLGPROC procedure, WORD dialogId, HWND owner, LPARAM parameter);
// For a dialog procedure's catch (...): ends the dialog with 2, after
// message 1600 when memory ran out. Returns FALSE for the procedure.
INT_PTR EndDialogAfterFailure(HWND dialog) noexcept;
void SetItemText(HWND dialog, int controlId, const char *text);
// The whole text of a dialog's control; empty for none.
std::string ItemText(HWND dialog, int controlId);
// Where a row dragged over a list view is dropped when the button comes up
// at `at` (client coordinates of window): the row under it, the last row
// below the rows, -1 outside the list.
int ListViewDropRow(HWND window, HWND list, POINT at);
// The base library's open or save dialog (`mode` KORVEL_FILE_OPEN or
// KORVEL_FILE_SAVE), starting at the file remembered under `valueName` of
// `section` in the library's key and remembering the one chosen there.
// False when the user cancelled.
bool AskForRememberedFile(int mode, int titleId, int filterId, const char *section, const char *valueName,
                          std::string &fileName);
// Selects and focuses row alone (below 0: nothing) and scrolls it into view.
void ListViewSelectOnly(HWND list, int row);

} // namespace kodbc
