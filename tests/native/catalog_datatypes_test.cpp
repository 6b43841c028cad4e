// The library's data-type codes, their table and values turned into
// display text.
#include "test_support.h"

#include "internal/datatypes.h"

#include <cstring>

namespace kodbc::test {
namespace {

TEST(CatalogDataTypes, MappingKeepsItsAsymmetries) {
    const std::pair<int, int> cases[] = {
        {SQL_UNKNOWN_TYPE, 10}, {SQL_VARCHAR, 10}, {SQL_WVARCHAR, 10}, {SQL_LONGVARCHAR, 9},
        {SQL_WLONGVARCHAR, 9},  {SQL_TINYINT, 2},  {SQL_BIGINT, 2},    {SQL_INTEGER, 2},
        {SQL_SMALLINT, 2},      {SQL_NUMERIC, 3},  {SQL_DECIMAL, 3},   {SQL_FLOAT, 3},
        {SQL_REAL, 3},          {SQL_DOUBLE, 3},   {SQL_DATE, 4},      {SQL_TIME, 4},
        {SQL_TIMESTAMP, 4},     {SQL_BINARY, 7},   {SQL_VARBINARY, 7}, {SQL_LONGVARBINARY, 7},
        {SQL_CHAR, 1},          {SQL_WCHAR, 1},    {SQL_BIT, 1},       {SQL_TYPE_DATE, 1},
        {SQL_TYPE_TIME, 1},     {SQL_TYPE_TIMESTAMP, 1}, {SQL_GUID, 1}, {12345, 1},
    };
    for (const auto &[sqlType, code] : cases) EXPECT_EQ(Kodbc_SqlDataTypeToKodbcDataType(sqlType), code) << sqlType;
}

TEST(CatalogDataTypes, TableRowsInOfferOrder) {
    std::vector<int> codes;
    for (const DataTypeRow &row : kDataTypeTable) {
        codes.push_back(row.code);
        if (row.code == 0) break;
    }
    EXPECT_EQ(codes, (std::vector<int>{1, 10, 9, 4, 2, 3, 7, 0}));
    EXPECT_TRUE(FindDataType(KODBC_TYPE_FIXED_TEXT)->lengthRequired);
    EXPECT_TRUE(FindDataType(KODBC_TYPE_VAR_TEXT)->lengthRequired);
    EXPECT_FALSE(FindDataType(KODBC_TYPE_LONG_TEXT)->lengthRequired);
    EXPECT_TRUE(FindDataType(KODBC_TYPE_INTEGER)->counterTypeFromSource);
    EXPECT_FALSE(FindDataType(KODBC_TYPE_FLOAT)->counterTypeFromSource);
    EXPECT_EQ(FindDataType(5), nullptr);
    EXPECT_EQ(FindDataType(0), nullptr);
}

TEST(CatalogDataTypes, ColumnTemplatesAndDisplayNames) {
    const struct {
        int code, length, size;
        const char *columnTemplate;
    } templates[] = {{KODBC_TYPE_FIXED_TEXT, 20, 40, "CHAR (20)"},
                     {KODBC_TYPE_DATETIME, 20, 40, "DATETIME"},
                     {KODBC_TYPE_VAR_TEXT, 255, 8, "VARCHAR"}};  // cut to the buffer
    for (const auto &t : templates)
        EXPECT_EQ(Guarded(t.size, [&](char *out, int n) { FormatColumnTemplate(FindDataType(t.code), t.length, out, n); }),
                  t.columnTemplate);
    char text[40];
    EXPECT_EQ(FormatColumnTemplate(FindDataType(KODBC_TYPE_FIXED_TEXT), 20, text, sizeof text), 9);  // its length
    const std::pair<int, const char *> names[] = {
        {KODBC_TYPE_DATETIME, "Datum/Zeit"}, {KODBC_TYPE_VAR_TEXT, "VarText"}, {6, "Unbekannter Typ"}};
    for (const auto &[code, name] : names) {
        DataTypeDisplayName(code, text, sizeof text);
        EXPECT_STREQ(text, name) << code;
    }
}

std::string Converted(const char *value, int sqlType, int size = 64, char mark = ',') {
    return GuardedInPlace(value, size, [&](char *buffer, int n) { Kodbc_OdbcDataToString(buffer, n, sqlType, mark); });
}

// Only the decimal types get the mark, only the ODBC 2 date codes are rewritten.
TEST(CatalogOdbcDataToString, DecimalMarkAndOdbc2Dates) {
    for (int type : {SQL_NUMERIC, SQL_DECIMAL, SQL_FLOAT, SQL_REAL, SQL_DOUBLE})
        EXPECT_EQ(Converted("1234.5", type), "1234,5") << type;
    EXPECT_EQ(Converted("1.5.6", SQL_DOUBLE, 64, ';'), "1;5;6");
    for (int type : {SQL_INTEGER, SQL_VARCHAR, SQL_CHAR, SQL_BIGINT})
        EXPECT_EQ(Converted("1234.5", type), "1234.5") << type;
    EXPECT_EQ(Converted("2024-03-05", SQL_DATE), "05.03.2024");
    EXPECT_EQ(Converted("2024-03-05 13:14:15", SQL_TIMESTAMP), "05.03.2024 13:14:15");
    EXPECT_EQ(Converted("2024-03-05 13:14:15.250", SQL_TIMESTAMP), "05.03.2024 13:14:15");
    EXPECT_EQ(Converted("2024-03-05 13:14:15", SQL_TIMESTAMP, 11), "05.03.2024");
    for (int type : {SQL_TYPE_DATE, SQL_TYPE_TIMESTAMP, SQL_VARCHAR})
        EXPECT_EQ(Converted("2024-03-05", type), "2024-03-05") << type;
    EXPECT_EQ(Converted("kein Datum", SQL_DATE), "kein Datum");
    Kodbc_OdbcDataToString(nullptr, 10, SQL_DATE, ',');  // harmless
}

} // namespace
} // namespace kodbc::test
