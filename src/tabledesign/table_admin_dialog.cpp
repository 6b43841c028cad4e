// Dialog 10009, table administration: the columns of one table and its keys,
// and the buttons that change them. What a change does, asks and refuses is
// table_admin.cpp's; this window shows the table again after every change
// that went through and keeps the selection where the user expects it.
#include "tabledesign/table_admin.h"
#include "tabledesign/table_admin_dialog_ids.h"
#include "tabledesign/table_admin_requests_dialog.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_tabledesign.h>

#include <commctrl.h>

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

using namespace kodbc;
using namespace kodbc::tabledesign;

namespace {

constexpr int kTableNameSize = 50;
constexpr int kCaptionSize = 200;

// Owned by Kodbc_TableAdmin for the length of the call.
struct TableAdminContext {
    SQLHDBC hdbc = nullptr;
    char table[kTableNameSize] = {};
    int32_t reserved = 0;
    HWND list = nullptr;  // set when the dialog opens
    // What the window shows, so that enabling the buttons asks no database.
    const DbCapabilityRow *capabilities = nullptr;
    std::vector<std::string> columns;  // names in list order
    bool hasPrimaryKey = false;
    bool hasAutoIncrement = false;
};

int SelectedCount(HWND list) { return static_cast<int>(SendMessageA(list, LVM_GETSELECTEDCOUNT, 0, 0)); }

std::vector<int> SelectedRows(HWND list) {
    std::vector<int> rows;
    for (int row = static_cast<int>(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
         row >= 0;
         row = static_cast<int>(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED)))
        rows.push_back(row);
    return rows;
}

void UpdateButtons(HWND dialog, const TableAdminContext &context) {
    const AdminAbilities can =
        AdminAbilitiesOf(*context.capabilities, static_cast<int>(context.columns.size()), SelectedCount(context.list),
                         context.hasPrimaryKey, context.hasAutoIncrement);
    const struct {
        int id;
        bool enabled;
    } buttons[] = {
        {IDC_TABLE_ADMIN_ADD_COLUMN, can.addColumn},     {IDC_TABLE_ADMIN_DROP_COLUMNS, can.dropColumns},
        {IDC_TABLE_ADMIN_ADD_KEY, can.addPrimaryKey},    {IDC_TABLE_ADMIN_DROP_KEY, can.dropPrimaryKey},
        {IDC_TABLE_ADMIN_ADD_AUTOINC, can.addAutoIncrement},
    };
    for (const auto &button : buttons) EnableWindow(GetDlgItem(dialog, button.id), button.enabled);
}

void AddListColumns(HWND list) {
    int index = 0;
    for (const ListHeaderColumn &column : AdminListColumns()) {
        if (Korvel_ListView_AddColumn(list, index, column.caption.c_str(), column.width) < 0) break;
        if (column.centred) {
            LVCOLUMNA format = {};
            format.mask = LVCF_FMT;
            format.fmt = LVCFMT_CENTER;
            SendMessageA(list, LVM_SETCOLUMNA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&format));
        }
        ++index;
    }
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
}

// Reads the table again: the list, the key displays and the buttons. The
// columns that were selected stay selected where they are still there.
void Refresh(HWND dialog, TableAdminContext &context) {
    std::vector<std::string> selected;
    for (int row : SelectedRows(context.list))
        if (static_cast<std::size_t>(row) < context.columns.size()) selected.push_back(context.columns[row]);

    std::vector<AdminColumn> columns;
    ReadAdminColumns(context.hdbc, context.table, columns);  // an error is shown; what was read is listed
    SendMessageA(context.list, LVM_DELETEALLITEMS, 0, 0);
    context.columns.clear();
    for (const AdminColumn &column : columns) {
        const int row = static_cast<int>(context.columns.size());
        if (Korvel_ListView_AddItem(context.list, row, column.name.c_str()) < 0) break;
        const char *texts[] = {column.type.c_str(), column.nullableText.c_str(), column.defaultValue.c_str(),
                               column.remark.c_str()};
        for (int i = 0; i < 4; ++i) Korvel_ListView_SetItemText(context.list, row, i + 1, texts[i]);
        context.columns.push_back(column.name);
    }
    for (const std::string &name : selected) {
        const int row = AdminRowOf(context.columns, name);
        if (row < 0) continue;
        LVITEMA item = {};
        item.stateMask = item.state = LVIS_SELECTED;
        SendMessageA(context.list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }

    const std::string key = PrimaryKeyText(context.hdbc, context.table);
    const std::string counter = AutoIncrementColumnName(context.hdbc, context.table);
    SetItemText(dialog, IDC_TABLE_ADMIN_KEY, key.c_str());
    SetItemText(dialog, IDC_TABLE_ADMIN_AUTOINC, counter.c_str());
    context.hasPrimaryKey = !key.empty();
    context.hasAutoIncrement = !counter.empty();
    UpdateButtons(dialog, context);
}

void ShowTableName(HWND dialog, const TableAdminContext &context) {
    char caption[kCaptionSize] = {};
    GetWindowTextA(dialog, caption, sizeof caption);
    std::string title = caption;
    const std::size_t at = title.find("%s");
    if (at != std::string::npos) title.replace(at, 2, context.table);
    SetWindowTextA(dialog, title.c_str());
}

void Init(HWND dialog, TableAdminContext &context) {
    context.list = GetDlgItem(dialog, IDC_TABLE_ADMIN_LIST);
    context.capabilities = &CapabilitiesOf(context.hdbc);
    ShowTableName(dialog, context);
    AddListColumns(context.list);
    Refresh(dialog, context);
}

// The selected columns go top to bottom, each after its question.
void DropSelectedColumns(HWND dialog, TableAdminContext &context) {
    const std::vector<int> rows = SelectedRows(context.list);
    std::vector<std::string> names;
    for (int row : rows)
        if (static_cast<std::size_t>(row) < context.columns.size()) names.push_back(context.columns[row]);
    if (names.empty() || DropColumns(context.hdbc, context.table, names, true) == 0) return;
    Refresh(dialog, context);
    ListViewSelectOnly(context.list, AdminRowAfterDrop(rows, names, context.columns));
    UpdateButtons(dialog, context);
}

void AddOneColumn(HWND dialog, TableAdminContext &context) {
    AddColumnRequest request;
    if (!AskForColumn(dialog, request)) return;
    if (!AddColumn(context.hdbc, context.table, request.name.c_str(), request.typeCode, request.length)) return;
    Refresh(dialog, context);
    ListViewSelectOnly(context.list, AdminRowOf(context.columns, request.name));
    UpdateButtons(dialog, context);
}

void AddAutoIncrement(HWND dialog, TableAdminContext &context) {
    if (!MayAddAutoIncrement(context.hdbc, context.table)) return;
    AutoIncrementRequest request;
    if (!AskForAutoIncrementColumn(dialog, request)) return;
    if (!AddAutoIncrementColumn(context.hdbc, context.table, request.name.c_str())) return;
    Refresh(dialog, context);
    ListViewSelectOnly(context.list, AdminRowOf(context.columns, request.name));
    UpdateButtons(dialog, context);
}

void CreatePrimaryKey(HWND dialog, TableAdminContext &context) {
    if (!MayAddPrimaryKey(context.hdbc, context.table)) return;
    PrimaryKeyRequest request;
    request.candidates = KeyCandidates(context.hdbc, context.table);
    if (!AskForPrimaryKey(dialog, request)) return;
    if (AddPrimaryKey(context.hdbc, context.table, request.columns)) Refresh(dialog, context);
}

void Close(HWND dialog) {
    ForgetOrderByClauses();
    EndDialog(dialog, 1);
}

bool Command(HWND dialog, TableAdminContext &context, int id, int notification) {
    if (id != IDOK && id != IDCANCEL && notification != BN_CLICKED) return false;
    switch (id) {
    case IDC_TABLE_ADMIN_ADD_COLUMN: AddOneColumn(dialog, context); return true;
    case IDC_TABLE_ADMIN_DROP_COLUMNS: DropSelectedColumns(dialog, context); return true;
    case IDC_TABLE_ADMIN_ADD_KEY: CreatePrimaryKey(dialog, context); return true;
    case IDC_TABLE_ADMIN_DROP_KEY:
        if (DropPrimaryKey(context.hdbc, context.table, true)) Refresh(dialog, context);
        return true;
    case IDC_TABLE_ADMIN_ADD_AUTOINC: AddAutoIncrement(dialog, context); return true;
    case IDC_TABLE_ADMIN_CLOSE:
    case IDOK:
    case IDCANCEL: Close(dialog); return true;
    default: return false;
    }
}

bool SelectionChanged(const NMHDR &header) {
    if (header.idFrom != IDC_TABLE_ADMIN_LIST || header.code != LVN_ITEMCHANGED) return false;
    const auto &change = reinterpret_cast<const NMLISTVIEW &>(header);
    return (change.uChanged & LVIF_STATE) && ((change.uNewState ^ change.uOldState) & LVIS_SELECTED);
}

} // namespace

extern "C" {

KODBC_API INT_PTR KODBC_CALL TableAdmin_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        auto *context = ExportedDialogObject<TableAdminContext>(dialog, message, lParam);
        if (message == WM_INITDIALOG) {
            if (context) {
                Init(dialog, *context);
            } else {
                for (int id = IDC_TABLE_ADMIN_ADD_COLUMN; id <= IDC_TABLE_ADMIN_ADD_AUTOINC; ++id)
                    EnableWindow(GetDlgItem(dialog, id), FALSE);
            }
            return TRUE;
        }
        switch (message) {
        case WM_COMMAND:
            if (!context) {
                const int id = LOWORD(wParam);
                if (id != IDC_TABLE_ADMIN_CLOSE && id != IDOK && id != IDCANCEL) return FALSE;
                EndDialog(dialog, 1);
                return TRUE;
            }
            return Command(dialog, *context, LOWORD(wParam), HIWORD(wParam)) ? TRUE : FALSE;
        case WM_NOTIFY:
            if (!context || !lParam || !SelectionChanged(*reinterpret_cast<const NMHDR *>(lParam))) return FALSE;
            UpdateButtons(dialog, *context);
            return TRUE;
        default:
            return FALSE;
        }
    } catch (...) {
        return EndDialogAfterFailure(dialog);
    }
}

KODBC_API int KODBC_CALL Kodbc_TableAdmin(SQLHDBC hdbc, const char *table, int reserved) {
    try {
        if (!hdbc || !table || !*table) return -1;
        std::unique_ptr<TableAdminContext> context(new (std::nothrow) TableAdminContext);
        if (!context) {
            LibraryMessage(msg::OUT_OF_MEMORY);
            return -1;
        }
        context->hdbc = hdbc;
        korvel::BoundedText(context->table, sizeof context->table).append(table);
        context->reserved = reserved;
        INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&controls);
        if (LibraryDialogBox(&TableAdmin_Dialog_Callback, IDD_TABLE_ADMIN, Korvel_ActiveWindow(),
                             reinterpret_cast<LPARAM>(context.get())) == -1)
            return -1;
        return 0;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return -1;
    }
}

} // extern "C"
