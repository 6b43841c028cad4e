// The delete-records wizard's pages: the table list, the condition grid and
// the summary. What they decide, and the deletion itself, is in
// delete_records.cpp; the deletion runs only after "Fertigstellen".
#include "wizards/delete_records.h"
#include "wizards/record_wizard_grids.h"
#include "wizards/record_wizard_ids.h"
#include "wizards/record_wizard_pages.h"

#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_wizards.h>

#include <cstring>

using namespace kodbc;
using namespace kodbc::wizards;

namespace {

constexpr KorvelWizardPage kPages[] = {
    {IDD_DELREC_TABLE, {0, 0}}, {IDD_DELREC_CONDITIONS, {0, 0}}, {IDD_DELREC_SUMMARY, {0, 0}}, {0, {0, 0}},
};

int ConditionPage(DeleteRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kPageActivate:
        ActivateConditionPage(context);
        ShowGrid(page, OPDESC_SELECTION, kConditionGrid, context.selDesc, context.fieldList);
        return 1;
    case kPageLeaveMessage: {
        const auto direction = static_cast<unsigned>(wParam);
        if (IsLeavingForwards(direction)) ReadGrid(page, OPDESC_SELECTION, kConditionGrid, context.selDesc);
        return AnswerLeave(page, lParam, LeaveConditionPage(context, direction));
    }
    }
    return 0;
}

int SummaryPage(DeleteRecordsContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kPageActivate: {
        char text[kPageTextSize];
        DeleteSummaryText(context, text, sizeof text);
        ShowPageText(page, text);
        return 1;
    }
    case kPageLeaveMessage:
        return AnswerLeave(page, lParam, LeaveSummaryPage(context, static_cast<unsigned>(wParam)));
    }
    return 0;
}

int DispatchPage(DeleteRecordsContext &context, int page, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (page) {
    case IDD_DELREC_TABLE: return TablePage(context, window, message, wParam, lParam);
    case IDD_DELREC_CONDITIONS: return ConditionPage(context, window, message, wParam, lParam);
    case IDD_DELREC_SUMMARY: return SummaryPage(context, window, message, wParam, lParam);
    }
    return 0;
}

} // namespace

extern "C" {

KODBC_API int KODBC_CALL DelRecsWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam) {
    return WizardStep<DeleteRecordsContext>(wizard, window, message, lParam, [&](DeleteRecordsContext &context) {
        if (page != IDD_DELREC_TABLE && page != IDD_DELREC_CONDITIONS && page != IDD_DELREC_SUMMARY) return 0;
        return message == WM_INITDIALOG ? 1 : DispatchPage(context, page, window, message, wParam, lParam);
    });
}

KODBC_API int KODBC_CALL Kodbc_DeleteRecordsWizzard(SQLHDBC hdbc, TableRecord *table, int reserved) {
    try {
        std::unique_ptr<DeleteRecordsContext> context = CreateDeleteRecordsContext(hdbc, table, reserved);
        if (!context) return KODBC_FAILURE;
        if (PerformWizard(kPages, &DelRecsWizzCallback, context.get(), IDB_DELREC_WIZARD, msg::TITLE_DELETE_RECORDS) !=
            1)
            return KODBC_FAILURE;
        if (!DeleteSelectedRecords(*context)) return KODBC_FAILURE;
        if (table) std::memcpy(table, &context->table, sizeof *table);
        return KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // extern "C"
