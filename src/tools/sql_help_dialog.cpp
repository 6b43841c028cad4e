// Dialog 10037: example statements; the one taken over replaces the text of
// the performer that opened the dialog.
#include "tools/recent_statements.h"
#include "tools/sql_performer_ids.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <kodbc/kodbc_tools.h>

#include <string>

namespace kodbc::tools {
namespace {

// What the performer's edit field receives of an example.
constexpr std::size_t kTakenOverLimit = 400;

void FillExamples(HWND dialog) {
    HWND list = GetDlgItem(dialog, IDC_SQL_HELP_LIST);
    for (const char *example : kSqlExamples) SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(example));
    SendMessageA(list, LB_SETCURSEL, 0, 0);
}

// Copies the selected example into the performer's edit field. The list
// starts with the first example selected and a click cannot unselect it.
void TakeOver(HWND dialog) {
    const LRESULT index = SendDlgItemMessageA(dialog, IDC_SQL_HELP_LIST, LB_GETCURSEL, 0, 0);
    auto performer = reinterpret_cast<HWND>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
    if (index >= 0 && static_cast<std::size_t>(index) < kSqlExamples.size() && performer) {
        const std::string text = std::string(kSqlExamples[static_cast<std::size_t>(index)]).substr(0, kTakenOverLimit);
        SetItemText(performer, IDC_SQL_PERFORMER_EDIT, text.c_str());
    }
    EndDialog(dialog, 1);
}

} // namespace
} // namespace kodbc::tools

extern "C" KODBC_API INT_PTR KODBC_CALL SqlHelpCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    using namespace kodbc::tools;
    try {
        switch (message) {
        case WM_INITDIALOG:
            SetWindowLongPtrA(dialog, GWLP_USERDATA, lParam);
            kodbc::TranslateDialog(dialog);
            FillExamples(dialog);
            return TRUE;
        case WM_COMMAND:
            switch (LOWORD(wParam)) {
            case IDC_SQL_HELP_TAKE:
                TakeOver(dialog);
                return TRUE;
            case IDC_SQL_HELP_LIST:
                if (HIWORD(wParam) != LBN_DBLCLK) return FALSE;
                TakeOver(dialog);
                return TRUE;
            case IDC_SQL_HELP_CANCEL:
                EndDialog(dialog, 2);
                return TRUE;
            default:
                return FALSE;
            }
        default:
            return FALSE;
        }
    } catch (...) {
        EndDialog(dialog, 2);
        return FALSE;
    }
}
