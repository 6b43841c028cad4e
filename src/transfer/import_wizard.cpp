// The import-table wizard's windows: eight pages in the wizard frame, of
// which the kind of source switches four on and off, the field dialog and
// the fields' pop-up menu. They move data between their controls and the
// wizard's state; the rules are in import_wizard_state.cpp, the reading
// and writing in import_run.cpp.
#include "transfer/import_wizard_ids.h"
#include "transfer/import_wizard_state.h"
#include "transfer/transfer_pages.h"

#include "wizards/list_view_pages.h"
#include "wizards/page_controls.h"
#include "wizards/record_wizard_pages.h"
#include "wizards/wizard_step.h"

#include "internal/datatypes.h"
#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_transfer.h>

#include <commctrl.h>

#include <cstring>
#include <string>

using namespace kodbc;
using namespace kodbc::transfer;
using namespace kodbc::wizards;

namespace {

constexpr int kTextSize = 300;
constexpr TextLayoutControls kLayout = {
    IDC_IMPORT_TAB,   IDC_IMPORT_BLANK, IDC_IMPORT_OTHER_DELIMITER, IDC_IMPORT_DELIMITER_TEXT,
    IDC_IMPORT_COMMA, IDC_IMPORT_POINT, IDC_IMPORT_OTHER_DECIMAL,   IDC_IMPORT_DECIMAL_TEXT,
    IDC_IMPORT_LEFT,  IDC_IMPORT_RIGHT,
};

constexpr KorvelWizardPage kPages[] = {
    {IDD_IMPORT_KIND, {0, 0}},      {IDD_IMPORT_DSN, {0, 0}},    {IDD_IMPORT_TABLE, {0, 0}},
    {IDD_IMPORT_TEXT, {0, 0}},      {IDD_IMPORT_SELECTION, {0, 0}}, {IDD_IMPORT_FIELDS, {0, 0}},
    {IDD_IMPORT_NAME, {0, 0}},      {IDD_IMPORT_FINISH, {0, 0}},  {0, {0, 0}},
};

constexpr int kKindButtons[] = {IDC_IMPORT_KIND_TABLE, IDC_IMPORT_KIND_TEXT, IDC_IMPORT_KIND_SDI,
                                IDC_IMPORT_KIND_SEL};

bool Checked(HWND window, int id) { return IsDlgButtonChecked(window, id) == BST_CHECKED; }

// ---------------------------------------------------------------------------
// Kind of source

void SwitchSourcePages(const ImportWizardState &state) {
    const ImportSourcePages pages = SourcePagesOf(state.kind);
    Wizzard_EnableSubDialog(state.wizard, IDD_IMPORT_DSN, pages.dataSource);
    Wizzard_EnableSubDialog(state.wizard, IDD_IMPORT_TABLE, pages.table);
    Wizzard_EnableSubDialog(state.wizard, IDD_IMPORT_TEXT, pages.text);
    Wizzard_EnableSubDialog(state.wizard, IDD_IMPORT_SELECTION, pages.selection);
}

ImportSource CheckedKind(HWND page) {
    for (int i = 0; i < 4; ++i)
        if (Checked(page, kKindButtons[i])) return static_cast<ImportSource>(i);
    return ImportSource::Table;
}

int KindPage(ImportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: SwitchSourcePages(state); return 1;
    case kPageActivate:
        CheckRadioButton(page, IDC_IMPORT_KIND_TABLE, IDC_IMPORT_KIND_SEL, kKindButtons[static_cast<int>(state.kind)]);
        return 1;
    case kPageLeaveMessage: {
        const PageDecision decision = LeaveImportKindPage(state, static_cast<unsigned>(wParam), CheckedKind(page));
        SwitchSourcePages(state);
        return AnswerLeave(page, lParam, decision);
    }
    }
    return 0;
}

// ---------------------------------------------------------------------------
// Data source and table

int DataSourcePage(ImportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND list = GetDlgItem(page, IDC_IMPORT_DSN_LIST);
    switch (message) {
    case kPageActivate:
        Kodbc_FillDataSourcesBox(list);
        SelectExactOrFirst(list, state.source.DataSourceName);
        SetDlgItemTextA(page, IDC_IMPORT_USER, state.source.UserId);
        SetDlgItemTextA(page, IDC_IMPORT_PASSWORD, state.source.Password);
        ActivateImportDataSourcePage(state);
        return 1;
    case kPageLeaveMessage: {
        const DataSourceRecord entered =
            EnteredSource(page, state.source, IDC_IMPORT_DSN_LIST, IDC_IMPORT_USER, IDC_IMPORT_PASSWORD);
        const PageDecision decision = LeaveImportDataSourcePage(state, static_cast<unsigned>(wParam), entered);
        if (decision.messageId) FocusOnPage(page, IDC_IMPORT_DSN_LIST);
        return AnswerLeave(page, lParam, decision);
    }
    }
    return 0;
}

void FillSourceTables(ImportWizardState &state, HWND page) {
    HWND list = GetDlgItem(page, IDC_IMPORT_TABLE_LIST);
    Kodbc_FillTablesBox(state.sourceDbc, state.sourceFilter, list);
    SelectExactOrFirst(list, state.sourceTable);
}

int TablePage(ImportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kPageActivate:
        CheckDlgButton(page, IDC_IMPORT_FILTER_TABLES, (state.sourceFilter & kImportFilterTables) != 0);
        CheckDlgButton(page, IDC_IMPORT_FILTER_QUERIES, (state.sourceFilter & kImportFilterQueries) != 0);
        CheckDlgButton(page, IDC_IMPORT_FILTER_ALL, (state.sourceFilter & kImportFilterAll) != 0);
        FillSourceTables(state, page);
        return 1;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_IMPORT_FILTER_TABLES:
        case IDC_IMPORT_FILTER_QUERIES:
        case IDC_IMPORT_FILTER_ALL:
            if (HIWORD(wParam) != BN_CLICKED) return 0;
            state.sourceFilter = ImportFilterFromChecks(Checked(page, IDC_IMPORT_FILTER_TABLES),
                                                        Checked(page, IDC_IMPORT_FILTER_QUERIES),
                                                        Checked(page, IDC_IMPORT_FILTER_ALL));
            FillSourceTables(state, page);
            return 1;
        default: return 0;
        }
    case kPageLeaveMessage: {
        const PageDecision decision = LeaveImportTablePage(state, static_cast<unsigned>(wParam),
                                                           BoxSelection(GetDlgItem(page, IDC_IMPORT_TABLE_LIST)));
        if (decision.messageId) FocusOnPage(page, IDC_IMPORT_TABLE_LIST);
        return AnswerLeave(page, lParam, decision);
    }
    }
    return 0;
}

// ---------------------------------------------------------------------------
// Text file and selection file

void ShowFormat(const ImportTextFormat &format, HWND page) {
    CheckRadioButton(page, IDC_IMPORT_ANSI, IDC_IMPORT_ASCII, format.ascii ? IDC_IMPORT_ASCII : IDC_IMPORT_ANSI);
    CheckRadioButton(page, IDC_IMPORT_NAMES_FIRST_LINE, IDC_IMPORT_NAMES_NUMBERED,
                     format.namesInFirstLine ? IDC_IMPORT_NAMES_FIRST_LINE : IDC_IMPORT_NAMES_NUMBERED);
    ShowTextLayout(page, kLayout, format);
}

void ReadFormat(ImportTextFormat &format, HWND page) {
    format.ascii = Checked(page, IDC_IMPORT_ASCII);
    format.namesInFirstLine = !Checked(page, IDC_IMPORT_NAMES_NUMBERED);
    ReadTextLayout(page, kLayout, format);
}

// The text page (withFormat) and the selection-file page.
int FilePage(ImportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam, bool withFormat) {
    switch (message) {
    case WM_INITDIALOG:
        SendDlgItemMessageA(page, IDC_IMPORT_FILE, EM_LIMITTEXT, kImportFileNameSize - 1, 0);
        if (withFormat) LimitTextLayout(page, kLayout);
        return 1;
    case kPageActivate:
        SetDlgItemTextA(page, IDC_IMPORT_FILE, ImportFileName(state).c_str());
        if (withFormat) ShowFormat(state.format, page);
        return 1;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDC_IMPORT_BROWSE || HIWORD(wParam) != BN_CLICKED) return 0;
        ChooseTransferFile(page, IDC_IMPORT_FILE, kImportFileNameSize, msg::CAPTION_RECORD_PROGRESS, false,
                           ImportFileFilter(state));
        return 1;
    case kPageLeaveMessage: {
        if (withFormat) ReadFormat(state.format, page);  // kept when going back, too
        const PageDecision decision =
            LeaveImportFilePage(state, static_cast<unsigned>(wParam), ItemText(page, IDC_IMPORT_FILE));
        if (decision.messageId) FocusOnPage(page, IDC_IMPORT_FILE);
        return AnswerLeave(page, lParam, decision);
    }
    }
    return 0;
}

// ---------------------------------------------------------------------------
// Fields

void ShowFieldRow(HWND list, int row, const ImportField &field) {
    const std::vector<std::string> texts = ImportFieldRow(field);
    for (std::size_t column = 0; column < texts.size(); ++column)
        Korvel_ListView_SetItemText(list, row, static_cast<int>(column), texts[column].c_str());
}

void FillFieldList(const ImportWizardState &state, HWND list, int selected) {
    SendMessageA(list, LVM_DELETEALLITEMS, 0, 0);
    int row = 0;
    for (const ImportField &field : state.fields) {
        if (Korvel_ListView_AddItem(list, row, field.sourceName.c_str()) < 0) break;
        ShowFieldRow(list, row++, field);
    }
    ListViewSelectOnly(list, selected);
}

void UpdateFieldButtons(HWND page) {
    const int selected = SelectedRowCount(GetDlgItem(page, IDC_IMPORT_FIELD_LIST));
    EnableWindow(GetDlgItem(page, IDC_IMPORT_PROPERTIES), selected > 0);
    EnableWindow(GetDlgItem(page, IDC_IMPORT_UP), selected == 1);
    EnableWindow(GetDlgItem(page, IDC_IMPORT_DOWN), selected == 1);
}

void EditFirstSelectedField(ImportWizardState &state, HWND page) {
    EditFirstListField(GetDlgItem(page, IDC_IMPORT_FIELD_LIST), state.fields, &EditImportFieldDialogCallback,
                       IDD_IMPORT_FIELD, ShowFieldRow);
}

void ImportSelectedFields(ImportWizardState &state, HWND page, bool imported) {
    TakeSelectedFields(GetDlgItem(page, IDC_IMPORT_FIELD_LIST), state.fields, &ImportField::imported, imported,
                       ShowFieldRow);
}

void MoveField(ImportWizardState &state, HWND page, int from, int to) {
    const int moved = MoveImportField(state.fields, from, to);
    if (moved < 0) return;
    FillFieldList(state, GetDlgItem(page, IDC_IMPORT_FIELD_LIST), moved);
    UpdateFieldButtons(page);
}

// A dragged row is dropped on the row under the button; below the last
// row it goes to the end, outside the list nowhere.
void DropField(ImportWizardState &state, HWND page, POINT at) {
    const int from = state.dragRow;
    state.dragRow = -1;
    ReleaseCapture();
    const int to = ListViewDropRow(page, GetDlgItem(page, IDC_IMPORT_FIELD_LIST), at);
    if (to >= 0) MoveField(state, page, from, to);
}

int FieldNotify(ImportWizardState &state, HWND page, const NMHDR &header) {
    HWND list = GetDlgItem(page, IDC_IMPORT_FIELD_LIST);
    switch (header.code) {
    case LVN_ITEMCHANGED: UpdateFieldButtons(page); return 1;
    case LVN_BEGINDRAG:
        state.dragRow = reinterpret_cast<const NMLISTVIEW &>(header).iItem;
        SetCapture(page);
        return 1;
    case NM_DBLCLK: EditFirstSelectedField(state, page); return 1;
    case NM_RCLICK: {
        POINT at = reinterpret_cast<const NMITEMACTIVATE &>(header).ptAction;
        ClientToScreen(list, &at);
        TrackRowMenu(page, list, IDM_IMPORT_FIELD_MENU,
                     {IDM_IMPORT_FIELD_ON, IDM_IMPORT_FIELD_OFF, IDM_IMPORT_FIELD_PROPERTIES},
                     IDM_IMPORT_FIELD_PROPERTIES, at);
        return 1;
    }
    }
    return 0;
}

int FieldsPage(ImportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND list = GetDlgItem(page, IDC_IMPORT_FIELD_LIST);
    switch (message) {
    case WM_INITDIALOG: AddListViewColumns(list, msg::IMPORT_FIELD_HEADER); return 1;
    case kPageActivate:
        FillFieldList(state, list, -1);
        UpdateFieldButtons(page);
        return 1;
    case WM_NOTIFY: {
        const auto *header = reinterpret_cast<const NMHDR *>(lParam);
        if (!header || header->idFrom != IDC_IMPORT_FIELD_LIST) return 0;
        return FieldNotify(state, page, *header);
    }
    case WM_LBUTTONUP:
        if (state.dragRow < 0) return 0;
        DropField(state, page, POINT{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
        return 1;
    case WM_CAPTURECHANGED: state.dragRow = -1; return 0;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_IMPORT_PROPERTIES:
        case IDM_IMPORT_FIELD_PROPERTIES: EditFirstSelectedField(state, page); return 1;
        case IDM_IMPORT_FIELD_ON: ImportSelectedFields(state, page, true); return 1;
        case IDM_IMPORT_FIELD_OFF: ImportSelectedFields(state, page, false); return 1;
        case IDC_IMPORT_UP:
        case IDC_IMPORT_DOWN: {
            const int row = FirstSelectedRow(list);
            if (row >= 0) MoveField(state, page, row, row + (LOWORD(wParam) == IDC_IMPORT_UP ? -1 : 1));
            return 1;
        }
        default: return 0;
        }
    case kPageLeaveMessage: {
        const PageDecision decision = LeaveImportFieldsPage(state, static_cast<unsigned>(wParam));
        if (decision.focusRow >= 0) {
            ListViewSelectOnly(list, decision.focusRow);
            FocusOnPage(page, IDC_IMPORT_FIELD_LIST);
        }
        return AnswerLeave(page, lParam, decision);
    }
    }
    return 0;
}

// ---------------------------------------------------------------------------
// Name and finish

int NamePage(ImportWizardState &state, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SendDlgItemMessageA(page, IDC_IMPORT_NAME, EM_LIMITTEXT, kImportTableNameSize - 1, 0);
        return 1;
    case kPageActivate: SetDlgItemTextA(page, IDC_IMPORT_NAME, state.tableName.c_str()); return 1;
    case kPageLeaveMessage: {
        const PageDecision decision =
            LeaveImportNamePage(state, static_cast<unsigned>(wParam), ItemText(page, IDC_IMPORT_NAME));
        if (decision.messageId) FocusOnPage(page, IDC_IMPORT_NAME);
        return AnswerLeave(page, lParam, decision);
    }
    }
    return 0;
}

int DispatchPage(ImportWizardState &state, int page, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (page) {
    case IDD_IMPORT_KIND: return KindPage(state, window, message, wParam, lParam);
    case IDD_IMPORT_DSN: return DataSourcePage(state, window, message, wParam, lParam);
    case IDD_IMPORT_TABLE: return TablePage(state, window, message, wParam, lParam);
    case IDD_IMPORT_TEXT: return FilePage(state, window, message, wParam, lParam, true);
    case IDD_IMPORT_SELECTION: return FilePage(state, window, message, wParam, lParam, false);
    case IDD_IMPORT_FIELDS: return FieldsPage(state, window, message, wParam, lParam);
    case IDD_IMPORT_NAME: return NamePage(state, window, message, wParam, lParam);
    case IDD_IMPORT_FINISH: return message == kPageLeaveMessage ? AnswerLeave(window, lParam, GoOn()) : 0;
    }
    return 0;
}

// ---------------------------------------------------------------------------
// Field dialog

std::string TypeName(int code) {
    char text[kTextSize] = {};
    DataTypeDisplayName(code, text, sizeof text);
    return text;
}

void InitFieldDialog(HWND dialog, const ImportField &field) {
    SetDlgItemTextA(dialog, IDC_IMPORT_SOURCE_NAME, field.sourceName.c_str());
    SetDlgItemTextA(dialog, IDC_IMPORT_SOURCE_TYPE, TypeName(field.sourceType).c_str());
    SetDlgItemTextA(dialog, IDC_IMPORT_SOURCE_LENGTH, std::to_string(field.sourceLength).c_str());
    SetDlgItemTextA(dialog, IDC_IMPORT_TARGET_NAME, field.targetName.c_str());
    HWND types = GetDlgItem(dialog, IDC_IMPORT_TARGET_TYPE);
    for (const DataTypeRow *row = kDataTypeTable; row->code; ++row) {
        const LRESULT index = SendMessageA(types, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(TypeName(row->code).c_str()));
        if (index < 0) continue;
        SendMessageA(types, CB_SETITEMDATA, static_cast<WPARAM>(index), row->code);
        if (row->code == field.targetType) SendMessageA(types, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
    SetDlgItemTextA(dialog, IDC_IMPORT_TARGET_LENGTH, std::to_string(field.targetLength).c_str());
    CheckDlgButton(dialog, IDC_IMPORT_FIELD_IMPORTED, field.imported ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(dialog, IDC_IMPORT_FIELD_CONTENT, field.fileContent ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(dialog, IDC_IMPORT_FIELD_NO_MESSAGE, field.noFileMessage ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(dialog, IDC_IMPORT_FIELD_AUTOINC, field.autoIncrement ? BST_CHECKED : BST_UNCHECKED);
}

bool TakeFieldDialog(HWND dialog, ImportField &field) {
    HWND types = GetDlgItem(dialog, IDC_IMPORT_TARGET_TYPE);
    const LRESULT index = SendMessageA(types, CB_GETCURSEL, 0, 0);
    ImportFieldChoice choice;
    choice.name = ItemText(dialog, IDC_IMPORT_TARGET_NAME);
    choice.type = index < 0 ? field.targetType
                            : static_cast<int>(SendMessageA(types, CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
    choice.length = ItemText(dialog, IDC_IMPORT_TARGET_LENGTH);
    choice.imported = Checked(dialog, IDC_IMPORT_FIELD_IMPORTED);
    choice.fileContent = Checked(dialog, IDC_IMPORT_FIELD_CONTENT);
    choice.noFileMessage = Checked(dialog, IDC_IMPORT_FIELD_NO_MESSAGE);
    choice.autoIncrement = Checked(dialog, IDC_IMPORT_FIELD_AUTOINC);
    return TakeImportFieldChoice(field, choice);
}

} // namespace

extern "C" {

KODBC_API INT_PTR KODBC_CALL EditImportFieldDialogCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        auto *field = ExportedDialogObject<ImportField>(dialog, message, lParam);
        if (message == WM_INITDIALOG) {
            if (!field) return TRUE;
            InitFieldDialog(dialog, *field);
            // The user comes to change the target, not to read the source.
            HWND name = GetDlgItem(dialog, IDC_IMPORT_TARGET_NAME);
            SetFocus(name);
            SendMessageA(name, EM_SETSEL, 0, -1);
            return FALSE;
        }
        if (message != WM_COMMAND) return FALSE;
        switch (LOWORD(wParam)) {
        case IDOK: EndDialog(dialog, field && TakeFieldDialog(dialog, *field) ? 1 : 2); return TRUE;
        case IDCANCEL: EndDialog(dialog, 2); return TRUE;
        default: return FALSE;
        }
    } catch (...) {
        return EndDialogAfterFailure(dialog);
    }
}

KODBC_API int KODBC_CALL ImportWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
    return WizardStep<ImportWizardState>(wizard, window, message, lParam, [&](ImportWizardState &state) {
        const int handled = DispatchPage(state, page, window, message, wParam, lParam);
        return message == WM_INITDIALOG ? 1 : handled;
    });
}

KODBC_API int KODBC_CALL Kodbc_ImportTableWizzard(SQLHDBC hdbc, char *tableName, int size) {
    try {
        std::unique_ptr<ImportWizardState> state = CreateImportWizardState(hdbc);
        if (!state) return KODBC_FAILURE;
        INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&controls);
        constexpr int kSwitchesPages = 1;
        if (PerformWizard(kPages, &ImportWizzCallback, state.get(), IDB_IMPORT_WIZARD, msg::TITLE_IMPORT_TABLE,
                          kSwitchesPages) != 1)
            return KODBC_FAILURE;
        PlatformProgress progress(msg::CAPTION_RECORD_PROGRESS);
        if (!RunImportWizard(*state, progress)) return KODBC_FAILURE;
        if (tableName && size > 0) korvel::BoundedText(tableName, size).append(state->tableName);
        return KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // extern "C"
