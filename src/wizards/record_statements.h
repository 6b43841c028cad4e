// The statements the record wizards send: INSERT, UPDATE and DELETE of one
// record, the value literals inside them, and the condition that finds
// the record an added one replaces.
#pragma once

#include "wizards/add_rec_field.h"

#include <korvel/bounded_text.h>

#include <string>
#include <string_view>
#include <vector>

namespace kodbc::wizards {

inline constexpr int kRecordStatementSize = 30000;
inline constexpr int kIdentifyingConditionSize = 301;   // at most 300 characters
inline constexpr int kIdentifyingValueSize = 200;       // the identifying value, at most 199 characters

// text between single quotes, every quote inside doubled, and every
// backslash too where the database reads backslash escapes. A literal that
// does not fit is cut before a character (never inside a doubled one) and
// still closed. False when something was cut.
bool AppendStringLiteral(korvel::BoundedText &out, std::string_view text, bool backslashEscapes = false) noexcept;

// The literal an entry writes for the current record:
// - leave empty, or an empty value of any mode: NULL;
// - fixed value: between quotes exactly as typed (its quotes are not
//   doubled: what the user typed is taken as SQL);
// - source field: bare into integer and floating-point columns, else a
//   string literal; bytes (read as hex digits) into a binary column as a
//   binary literal opened by binaryOpen and closed by a quote.
void AppendValueLiteral(korvel::BoundedText &out, const AddRecField &field, bool backslashEscapes = false,
                        std::string_view binaryOpen = "X'") noexcept;

// The parts of the statements that are the same for every record of a
// run, prepared once for the destination connection.
struct RecordStatementParts {
    std::string insertHead;             // "INSERT INTO <table> ("
    std::string updateHead;             // "UPDATE <table> SET "
    std::string deleteHead;             // "DELETE FROM <table>"
    std::vector<std::string> names;     // per slot: the prepared name, empty when the entry is not written
    bool backslashEscapes = false;      // the database reads backslash escapes in literals
    std::string binaryOpen = "X'";      // how a binary literal begins there
};

// Formats the heads with the table and prepares the names of the entries
// that are written. False when out of memory (message 1600 shown).
bool PrepareRecordStatementParts(SQLHDBC hdbc, const char *table, const AddRecFieldList &fields,
                                 RecordStatementParts &parts) noexcept;

// The statements into out (size bytes, cut to size-1). INSERT names every
// written entry and its literal; UPDATE sets them and adds " WHERE " and
// the condition when one is given; DELETE likewise. Return false when the
// statement was cut.
bool BuildInsertStatement(const RecordStatementParts &parts, const AddRecFieldList &fields, char *out,
                          int size) noexcept;
bool BuildUpdateStatement(const RecordStatementParts &parts, const AddRecFieldList &fields,
                          const char *condition, char *out, int size) noexcept;
// The INSERT's two halves for many records in one statement: the head up
// to " VALUES " and one record's "(<literal>,...)"; given size minus the
// head's length the values come out as BuildInsertStatement writes them.
std::string InsertHead(const RecordStatementParts &parts, const AddRecFieldList &fields);
bool BuildInsertValues(const RecordStatementParts &parts, const AddRecFieldList &fields, char *out,
                       int size) noexcept;
bool BuildDeleteStatement(const RecordStatementParts &parts, const char *condition, char *out, int size) noexcept;

// "<field>=<value>": the prepared destination identifying field and the
// source's identifying value, bare when the source column's SQL type is a
// number type, else a string literal. Cut to size-1.
void BuildIdentifyingCondition(std::string_view preparedField, std::string_view value, int sqlType, char *out,
                               int size, bool backslashEscapes = false) noexcept;

} // namespace kodbc::wizards
