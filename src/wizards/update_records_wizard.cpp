// The update-records wizard's pages: the table list, the condition grid,
// the assignment grid, the confirmation (left forwards, it runs the update)
// and the result. What they decide and the update itself are in
// update_records.cpp.
#include "wizards/record_wizard_grids.h"
#include "wizards/record_wizard_ids.h"
#include "wizards/record_wizard_pages.h"
#include "wizards/update_records.h"

#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_wizards.h>

#include <cstring>

using namespace kodbc;
using namespace kodbc::wizards;

namespace {

constexpr KorvelWizardPage kPages[] = {
    {IDD_UPDREC_TABLE, {0, 0}},        {IDD_UPDREC_CONDITIONS, {0, 0}}, {IDD_UPDREC_ASSIGNMENTS, {0, 0}},
    {IDD_UPDREC_CONFIRMATION, {0, 0}}, {IDD_UPDREC_RESULT, {0, 0}},     {0, {0, 0}},
};

bool IsPage(int page) {
    for (const KorvelWizardPage &entry : kPages)
        if (entry.templateId && entry.templateId == page) return true;
    return false;
}

// The condition and assignment pages: a grid over one descriptor.
int GridPage(UpdateRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam, int kind) {
    const bool conditions = kind == OPDESC_SELECTION;
    const OpDescDialogItem *grid = conditions ? kConditionGrid : kAssignmentGrid;
    OwnedText &descriptor = conditions ? context.selDesc : context.setDesc;
    switch (message) {
    case kPageActivate: ShowGrid(page, kind, grid, descriptor, context.fieldList); return 1;
    case kPageLeaveMessage: {
        const auto direction = static_cast<unsigned>(wParam);
        if (IsLeavingForwards(direction)) ReadGrid(page, kind, grid, descriptor);
        return AnswerLeave(page, lParam,
                           conditions ? LeaveConditionPage(context, direction)
                                      : LeaveAssignmentPage(context, direction));
    }
    }
    return 0;
}

int TextPage(UpdateRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam, bool result) {
    switch (message) {
    case kPageActivate: {
        char text[kPageTextSize];
        if (result)
            ResultText(context, text, sizeof text);
        else
            ConfirmationText(context, text, sizeof text);
        ShowPageText(page, text);
        return 1;
    }
    case kPageLeaveMessage:
        return AnswerLeave(page, lParam,
                           result ? GoOn() : LeaveConfirmationPage(context, static_cast<unsigned>(wParam)));
    }
    return 0;
}

int DispatchPage(UpdateRecordsContext &context, int page, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (page) {
    case IDD_UPDREC_TABLE: return TablePage(context, window, message, wParam, lParam);
    case IDD_UPDREC_CONDITIONS: return GridPage(context, window, message, wParam, lParam, OPDESC_SELECTION);
    case IDD_UPDREC_ASSIGNMENTS: return GridPage(context, window, message, wParam, lParam, OPDESC_ASSIGNMENT);
    case IDD_UPDREC_CONFIRMATION: return TextPage(context, window, message, wParam, lParam, false);
    case IDD_UPDREC_RESULT: return TextPage(context, window, message, wParam, lParam, true);
    }
    return 0;
}

} // namespace

extern "C" {

KODBC_API int KODBC_CALL UpdRecsWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam) {
    return WizardStep<UpdateRecordsContext>(wizard, window, message, lParam, [&](UpdateRecordsContext &context) {
        if (!IsPage(page)) return 0;
        return message == WM_INITDIALOG ? 1 : DispatchPage(context, page, window, message, wParam, lParam);
    });
}

KODBC_API int KODBC_CALL Kodbc_UpdateRecordsWizzard(SQLHDBC hdbc, TableRecord *table, int reserved) {
    try {
        std::unique_ptr<UpdateRecordsContext> context = CreateUpdateRecordsContext(hdbc, table, reserved);
        if (!context) return KODBC_FAILURE;
        // The update has run on leaving the confirmation page; cancelling
        // afterwards still answers 2.
        if (PerformWizard(kPages, &UpdRecsWizzCallback, context.get(), IDB_UPDREC_WIZARD, msg::TITLE_UPDATE_RECORDS) !=
            1)
            return KODBC_FAILURE;
        if (table) std::memcpy(table, &context->table, sizeof *table);
        return KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // extern "C"
