// The add-records wizard's work: every record of the source table becomes
// one INSERT (or, in replace mode, an UPDATE of the matching record) in
// the destination table.
#pragma once

#include <string>

#include "wizards/add_records.h"
#include "wizards/wizard_progress.h"

namespace kodbc::wizards {

struct AddRecordsRunCounts {
    long read = 0;           // source rows fetched
    long written = 0;        // statements that ran (batch mode: records committed)
    bool cancelled = false;  // the user stopped the run
    bool stopped = false;    // a statement failed, was refused, or a value could not be converted
    // What the conversions changed on the way, for the user to hear: values
    // longer than the read buffer (cut), numbers written into text fields
    // that lost characters (1e+20 as 1+20), and the first of those numbers
    // with its record and destination field.
    long valuesCut = 0;
    long numbersChanged = 0;
    std::string firstNumber, firstNumberAs, firstNumberField;
    long firstNumberRecord = 0;
};

// Copies the records of context.sourceTable (on context.sourceDbc) into
// the destination table of context.table as the mapping says, with
// progress reported to progress. Records are read and written one at a
// time with buffers reused throughout, so memory does not grow with the
// table. Nothing is undone: rows written before a stop stay -- except with
// context.batch, where the destination connection's auto-commit is off
// (its owner's choice) and the run is one transaction: added records go in
// INSERTs of many records each (replace mode runs each statement singly),
// committed at the end; a failure, a value that cannot be converted or a
// cancel rolls everything back (counts->written 0) and says so, a refused
// statement naming its source record with the database's reason.
// Returns 1 once the source query ran (also when the loop ended early;
// counts tells why), 2 when the buffers, the source statement or the
// source query failed (the error has been shown).
int RunAddRecords(AddRecordsContext &context, WizardProgress &progress, AddRecordsRunCounts *counts = nullptr) noexcept;

} // namespace kodbc::wizards
