// Dialogs 10010, 10057 and 10059: they only collect what a change needs.
// OK stays disabled until there is something to act on; the column dialog
// shows table_admin.cpp's length refusal (1624) before it closes, so that
// the user corrects the length in place instead of starting over.
#include "tabledesign/table_admin_requests_dialog.h"
#include "tabledesign/table_admin.h"
#include "tabledesign/table_admin_dialog_ids.h"

#include "internal/datatypes.h"
#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <kodbc/kodbc_tabledesign.h>

#include <algorithm>
#include <new>

using namespace kodbc;
using namespace kodbc::tabledesign;

namespace {

constexpr int kColumnNameLimit = 50;
constexpr int kTypeNameSize = 100;

void Enable(HWND dialog, int id, bool enabled) { EnableWindow(GetDlgItem(dialog, id), enabled); }

// The common frame of the three procedures: the request in the user data,
// translation first, Cancel always ends with 2, nothing thrown escapes.
template <class Request>
INT_PTR RequestProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, void (*init)(HWND, Request &),
                         bool (*command)(HWND, Request &, int, int)) {
    try {
        auto *request = ExportedDialogObject<Request>(dialog, message, lParam);
        if (message == WM_INITDIALOG) {
            if (request) init(dialog, *request);
            else Enable(dialog, IDOK, false);
            return TRUE;
        }
        if (message != WM_COMMAND) return FALSE;
        const int id = LOWORD(wParam);
        if (id == IDCANCEL) {
            EndDialog(dialog, 2);
            return TRUE;
        }
        return request && command(dialog, *request, id, HIWORD(wParam)) ? TRUE : FALSE;
    } catch (...) {
        return EndDialogAfterFailure(dialog);
    }
}

void InitName(HWND dialog, const std::string &name) {
    SendDlgItemMessageA(dialog, IDC_ADD_COLUMN_NAME, EM_LIMITTEXT, kColumnNameLimit - 1, 0);
    SetItemText(dialog, IDC_ADD_COLUMN_NAME, name.c_str());
    Enable(dialog, IDOK, !name.empty());
}

// EN_CHANGE of the name field: OK needs a name.
bool NameChanged(HWND dialog, int id, int notification) {
    if (id != IDC_ADD_COLUMN_NAME || notification != EN_CHANGE) return false;
    Enable(dialog, IDOK, GetWindowTextLengthA(GetDlgItem(dialog, IDC_ADD_COLUMN_NAME)) > 0);
    return true;
}

// ---------------------------------------------------------------------------
// 10010

void InitAddColumn(HWND dialog, AddColumnRequest &request) {
    InitName(dialog, request.name);
    HWND types = GetDlgItem(dialog, IDC_ADD_COLUMN_TYPE);
    LRESULT chosen = 0;
    for (const DataTypeRow &row : kDataTypeTable) {
        if (row.code == 0) break;
        char name[kTypeNameSize];
        DataTypeDisplayName(row.code, name, sizeof name);
        const LRESULT index = SendMessageA(types, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
        if (index < 0) continue;
        SendMessageA(types, CB_SETITEMDATA, static_cast<WPARAM>(index), row.code);
        if (row.code == request.typeCode) chosen = index;
    }
    SendMessageA(types, CB_SETCURSEL, static_cast<WPARAM>(chosen), 0);
    if (request.length > 0) SetDlgItemInt(dialog, IDC_ADD_COLUMN_LENGTH, static_cast<UINT>(request.length), FALSE);
    CheckDlgButton(dialog, IDC_ADD_COLUMN_NOT_EMPTY, request.notEmpty ? BST_CHECKED : BST_UNCHECKED);
}

bool AddColumnCommand(HWND dialog, AddColumnRequest &request, int id, int notification) {
    if (id != IDOK) return NameChanged(dialog, id, notification);
    HWND types = GetDlgItem(dialog, IDC_ADD_COLUMN_TYPE);
    const LRESULT index = SendMessageA(types, CB_GETCURSEL, 0, 0);
    const int code =
        index < 0 ? 0 : static_cast<int>(SendMessageA(types, CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
    BOOL read = FALSE;
    const UINT length = GetDlgItemInt(dialog, IDC_ADD_COLUMN_LENGTH, &read, FALSE);
    const int given = read && length <= 0x7FFFFFFF ? static_cast<int>(length) : 0;
    if (const int refused = CheckColumnLength(code, given)) {
        LibraryMessage(refused);
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, IDC_ADD_COLUMN_LENGTH)), TRUE);
        return true;
    }
    request.name = ItemText(dialog, IDC_ADD_COLUMN_NAME);
    request.typeCode = code;
    request.length = given;
    request.notEmpty = IsDlgButtonChecked(dialog, IDC_ADD_COLUMN_NOT_EMPTY) == BST_CHECKED;
    EndDialog(dialog, 1);
    return true;
}

// ---------------------------------------------------------------------------
// 10057

void InitAutoIncrement(HWND dialog, AutoIncrementRequest &request) { InitName(dialog, request.name); }

bool AutoIncrementCommand(HWND dialog, AutoIncrementRequest &request, int id, int notification) {
    if (id != IDOK) return NameChanged(dialog, id, notification);
    request.name = ItemText(dialog, IDC_ADD_COLUMN_NAME);
    EndDialog(dialog, 1);
    return true;
}

// ---------------------------------------------------------------------------
// 10059

std::vector<std::string> ListTexts(HWND list) {
    std::vector<std::string> texts;
    const int count = static_cast<int>(SendMessageA(list, LB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        const LRESULT length = SendMessageA(list, LB_GETTEXTLEN, i, 0);
        std::string text(static_cast<std::size_t>(std::max<LRESULT>(0, length)) + 1, '\0');
        const LRESULT got = SendMessageA(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        texts.push_back(text);
    }
    return texts;
}

int Selected(HWND dialog, int list) { return static_cast<int>(SendDlgItemMessageA(dialog, list, LB_GETCURSEL, 0, 0)); }
int Count(HWND dialog, int list) { return static_cast<int>(SendDlgItemMessageA(dialog, list, LB_GETCOUNT, 0, 0)); }

void UpdateKeyButtons(HWND dialog) {
    const int key = Selected(dialog, IDC_ADD_KEY_COLUMNS), keyCount = Count(dialog, IDC_ADD_KEY_COLUMNS);
    Enable(dialog, IDC_ADD_KEY_ADD, Selected(dialog, IDC_ADD_KEY_CANDIDATES) >= 0);
    Enable(dialog, IDC_ADD_KEY_REMOVE, key >= 0);
    Enable(dialog, IDC_ADD_KEY_UP, key > 0);
    Enable(dialog, IDC_ADD_KEY_DOWN, key >= 0 && key + 1 < keyCount);
    Enable(dialog, IDOK, keyCount > 0);
}

// Moves the selected entry of list `from` to position `at` of list `to`
// (-1: the end) and selects it there; `from` keeps a selection at the same
// place where it has entries left.
void MoveEntry(HWND dialog, int from, int to, int at) {
    const int index = Selected(dialog, from);
    if (index < 0) return;
    const std::string text = ListTexts(GetDlgItem(dialog, from))[static_cast<std::size_t>(index)];
    SendDlgItemMessageA(dialog, from, LB_DELETESTRING, static_cast<WPARAM>(index), 0);
    const int left = Count(dialog, from);
    if (left > 0) SendDlgItemMessageA(dialog, from, LB_SETCURSEL, static_cast<WPARAM>(std::min(index, left - 1)), 0);
    const LRESULT placed =
        SendDlgItemMessageA(dialog, to, LB_INSERTSTRING, static_cast<WPARAM>(at),
                            reinterpret_cast<LPARAM>(text.c_str()));
    if (placed >= 0) SendDlgItemMessageA(dialog, to, LB_SETCURSEL, static_cast<WPARAM>(placed), 0);
}

// A column taken out of the key goes back to its place among the candidates.
int CandidatePosition(HWND dialog, const PrimaryKeyRequest &request) {
    const int index = Selected(dialog, IDC_ADD_KEY_COLUMNS);
    if (index < 0) return -1;
    const std::string column = ListTexts(GetDlgItem(dialog, IDC_ADD_KEY_COLUMNS))[static_cast<std::size_t>(index)];
    const auto rank = [&](const std::string &name) {
        return std::find(request.candidates.begin(), request.candidates.end(), name) - request.candidates.begin();
    };
    const std::vector<std::string> offered = ListTexts(GetDlgItem(dialog, IDC_ADD_KEY_CANDIDATES));
    for (std::size_t i = 0; i < offered.size(); ++i)
        if (rank(offered[i]) > rank(column)) return static_cast<int>(i);
    return -1;
}

void InitPrimaryKey(HWND dialog, PrimaryKeyRequest &request) {
    for (const std::string &name : request.candidates) {
        const bool chosen = std::find(request.columns.begin(), request.columns.end(), name) != request.columns.end();
        SendDlgItemMessageA(dialog, chosen ? IDC_ADD_KEY_COLUMNS : IDC_ADD_KEY_CANDIDATES, LB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(name.c_str()));
    }
    if (Count(dialog, IDC_ADD_KEY_CANDIDATES) > 0)
        SendDlgItemMessageA(dialog, IDC_ADD_KEY_CANDIDATES, LB_SETCURSEL, 0, 0);
    UpdateKeyButtons(dialog);
}

bool PrimaryKeyCommand(HWND dialog, PrimaryKeyRequest &request, int id, int notification) {
    switch (id) {
    case IDC_ADD_KEY_CANDIDATES:
        if (notification == LBN_DBLCLK) MoveEntry(dialog, IDC_ADD_KEY_CANDIDATES, IDC_ADD_KEY_COLUMNS, -1);
        else if (notification != LBN_SELCHANGE) return false;
        break;
    case IDC_ADD_KEY_COLUMNS:
        if (notification == LBN_DBLCLK)
            MoveEntry(dialog, IDC_ADD_KEY_COLUMNS, IDC_ADD_KEY_CANDIDATES, CandidatePosition(dialog, request));
        else if (notification != LBN_SELCHANGE) return false;
        break;
    case IDC_ADD_KEY_ADD: MoveEntry(dialog, IDC_ADD_KEY_CANDIDATES, IDC_ADD_KEY_COLUMNS, -1); break;
    case IDC_ADD_KEY_REMOVE:
        MoveEntry(dialog, IDC_ADD_KEY_COLUMNS, IDC_ADD_KEY_CANDIDATES, CandidatePosition(dialog, request));
        break;
    case IDC_ADD_KEY_UP:
    case IDC_ADD_KEY_DOWN: {
        const int index = Selected(dialog, IDC_ADD_KEY_COLUMNS);
        const int to = index + (id == IDC_ADD_KEY_UP ? -1 : 1);
        if (index < 0 || to < 0 || to >= Count(dialog, IDC_ADD_KEY_COLUMNS)) break;
        MoveEntry(dialog, IDC_ADD_KEY_COLUMNS, IDC_ADD_KEY_COLUMNS, to);
        break;
    }
    case IDOK:
        if (Count(dialog, IDC_ADD_KEY_COLUMNS) == 0) return true;
        request.columns = ListTexts(GetDlgItem(dialog, IDC_ADD_KEY_COLUMNS));
        EndDialog(dialog, 1);
        return true;
    default: return false;
    }
    UpdateKeyButtons(dialog);
    return true;
}

} // namespace

extern "C" {

KODBC_API INT_PTR KODBC_CALL AddColumn_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RequestProcedure<AddColumnRequest>(dialog, message, wParam, lParam, InitAddColumn, AddColumnCommand);
}

KODBC_API INT_PTR KODBC_CALL AddAutoInc_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RequestProcedure<AutoIncrementRequest>(dialog, message, wParam, lParam, InitAutoIncrement,
                                                  AutoIncrementCommand);
}

KODBC_API INT_PTR KODBC_CALL AddPk_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RequestProcedure<PrimaryKeyRequest>(dialog, message, wParam, lParam, InitPrimaryKey, PrimaryKeyCommand);
}

} // extern "C"

namespace kodbc::tabledesign {

bool AskForColumn(HWND owner, AddColumnRequest &request) {
    return LibraryDialogBox(&AddColumn_Dialog_Callback, IDD_ADD_COLUMN, owner, reinterpret_cast<LPARAM>(&request)) == 1;
}

bool AskForAutoIncrementColumn(HWND owner, AutoIncrementRequest &request) {
    return LibraryDialogBox(&AddAutoInc_Dialog_Callback, IDD_ADD_AUTOINC, owner, reinterpret_cast<LPARAM>(&request)) ==
           1;
}

bool AskForPrimaryKey(HWND owner, PrimaryKeyRequest &request) {
    return LibraryDialogBox(&AddPk_Dialog_Callback, IDD_ADD_PRIMARY_KEY, owner,
                            reinterpret_cast<LPARAM>(&request)) == 1;
}

} // namespace kodbc::tabledesign
