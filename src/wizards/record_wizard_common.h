// What the record wizards share: the answer a page gives when it is left
// (all three wizards), and for the delete-records and update-records
// wizards the owned text buffers of their contexts, the
// table page, the counting of the selected records and the one statement
// each wizard finally runs.
//
// Page code moves data between its controls and a context and does what a
// PageDecision says; every rule lives here.
#pragma once

#include <kodbc/kodbc_types.h>

#include <cstdint>
#include <memory>

namespace kodbc::wizards {

// Sizes the wizards have always used; statements and their clauses are
// deliberately smaller than the buffers the pages count with.
inline constexpr int kDescriptorCapacity = 10000;  // selection and assignment descriptors
inline constexpr int kFieldListCapacity = 10000;   // "name\ttype\t…" of the chosen table
inline constexpr int kCountWhereSize = 10000;      // the condition the records are counted with
inline constexpr int kStatementSize = 500;         // DELETE / UPDATE text, also its WHERE and SET
inline constexpr int kSetCheckSize = 300;          // the SET clause the assignment page checks
inline constexpr int kPageTextSize = 200;          // summary, confirmation and result texts
inline constexpr int kAnalysedNameSize = 100;      // the table whose fields were read last

// The direction of a page-leave message: backwards is accepted unchecked.
inline constexpr unsigned kLeaveBackwards = 2;
inline bool IsLeavingForwards(unsigned direction) noexcept { return direction != kLeaveBackwards; }

// Answers written through the page-leave message's lParam.
inline constexpr std::int32_t kPageLeave = 1;
inline constexpr std::int32_t kPageStay = 2;

enum class PageFocus { None, TableList };

// What a page does when it is left. A message has already been shown
// (through the library's message service) when the decision returns; a
// page may show one and still let the user go on.
struct PageDecision {
    bool goOn = true;
    int messageId = 0;                 // the message shown, 0 for none
    PageFocus focus = PageFocus::None; // where the page puts the focus when it stays
    int focusRow = -1;                 // the list row to select and focus, -1 for none

    std::int32_t answer() const noexcept { return goOn ? kPageLeave : kPageStay; }
    bool stays() const noexcept { return !goOn; }
};

PageDecision GoOn() noexcept;
// Shows messageId and keeps the user on the page.
PageDecision Stay(int messageId, PageFocus focus = PageFocus::None) noexcept;

// A text buffer a context owns, with the capacity the pages hand to the
// dialog-row transfer. Starts empty.
struct OwnedText {
    std::int32_t capacity = 0;
    std::unique_ptr<char[]> text;

    // False when the memory is not there (nothing is shown).
    bool allocate(int size) noexcept;
    void clear() noexcept {
        if (text) text[0] = '\0';
    }
    char *get() const noexcept { return text.get(); }
};

// The caller's record into a context (zeros for null), its name
// terminated within its 50 bytes.
void CopyTableRecord(TableRecord &to, const TableRecord *from) noexcept;

// The chosen table into the record's name (cut to 49 characters).
void StoreTableName(TableRecord &table, const char *name) noexcept;

// Leaving the table page: backwards goes on; forwards without a selected
// entry (selected null or empty) shows 1625 and stays with the focus on the
// list; otherwise the name is stored and the page goes on.
PageDecision CheckTableChoice(TableRecord &table, unsigned direction, const char *selected) noexcept;

// The table's fields with their ODBC types ("name\ttype\t…", the list the
// dialog-row transfer fills its boxes from) into list. False after an
// error (shown); the list is then empty.
bool ReadFieldList(SQLHDBC hdbc, const char *table, OwnedText &list) noexcept;

// The number of records of table that satisfy selDesc, counted with the
// whole condition (10000 bytes). -1 when the condition cannot be formed;
// 0 also for a failed count (shown).
long CountSelectedRecords(SQLHDBC hdbc, const char *table, const char *selDesc) noexcept;

// What became of the conditions and assignments on their way into the one
// statement of a record wizard.
enum class RecordStatement {
    Whole,           // holds the condition as counted and the SET clause as checked
    NotFormed,       // the condition cannot be formed, or nothing is assigned
    ConditionCut,    // holds less of the condition than the records were counted with
    AssignmentsCut,  // holds less of the SET clause than the assignments give
};

// "DELETE from %t" (setDesc null) or "UPDATE %t SET %s" with the SET clause
// of setDesc, into statement (kStatementSize bytes), then " WHERE (", the
// condition of selDesc and ")" when it is not empty. The condition and the
// SET clause are formed in kStatementSize bytes and the formatter keeps 299
// characters of the SET clause, so a long condition loses the groups that
// do not fit (a lone group leaves no condition at all) and long assignments
// are cut inside a value; only a Whole statement may run.
RecordStatement BuildRecordStatement(SQLHDBC hdbc, const char *table, const char *selDesc, const char *setDesc,
                                     char (&statement)[kStatementSize]) noexcept;

// The message that refuses the statement of table, selDesc and setDesc
// (null for the delete), not shown; 0 when it may run (a condition that
// cannot be formed fails later, as it always has).
int RecordStatementRefusal(SQLHDBC hdbc, const char *table, const char *selDesc, const char *setDesc) noexcept;

// Offers statement to the dump (with its buffer size) and executes it
// directly on a statement of its own. False after a refusal (silent) or an
// error (shown with the statement).
bool RunRecordStatement(SQLHDBC hdbc, const char *statement) noexcept;

// Whether one connection may read the source rows of a copy while the
// statements write the destination: only within one data source and login,
// and only where the driver runs more than one active statement on a
// connection (the first INSERT would fail otherwise) or the database is a
// file that a second connection would find locked by the open query.
struct ConnectionSharing {
    bool sameLogin = false;      // same data source and user
    int activeStatements = 1;    // as the driver reports it; 0 for no limit
    bool fileDatabase = false;   // the data lies in a file locked as a whole
};
bool SharesSourceConnection(const ConnectionSharing &sharing) noexcept;
// What the two connections report.
ConnectionSharing ReadConnectionSharing(SQLHDBC source, SQLHDBC destination) noexcept;

// The connection that reads the source rows of a copy into destination:
// destination when it may be shared (above), else source.
SQLHDBC SourceQueryConnection(SQLHDBC source, SQLHDBC destination) noexcept;

// String stringId formatted with count into text (at most size-1
// characters, size at most kPageTextSize is what the pages use).
void FormatCountText(int stringId, long count, char *text, int size) noexcept;

} // namespace kodbc::wizards
