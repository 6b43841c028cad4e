// The table page and the grids of the delete-records and update-records
// wizards: controls in, controls out.
#include "wizards/record_wizard_pages.h"

#include "wizards/record_wizard_ids.h"

#include <kodbc/kodbc_catalog.h>
#include <korvel/korvel32.h>

namespace kodbc::wizards {

void FillTablePage(HWND page, SQLHDBC hdbc, const TableRecord &table) noexcept {
    HWND list = GetDlgItem(page, IDC_RECWIZ_TABLE_LIST);
    Kodbc_FillTablesBox(hdbc, table.Object.DbObjectType, list);
    LRESULT index = LB_ERR;
    if (table.Object.DbObjectName[0])
        index = SendMessageA(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                             reinterpret_cast<LPARAM>(table.Object.DbObjectName));
    Korvel_SetBoxIndex(list, index == LB_ERR ? 0 : static_cast<int>(index));
}

const char *SelectedTable(HWND page, char (&name)[kTableNameSize]) noexcept {
    name[0] = '\0';
    HWND list = GetDlgItem(page, IDC_RECWIZ_TABLE_LIST);
    int index = Korvel_GetBoxIndex(list);
    if (index >= 0) Korvel_GetBoxEntry(list, index, name, sizeof name);
    return name;
}

bool IsTableListClick(WPARAM wParam) noexcept {
    return LOWORD(wParam) == IDC_RECWIZ_TABLE_LIST && HIWORD(wParam) == LBN_SELCHANGE;
}

namespace {

void ClearControl(HWND control) {
    if (Korvel_IsComboBox(control)) SendMessageA(control, CB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    if (Korvel_IsListBox(control))
        SendMessageA(control, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    else
        SetWindowTextA(control, "");
}

} // namespace

void ShowGrid(HWND page, int kind, const OpDescDialogItem *grid, const OwnedText &descriptor,
              const OwnedText &fieldList) noexcept {
    // The transfer leaves rows it has no line for as they are; after the
    // descriptor was emptied they must not show the old conditions.
    for (const OpDescDialogItem *row = grid; row->FieldId > OPDESC_ITEM_TABLE_END; ++row) {
        if (row->FieldId == OPDESC_ITEM_GROUP_END) continue;
        for (int id : {row->FieldId, row->OperatorId, row->ValueId}) ClearControl(GetDlgItem(page, id));
    }
    Kodbc_OpDesc_To_DialogItems(kind, descriptor.get(), fieldList.get(), page, grid, 0);
}

void ReadGrid(HWND page, int kind, const OpDescDialogItem *grid, OwnedText &descriptor) noexcept {
    Kodbc_DialogItems_To_OpDesc(kind, page, grid, descriptor.get(), descriptor.capacity);
}

void ShowPageText(HWND page, const char *text) noexcept { SetDlgItemTextA(page, IDC_RECWIZ_PAGE_TEXT, text); }

int AnswerLeave(HWND page, LPARAM answer, const PageDecision &decision) noexcept {
    if (!answer) return 1;
    *reinterpret_cast<std::int32_t *>(answer) = decision.answer();
    if (!decision.goOn && decision.focus == PageFocus::TableList) SetFocus(GetDlgItem(page, IDC_RECWIZ_TABLE_LIST));
    return 1;
}

} // namespace kodbc::wizards
