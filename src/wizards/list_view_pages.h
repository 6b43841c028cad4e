// The report list views of the wizards' field pages (add records, export,
// import): selection, columns from a string-table text and the pop-up menu
// of a row. Windows only.
#pragma once

#ifdef _WIN32

#include <windows.h>

#include <initializer_list>
#include <vector>

namespace kodbc::wizards {

int SelectedRowCount(HWND list);
int FirstSelectedRow(HWND list);  // -1 for none
std::vector<int> SelectedRows(HWND list);
// Row -1 stands for every row.
void SetRowSelected(HWND list, int row, bool selected);

// Columns from string headerId, "caption|width|caption|width…"; full-row
// selection.
void AddListViewColumns(HWND list, int headerId);

// Menu menuId of the library at the point of a click (screen coordinates),
// its items translated; singleRowItem (0: none) is only offered while one
// row of list is selected. What is chosen arrives as the page's WM_COMMAND,
// as it would from the menu's owner.
void TrackRowMenu(HWND page, HWND list, int menuId, std::initializer_list<int> items, int singleRowItem, POINT at);

} // namespace kodbc::wizards

#endif
