#include "wizards/page_controls.h"

#include <korvel/korvel32.h>

namespace kodbc::wizards {
namespace {
constexpr int kBoxTextSize = 300;
} // namespace

std::string BoxSelection(HWND box) {
    char text[kBoxTextSize] = {};
    const int index = Korvel_GetBoxIndex(box);
    if (index < 0 || Korvel_GetBoxEntry(box, index, text, sizeof text) < 0) return {};
    return text;
}

void SelectExactOrFirst(HWND box, const std::string &name) {
    const int count = Korvel_GetBoxCount(box);
    for (int i = 0; i < count; ++i) {
        char text[kBoxTextSize] = {};
        Korvel_GetBoxEntry(box, i, text, sizeof text);
        if (name == text) {
            Korvel_SetBoxIndex(box, i);
            return;
        }
    }
    if (count > 0) Korvel_SetBoxIndex(box, 0);
}

void FocusOnPage(HWND page, int controlId) {
    SendMessageA(GetParent(page), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(page, controlId)), TRUE);
}

DataSourceRecord EnteredSource(HWND page, const DataSourceRecord &shown, int listId, int userId, int passwordId) {
    DataSourceRecord entered = shown;
    KorvelCopyString(entered.DataSourceName, BoxSelection(GetDlgItem(page, listId)).c_str(),
                     sizeof entered.DataSourceName);
    GetDlgItemTextA(page, userId, entered.UserId, sizeof entered.UserId);
    GetDlgItemTextA(page, passwordId, entered.Password, sizeof entered.Password);
    return entered;
}

} // namespace kodbc::wizards
