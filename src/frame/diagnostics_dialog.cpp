// Dialog 10025 on Windows: the driver's message split into vendor,
// component, data source and description, with the SQLSTATE and the
// statement that failed.
#include "frame/diagnostics_dialog.h"

#include "internal/diagnostics.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <string>
#include <string_view>

namespace kodbc {
namespace {

// What the dialog keeps while it is open, in its window's user data.
struct DiagnosticsState {
    ErrorDisplayRequest request;
    int hintMessageId = 0;
};

// Multi-line edit controls break lines only at CR LF; drivers write LF.
std::string WithCrLf(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
        out += text[i];
    }
    return out;
}

DiagnosticsState *StateOf(HWND dialog) {
    return reinterpret_cast<DiagnosticsState *>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
}

void OnInitDialog(HWND dialog, DiagnosticsState *state) {
    SetWindowLongPtrA(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(state));
    TranslateDialog(dialog);

    DiagnosticFields fields;
    if (!state || !ReadDiagnostic(state->request, fields)) {
        EndDialog(dialog, 1);
        return;
    }
    state->hintMessageId = fields.hintMessageId;

    SetItemText(dialog, IDC_ODBC_ERROR_VENDOR, fields.vendor.c_str());
    SetItemText(dialog, IDC_ODBC_ERROR_COMPONENT, fields.component.c_str());
    SetItemText(dialog, IDC_ODBC_ERROR_DATASOURCE, fields.dataSource.c_str());
    SetItemText(dialog, IDC_ODBC_ERROR_STATE, fields.sqlState.c_str());
    SetItemText(dialog, IDC_ODBC_ERROR_DESCRIPTION, WithCrLf(fields.description).c_str());
    const char *statement = state->request.statement;
    SetItemText(dialog, IDC_ODBC_ERROR_STATEMENT, statement ? WithCrLf(statement).c_str() : nullptr);
    ShowWindow(GetDlgItem(dialog, IDC_ODBC_ERROR_HINT), state->hintMessageId ? SW_SHOW : SW_HIDE);
}

INT_PTR HandleMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        OnInitDialog(dialog, reinterpret_cast<DiagnosticsState *>(lParam));
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_ODBC_ERROR_CLOSE:
            EndDialog(dialog, 1);
            return TRUE;
        case IDCANCEL:
            EndDialog(dialog, 2);
            return TRUE;
        case IDC_ODBC_ERROR_HINT:
            if (DiagnosticsState *state = StateOf(dialog); state && state->hintMessageId) {
                LibraryMessage(state->hintMessageId);
            }
            return TRUE;
        default:
            return FALSE;
        }
    default:
        return FALSE;
    }
}

} // namespace

INT_PTR CALLBACK DiagnosticsDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return HandleMessage(dialog, message, wParam, lParam);
    } catch (...) {
        // Nothing may unwind into the window system; an error display that
        // cannot fill itself is closed as if it had nothing to show.
        if (message == WM_INITDIALOG) EndDialog(dialog, 1);
        return FALSE;
    }
}

int ShowDiagnosticsDialog(const ErrorDisplayRequest &request) {
    DiagnosticsState state{request, 0};
    INT_PTR result = LibraryDialogBox(DiagnosticsDialogProc, IDD_ODBC_ERROR, Korvel_ActiveWindow(),
                                      reinterpret_cast<LPARAM>(&state));
    return result == 2 ? 2 : 1;
}

} // namespace kodbc
