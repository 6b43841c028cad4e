// Field listings with their flags, the column-box entries and field counts.
#include "test_support.h"

#include "catalog/catalog_internal.h"

namespace kodbc::test {
namespace {

class CatalogFields : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        quote_ = IdentifierQuote();
        OwnTables({"kc_h6_fa", "kc_h6_fb", "kc_h6_fc"});
        Exec("CREATE TABLE kc_h6_fa (id INTEGER NOT NULL, name VARCHAR(20), only_a INTEGER)");
        Exec("CREATE TABLE kc_h6_fb (id INTEGER NOT NULL, note VARCHAR(30) NOT NULL)");
        Exec("CREATE TABLE kc_h6_fc (long_column_name_x INTEGER, s INTEGER, " + quote_ + "mein feld" + quote_ +
             " INTEGER)");
    }
    std::string Fields(const char *tables, int flags, const char *separator = nullptr, int size = 2000) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_GetFields(hdbc_, tables, flags, separator, out, n), KODBC_SUCCESS);
        });
    }
    std::string quote_;
};
KODBC_DATA_SOURCE_TEST_SUITE(CatalogFields);

TEST_P(CatalogFields, ListingsByFlagsAndRoom) {
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", 0), "id\tname\tonly_a\tid\tnote");
    EXPECT_EQ(Fields("kc_h6_fb", 0, ", "), "id, note");
    EXPECT_TRUE(messages_.entries().empty());

    // Shared names are qualified only where they collide.
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_DISAMBIGUATE), "kc_h6_fa.id\tname\tonly_a\tkc_h6_fb.id\tnote");
    const char *once = "kc_h6_fa.id\tkc_h6_fa.name\tkc_h6_fa.only_a\tkc_h6_fb.id\tkc_h6_fb.note";
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_QUALIFY | KODBC_FIELDS_DISAMBIGUATE), once);
    EXPECT_EQ(Fields("kc_h6_fa\tkc_h6_fb", KODBC_FIELDS_QUALIFY), once);
    // A name in three listed tables is qualified in all three.
    EXPECT_EQ(Fields("kc_h6_fb\tkc_h6_fa\tkc_h6_fb", KODBC_FIELDS_DISAMBIGUATE),
              "kc_h6_fb.id\tkc_h6_fb.note\tkc_h6_fa.id\tname\tonly_a\tkc_h6_fb.id\tkc_h6_fb.note");

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
}

TEST_P(CatalogFields, EmptyInputsBadArgumentsAndFieldCount) {
    EXPECT_EQ(Fields(nullptr, 0), "");
    EXPECT_EQ(Fields("", 0), "");
    EXPECT_EQ(Fields("kc_h6_nosuchtable", 0), "");
    char buffer[8] = "x";
    EXPECT_EQ(Kodbc_GetFields(hdbc_, "kc_h6_fa", 0, nullptr, nullptr, 10), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_GetFields(hdbc_, "kc_h6_fa", 0, nullptr, buffer, 0), KODBC_FAILURE);
    EXPECT_STREQ(buffer, "x");

    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_fa"), 3);
    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_fb"), 2);
    EXPECT_EQ(Kodbc_GetFieldCount(hdbc_, "kc_h6_nosuchtable"), 0);
    EXPECT_EQ(Kodbc_GetFieldCount(nullptr, "kc_h6_fa"), 2);  // the failure value, as callers know it
}

TEST_P(CatalogFields, ColumnBoxEntries) {
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
    if (Kodbc_GetSchemaUsage(hdbc_) > 0) {
        ASSERT_FALSE(schemata.empty());
        for (const std::string &schema : schemata) {
            V found = entries(schema.c_str(), "kc_h6_fb", KODBC_COLUMNS_SCHEMA_PREFIX | KODBC_COLUMNS_TABLE_PREFIX);
            if (found.empty()) continue;
            EXPECT_EQ(found, (V{schema + ".kc_h6_fb.id", schema + ".kc_h6_fb.note"}));
        }
    } else {
        EXPECT_TRUE(schemata.empty());
    }
}

} // namespace
} // namespace kodbc::test
