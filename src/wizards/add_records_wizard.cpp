// The add-records wizard's windows: six pages in the wizard frame, the
// field properties dialog and the mapping list's pop-up menu. They move
// data between their controls and the wizard's context; what is allowed,
// what a row says and what the run does is decided in add_records.cpp and
// add_records_run.cpp.
#include "wizards/add_records.h"
#include "wizards/add_records_run.h"
#include "wizards/add_records_wizard_ids.h"
#include "wizards/list_view_pages.h"
#include "wizards/page_controls.h"
#include "wizards/record_wizard_common.h"
#include "wizards/wizard_step.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_wizards.h>

#include <commctrl.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

using namespace kodbc;
using namespace kodbc::wizards;

namespace {

constexpr UINT kActivate = kPageActivate;
constexpr UINT kLeave = kPageLeaveMessage;
constexpr int kBoxTextSize = 300;

constexpr KorvelWizardPage kPages[] = {
    {IDD_ADDREC_DEST_TABLE, {0, 0}}, {IDD_ADDREC_SOURCE_DSN, {0, 0}}, {IDD_ADDREC_SOURCE_TABLE, {0, 0}},
    {IDD_ADDREC_MAPPING, {0, 0}},    {IDD_ADDREC_ID_FIELDS, {0, 0}},  {IDD_ADDREC_SUMMARY, {0, 0}},
    {0, {0, 0}},
};

// ---------------------------------------------------------------------------
// Controls

HWND Item(HWND page, int id) { return GetDlgItem(page, id); }

void Answer(LPARAM lParam, int answer) {
    if (lParam) *reinterpret_cast<int32_t *>(lParam) = answer;
}

// The destination table's name as a terminated string (the record's name
// field need not carry a terminator).
std::string DestinationTable(const AddRecordsContext &context) {
    const char *name = context.table.Object.DbObjectName;
    return std::string(name, strnlen(name, sizeof context.table.Object.DbObjectName));
}

// ---------------------------------------------------------------------------
// Mapping list

void ShowRowTexts(HWND list, int row, const AddRecField &field) {
    const MappingRowTexts texts = MappingRowText(field);
    Korvel_ListView_SetItemText(list, row, 0, texts.destination.c_str());
    Korvel_ListView_SetItemText(list, row, 1, texts.destinationType.c_str());
    Korvel_ListView_SetItemText(list, row, 2, texts.source.c_str());
    Korvel_ListView_SetItemText(list, row, 3, texts.sourceType.c_str());
}

void UpdatePropertiesButton(HWND page) {
    EnableWindow(Item(page, IDC_ADDREC_PROPERTIES), SelectedRowCount(Item(page, IDC_ADDREC_MAPPING_LIST)) > 0);
}

void FillMappingList(AddRecordsContext &context, HWND page) {
    HWND list = Item(page, IDC_ADDREC_MAPPING_LIST);
    SendMessageA(list, LVM_DELETEALLITEMS, 0, 0);
    const int rows = MappingRowCount(context.fields);
    for (int row = 0; row < rows; ++row) {
        const AddRecField *field = MappingRowEntry(context.fields, row);
        if (Korvel_ListView_AddItem(list, row, field->destinationName.c_str()) < 0) break;
        ShowRowTexts(list, row, *field);
    }
}

// The properties dialog for the first selected row; the row shows the
// choice afterwards.
void EditFirstSelectedRow(AddRecordsContext &context, HWND page) {
    HWND list = Item(page, IDC_ADDREC_MAPPING_LIST);
    const int row = FirstSelectedRow(list);
    AddRecField *field = MappingRowEntry(context.fields, row);
    if (!field) return;
    if (LibraryDialogBox(&EditAddRecFieldDialogCallback, IDD_ADDREC_FIELD, GetAncestor(page, GA_ROOT),
                         reinterpret_cast<LPARAM>(field)) == 1)
        ShowRowTexts(list, row, *field);
}

void LeaveSelectedRowsEmpty(AddRecordsContext &context, HWND page) {
    HWND list = Item(page, IDC_ADDREC_MAPPING_LIST);
    const std::vector<int> rows = SelectedRows(list);
    LeaveRowsEmpty(context.fields, rows);
    for (int row : rows)
        if (const AddRecField *field = MappingRowEntry(context.fields, row)) ShowRowTexts(list, row, *field);
}

// ---------------------------------------------------------------------------
// Pages. Each returns 1 for a message it handled.

int DestinationTablePage(AddRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND list = Item(page, IDC_ADDREC_DEST_LIST);
    switch (message) {
    case kActivate:
        Kodbc_FillTablesBox(context.destination, context.table.Object.DbObjectType, list);
        SelectExactOrFirst(list, DestinationTable(context).c_str());
        return 1;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDC_ADDREC_DEST_LIST || HIWORD(wParam) != LBN_SELCHANGE) return 0;
        StoreTableName(context.table, BoxSelection(list).c_str());
        return 1;
    case kLeave:
        if (IsLeavingForwards(static_cast<unsigned>(wParam))) {
            const PageDecision decision = LeaveDestinationTablePage(context, BoxSelection(list).c_str());
            if (decision.stays()) FocusOnPage(page, IDC_ADDREC_DEST_LIST);
            Answer(lParam, decision.answer());
        }
        return 1;
    default:
        return 0;
    }
}

int SourceDataSourcePage(AddRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND list = Item(page, IDC_ADDREC_DSN_LIST);
    switch (message) {
    case kActivate:
        Kodbc_FillDataSourcesBox(list);
        SelectExactOrFirst(list, context.source.DataSourceName);
        SetItemText(page, IDC_ADDREC_USER, context.source.UserId);
        SetItemText(page, IDC_ADDREC_PASSWORD, context.source.Password);
        ActivateSourceDataSourcePage(context);
        return 1;
    case kLeave:
        if (IsLeavingForwards(static_cast<unsigned>(wParam))) {
            const DataSourceRecord entered =
                EnteredSource(page, context.source, IDC_ADDREC_DSN_LIST, IDC_ADDREC_USER, IDC_ADDREC_PASSWORD);
            const PageDecision decision = LeaveSourceDataSourcePage(context, entered);
            if (decision.messageId) FocusOnPage(page, IDC_ADDREC_DSN_LIST);
            Answer(lParam, decision.answer());
        }
        return 1;
    default:
        return 0;
    }
}

void FillSourceTables(AddRecordsContext &context, HWND page) {
    HWND list = Item(page, IDC_ADDREC_SOURCE_LIST);
    Kodbc_FillTablesBox(context.sourceDbc, context.sourceFilter, list);
    SelectExactOrFirst(list, context.sourceTable);
}

int SourceTablePage(AddRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kActivate:
        CheckDlgButton(page, IDC_ADDREC_FILTER_TABLES, (context.sourceFilter & kSourceFilterTables) != 0);
        CheckDlgButton(page, IDC_ADDREC_FILTER_QUERIES, (context.sourceFilter & kSourceFilterQueries) != 0);
        CheckDlgButton(page, IDC_ADDREC_FILTER_ALL, (context.sourceFilter & kSourceFilterAll) != 0);
        FillSourceTables(context, page);
        return 1;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_ADDREC_FILTER_TABLES:
        case IDC_ADDREC_FILTER_QUERIES:
        case IDC_ADDREC_FILTER_ALL:
            if (HIWORD(wParam) != BN_CLICKED) return 0;
            context.sourceFilter = SourceFilterFromChecks(IsDlgButtonChecked(page, IDC_ADDREC_FILTER_TABLES) != 0,
                                                          IsDlgButtonChecked(page, IDC_ADDREC_FILTER_QUERIES) != 0,
                                                          IsDlgButtonChecked(page, IDC_ADDREC_FILTER_ALL) != 0);
            FillSourceTables(context, page);
            return 1;
        default:
            return 0;
        }
    case kLeave:
        if (IsLeavingForwards(static_cast<unsigned>(wParam))) {
            const PageDecision decision =
                LeaveSourceTablePage(context, BoxSelection(Item(page, IDC_ADDREC_SOURCE_LIST)).c_str());
            if (decision.messageId) FocusOnPage(page, IDC_ADDREC_SOURCE_LIST);
            Answer(lParam, decision.answer());
        }
        return 1;
    default:
        return 0;
    }
}

int MappingPage(AddRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND list = Item(page, IDC_ADDREC_MAPPING_LIST);
    switch (message) {
    case WM_INITDIALOG:
        AddListViewColumns(list, msg::HEADER_FIELD_MAPPING);
        return 1;
    case kActivate:
        FillMappingList(context, page);
        FocusOnPage(page, IDC_ADDREC_MAPPING_LIST);
        UpdatePropertiesButton(page);
        return 1;
    case WM_NOTIFY: {
        const auto *header = reinterpret_cast<const NMHDR *>(lParam);
        if (!header || header->idFrom != IDC_ADDREC_MAPPING_LIST) return 0;
        switch (header->code) {
        case LVN_ITEMCHANGED:
            UpdatePropertiesButton(page);
            return 1;
        case NM_DBLCLK:
            EditFirstSelectedRow(context, page);
            return 1;
        case NM_RCLICK: {
            POINT at = reinterpret_cast<const NMITEMACTIVATE *>(lParam)->ptAction;
            ClientToScreen(list, &at);
            TrackRowMenu(page, list, IDM_ADDREC_FIELD_MENU, {IDM_ADDREC_LEAVE_EMPTY, IDM_ADDREC_PROPERTIES},
                         IDM_ADDREC_PROPERTIES, at);
            return 1;
        }
        default:
            return 0;
        }
    }
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_ADDREC_PROPERTIES:
        case IDM_ADDREC_PROPERTIES:
            EditFirstSelectedRow(context, page);
            return 1;
        case IDM_ADDREC_LEAVE_EMPTY:
            LeaveSelectedRowsEmpty(context, page);
            return 1;
        default:
            return 0;
        }
    case kLeave:
        if (IsLeavingForwards(static_cast<unsigned>(wParam))) {
            const PageDecision decision = LeaveMappingPage(context);
            if (decision.focusRow >= 0) {
                SetRowSelected(list, -1, false);  // -1: every row
                SetRowSelected(list, decision.focusRow, true);
                FocusOnPage(page, IDC_ADDREC_MAPPING_LIST);
            }
            Answer(lParam, decision.answer());
        }
        return 1;
    default:
        return 0;
    }
}

void EnableIdFieldLists(const AddRecordsContext &context, HWND page) {
    const bool enabled = IdFieldListsEnabled(context.recordMode);
    for (int id : {IDC_ADDREC_DEST_ID_LABEL, IDC_ADDREC_DEST_ID, IDC_ADDREC_SOURCE_ID_LABEL, IDC_ADDREC_SOURCE_ID})
        EnableWindow(Item(page, id), enabled);
}

int IdFieldsPage(AddRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kActivate: {
        HWND source = Item(page, IDC_ADDREC_SOURCE_ID), destination = Item(page, IDC_ADDREC_DEST_ID);
        Kodbc_FillFieldsBox(context.sourceDbc, context.sourceTable, 0, source);
        Kodbc_FillFieldsBox(context.destination, DestinationTable(context).c_str(), 0, destination);
        SelectExactOrFirst(source, context.sourceIdField);
        SelectExactOrFirst(destination, context.destIdField);
        CheckRadioButton(page, IDC_ADDREC_MODE_ADD, IDC_ADDREC_MODE_REPLACE, context.recordMode);
        EnableIdFieldLists(context, page);
        return 1;
    }
    case WM_COMMAND:
        if ((LOWORD(wParam) != IDC_ADDREC_MODE_ADD && LOWORD(wParam) != IDC_ADDREC_MODE_REPLACE) ||
            HIWORD(wParam) != BN_CLICKED)
            return 0;
        context.recordMode = LOWORD(wParam);
        CheckRadioButton(page, IDC_ADDREC_MODE_ADD, IDC_ADDREC_MODE_REPLACE, context.recordMode);
        EnableIdFieldLists(context, page);
        return 1;
    case kLeave:
        if (IsLeavingForwards(static_cast<unsigned>(wParam))) {
            const PageDecision decision =
                LeaveIdFieldsPage(context, context.recordMode, BoxSelection(Item(page, IDC_ADDREC_SOURCE_ID)).c_str(),
                                  BoxSelection(Item(page, IDC_ADDREC_DEST_ID)).c_str());
            Answer(lParam, decision.answer());
        }
        return 1;
    default:
        return 0;
    }
}

int SummaryPage(AddRecordsContext &context, HWND page, UINT message, WPARAM, LPARAM lParam) {
    switch (message) {
    case kActivate:
        SetItemText(page, IDC_ADDREC_FINISH_TEXT, SummaryText(context).c_str());
        return 1;
    case kLeave:
        Answer(lParam, kPageLeave);
        return 1;
    default:
        return 0;
    }
}

int DispatchPage(AddRecordsContext &context, int page, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kLeave && !IsLeavingForwards(static_cast<unsigned>(wParam))) {
        Answer(lParam, kPageLeave);
        return 1;
    }
    int handled = 0;
    switch (page) {
    case IDD_ADDREC_DEST_TABLE: handled = DestinationTablePage(context, window, message, wParam, lParam); break;
    case IDD_ADDREC_SOURCE_DSN: handled = SourceDataSourcePage(context, window, message, wParam, lParam); break;
    case IDD_ADDREC_SOURCE_TABLE: handled = SourceTablePage(context, window, message, wParam, lParam); break;
    case IDD_ADDREC_MAPPING: handled = MappingPage(context, window, message, wParam, lParam); break;
    case IDD_ADDREC_ID_FIELDS: handled = IdFieldsPage(context, window, message, wParam, lParam); break;
    case IDD_ADDREC_SUMMARY: handled = SummaryPage(context, window, message, wParam, lParam); break;
    default: return 0;
    }
    return message == WM_INITDIALOG ? 1 : handled;
}

// ---------------------------------------------------------------------------
// Field properties dialog 10035

struct FieldDialogControl {
    int id;
    int mode;  // the fill mode whose radio button enables the control
};
constexpr FieldDialogControl kFillControls[] = {
    {IDC_ADDREC_FIELD_FIXED, kFillFixedValue},
    {IDC_ADDREC_FIELD_SOURCE_LABEL, kFillSourceField},
    {IDC_ADDREC_FIELD_SOURCE, kFillSourceField},
};

int CheckedFillMode(HWND dialog) {
    for (int mode : {kFillLeaveEmpty, kFillFixedValue, kFillSourceField})
        if (IsDlgButtonChecked(dialog, mode) == BST_CHECKED) return mode;
    return kFillLeaveEmpty;
}

void EnableFillControls(HWND dialog, const AddRecField &field) {
    const int checked = CheckedFillMode(dialog);
    for (const FieldDialogControl &control : kFillControls)
        EnableWindow(Item(dialog, control.id), IsFillChoiceEnabled(field, checked, control.mode));
    for (int mode : {kFillLeaveEmpty, kFillFixedValue, kFillSourceField})
        EnableWindow(Item(dialog, mode), !field.readOnly);
}

void InitFieldDialog(HWND dialog, const AddRecField &field) {
    SetItemText(dialog, IDC_ADDREC_FIELD_NAME, field.destinationName.c_str());
    SetItemText(dialog, IDC_ADDREC_FIELD_TYPE, TypeText(field.destinationType, 0).c_str());
    const bool hasLength = field.destinationLength > 0;
    SetItemText(dialog, IDC_ADDREC_FIELD_LENGTH, hasLength ? std::to_string(field.destinationLength).c_str() : "");
    ShowWindow(Item(dialog, IDC_ADDREC_FIELD_LENGTH_LABEL), hasLength ? SW_SHOW : SW_HIDE);
    ShowWindow(Item(dialog, IDC_ADDREC_FIELD_LENGTH), hasLength ? SW_SHOW : SW_HIDE);
    SetItemText(dialog, IDC_ADDREC_FIELD_FIXED, field.fixedValue.c_str());
    HWND source = Item(dialog, IDC_ADDREC_FIELD_SOURCE);
    Kodbc_FillFieldsBox(field.sourceConnection, field.sourceTable.c_str(), 0, source);
    SelectExactOrFirst(source, field.sourceField.c_str());
    CheckRadioButton(dialog, kFillLeaveEmpty, kFillSourceField, field.mode);
    ShowWindow(Item(dialog, IDC_ADDREC_FIELD_READ_ONLY), field.readOnly ? SW_SHOW : SW_HIDE);
    EnableFillControls(dialog, field);
}

INT_PTR FieldDialogCommand(HWND dialog, AddRecField &field, int id, int notification) {
    switch (id) {
    case kFillLeaveEmpty:
    case kFillFixedValue:
    case kFillSourceField:
        if (notification != BN_CLICKED) return FALSE;
        CheckRadioButton(dialog, kFillLeaveEmpty, kFillSourceField, id);
        EnableFillControls(dialog, field);
        return TRUE;
    case IDOK: {
        const bool stored = ApplyFieldChoice(field, CheckedFillMode(dialog), ItemText(dialog, IDC_ADDREC_FIELD_FIXED).c_str(),
                                             BoxSelection(Item(dialog, IDC_ADDREC_FIELD_SOURCE)).c_str());
        EndDialog(dialog, stored ? 1 : 0);
        return TRUE;
    }
    case IDCANCEL:
        EndDialog(dialog, 0);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

extern "C" {

KODBC_API INT_PTR KODBC_CALL EditAddRecFieldDialogCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        auto *field = ExportedDialogObject<AddRecField>(dialog, message, lParam);
        if (message == WM_INITDIALOG) {
            if (field) InitFieldDialog(dialog, *field);
            return TRUE;
        }
        if (message != WM_COMMAND) return FALSE;
        if (!field) {
            if (LOWORD(wParam) != IDCANCEL && LOWORD(wParam) != IDOK) return FALSE;
            EndDialog(dialog, 0);
            return TRUE;
        }
        return FieldDialogCommand(dialog, *field, LOWORD(wParam), HIWORD(wParam));
    } catch (...) {
        EndDialog(dialog, 0);
        return FALSE;
    }
}

KODBC_API int KODBC_CALL AddRecsWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam) {
    return WizardStep<AddRecordsContext>(wizard, window, message, lParam, [&](AddRecordsContext &context) {
        return DispatchPage(context, page, window, message, wParam, lParam);
    });
}

KODBC_API int KODBC_CALL Kodbc_AddRecordsWizzard(SQLHDBC destination, TableRecord *table) {
    try {
        std::unique_ptr<AddRecordsContext> context = CreateAddRecordsContext(destination, table);
        if (!context) return KODBC_FAILURE;
        INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&controls);
        if (PerformWizard(kPages, &AddRecsWizzCallback, context.get(), IDB_ADDREC_WIZARD, IDS_ADDREC_WIZARD_TITLE) != 1)
            return KODBC_FAILURE;
        PlatformProgress progress(msg::CAPTION_RECORD_PROGRESS);
        if (RunAddRecords(*context, progress) != KODBC_SUCCESS) return KODBC_FAILURE;
        if (table) std::memcpy(table, &context->table, sizeof *table);
        return KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // extern "C"
