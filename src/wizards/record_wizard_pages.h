// The window side the delete-records and update-records wizards share: the
// table page's list, the condition and assignment grids, the centred page
// texts and the answer to a page-leave message. Windows only; what the
// pages decide comes from record_wizard_common.h and the wizards' cores.
#pragma once

#ifdef _WIN32

#include "wizards/record_wizard_common.h"
#include "wizards/wizard_step.h"

#include <kodbc/kodbc_seldesc.h>

#include <windows.h>

namespace kodbc::wizards {

// Lists the tables of the record's object-type filter on the table page
// and selects the record's table (without regard to case), else the first.
void FillTablePage(HWND page, SQLHDBC hdbc, const TableRecord &table) noexcept;

// The table page's selected entry into name (cut to 49 characters, as the
// table record keeps it); an empty name when nothing is selected. Returns
// name.
inline constexpr int kTableNameSize = 50;
const char *SelectedTable(HWND page, char (&name)[kTableNameSize]) noexcept;

// True for the notification a click on the table list sends.
bool IsTableListClick(WPARAM wParam) noexcept;

// The grid shows descriptor (kind OPDESC_SELECTION or OPDESC_ASSIGNMENT)
// with its field boxes filled from fieldList.
void ShowGrid(HWND page, int kind, const OpDescDialogItem *grid, const OwnedText &descriptor,
              const OwnedText &fieldList) noexcept;
// The grid's rows back into descriptor, within its capacity.
void ReadGrid(HWND page, int kind, const OpDescDialogItem *grid, OwnedText &descriptor) noexcept;

// The page's one centred text.
void ShowPageText(HWND page, const char *text) noexcept;

// Writes the decision through a page-leave message's lParam (nothing for
// null) and puts the focus where a refusing page wants it. Returns 1.
int AnswerLeave(HWND page, LPARAM answer, const PageDecision &decision) noexcept;

// The table page of both wizards: the list filled on activation, a click
// choosing the table, leaving decided by the wizard's core.
template <class Context>
int TablePage(Context &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    char name[kTableNameSize];
    switch (message) {
    case kPageActivate: FillTablePage(page, context.hdbc, context.table); return 1;
    case kPageLeaveMessage:
        return AnswerLeave(page, lParam,
                           LeaveTablePage(context, static_cast<unsigned>(wParam), SelectedTable(page, name)));
    case WM_COMMAND:
        if (!IsTableListClick(wParam)) return 0;
        SelectTable(context, SelectedTable(page, name));
        return 1;
    }
    return 0;
}

} // namespace kodbc::wizards

#endif
