// The update-records wizard's core: its context, what its five pages
// decide and show, and the update that runs when the confirmation page is
// left forwards.
//
// Pages: table (IDD_UPDREC_TABLE), conditions (IDD_UPDREC_CONDITIONS, grid
// kConditionGrid, kind OPDESC_SELECTION), assignments
// (IDD_UPDREC_ASSIGNMENTS, grid kAssignmentGrid, kind OPDESC_ASSIGNMENT),
// confirmation (IDD_UPDREC_CONFIRMATION), result (IDD_UPDREC_RESULT).
#pragma once

#include "wizards/record_wizard_common.h"

#include <cstdint>
#include <memory>

namespace kodbc::wizards {

struct UpdateRecordsContext {
    std::intptr_t wizard = 0;      // the frame's handle, stored on every callback
    SQLHDBC hdbc = nullptr;        // the caller's connection
    TableRecord table{};           // copy of the caller's record; the chosen table
    std::int32_t reserved = 0;     // the caller's third argument, kept
    OwnedText selDesc;             // the conditions (selection descriptor)
    OwnedText setDesc;             // the assignments (SET form)
    OwnedText fieldList;           // "name\ttype\t…" of the chosen table
    std::int32_t recordCount = 0;  // records the conditions matched when their page was left
};

// A context with its three buffers, the table record copied from table
// (zeros for null). Null after message 1600 has been shown.
std::unique_ptr<UpdateRecordsContext> CreateUpdateRecordsContext(SQLHDBC hdbc, const TableRecord *table,
                                                                 std::int32_t reserved) noexcept;

// A click on a table list entry: the name is taken and both descriptors
// are emptied, whichever entry it was.
void SelectTable(UpdateRecordsContext &context, const char *name) noexcept;
// Leaving the table page (selected: the list's selected entry, null when
// none). Forwards with a table, its field list is read.
PageDecision LeaveTablePage(UpdateRecordsContext &context, unsigned direction, const char *selected) noexcept;

// Leaving the condition page forwards (the page has read its grid into
// selDesc): the matching records are counted into recordCount; none (or a
// count that failed) shows 1626 and stays.
PageDecision LeaveConditionPage(UpdateRecordsContext &context, unsigned direction) noexcept;

// Leaving the assignment page forwards (the page has read its grid into
// setDesc): an empty SET clause (formed in kSetCheckSize bytes) shows 1635
// and stays.
PageDecision LeaveAssignmentPage(UpdateRecordsContext &context, unsigned direction) noexcept;

// The confirmation and result pages' texts with recordCount (at most
// size-1 characters; the pages use kPageTextSize).
void ConfirmationText(const UpdateRecordsContext &context, char *text, int size) noexcept;
void ResultText(const UpdateRecordsContext &context, char *text, int size) noexcept;

// Leaving the confirmation page forwards runs the update, every time; a
// failure (shown) keeps the user on the page, and so does a statement that
// would hold less of the condition than was counted or less of the
// assignments than were given (refused with its message, nothing runs).
PageDecision LeaveConfirmationPage(UpdateRecordsContext &context, unsigned direction) noexcept;

// One "UPDATE %t SET %s" with the condition (see BuildRecordStatement; the
// SET clause formed in kStatementSize bytes, the formatter keeps 299
// characters of it). True when the statement ran; false for a null
// connection or an empty table name (silently), a condition that cannot be
// formed, an empty SET clause (silently), a statement that would not hold
// the whole condition and SET clause (refused with its message), the dump's
// refusal or an error (shown).
bool UpdateSelectedRecords(SQLHDBC hdbc, const char *table, const char *selDesc, const char *setDesc) noexcept;

} // namespace kodbc::wizards
