// The catalogue: type lists and data-type codes as text, and on every data source column properties,
// primary keys, field listings, the column box's entries and table listings with their room rule.
#include "test_support.h"

#include "catalog/catalog_internal.h"
#include "internal/datatypes.h"

#include <algorithm>
#include <cstring>
#include <tuple>

namespace kodbc::test {
namespace {

using V = std::vector<std::string>;

TEST(CatalogText, TypeListsObjectNamesAndHiddenSystemTables) {
    const std::pair<int, const char *> lists[] = {
        {KODBC_OBJECT_TABLE | KODBC_OBJECT_VIEW, "'TABLE','VIEW'"},
        {KODBC_OBJECT_SYSTEM | KODBC_OBJECT_SYNONYM | KODBC_OBJECT_VIEW | KODBC_OBJECT_ALIAS | KODBC_OBJECT_TABLE,
         "'TABLE','ALIAS','VIEW','SYNONYM','SYSTEM TABLE'"},
        {0x20 | 0x40, ""},
    };
    for (const auto &[flags, expected] : lists)
        EXPECT_EQ(Guarded(64, [&, flags = flags](char *out, int n) { catalog::TableTypeList(flags, out, n); }),
                  expected);
    const std::pair<int, const char *> names[] = {{1, "TABLE"}, {2, "VIEW"}, {4, "FORM"}, {8, "REPORT"},
                                                  {3, ""},      {16, ""},    {0, ""}};
    for (const auto &[type, name] : names)
        EXPECT_EQ(Guarded(20, [&, type = type](char *out, int n) { Kodbc_ObjectTypeToName(type, out, n); }), name)
            << type;
    EXPECT_EQ(Guarded(4, [](char *out, int n) { Kodbc_ObjectTypeToName(8, out, n); }), "REP");
    Kodbc_ObjectTypeToName(1, nullptr, 10);  // harmless

    // The prefix is compared with its case, the library's own table without.
    for (const auto &[name, hidden] : {std::pair{"USysRibbons", true}, {"usysfoo", false}, {"USy", false},
                                       {"korvelsystable", true}, {"KORVELSYSTABLE", true}, {"KorvelSysTable2", false}})
        EXPECT_EQ(catalog::IsHiddenSystemTable(name), hidden) << name;
}

// The codes keep their asymmetries; the table lists them in the order offered.
TEST(CatalogText, DataTypeCodesTableTemplatesAndDisplayNames) {
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

    for (const auto &[code, length, size, expected] : {std::tuple{KODBC_TYPE_FIXED_TEXT, 20, 40, "CHAR (20)"},
                                                       {KODBC_TYPE_DATETIME, 20, 40, "DATETIME"},
                                                       {KODBC_TYPE_VAR_TEXT, 255, 8, "VARCHAR"}})  // cut to the buffer
        EXPECT_EQ(Guarded(size, [&, code = code, length = length](char *out, int n) {
                      FormatColumnTemplate(FindDataType(code), length, out, n);
                  }),
                  expected);
    char text[40];
    EXPECT_EQ(FormatColumnTemplate(FindDataType(KODBC_TYPE_FIXED_TEXT), 20, text, sizeof text), 9);  // its length
    for (const auto &[code, name] :
         {std::pair{KODBC_TYPE_DATETIME, "Datum/Zeit"}, {KODBC_TYPE_VAR_TEXT, "VarText"}, {6, "Unbekannter Typ"}}) {
        DataTypeDisplayName(code, text, sizeof text);
        EXPECT_STREQ(text, name) << code;
    }
}

// Only the decimal types get the mark, only the ODBC 2 date codes are rewritten.
TEST(CatalogText, OdbcDataToStringDecimalMarkAndOdbc2Dates) {
    auto converted = [](const char *value, int sqlType, int size = 64, char mark = ',') {
        return GuardedInPlace(value, size, [&](char *out, int n) { Kodbc_OdbcDataToString(out, n, sqlType, mark); });
    };
    for (int type : {SQL_NUMERIC, SQL_DECIMAL, SQL_FLOAT, SQL_REAL, SQL_DOUBLE})
        EXPECT_EQ(converted("1234.5", type), "1234,5") << type;
    EXPECT_EQ(converted("1.5.6", SQL_DOUBLE, 64, ';'), "1;5;6");
    for (int type : {SQL_INTEGER, SQL_VARCHAR, SQL_CHAR, SQL_BIGINT})
        EXPECT_EQ(converted("1234.5", type), "1234.5") << type;
    EXPECT_EQ(converted("2024-03-05", SQL_DATE), "05.03.2024");
    EXPECT_EQ(converted("2024-03-05 13:14:15", SQL_TIMESTAMP), "05.03.2024 13:14:15");
    EXPECT_EQ(converted("2024-03-05 13:14:15.250", SQL_TIMESTAMP), "05.03.2024 13:14:15");
    EXPECT_EQ(converted("2024-03-05 13:14:15", SQL_TIMESTAMP, 11), "05.03.2024");
    for (int type : {SQL_TYPE_DATE, SQL_TYPE_TIMESTAMP, SQL_VARCHAR})
        EXPECT_EQ(converted("2024-03-05", type), "2024-03-05") << type;
    EXPECT_EQ(converted("kein Datum", SQL_DATE), "kein Datum");
    Kodbc_OdbcDataToString(nullptr, 10, SQL_DATE, ',');  // harmless
}

class Catalog : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        quote_ = IdentifierQuote();
        const std::string system = quote_ + "USysKcH6a" + quote_;
        OwnTables({"VIEW kc_h6_view", "kc_h6_fa", "kc_h6_fb", "kc_h6_fc", "kc_h6_pk", "kc_h6_auto",
                   "kc_h6_room_aaaaaaaaaaaaaaaaaaaa", "kc_h6_room_b", system});
        Exec("CREATE TABLE kc_h6_fa (id INTEGER NOT NULL, label VARCHAR(40), amount FLOAT)");
        Exec("CREATE TABLE kc_h6_fb (id INTEGER NOT NULL, note VARCHAR(30) NOT NULL)");
        Exec("CREATE TABLE kc_h6_fc (long_column_name_x INTEGER, s INTEGER, " + quote_ + "mein feld" + quote_ +
             " INTEGER)");
        Exec("CREATE TABLE kc_h6_pk (a INTEGER NOT NULL, b INTEGER NOT NULL, c VARCHAR(10), PRIMARY KEY (a, b))");
        Exec("CREATE TABLE kc_h6_auto (n " + AutoIncrementKey() + ", v INTEGER)");
        for (const std::string table : {"kc_h6_room_aaaaaaaaaaaaaaaaaaaa", "kc_h6_room_b"})
            Exec("CREATE TABLE " + table + " (id INTEGER)");
        Exec("CREATE TABLE " + system + " (id INTEGER)");
        Exec("CREATE VIEW kc_h6_view AS SELECT id FROM kc_h6_fa");
    }
    std::string Fields(const char *tables, int flags, const char *separator = nullptr, int size = 2000) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_GetFields(hdbc_, tables, flags, separator, out, n), KODBC_SUCCESS);
        });
    }
    V List(int typeFlags, const char *schema = nullptr, int nameFlags = 0, const char *separator = "|") {
        GuardedBuffer out(30000);
        EXPECT_EQ(Kodbc_GetTablesExtended(hdbc_, typeFlags, schema, nameFlags, out.data(), out.size(), separator),
                  0);
        EXPECT_TRUE(out.guards_intact());
        return Split(out.text(), separator ? separator : ",");
    }
    std::string quote_;
};
KODBC_DATA_SOURCE_TEST_SUITE(Catalog);

TEST_P(Catalog, ColumnPropertiesKeysAndErrors) {
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_fa", "label"), SQL_VARCHAR);
    EXPECT_GE(Kodbc_GetColumnLength(hdbc_, "kc_h6_fa", "label"), 40);
    ColumnPropertiesRecord record;
    std::memset(&record, 0x55, sizeof record);
    ASSERT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_fa", "label", &record), KODBC_SUCCESS);
    EXPECT_EQ(std::tie(record.SqlDataType, record.AutoIncrement, record.Nullable, record.Updatable),
              std::tuple(SQL_VARCHAR, 0, 1, 1));
    EXPECT_GE(record.Length, 40);
    ASSERT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_auto", "n", &record), KODBC_SUCCESS);
    EXPECT_EQ(record.AutoIncrement, 1);
    EXPECT_EQ(Kodbc_IsColumnAutoIncrement(hdbc_, "kc_h6_auto", "n"), 1);
    EXPECT_EQ(Kodbc_IsColumnAutoIncrement(hdbc_, "kc_h6_auto", "v"), 0);
    // The PostgreSQL driver calls a column of a merely prepared statement read-only if asked first.
    EXPECT_TRUE(DbmsName() == "PostgreSQL" || Kodbc_IsColumnUpdateable(hdbc_, "kc_h6_fa", "amount") == 1);

    std::memset(&record, 0x55, sizeof record);
    EXPECT_EQ(Kodbc_GetColumnProperties(hdbc_, " ", "id", &record), KODBC_FAILURE);
    const ColumnPropertiesRecord zero{};
    EXPECT_EQ(std::memcmp(&record, &zero, sizeof record), 0);
    EXPECT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_fa", "id", nullptr), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_fa", nullptr), 0);
    EXPECT_EQ(Kodbc_GetColumnLength(hdbc_, "", "label"), -1);
    EXPECT_EQ(Kodbc_GetColumnLength(nullptr, "kc_h6_fa", "label"), -1);
    EXPECT_EQ(Kodbc_IsColumnAutoIncrement(hdbc_, "kc_h6_auto", "\t"), 0);
    EXPECT_EQ(Kodbc_IsColumnUpdateable(nullptr, "kc_h6_fa", "id"), 0);
    EXPECT_TRUE(messages_.entries().empty());

    // A column or table that is not there: the driver's error is shown, once.
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_fa", "no_such_column"), 0);
    EXPECT_EQ(Kodbc_GetColumnLength(hdbc_, "kc_h6_nosuchtable", "id"), -1);
    EXPECT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_fa", "no_such_column", &record), KODBC_FAILURE);
    EXPECT_EQ(OdbcErrors(), 3u);
    messages_.clear();

    // Primary key columns in key order, and the key's name.
    auto keys = [&](const char *table, int flags, const char *separator, int size) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_GetPrimaryKeyColumns(hdbc_, table, flags, separator, out, n), KODBC_SUCCESS) << table;
        });
    };
    EXPECT_EQ(keys("kc_h6_pk", 0, nullptr, 100), "a\tb");
    EXPECT_EQ(keys("kc_h6_pk", KODBC_PK_QUOTE, ",", 100), "a,b");
    EXPECT_EQ(keys("kc_h6_pk", 0, ",", 2), "a");
    EXPECT_EQ(keys("kc_h6_fa", 0, nullptr, 100), "");
    EXPECT_EQ(keys("  ", 0, nullptr, 100), "");
    EXPECT_EQ(Kodbc_GetPrimaryKeyColumns(hdbc_, "kc_h6_pk", 0, nullptr, nullptr, 100), KODBC_FAILURE);

    auto keyName = [&](const char *table, int size) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_GetPrimaryKeyName(hdbc_, table, 0, out, n), KODBC_SUCCESS) << table;
        });
    };
    const std::string name = keyName("kc_h6_pk", 100);
    EXPECT_EQ(name == "kc_h6_pk_pkey", DbmsName() == "PostgreSQL") << name;
    EXPECT_EQ(keyName("kc_h6_fa", 100), "");
    EXPECT_EQ(keyName("kc_h6_pk", 1), "");
    char out[8];
    EXPECT_EQ(Kodbc_GetPrimaryKeyName(nullptr, "kc_h6_pk", 0, out, sizeof out), KODBC_FAILURE);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(Catalog, FieldListingsByFlagsAndRoomAndColumnBoxEntries) {
    const std::string ab = "kc_h6_fa\tkc_h6_fb";
    EXPECT_EQ(Fields(ab.c_str(), 0), "id\tlabel\tamount\tid\tnote");
    EXPECT_EQ(Fields("kc_h6_fb", 0, ", "), "id, note");
    // Shared names are qualified only where they collide, in every table that has them.
    EXPECT_EQ(Fields(ab.c_str(), KODBC_FIELDS_DISAMBIGUATE), "kc_h6_fa.id\tlabel\tamount\tkc_h6_fb.id\tnote");
    EXPECT_EQ(Fields("kc_h6_fb\tkc_h6_fa\tkc_h6_fb", KODBC_FIELDS_DISAMBIGUATE),
              "kc_h6_fb.id\tkc_h6_fb.note\tkc_h6_fa.id\tlabel\tamount\tkc_h6_fb.id\tkc_h6_fb.note");
    const char *once = "kc_h6_fa.id\tkc_h6_fa.label\tkc_h6_fa.amount\tkc_h6_fb.id\tkc_h6_fb.note";
    EXPECT_EQ(Fields(ab.c_str(), KODBC_FIELDS_QUALIFY | KODBC_FIELDS_DISAMBIGUATE), once);
    EXPECT_EQ(Fields(ab.c_str(), KODBC_FIELDS_QUALIFY), once);
    EXPECT_EQ(Fields(ab.c_str(), KODBC_FIELDS_NOT_NULL), "id\tid\tnote");
    EXPECT_EQ(Fields(ab.c_str(), KODBC_FIELDS_NOT_NULL | KODBC_FIELDS_DISAMBIGUATE), "kc_h6_fa.id\tkc_h6_fb.id\tnote");
    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_WITH_TYPE, ",").substr(0, 21), "long_column_name_x,4,");
    // Quoting prepares the names for the driver.
    const std::string quoted = "long_column_name_x\ts\t" + quote_ + "mein feld" + quote_;
    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_QUOTE), quoted);
    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_QUOTE_ALSO), quoted);
    EXPECT_EQ(Fields("kc_h6_fc", 0), "long_column_name_x\ts\tmein feld");
    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_QUALIFY | KODBC_FIELDS_QUOTE),
              "kc_h6_fc.long_column_name_x\tkc_h6_fc.s\tkc_h6_fc." + quote_ + "mein feld" + quote_);
    for (const char *nothing : {static_cast<const char *>(nullptr), "", "kc_h6_nosuchtable"})
        EXPECT_EQ(Fields(nothing, 0), "");

    // An entry that does not fit is skipped, later ones are tried:
    // long_column_name_x needs 18 + 2 + 1 bytes of room, s only 4, "mein feld" 12.
    for (const auto &[size, listing] : {std::pair{10, "s"}, {4, ""}, {5, "s"}, {22, "long_column_name_x"}})
        EXPECT_EQ(Fields("kc_h6_fc", 0, "\t", size), listing) << size;

    char buffer[8] = "x";
    EXPECT_EQ(Kodbc_GetFields(hdbc_, "kc_h6_fa", 0, nullptr, nullptr, 10), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_GetFields(hdbc_, "kc_h6_fa", 0, nullptr, buffer, 0), KODBC_FAILURE);
    EXPECT_STREQ(buffer, "x");
    EXPECT_TRUE(messages_.entries().empty());

    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_fa"), 3);
    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_nosuchtable"), 0);
    EXPECT_EQ(Kodbc_GetFieldCount(nullptr, "kc_h6_fa"), 2);  // the failure value, as callers know it

    auto entries = [&](const char *schema, const char *table, int flags) {
        V out;
        EXPECT_EQ(catalog::ForEachColumnEntry(hdbc_, schema, table, flags,
                                              [&](const char *entry) { out.emplace_back(entry); }),
                  KODBC_SUCCESS);
        return out;
    };
    EXPECT_EQ(entries(nullptr, "kc_h6_fb", 0), (V{"id", "note"}));
    EXPECT_EQ(entries(nullptr, "kc_h6_fa", KODBC_COLUMNS_TABLE_PREFIX | KODBC_COLUMNS_NOT_NULL), (V{"kc_h6_fa.id"}));
    EXPECT_EQ(entries("  ", "kc_h6_fb", KODBC_COLUMNS_SCHEMA_PREFIX), (V{"id", "note"}));
    EXPECT_EQ(entries(nullptr, " ", 0), V{});
    V schemata;
    ASSERT_TRUE(catalog::ListSchemata(hdbc_, schemata));
    EXPECT_EQ(schemata.empty(), Kodbc_GetSchemaUsage(hdbc_) == 0);
    for (const std::string &schema : schemata) {
        V found = entries(schema.c_str(), "kc_h6_fb", KODBC_COLUMNS_SCHEMA_PREFIX | KODBC_COLUMNS_TABLE_PREFIX);
        EXPECT_TRUE(found.empty() || found == (V{schema + ".kc_h6_fb.id", schema + ".kc_h6_fb.note"})) << schema;
    }
}

// Type flags choose the kinds and hide system tables unless asked; the
// existence test reads the same listing and finds a name in any case.
TEST_P(Catalog, TableListingsByTypeRoomAndSchema) {
    const struct {
        int flags;
        bool table, view, system;
    } cases[] = {{KODBC_OBJECT_TABLE, true, false, false}, {KODBC_OBJECT_VIEW, false, true, false},
                 {KODBC_OBJECT_TABLE | KODBC_OBJECT_VIEW, true, true, false}, {KODBC_OBJECT_ALL, true, true, false},
                 {KODBC_OBJECT_TABLE | KODBC_OBJECT_SYSTEM, true, false, true},
                 {KODBC_OBJECT_ALL | KODBC_OBJECT_SYSTEM, true, true, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.flags);
        const V items = List(c.flags);
        EXPECT_EQ(Contains(items, "kc_h6_fa"), c.table);
        EXPECT_EQ(Contains(items, "kc_h6_view"), c.view);
        EXPECT_EQ(Contains(items, "USysKcH6a"), c.system);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, c.flags, "KC_H6_FA"), c.table);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, c.flags, "kc_h6_View"), c.view);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, c.flags, "usyskch6a"), c.system);
    }
    EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_TABLE, "kc_h6_f"), 0);
    EXPECT_EQ(Kodbc_DoesTableExist(nullptr, KODBC_OBJECT_TABLE, "kc_h6_fa"), -1);
    EXPECT_TRUE(messages_.entries().empty());
    EXPECT_TRUE(Contains(List(KODBC_OBJECT_TABLE, nullptr, 0, nullptr), "kc_h6_fa"));  // a null separator: a comma

    const V full = List(KODBC_OBJECT_TABLE);
    auto longName = std::find(full.begin(), full.end(), "kc_h6_room_aaaaaaaaaaaaaaaaaaaa");
    ASSERT_NE(longName, full.end());
    ASSERT_NE(std::find(longName, full.end(), "kc_h6_room_b"), full.end()) << "driver order assumed by name";
    std::string prefix;
    for (auto item = full.begin(); item != longName; ++item) prefix += (item == full.begin() ? "" : "|") + *item;
    const std::string withLong = prefix + (prefix.empty() ? "" : "|") + *longName;
    // Exactly one byte short for the separator and the long name: the listing
    // stops there, although the short name behind it would fit.
    for (const auto &[size, expected] : {std::pair{withLong.size(), prefix}, {withLong.size() + 1, withLong},
                                         {std::size_t{1}, std::string()}}) {
        GuardedBuffer out(static_cast<int>(size));
        EXPECT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, out.data(), out.size(), "|"), 0);
        EXPECT_EQ(out.text(), expected);
        EXPECT_TRUE(out.guards_intact());
    }
    char untouched[4] = "abc";
    EXPECT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, untouched, 0, ","), -1);
    EXPECT_STREQ(untouched, "abc");
    EXPECT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, nullptr, 100, ","), -1);
    EXPECT_EQ(Kodbc_GetTables(nullptr, KODBC_OBJECT_TABLE, untouched, sizeof untouched, ","), -1);

    // Schema qualification only where schemata are used; the schema argument
    // narrows the listing, where the bare name no longer matches.
    const V items = List(KODBC_OBJECT_TABLE, nullptr, KODBC_TABLES_QUALIFY);
    V schemata;
    ASSERT_TRUE(catalog::ListSchemata(hdbc_, schemata));
    if (Kodbc_GetSchemaUsage(hdbc_) == 0) {
        EXPECT_TRUE(Contains(items, "kc_h6_fa"));
        EXPECT_EQ(Kodbc_DoesTableExistExtended(hdbc_, KODBC_OBJECT_TABLE, nullptr, "KC_H6_FA"), 1);
        return;
    }
    auto qualified = std::find_if(items.begin(), items.end(), [](const std::string &item) {
        return item.size() > 9 && item.compare(item.size() - 9, 9, ".kc_h6_fa") == 0;
    });
    ASSERT_NE(qualified, items.end());
    const std::string schema = qualified->substr(0, qualified->size() - 9);
    EXPECT_EQ(std::count(schemata.begin(), schemata.end(), schema), 1);  // each schema once
    EXPECT_TRUE(Contains(List(KODBC_OBJECT_TABLE, schema.c_str(), KODBC_TABLES_QUALIFY), *qualified));
    EXPECT_EQ(Kodbc_DoesTableExistExtended(hdbc_, KODBC_OBJECT_TABLE, schema.c_str(), qualified->c_str()), 1);
    EXPECT_EQ(Kodbc_DoesTableExistExtended(hdbc_, KODBC_OBJECT_TABLE, schema.c_str(), "kc_h6_fa"), 0);
}

} // namespace
} // namespace kodbc::test
