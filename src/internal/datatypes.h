// The library's data-type table: the rows the create-table wizard, table
// administration and the import offer as column types, in the order they
// are offered. A row with code 0 ends the table.
#pragma once

#include <kodbc/kodbc_types.h>
#include <kodbc_internal/message_ids.h>

namespace kodbc {

struct DataTypeRow {
    int code;                    // KODBC_TYPE_*, 0 ends the table
    int nameId;                  // string-table id of the German display name
    const char *columnTemplate;  // column definition; "%d" takes the length
    bool lengthRequired;         // the user must give a length for this type
    bool counterTypeFromSource;  // auto-increment columns take the data source's counter type name
};

inline constexpr DataTypeRow kDataTypeTable[] = {
    {KODBC_TYPE_FIXED_TEXT, msg::TYPE_NAME_FIXED_TEXT, "CHAR (%d)", true, false},
    {KODBC_TYPE_VAR_TEXT, msg::TYPE_NAME_VAR_TEXT, "VARCHAR (%d)", true, false},
    {KODBC_TYPE_LONG_TEXT, msg::TYPE_NAME_LONG_TEXT, "VARCHAR (%d)", false, false},
    {KODBC_TYPE_DATETIME, msg::TYPE_NAME_DATETIME, "DATETIME", false, false},
    {KODBC_TYPE_INTEGER, msg::TYPE_NAME_INTEGER, "INTEGER", false, true},
    {KODBC_TYPE_FLOAT, msg::TYPE_NAME_FLOAT, "FLOAT", false, false},
    {KODBC_TYPE_BINARY, msg::TYPE_NAME_BINARY, "VARCHAR", false, false},
    {0, msg::TYPE_NAME_UNKNOWN, nullptr, false, false},
};

// The row of a library type code; null for a code outside the table.
const DataTypeRow *FindDataType(int code);

// The display name of a library type code ("Unbekannter Typ" outside the
// table), translated, cut to size-1. Returns the length written.
int DataTypeDisplayName(int code, char *buffer, int size);

// The display name followed by " (length)" when the length is above 0
// ("VarText (20)"), cut to size-1. Returns the length written.
int DataTypeText(int code, int length, char *buffer, int size);

// The column definition of a row: its template formatted with length, cut
// to size-1. Returns the length written (0 for a null row).
int FormatColumnTemplate(const DataTypeRow *row, int length, char *buffer, int size);

// The column definition of a row for the connected database: the type
// that keeps the row's values there where the template's would not,
// else the formatted template. The statement builders use this one.
int FormatColumnDefinition(SQLHDBC hdbc, const DataTypeRow *row, int length, char *buffer, int size);

} // namespace kodbc
