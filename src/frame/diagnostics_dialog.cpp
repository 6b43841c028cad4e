// Dialog 10025 on Windows: the driver's message split into vendor,
// component, data source and description, with the SQLSTATE and the
// statement that failed.
#include "frame/diagnostics_dialog.h"

#include "internal/diagnostics.h"
#include "internal/dialog_kit_win.h"
#include "internal/library.h"
#include "internal/modal_dialog.h"

#include <korvel/korvel32.h>

#include <string>
#include <string_view>

namespace kodbc {
namespace {

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


class DiagnosticsDialog : public ModalDialog {
public:
    explicit DiagnosticsDialog(const ErrorDisplayRequest &request) : request_(request) {}

private:
    BOOL OnInit() override {
        DiagnosticFields fields;
        if (!ReadDiagnostic(request_, fields)) {
            End(1);
            return TRUE;
        }
        hintMessageId_ = fields.hintMessageId;
        HWND dialog = window();
        SetItemText(dialog, IDC_ODBC_ERROR_VENDOR, fields.vendor.c_str());
        SetItemText(dialog, IDC_ODBC_ERROR_COMPONENT, fields.component.c_str());
        SetItemText(dialog, IDC_ODBC_ERROR_DATASOURCE, fields.dataSource.c_str());
        SetItemText(dialog, IDC_ODBC_ERROR_STATE, fields.sqlState.c_str());
        SetItemText(dialog, IDC_ODBC_ERROR_DESCRIPTION, WithCrLf(fields.description).c_str());
        const char *statement = request_.statement;
        SetItemText(dialog, IDC_ODBC_ERROR_STATEMENT, statement ? WithCrLf(statement).c_str() : nullptr);
        ShowWindow(Item(IDC_ODBC_ERROR_HINT), hintMessageId_ ? SW_SHOW : SW_HIDE);
        return TRUE;
    }

    bool OnCommand(int controlId, int notification) override {
        switch (controlId) {
        case IDC_ODBC_ERROR_CLOSE:
            End(1);
            return true;
        case IDC_ODBC_ERROR_HINT:
            if (hintMessageId_) LibraryMessage(hintMessageId_);
            return true;
        default:
            return ModalDialog::OnCommand(controlId, notification);
        }
    }

    // An error display that cannot fill itself closes as if it had nothing to show.
    INT_PTR FailureResult() const override { return 1; }

    ErrorDisplayRequest request_;
    int hintMessageId_ = 0;
};

} // namespace

int ShowDiagnosticsDialog(const ErrorDisplayRequest &request) {
    DiagnosticsDialog dialog(request);
    return dialog.Run(IDD_ODBC_ERROR, Korvel_ActiveWindow()) == 2 ? 2 : 1;
}

} // namespace kodbc
