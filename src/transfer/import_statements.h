// The statements of an import: the CREATE TABLE of the new table and one
// INSERT per record, and the runner that offers each to the dump and
// executes it.
#pragma once

#include "transfer/import_fields.h"

#include "internal/odbc_handles.h"

#include <string>
#include <vector>

namespace kodbc::transfer {

inline constexpr int kImportStatementSize = 30000;

// The column type of the data source's own auto-incrementing integer: the
// definition of the database kind's capability row where it has one, else
// the driver's type information (an integer type whose values it numbers
// by itself); empty when neither names one.
std::string CounterTypeName(SQLHDBC hdbc);

// "CREATE TABLE <table> (<name> <type>, ...)" over the imported fields:
// each name prepared for SQL-92 (at most 99 characters), each type the
// data-type table's column template formatted with the target length, or
// counterType for an auto-increment field whose type row takes the data
// source's counter type (when counterType is not empty). A field of a type
// outside the table contributes nothing.
std::string CreateImportTableStatement(SQLHDBC hdbc, const char *table, const ImportFieldList &fields,
                                       const std::string &counterType);

// What every INSERT of a run shares, prepared once for the connection.
struct ImportInsertParts {
    std::string head;                  // "INSERT INTO <table> ("
    std::vector<std::string> names;    // per field: the prepared name, empty when not written
    bool backslashEscapes = false;     // the database reads backslash escapes in literals
    bool swapDateParts = false;        // the database reads dates as year-day-month
};
// The fields written are the imported ones that do not count by themselves.
ImportInsertParts PrepareImportInsert(SQLHDBC hdbc, const char *table, const ImportFieldList &fields);

// "INSERT INTO <table> (a,b) VALUES (<value>,<value>)" into out (size
// bytes): a field without a value or with an empty one writes NULL,
// numbers are written bare, dates and texts as quoted literals (dates with
// the characters 6-7 and 9-10 swapped where the database wants year, day,
// month). A literal too long for the statement is cut so that the closing
// quote and the rest of the statement still fit. False when something was
// cut.
bool BuildImportInsert(const ImportInsertParts &parts, const ImportFieldList &fields, char *out, int size) noexcept;

// The two halves of that INSERT for writing many records in one: what
// every record's statement starts with, "INSERT INTO <table> (a,b) VALUES ",
// and one record's "(<value>,<value>)". Given size minus the head's length
// (the room the values have in the one-record statement), the values come
// out byte for byte as BuildImportInsert writes them, cuts included.
std::string ImportInsertHead(const ImportInsertParts &parts, const ImportFieldList &fields);
bool BuildImportValues(const ImportInsertParts &parts, const ImportFieldList &fields, char *out, int size) noexcept;

// Runs statements one after another on one statement handle: each is
// offered to the dump (which may refuse it) and executed; an error is shown
// with the statement.
class ImportStatementRunner {
public:
    explicit ImportStatementRunner(SQLHDBC hdbc) noexcept : hdbc_(hdbc) {}
    // False when the dump refused the statement or it failed (shown).
    bool Run(const char *sql) noexcept;

private:
    SQLHDBC hdbc_;
    odbc::Statement statement_;
};

} // namespace kodbc::transfer
