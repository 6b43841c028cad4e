// Dialogs 101 and 10058: the SQL performer. Both run the same code; 101
// connects to its data source for each statement and lets the user choose
// another, 10058 works on the caller's connection. The recent list is saved
// before a statement runs, so one that fails is offered again.
#include "tools/recent_statements.h"
#include "tools/sql_performer_ids.h"

#include "internal/execution.h"
#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_tools.h>

#include <korvel/korvel32.h>

#include <cstring>
#include <memory>
#include <new>
#include <string>

namespace kodbc::tools {
namespace {

enum class PerformerKind { DataSource, Connection };

struct PerformerState {
    explicit PerformerState(PerformerKind k) : kind(k) {}
    PerformerKind kind;
    DataSourceRecord ownRecord{};  // when the caller gave no record
    DataSourceRecord *record = nullptr;
    SQLHDBC hdbc = nullptr;
    RecentStatements recent;
};

// The drop-down list shows the entries as they are kept, encoded; the top
// one is selected.
void ShowRecent(HWND dialog, const RecentStatements &recent) {
    HWND box = GetDlgItem(dialog, IDC_SQL_PERFORMER_RECENT);
    SendMessageA(box, CB_RESETCONTENT, 0, 0);
    for (const std::string &entry : recent.entries())
        SendMessageA(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    SendMessageA(box, CB_SETCURSEL, 0, 0);
}

void TakeSelectedEntry(HWND dialog, const PerformerState &state) {
    const LRESULT index = SendDlgItemMessageA(dialog, IDC_SQL_PERFORMER_RECENT, CB_GETCURSEL, 0, 0);
    if (index < 0) return;
    SetItemText(dialog, IDC_SQL_PERFORMER_EDIT, state.recent.Decoded(static_cast<std::size_t>(index)).c_str());
}

// Runs sql directly on hdbc; its error is shown where it happens.
void RunStatement(SQLHDBC hdbc, const std::string &sql) {
    odbc::Statement statement;
    if (!PrepareStatement(hdbc, sql.c_str(), statement)) return;
    if (ExecuteStatement(statement, sql.c_str(), nullptr) != ExecOutcome::Executed) return;
    statement.reset();
    ShowTempNotice(msg::SQL_EXECUTED_OK);
}

// A connection of the dialog's own for one statement, closed on every path.
class OwnConnection {
public:
    explicit OwnConnection(DataSourceRecord *record) {
        connected_ = Kodbc_ConnectDataSource(record, &henv_, &hdbc_) == KODBC_CONNECTED;
    }
    ~OwnConnection() { Kodbc_DisconnectDataSource(&henv_, &hdbc_); }
    OwnConnection(const OwnConnection &) = delete;
    OwnConnection &operator=(const OwnConnection &) = delete;
    bool connected() const { return connected_; }
    SQLHDBC hdbc() const { return hdbc_; }

private:
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
    bool connected_ = false;
};

void Execute(HWND dialog, PerformerState &state) {
    const std::string sql = ItemText(dialog, IDC_SQL_PERFORMER_EDIT);
    if (sql.empty()) {
        LibraryMessage(msg::ENTER_SQL_STATEMENT);
        SetFocus(GetDlgItem(dialog, IDC_SQL_PERFORMER_EDIT));
        return;
    }
    state.recent.Add(sql);
    state.recent.Save();
    ShowRecent(dialog, state.recent);
    if (state.kind == PerformerKind::Connection) {
        RunStatement(state.hdbc, sql);
        return;
    }
    OwnConnection connection(state.record);
    if (connection.connected()) RunStatement(connection.hdbc(), sql);
}

// The record is the caller's: its name is read within its field only.
void ShowDataSource(HWND dialog, const DataSourceRecord &record) {
    const std::string name(record.DataSourceName, strnlen(record.DataSourceName, sizeof record.DataSourceName));
    SetItemText(dialog, IDC_SQL_PERFORMER_DSN, name.c_str());
}

void ChooseDataSource(HWND dialog, PerformerState &state) {
    if (Kodbc_DataSourceDialog(state.record) == 1) ShowDataSource(dialog, *state.record);
}

void Init(HWND dialog, PerformerState &state) {
    if (state.kind == PerformerKind::DataSource) ShowDataSource(dialog, *state.record);
    state.recent.Load();
    ShowRecent(dialog, state.recent);
    SetItemText(dialog, IDC_SQL_PERFORMER_EDIT, ReadPresetStatement().c_str());
}

bool Command(HWND dialog, PerformerState &state, int controlId, int notification) {
    switch (controlId) {
    case IDC_SQL_PERFORMER_EXECUTE:
        Execute(dialog, state);
        return true;
    case IDC_SQL_PERFORMER_RECENT:
        if (notification != CBN_SELCHANGE) return false;
        TakeSelectedEntry(dialog, state);
        return true;
    case IDC_SQL_PERFORMER_USE_LAST:
        TakeSelectedEntry(dialog, state);
        return true;
    case IDC_SQL_PERFORMER_CLEAR_RECENT:
        state.recent.Clear();
        state.recent.Save();
        ShowRecent(dialog, state.recent);
        return true;
    case IDC_SQL_PERFORMER_HELP:
        LibraryDialogBox(&SqlHelpCallback, IDD_SQL_HELP, dialog, reinterpret_cast<LPARAM>(dialog));
        return true;
    case IDC_SQL_PERFORMER_CHOOSE_DSN:
        if (state.kind != PerformerKind::DataSource) return false;
        ChooseDataSource(dialog, state);
        return true;
    case IDCANCEL:
        EndDialog(dialog, 2);
        return true;
    default:
        return false;
    }
}

// The state lives in the window's user data from WM_INITDIALOG until the
// window is destroyed.
INT_PTR PerformerProcedure(PerformerKind kind, HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto *state = reinterpret_cast<PerformerState *>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
    try {
        switch (message) {
        case WM_INITDIALOG: {
            auto created = std::make_unique<PerformerState>(kind);
            if (kind == PerformerKind::DataSource) {
                auto *record = reinterpret_cast<DataSourceRecord *>(lParam);
                created->record = record ? record : &created->ownRecord;
            } else {
                created->hdbc = reinterpret_cast<SQLHDBC>(lParam);
            }
            state = created.release();
            SetWindowLongPtrA(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(state));
            TranslateDialog(dialog);
            Init(dialog, *state);
            return TRUE;
        }
        case WM_COMMAND:
            return state && Command(dialog, *state, LOWORD(wParam), HIWORD(wParam)) ? TRUE : FALSE;
        case WM_DESTROY:
            SetWindowLongPtrA(dialog, GWLP_USERDATA, 0);
            delete state;
            return FALSE;
        default:
            return FALSE;
        }
    } catch (...) {
        return EndDialogAfterFailure(dialog);
    }
}

} // namespace
} // namespace kodbc::tools

using kodbc::LibraryDialogBox;
using kodbc::tools::PerformerKind;
using kodbc::tools::PerformerProcedure;

extern "C" {

KODBC_API INT_PTR KODBC_CALL SqlPerformerDs_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return PerformerProcedure(PerformerKind::DataSource, dialog, message, wParam, lParam);
}

KODBC_API INT_PTR KODBC_CALL SqlPerformerHdbc_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return PerformerProcedure(PerformerKind::Connection, dialog, message, wParam, lParam);
}

KODBC_API int KODBC_CALL Kodbc_DialogSqlPerformer(DataSourceRecord *record) {
    return static_cast<int>(LibraryDialogBox(&SqlPerformerDs_Callback, IDD_SQL_PERFORMER_DS, Korvel_ActiveWindow(),
                                             reinterpret_cast<LPARAM>(record)));
}

KODBC_API int KODBC_CALL Kodbc_SqlPerformer(SQLHDBC hdbc) {
    return static_cast<int>(LibraryDialogBox(&SqlPerformerHdbc_Callback, IDD_SQL_PERFORMER_HDBC,
                                             Korvel_ActiveWindow(), reinterpret_cast<LPARAM>(hdbc)));
}

} // extern "C"
