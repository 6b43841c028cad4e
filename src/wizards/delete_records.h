// The delete-records wizard's core: its context, what its three pages
// decide and show, and the deletion after "Fertigstellen".
//
// Pages: table (IDD_DELREC_TABLE), conditions (IDD_DELREC_CONDITIONS, grid
// kConditionGrid, kind OPDESC_SELECTION), summary (IDD_DELREC_SUMMARY).
#pragma once

#include "wizards/record_wizard_common.h"

#include <cstdint>
#include <memory>

namespace kodbc::wizards {

struct DeleteRecordsContext {
    std::intptr_t wizard = 0;           // the frame's handle, stored on every callback
    SQLHDBC hdbc = nullptr;             // the caller's connection
    TableRecord table{};                // copy of the caller's record; the chosen table
    std::int32_t reserved = 0;          // the caller's third argument, kept
    char lastAnalysed[kAnalysedNameSize] = {};  // the table whose fields fieldList holds
    OwnedText selDesc;                  // the conditions (selection descriptor)
    OwnedText fieldList;                // "name\ttype\t…" of lastAnalysed
    std::int32_t unused = 0;
};

// A context with both buffers (kDescriptorCapacity, kFieldListCapacity),
// the table record copied from table (zeros for null). Null after message
// 1600 has been shown.
std::unique_ptr<DeleteRecordsContext> CreateDeleteRecordsContext(SQLHDBC hdbc, const TableRecord *table,
                                                                 std::int32_t reserved) noexcept;

// A click on a table list entry.
void SelectTable(DeleteRecordsContext &context, const char *name) noexcept;
// Leaving the table page (selected: the list's selected entry, null when
// none). The conditions stay until the condition page sees another table.
PageDecision LeaveTablePage(DeleteRecordsContext &context, unsigned direction, const char *selected) noexcept;

// Activating the condition page: when the chosen table differs (without
// regard to case) from the one last analysed, the conditions are emptied
// and the field list is read again. The page then fills its grid from
// selDesc and fieldList.
void ActivateConditionPage(DeleteRecordsContext &context) noexcept;
// Leaving the condition page: the page has read its grid into selDesc when
// leaving forwards (IsLeavingForwards); the conditions are not checked.
PageDecision LeaveConditionPage(DeleteRecordsContext &context, unsigned direction) noexcept;

// The summary page's text (at most size-1 characters; the page uses
// kPageTextSize): how many records will go, or that none will. Counts
// once, and a second time for the number shown when the first count is 1
// or more. Returns the count shown (-1 when the condition cannot be
// formed, 0 also for a failed count).
long DeleteSummaryText(SQLHDBC hdbc, const char *table, const char *selDesc, char *text, int size) noexcept;
long DeleteSummaryText(const DeleteRecordsContext &context, char *text, int size) noexcept;

// Leaving the summary page: "Fertigstellen" is let through also when
// nothing will be deleted, but not to a statement that would hold less of
// the condition than was counted (the refusal is shown).
PageDecision LeaveSummaryPage(const DeleteRecordsContext &context, unsigned direction) noexcept;

// After "Fertigstellen": one "DELETE from" the table with the condition
// (see BuildRecordStatement). Runs also when nothing matches. True when the
// statement ran; false for a null connection or an empty table name
// (silently), a condition that cannot be formed, a statement that would not
// hold the whole condition (refused with its message), the dump's refusal
// or an error (shown).
bool DeleteSelectedRecords(SQLHDBC hdbc, const char *table, const char *selDesc) noexcept;
bool DeleteSelectedRecords(const DeleteRecordsContext &context) noexcept;

} // namespace kodbc::wizards
