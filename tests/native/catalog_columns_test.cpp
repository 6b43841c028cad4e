// Column properties, primary keys, field listings with their flags, the
// column-box entries and field counts.
#include "test_support.h"

#include "catalog/catalog_internal.h"

#include <cstring>

namespace kodbc::test {
namespace {

class CatalogColumns : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        quote_ = IdentifierQuote();
        OwnTables({"kc_h6_fa", "kc_h6_fb", "kc_h6_fc", "kc_h6_pk", "kc_h6_auto"});
        Exec("CREATE TABLE kc_h6_fa (id INTEGER NOT NULL, label VARCHAR(40), amount FLOAT)");
        Exec("CREATE TABLE kc_h6_fb (id INTEGER NOT NULL, note VARCHAR(30) NOT NULL)");
        Exec("CREATE TABLE kc_h6_fc (long_column_name_x INTEGER, s INTEGER, " + quote_ + "mein feld" + quote_ +
             " INTEGER)");
        Exec("CREATE TABLE kc_h6_pk (a INTEGER NOT NULL, b INTEGER NOT NULL, c VARCHAR(10), PRIMARY KEY (a, b))");
        Exec("CREATE TABLE kc_h6_auto (n " + AutoIncrementKey() + ", v INTEGER)");
    }
    std::string Fields(const char *tables, int flags, const char *separator = nullptr, int size = 2000) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_GetFields(hdbc_, tables, flags, separator, out, n), KODBC_SUCCESS);
        });
    }
    std::string quote_;
};
KODBC_DATA_SOURCE_TEST_SUITE(CatalogColumns);

TEST_P(CatalogColumns, PropertiesKeysAndErrors) {
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_fa", "id"), SQL_INTEGER);
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_fa", "label"), SQL_VARCHAR);
    EXPECT_GE(Kodbc_GetColumnLength(hdbc_, "kc_h6_fa", "label"), 40);
    ColumnPropertiesRecord record;
    std::memset(&record, 0x55, sizeof record);
    ASSERT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_fa", "label", &record), KODBC_SUCCESS);
    EXPECT_EQ(record.SqlDataType, SQL_VARCHAR);
    EXPECT_EQ(record.AutoIncrement, 0);
    EXPECT_GE(record.Length, 40);
    EXPECT_EQ(record.Nullable, 1);
    EXPECT_EQ(record.Updatable, 1);
    EXPECT_TRUE(record.CaseSensitive == 0 || record.CaseSensitive == 1);
    ASSERT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_auto", "n", &record), KODBC_SUCCESS);
    EXPECT_EQ(record.AutoIncrement, 1);
    EXPECT_EQ(Kodbc_IsColumnAutoIncrement(hdbc_, "kc_h6_auto", "n"), 1);
    EXPECT_EQ(Kodbc_IsColumnAutoIncrement(hdbc_, "kc_h6_auto", "v"), 0);
    // The PostgreSQL driver calls a column of a statement that was only
    // prepared read-only when that is the first thing asked about it.
    if (DbmsName() != "PostgreSQL") {
        EXPECT_EQ(Kodbc_IsColumnUpdateable(hdbc_, "kc_h6_fa", "amount"), 1);
    }

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

    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_fa", "no_such_column"), 0);
    ASSERT_FALSE(messages_.entries().empty());
    EXPECT_EQ(messages_.entries().back().kind, KODBC_MESSAGE_ODBC_ERROR);
    messages_.clear();
    EXPECT_EQ(Kodbc_GetColumnLength(hdbc_, "kc_h6_nosuchtable", "id"), -1);
    EXPECT_FALSE(messages_.entries().empty());
    messages_.clear();
    EXPECT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_fa", "no_such_column", &record), KODBC_FAILURE);
    EXPECT_EQ(messages_.entries().size(), 1u);
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

TEST_P(CatalogColumns, FieldListingsByFlagsAndRoomAndColumnBoxEntries) {
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", 0), "id\tlabel\tamount\tid\tnote");
    EXPECT_EQ(Fields("kc_h6_fb", 0, ", "), "id, note");
    // Shared names are qualified only where they collide.
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_DISAMBIGUATE), "kc_h6_fa.id\tlabel\tamount\tkc_h6_fb.id\tnote");
    const char *once = "kc_h6_fa.id\tkc_h6_fa.label\tkc_h6_fa.amount\tkc_h6_fb.id\tkc_h6_fb.note";
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_QUALIFY | KODBC_FIELDS_DISAMBIGUATE), once);
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_QUALIFY), once);
    // A name in three listed tables is qualified in all three.
    EXPECT_EQ(Fields("kc_h6_fb\tkc_h6_fa\tkc_h6_fb", KODBC_FIELDS_DISAMBIGUATE),
              "kc_h6_fb.id\tkc_h6_fb.note\tkc_h6_fa.id\tlabel\tamount\tkc_h6_fb.id\tkc_h6_fb.note");

    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_WITH_TYPE, ",").substr(0, 21), "long_column_name_x,4,");
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_NOT_NULL), "id\tid\tnote");
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_NOT_NULL | KODBC_FIELDS_DISAMBIGUATE),
              "kc_h6_fa.id\tkc_h6_fb.id\tnote");

    // Quoting prepares the names for the driver.
    std::string expected = "long_column_name_x\ts\t" + quote_ + "mein feld" + quote_;
    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_QUOTE), expected);
    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_QUOTE_ALSO), expected);
    EXPECT_EQ(Fields("kc_h6_fc", 0), "long_column_name_x\ts\tmein feld");
    EXPECT_EQ(Fields("kc_h6_fc", KODBC_FIELDS_QUALIFY | KODBC_FIELDS_QUOTE),
              "kc_h6_fc.long_column_name_x\tkc_h6_fc.s\tkc_h6_fc." + quote_ + "mein feld" + quote_);

    // An entry that does not fit is skipped, later ones are tried:
    // long_column_name_x needs 18 + 2 + 1 bytes of room, s only 4, "mein feld" 12.
    for (const auto &[size, listing] : {std::pair{10, "s"}, {4, ""}, {5, "s"}, {22, "long_column_name_x"}})
        EXPECT_EQ(Fields("kc_h6_fc", 0, "\t", size), listing) << size;

    for (const char *nothing : {static_cast<const char *>(nullptr), "", "kc_h6_nosuchtable"})
        EXPECT_EQ(Fields(nothing, 0), "");
    char buffer[8] = "x";
    EXPECT_EQ(Kodbc_GetFields(hdbc_, "kc_h6_fa", 0, nullptr, nullptr, 10), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_GetFields(hdbc_, "kc_h6_fa", 0, nullptr, buffer, 0), KODBC_FAILURE);
    EXPECT_STREQ(buffer, "x");
    EXPECT_TRUE(messages_.entries().empty());

    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_fa"), 3);
    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_fb"), 2);
    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_nosuchtable"), 0);
    EXPECT_EQ(Kodbc_GetFieldCount(nullptr, "kc_h6_fa"), 2);  // the failure value, as callers know it

    // The column box's entries.
    auto entries = [&](const char *schema, const char *table, int flags) {
        std::vector<std::string> out;
        EXPECT_EQ(catalog::ForEachColumnEntry(hdbc_, schema, table, flags,
                                              [&](const char *entry) { out.emplace_back(entry); }),
                  KODBC_SUCCESS);
        return out;
    };
    using V = std::vector<std::string>;
    EXPECT_EQ(entries(nullptr, "kc_h6_fb", 0), (V{"id", "note"}));
    EXPECT_EQ(entries(nullptr, "kc_h6_fa", KODBC_COLUMNS_TABLE_PREFIX | KODBC_COLUMNS_NOT_NULL), (V{"kc_h6_fa.id"}));
    EXPECT_EQ(entries("  ", "kc_h6_fb", KODBC_COLUMNS_SCHEMA_PREFIX), (V{"id", "note"}));
    EXPECT_EQ(entries(nullptr, " ", 0), V{});
    std::vector<std::string> schemata;
    ASSERT_TRUE(catalog::ListSchemata(hdbc_, schemata));
    EXPECT_EQ(schemata.empty(), Kodbc_GetSchemaUsage(hdbc_) == 0);
    for (const std::string &schema : schemata) {
        V found = entries(schema.c_str(), "kc_h6_fb", KODBC_COLUMNS_SCHEMA_PREFIX | KODBC_COLUMNS_TABLE_PREFIX);
        EXPECT_TRUE(found.empty() || found == (V{schema + ".kc_h6_fb.id", schema + ".kc_h6_fb.note"})) << schema;
    }
}

} // namespace
} // namespace kodbc::test
