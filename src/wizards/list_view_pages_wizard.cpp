#include "wizards/list_view_pages.h"

#include "internal/library.h"
#include "internal/list_header.h"

#include <korvel/korvel32.h>

#include <commctrl.h>

namespace kodbc::wizards {
namespace {

constexpr int kHeaderSize = 200;
constexpr int kMenuTextSize = 100;

} // namespace

int SelectedRowCount(HWND list) { return static_cast<int>(SendMessageA(list, LVM_GETSELECTEDCOUNT, 0, 0)); }

int FirstSelectedRow(HWND list) {
    return static_cast<int>(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

std::vector<int> SelectedRows(HWND list) {
    std::vector<int> rows;
    for (int row = FirstSelectedRow(list); row >= 0;
         row = static_cast<int>(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED)))
        rows.push_back(row);
    return rows;
}

void SetRowSelected(HWND list, int row, bool selected) {
    LVITEMA item = {};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = selected ? LVIS_SELECTED | LVIS_FOCUSED : 0;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void AddListViewColumns(HWND list, int headerId) {
    char header[kHeaderSize] = {};
    LoadLibraryString(LibraryInstance(), headerId, header, sizeof header);
    int index = 0;
    for (const ListHeaderColumn &column : ParseListHeader(header))
        Korvel_ListView_AddColumn(list, index++, column.caption.c_str(), column.width);
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
}

void TrackRowMenu(HWND page, HWND list, int menuId, std::initializer_list<int> items, int singleRowItem, POINT at) {
    HMENU menu = LoadMenuA(LibraryInstance(), MAKEINTRESOURCEA(menuId));
    if (!menu) return;
    HMENU popup = GetSubMenu(menu, 0);
    for (int id : items) {
        char text[kMenuTextSize] = {};
        GetMenuStringA(popup, static_cast<UINT>(id), text, sizeof text, MF_BYCOMMAND);
        Polo_TranslateString(kModuleName, nullptr, text, sizeof text);
        ModifyMenuA(popup, static_cast<UINT>(id), MF_BYCOMMAND | MF_STRING, static_cast<UINT_PTR>(id), text);
    }
    if (singleRowItem)
        EnableMenuItem(popup, static_cast<UINT>(singleRowItem),
                       MF_BYCOMMAND | (SelectedRowCount(list) == 1 ? MF_ENABLED : MF_GRAYED));
    const int chosen = static_cast<int>(
        TrackPopupMenu(popup, TPM_LEFTALIGN | TPM_RIGHTBUTTON | TPM_RETURNCMD, at.x, at.y, 0, page, nullptr));
    DestroyMenu(menu);
    if (chosen) PostMessageA(page, WM_COMMAND, MAKEWPARAM(chosen, 0), 0);
}

} // namespace kodbc::wizards
