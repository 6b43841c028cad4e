// Controls on the wizards' pages that several wizards use alike: list and
// combo boxes, the focus after a refusal, and a data source page's
// entries. Windows only.
#pragma once

#ifdef _WIN32

#include <kodbc/kodbc_connect.h>

#include <windows.h>

#include <string>

namespace kodbc::wizards {

// The selected entry of a list or combo box; empty for none.
std::string BoxSelection(HWND box);

// Selects the entry that is exactly name, else the first.
void SelectExactOrFirst(HWND box, const std::string &name);

// Moves the focus to a page's control through the frame, the dialog that
// owns the page, so that the frame's default button follows.
void FocusOnPage(HWND page, int controlId);

// What a data source page holds over `shown`: the list's selection, the
// user and the password.
DataSourceRecord EnteredSource(HWND page, const DataSourceRecord &shown, int listId, int userId, int passwordId);

} // namespace kodbc::wizards

#endif
