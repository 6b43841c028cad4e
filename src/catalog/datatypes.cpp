// The library's data-type codes: the mapping from ODBC types, the table of
// display names and column templates, and values turned into display text.
#include "internal/datatypes.h"
#include "internal/db_capabilities.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>

#include <cstdio>
#include <cstring>
#include <string_view>

namespace kodbc {

const DataTypeRow *FindDataType(int code) {
    for (const DataTypeRow &row : kDataTypeTable) {
        if (row.code == 0) break;
        if (row.code == code) return &row;
    }
    return nullptr;
}

int DataTypeDisplayName(int code, char *buffer, int size) {
    const DataTypeRow *row = FindDataType(code);
    return LoadLibraryString(LibraryInstance(), row ? row->nameId : msg::TYPE_NAME_UNKNOWN, buffer, size);
}

int DataTypeText(int code, int length, char *buffer, int size) {
    DataTypeDisplayName(code, buffer, size);
    auto out = korvel::BoundedText::continuing(buffer, size);
    if (length > 0) {
        char number[24];
        std::snprintf(number, sizeof number, " (%d)", length);
        out.append(number);
    }
    return out.int_length();
}

int FormatColumnTemplate(const DataTypeRow *row, int length, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!row || !row->columnTemplate) return 0;
    char number[16];
    std::snprintf(number, sizeof number, "%d", length);
    std::string_view pattern(row->columnTemplate);
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] == 'd') {
            out.append(number);
            ++i;
        } else {
            out.append(pattern[i]);
        }
    }
    return out.int_length();
}

int FormatColumnDefinition(SQLHDBC hdbc, const DataTypeRow *row, int length, char *buffer, int size) {
    const char *instead = row ? tabledesign::ColumnTypeInsteadOfTemplate(hdbc, row->code) : nullptr;
    if (!instead) return FormatColumnTemplate(row, length, buffer, size);
    korvel::BoundedText out(buffer, size);
    out.append(instead);
    return out.int_length();
}

} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_SqlDataTypeToKodbcDataType(int sqlType) {
    // Only the ODBC 2 date codes count as dates: the ODBC 3 codes 91 to 93
    // and GUID fall through to fixed text, which callers have always seen.
    switch (sqlType) {
    case SQL_UNKNOWN_TYPE:
    case SQL_VARCHAR:
    case SQL_WVARCHAR:
        return KODBC_TYPE_VAR_TEXT;
    case SQL_LONGVARCHAR:
    case SQL_WLONGVARCHAR:
        return KODBC_TYPE_LONG_TEXT;
    case SQL_TINYINT:
    case SQL_BIGINT:
    case SQL_INTEGER:
    case SQL_SMALLINT:
        return KODBC_TYPE_INTEGER;
    case SQL_NUMERIC:
    case SQL_DECIMAL:
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE:
        return KODBC_TYPE_FLOAT;
    case SQL_DATE:
    case SQL_TIME:
    case SQL_TIMESTAMP:
        return KODBC_TYPE_DATETIME;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
        return KODBC_TYPE_BINARY;
    default:
        return KODBC_TYPE_FIXED_TEXT;
    }
}

KODBC_API void KODBC_CALL Kodbc_OdbcDataToString(char *text, int size, int sqlType, char decimalMark) {
    if (!text || size < 1) return;
    switch (sqlType) {
    case SQL_NUMERIC:
    case SQL_DECIMAL:
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE:
        for (int i = 0; i < size && text[i]; ++i)
            if (text[i] == '.') text[i] = decimalMark;
        return;
    case SQL_DATE:
    case SQL_TIME:
    case SQL_TIMESTAMP: {
        // The value is bounded by size even when the caller left it
        // unterminated; a text that is no date is left as it is.
        char value[64];
        korvel::BoundedText copy(value, sizeof value);
        copy.append(std::string_view(text, strnlen(text, static_cast<std::size_t>(size))));
        KorvelDate date{};
        if (copy.truncated() || !Korvel_StringToDate(value, &date)) return;
        Korvel_FormatDate(&date, date.hasTime ? "%D1.%M1.%Y2 %h1:%m1:%s1" : "%D1.%M1.%Y2", text, size);
        return;
    }
    default:
        return;
    }
}

} // extern "C"
