// Add records without a data source: which types may fill which, how
// values are converted, and the literals and conditions they become.
#include "wizards/add_records.h"
#include "wizards/record_statements.h"
#include "wizards/record_wizard_common.h"
#include "wizards/value_conversion.h"

#include <gtest/gtest.h>

#include <string>

namespace kodbc::wizards {
namespace {

TEST(AddRecordsValues, TypeCompatibility) {
    struct Case { int source, destination; bool compatible; };
    const Case cases[] = {
        {KODBC_TYPE_INTEGER, KODBC_TYPE_LONG_TEXT, true},  {KODBC_TYPE_FLOAT, KODBC_TYPE_INTEGER, true},
        {KODBC_TYPE_INTEGER, KODBC_TYPE_DATETIME, false},  {KODBC_TYPE_FLOAT, KODBC_TYPE_BINARY, false},
        {KODBC_TYPE_DATETIME, KODBC_TYPE_VAR_TEXT, true},  {KODBC_TYPE_DATETIME, KODBC_TYPE_LONG_TEXT, false},
        {KODBC_TYPE_DATETIME, KODBC_TYPE_FLOAT, false},    {KODBC_TYPE_DATETIME, KODBC_TYPE_DATETIME, true},
        {KODBC_TYPE_VAR_TEXT, KODBC_TYPE_DATETIME, true},  {KODBC_TYPE_BINARY, KODBC_TYPE_INTEGER, true},
        {0, KODBC_TYPE_DATETIME, true},
    };
    for (const Case &c : cases)
        EXPECT_EQ(IsTypeCompatible(c.source, c.destination), c.compatible) << c.source << " -> " << c.destination;
}

TEST(AddRecordsValues, Conversion) {
    struct Case { int source, destination; const char *value, *expected; };
    const Case cases[] = {
        {KODBC_TYPE_FLOAT, KODBC_TYPE_VAR_TEXT, "3,5", "35"},  // the comma is dropped, not translated
        {KODBC_TYPE_FLOAT, KODBC_TYPE_FIXED_TEXT, "-1.5e3", "-1.53"},
        {KODBC_TYPE_INTEGER, KODBC_TYPE_LONG_TEXT, "+1.234 Stk", "+1234"},
        {KODBC_TYPE_DATETIME, KODBC_TYPE_VAR_TEXT, "2024-03-01 10:11:12", "01.03.2024"},
        {KODBC_TYPE_VAR_TEXT, KODBC_TYPE_DATETIME, "1.3.24", "2024-03-01 00:00:00"},
        {KODBC_TYPE_FIXED_TEXT, KODBC_TYPE_DATETIME, "kein Datum", "1900-01-01 00:00:00"},
        {KODBC_TYPE_DATETIME, KODBC_TYPE_DATETIME, "2024-03-01", "2024-03-01"},
        {KODBC_TYPE_VAR_TEXT, KODBC_TYPE_INTEGER, "12a", "12a"},
        {KODBC_TYPE_VAR_TEXT, KODBC_TYPE_VAR_TEXT, "O'Neil, 3,5", "O'Neil, 3,5"},
    };
    std::string out = "left over from the previous record";
    for (const Case &c : cases) {
        ASSERT_TRUE(ConvertSourceValue(c.source, c.destination, c.value, out));
        EXPECT_EQ(out, c.expected) << c.value << ": " << c.source << " -> " << c.destination;
    }
}

TEST(AddRecordsValues, LiteralsAndMappingRows) {
    struct Case { int mode, type; const char *fixed, *value; bool null; const char *literal, *source, *sourceType; };
    const Case cases[] = {
        {kFillLeaveEmpty, KODBC_TYPE_VAR_TEXT, "x", "y", false, "NULL", "", ""},
        {kFillFixedValue, KODBC_TYPE_INTEGER, "O'Neil", "", true, "'O'Neil'", "'O'Neil'", "Fester Wert"},
        {kFillFixedValue, KODBC_TYPE_VAR_TEXT, "", "", true, "NULL", "''", "Fester Wert"},
        {kFillSourceField, KODBC_TYPE_VAR_TEXT, "", "O'Neil", false, "'O''Neil'", "name", "VarText (30)"},
        {kFillSourceField, KODBC_TYPE_FLOAT, "", "3.5", false, "3.5", "name", "VarText (30)"},
        {kFillSourceField, KODBC_TYPE_INTEGER, "", "", false, "NULL", "name", "VarText (30)"},
        {kFillSourceField, KODBC_TYPE_VAR_TEXT, "", "stale", true, "NULL", "name", "VarText (30)"},
    };
    for (const Case &c : cases) {
        AddRecField field{.destinationName = "ziel", .destinationType = c.type, .mode = c.mode, .sourceField = "name",
                          .sourceType = KODBC_TYPE_VAR_TEXT, .sourceLength = 30, .value = c.value,
                          .valueIsNull = c.null, .fixedValue = c.fixed};
        char text[100];
        korvel::BoundedText out(text, sizeof text);
        AppendValueLiteral(out, field);
        EXPECT_STREQ(text, c.literal) << c.mode << " " << c.value;
        MappingRowTexts row = MappingRowText(field);
        EXPECT_EQ(row.source, c.source);
        EXPECT_EQ(row.sourceType, c.sourceType);
        field.readOnly = true;  // a read-only field shows no source whatever its mode
        row = MappingRowText(field);
        EXPECT_EQ(row.source + row.sourceType, "");
        EXPECT_EQ(row.destination, "ziel");
    }
    EXPECT_EQ(TypeText(KODBC_TYPE_INTEGER, 0), "Ganzzahl");
}

TEST(AddRecordsValues, IdentifyingConditionAndCuts) {
    char condition[kIdentifyingConditionSize];
    // A type unknown is quoted; the condition is cut to its 300 characters.
    for (const auto &[value, type, expected] :
         {std::tuple{std::string("42"), SQL_DECIMAL, std::string("nr=42")}, {"O'N", SQL_VARCHAR, "nr='O''N'"},
          {"4", 0, "nr='4'"}, {std::string(400, 'x'), SQL_CHAR, "nr='" + std::string(295, 'x') + "'"}}) {
        BuildIdentifyingCondition("nr", value, type, condition, sizeof condition);
        EXPECT_EQ(condition, expected);
    }

    // A doubled quote goes in whole or not at all.
    char literal[6];
    korvel::BoundedText out(literal, sizeof literal);
    EXPECT_FALSE(AppendStringLiteral(out, "ab'c"));
    EXPECT_STREQ(literal, "'ab'");
}

// A driver with one active statement per connection fails the first INSERT while the source
// query is open on the destination's connection.
TEST(AddRecordsValues, TheDestinationsConnectionReadsTheSourceOnlyWhereThatServesBoth) {
    const struct { ConnectionSharing sharing; bool shares; } cases[] = {
        {{false, 0, true}, false}, {{true, 1, false}, false}, {{true, 0, false}, true},
        {{true, 2, false}, true},  {{true, 1, true}, true},
    };
    for (const auto &c : cases)
        EXPECT_EQ(SharesSourceConnection(c.sharing), c.shares)
            << c.sharing.sameLogin << " " << c.sharing.activeStatements << " " << c.sharing.fileDatabase;
}

} // namespace
} // namespace kodbc::wizards
