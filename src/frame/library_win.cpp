// The frame's window services: translating dialogs and tab controls, running
// the library's own dialog templates, setting control texts.
#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <new>

#include <korvel/korvel32.h>

#include <commctrl.h>

namespace kodbc {
namespace {

constexpr int kTabTextSize = 100;
constexpr const char *kDialogSection = "DIALOGS";

} // namespace

void TranslateDialog(HWND dialog) { Polo_TranslateDialog(dialog, kModuleName, nullptr); }

void TranslateTabItems(HWND tabControl) {
    if (!tabControl) return;
    int count = static_cast<int>(SendMessageA(tabControl, TCM_GETITEMCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        char text[kTabTextSize] = {};
        TCITEMA item = {};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = kTabTextSize;
        if (!SendMessageA(tabControl, TCM_GETITEMA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item))) continue;
        // The control may hand back its own storage instead of filling ours.
        if (item.pszText != text) lstrcpynA(text, item.pszText ? item.pszText : "", kTabTextSize);
        Polo_TranslateString(kModuleName, kDialogSection, text, kTabTextSize);
        TCITEMA changed = {};
        changed.mask = TCIF_TEXT;
        changed.pszText = text;
        SendMessageA(tabControl, TCM_SETITEMA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&changed));
    }
}

INT_PTR EndDialogAfterFailure(HWND dialog) noexcept {
    try {
        throw;
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
    } catch (...) {
    }
    EndDialog(dialog, 2);
    return FALSE;
}

INT_PTR LibraryDialogBox(DLGPROC procedure, WORD dialogId, HWND owner, LPARAM parameter) {
    return DialogBoxParamA(LibraryInstance(), MAKEINTRESOURCEA(dialogId), owner, procedure, parameter);
}

void SetItemText(HWND dialog, int controlId, const char *text) {
    SetDlgItemTextA(dialog, controlId, text ? text : "");
}

int ListViewDropRow(HWND window, HWND list, POINT at) {
    MapWindowPoints(window, list, &at, 1);
    RECT inside = {};
    GetClientRect(list, &inside);
    if (!PtInRect(&inside, at)) return -1;
    LVHITTESTINFO hit = {};
    hit.pt = at;
    const int row = static_cast<int>(SendMessageA(list, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    return row >= 0 ? row : static_cast<int>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0)) - 1;
}

void ListViewSelectOnly(HWND list, int row) {
    LVITEMA item = {};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    if (row < 0) return;
    item.state = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    SendMessageA(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

bool AskForRememberedFile(int mode, int titleId, int filterId, const char *section, const char *valueName,
                          std::string &fileName) {
    char name[KORVEL_FILE_NAME_SIZE] = {};
    KorvelFileDialogRecord record = {};
    record.recordSize = KORVEL_FILE_DIALOG_RECORD_SIZE;
    record.instance = LibraryInstance();
    record.titleId = titleId;
    record.filterId = filterId;
    record.root = HKEY_CURRENT_USER;
    record.keyPath = kRegistryKey;
    record.section = section;
    record.valueName = valueName;
    record.mode = mode;
    if (Korvel_ExtendedFileNameDialog(&record, name) != 1) return false;
    fileName = name;
    return true;
}

std::string ItemText(HWND dialog, int controlId) {
    HWND item = GetDlgItem(dialog, controlId);
    const int length = GetWindowTextLengthA(item);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const int got = GetWindowTextA(item, text.data(), length + 1);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return text;
}

} // namespace kodbc
