// The export wizard's windows: five pages in the wizard frame, the field
// dialog and the fields' pop-up menu. They move data between their
// controls and the wizard's state; the rules are in export_wizard_state.cpp,
// the writing in export_file.cpp.
#include "transfer/export_wizard_ids.h"
#include "transfer/export_wizard_state.h"
#include "transfer/transfer_pages.h"

#include "wizards/list_view_pages.h"
#include "wizards/record_wizard_grids.h"
#include "wizards/record_wizard_pages.h"
#include "wizards/wizard_step.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_transfer.h>

#include <commctrl.h>

#include <cstring>
#include <string>

using namespace kodbc;
using namespace kodbc::transfer;
using namespace kodbc::wizards;

namespace {

constexpr TextLayoutControls kLayout = {
    IDC_EXPORT_TAB,   IDC_EXPORT_BLANK, IDC_EXPORT_OTHER_DELIMITER, IDC_EXPORT_DELIMITER_TEXT,
    IDC_EXPORT_COMMA, IDC_EXPORT_POINT, IDC_EXPORT_OTHER_DECIMAL,   IDC_EXPORT_DECIMAL_TEXT,
    IDC_EXPORT_LEFT,  IDC_EXPORT_RIGHT,
};

constexpr KorvelWizardPage kPages[] = {
    {IDD_EXPORT_TABLE, {0, 0}}, {IDD_EXPORT_CONDITIONS, {0, 0}}, {IDD_EXPORT_FIELDS, {0, 0}},
    {IDD_EXPORT_FILE, {0, 0}},  {IDD_EXPORT_FINISH, {0, 0}},     {0, {0, 0}},
};

// ---------------------------------------------------------------------------
// Conditions

int ConditionPage(ExportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kPageActivate:
        ActivateExportConditionPage(state);
        ShowGrid(page, OPDESC_SELECTION, kConditionGrid, state.selDesc, state.fieldList);
        return 1;
    case kPageLeaveMessage:
        if (IsLeavingForwards(static_cast<unsigned>(wParam)))
            ReadGrid(page, OPDESC_SELECTION, kConditionGrid, state.selDesc);
        return AnswerLeave(page, lParam, GoOn());
    }
    return 0;
}

// ---------------------------------------------------------------------------
// Fields

void ShowFieldRow(HWND list, int row, const ExportField &field) {
    Korvel_ListView_SetItemText(list, row, 0, field.name.c_str());
    Korvel_ListView_SetItemText(list, row, 1, ExportNameText(field).c_str());
}

void FillFieldList(const ExportWizardState &state, HWND list) {
    SendMessageA(list, LVM_DELETEALLITEMS, 0, 0);
    int row = 0;
    for (const ExportField &field : state.fields) {
        if (Korvel_ListView_AddItem(list, row, field.name.c_str()) < 0) break;
        ShowFieldRow(list, row++, field);
    }
}

void UpdatePropertiesButton(HWND page) {
    EnableWindow(GetDlgItem(page, IDC_EXPORT_PROPERTIES),
                 SelectedRowCount(GetDlgItem(page, IDC_EXPORT_FIELD_LIST)) > 0);
}

void EditFirstSelectedField(ExportWizardState &state, HWND page) {
    EditFirstListField(GetDlgItem(page, IDC_EXPORT_FIELD_LIST), state.fields, &EditExportFieldDialogCallback,
                       IDD_EXPORT_FIELD, ShowFieldRow);
}

void ExportSelectedFields(ExportWizardState &state, HWND page, bool exported) {
    TakeSelectedFields(GetDlgItem(page, IDC_EXPORT_FIELD_LIST), state.fields, &ExportField::exported, exported,
                       ShowFieldRow);
}

int FieldsPage(ExportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND list = GetDlgItem(page, IDC_EXPORT_FIELD_LIST);
    switch (message) {
    case WM_INITDIALOG: AddListViewColumns(list, msg::EXPORT_FIELD_HEADER); return 1;
    case kPageActivate:
        FillFieldList(state, list);
        UpdatePropertiesButton(page);
        return 1;
    case WM_NOTIFY: {
        const auto *header = reinterpret_cast<const NMHDR *>(lParam);
        if (!header || header->idFrom != IDC_EXPORT_FIELD_LIST) return 0;
        switch (header->code) {
        case LVN_ITEMCHANGED: UpdatePropertiesButton(page); return 1;
        case NM_DBLCLK: EditFirstSelectedField(state, page); return 1;
        case NM_RCLICK: {
            POINT at = reinterpret_cast<const NMITEMACTIVATE *>(lParam)->ptAction;
            ClientToScreen(list, &at);
            TrackRowMenu(page, list, IDM_EXPORT_FIELD_MENU,
                         {IDM_EXPORT_FIELD_ON, IDM_EXPORT_FIELD_OFF, IDM_EXPORT_FIELD_PROPERTIES},
                         IDM_EXPORT_FIELD_PROPERTIES, at);
            return 1;
        }
        default: return 0;
        }
    }
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_EXPORT_PROPERTIES:
        case IDM_EXPORT_FIELD_PROPERTIES: EditFirstSelectedField(state, page); return 1;
        case IDM_EXPORT_FIELD_ON: ExportSelectedFields(state, page, true); return 1;
        case IDM_EXPORT_FIELD_OFF: ExportSelectedFields(state, page, false); return 1;
        default: return 0;
        }
    case kPageLeaveMessage:
        return AnswerLeave(page, lParam, LeaveExportFieldsPage(state, static_cast<unsigned>(wParam)));
    }
    return 0;
}

// ---------------------------------------------------------------------------
// File and format

void ShowFormat(const ExportWizardState &state, HWND page) {
    const ExportFormat &format = state.format;
    SetDlgItemTextA(page, IDC_EXPORT_FILE, state.fileName.c_str());
    CheckRadioButton(page, IDC_EXPORT_ANSI, IDC_EXPORT_ASCII,
                     format.encoding == ExportEncoding::Ascii ? IDC_EXPORT_ASCII : IDC_EXPORT_ANSI);
    ShowTextLayout(page, kLayout, format);
    CheckDlgButton(page, IDC_EXPORT_HEADER, format.header ? BST_CHECKED : BST_UNCHECKED);
}

void ReadFormat(ExportWizardState &state, HWND page) {
    ExportFormat &format = state.format;
    format.encoding = IsDlgButtonChecked(page, IDC_EXPORT_ASCII) == BST_CHECKED ? ExportEncoding::Ascii
                                                                                : ExportEncoding::Ansi;
    ReadTextLayout(page, kLayout, format);
    format.header = IsDlgButtonChecked(page, IDC_EXPORT_HEADER) == BST_CHECKED;
}

int FilePage(ExportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SendDlgItemMessageA(page, IDC_EXPORT_FILE, EM_LIMITTEXT, kExportFileNameSize - 1, 0);
        LimitTextLayout(page, kLayout);
        return 1;
    case kPageActivate: ShowFormat(state, page); return 1;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDC_EXPORT_BROWSE || HIWORD(wParam) != BN_CLICKED) return 0;
        ChooseTransferFile(page, IDC_EXPORT_FILE, kExportFileNameSize, msg::CAPTION_EXPORT, true);
        return 1;
    case kPageLeaveMessage:
        ReadFormat(state, page);  // kept when going back, too
        return AnswerLeave(page, lParam,
                           LeaveExportFilePage(state, static_cast<unsigned>(wParam), ItemText(page, IDC_EXPORT_FILE)));
    }
    return 0;
}

// ---------------------------------------------------------------------------

int FinishPage(ExportWizardState &state, HWND page, UINT message, LPARAM lParam) {
    switch (message) {
    case kPageActivate: ShowPageText(page, ExportFinishText(state).c_str()); return 1;
    case kPageLeaveMessage: return AnswerLeave(page, lParam, GoOn());
    }
    return 0;
}

int DispatchPage(ExportWizardState &state, int page, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (page) {
    case IDD_EXPORT_TABLE: return message == WM_INITDIALOG ? 1 : TablePage(state, window, message, wParam, lParam);
    case IDD_EXPORT_CONDITIONS: return ConditionPage(state, window, message, wParam, lParam);
    case IDD_EXPORT_FIELDS: return FieldsPage(state, window, message, wParam, lParam);
    case IDD_EXPORT_FILE: return FilePage(state, window, message, wParam, lParam);
    case IDD_EXPORT_FINISH: return FinishPage(state, window, message, lParam);
    }
    return 0;
}

void InitFieldDialog(HWND dialog, const ExportField &field) {
    SetDlgItemTextA(dialog, IDC_EXPORT_FIELD_NAME, field.name.c_str());
    SetDlgItemTextA(dialog, IDC_EXPORT_FIELD_TYPE, ExportFieldTypeText(field).c_str());
    SetDlgItemTextA(dialog, IDC_EXPORT_FIELD_EXPORT_NAME, field.exportName.c_str());
    CheckDlgButton(dialog, IDC_EXPORT_FIELD_EXPORTED, field.exported ? BST_CHECKED : BST_UNCHECKED);
}

} // namespace

extern "C" {

KODBC_API INT_PTR KODBC_CALL EditExportFieldDialogCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        auto *field = ExportedDialogObject<ExportField>(dialog, message, lParam);
        if (message == WM_INITDIALOG) {
            if (field) InitFieldDialog(dialog, *field);
            return TRUE;
        }
        if (message != WM_COMMAND) return FALSE;
        switch (LOWORD(wParam)) {
        case IDOK:
            if (!field) {
                EndDialog(dialog, 2);
            } else if (TakeExportFieldChoice(*field, ItemText(dialog, IDC_EXPORT_FIELD_EXPORT_NAME),
                                             IsDlgButtonChecked(dialog, IDC_EXPORT_FIELD_EXPORTED) == BST_CHECKED)
                           .goOn) {
                EndDialog(dialog, 1);
            }
            return TRUE;
        case IDCANCEL: EndDialog(dialog, 2); return TRUE;
        default: return FALSE;
        }
    } catch (...) {
        EndDialog(dialog, 2);
        return TRUE;
    }
}

KODBC_API int KODBC_CALL ExportWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
    return WizardStep<ExportWizardState>(wizard, window, message, lParam, [&](ExportWizardState &state) {
        const int handled = DispatchPage(state, page, window, message, wParam, lParam);
        return message == WM_INITDIALOG ? 1 : handled;
    });
}

KODBC_API int KODBC_CALL Kodbc_ExportWizzard(SQLHDBC hdbc, TableRecord *table, int options) {
    try {
        std::unique_ptr<ExportWizardState> state = CreateExportWizardState(hdbc, table, options);
        if (!state) return KODBC_FAILURE;
        if (PerformWizard(kPages, &ExportWizzCallback, state.get(), IDB_EXPORT_WIZARD, msg::TITLE_EXPORT_RECORDS) != 1)
            return KODBC_FAILURE;
        PlatformProgress progress(msg::CAPTION_EXPORT);
        if (!RunExportWizard(*state, progress)) return KODBC_FAILURE;
        if (table) std::memcpy(table, &state->table, sizeof *table);
        return KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // extern "C"
