// Table listings: type lists, hidden system tables, schema qualification,
// the room rule, existence tests.
#include "test_support.h"

#include "catalog/catalog_internal.h"

#include <algorithm>
#include <cstring>

namespace kodbc::test {
namespace {

TEST(CatalogTypeList, FixedOrderQuotedAndJoinedWithoutBlank) {
    const std::pair<int, const char *> cases[] = {
        {KODBC_OBJECT_TABLE | KODBC_OBJECT_VIEW, "'TABLE','VIEW'"},
        {KODBC_OBJECT_SYSTEM | KODBC_OBJECT_SYNONYM | KODBC_OBJECT_VIEW | KODBC_OBJECT_ALIAS | KODBC_OBJECT_TABLE,
         "'TABLE','ALIAS','VIEW','SYNONYM','SYSTEM TABLE'"},
        {0x20 | 0x40, ""},
    };
    for (const auto &[flags, expected] : cases)
        EXPECT_EQ(Guarded(64, [&, flags = flags](char *out, int n) { catalog::TableTypeList(flags, out, n); }),
                  expected);
}

TEST(CatalogSystemTables, PrefixHasCaseNameHasNone) {
    for (const auto &[name, hidden] : {std::pair{"USysRibbons", true}, {"usysfoo", false}, {"USy", false},
                                       {"korvelsystable", true}, {"KORVELSYSTABLE", true}, {"KorvelSysTable2", false}})
        EXPECT_EQ(catalog::IsHiddenSystemTable(name), hidden) << name;
}

TEST(CatalogObjectTypeToName, NamesAndCut) {
    const std::pair<int, const char *> cases[] = {{1, "TABLE"}, {2, "VIEW"}, {4, "FORM"}, {8, "REPORT"},
                                                  {3, ""},      {16, ""},    {0, ""}};
    for (const auto &[type, name] : cases)
        EXPECT_EQ(Guarded(20, [&, type = type](char *out, int n) { Kodbc_ObjectTypeToName(type, out, n); }), name) << type;
    EXPECT_EQ(Guarded(4, [](char *out, int n) { Kodbc_ObjectTypeToName(8, out, n); }), "REP");
    Kodbc_ObjectTypeToName(1, nullptr, 10);  // harmless
}

class CatalogTables : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        const std::string system = IdentifierQuote() + "USysKcH6a" + IdentifierQuote();
        OwnTables({"VIEW kc_h6_view", "kc_h6_alpha", "kc_h6_room_aaaaaaaaaaaaaaaaaaaa", "kc_h6_room_b", system});
        for (const std::string &table : {std::string("kc_h6_alpha"), std::string("kc_h6_room_aaaaaaaaaaaaaaaaaaaa"),
                                         std::string("kc_h6_room_b"), system})
            Exec("CREATE TABLE " + table + " (id INTEGER)");
        Exec("CREATE VIEW kc_h6_view AS SELECT id FROM kc_h6_alpha");
    }

    // The listing into a generous guarded buffer.
    std::vector<std::string> List(int typeFlags, const char *schema = nullptr, int nameFlags = 0,
                                  const char *separator = "|") {
        GuardedBuffer out(30000);
        EXPECT_EQ(Kodbc_GetTablesExtended(hdbc_, typeFlags, schema, nameFlags, out.data(), out.size(), separator),
                  0);
        EXPECT_TRUE(out.guards_intact());
        return Split(out.text(), separator ? separator : ",");
    }
};
KODBC_DATA_SOURCE_TEST_SUITE(CatalogTables);

// The existence test reads the same listing and finds a name in any case.
TEST_P(CatalogTables, TypeFlagsChooseTheKindsAndHideSystemTablesUnlessAsked) {
    const struct {
        int flags;
        bool table, view, system;
    } cases[] = {{KODBC_OBJECT_TABLE, true, false, false},
                 {KODBC_OBJECT_VIEW, false, true, false},
                 {KODBC_OBJECT_TABLE | KODBC_OBJECT_VIEW, true, true, false},
                 {KODBC_OBJECT_ALL, true, true, false},
                 {KODBC_OBJECT_TABLE | KODBC_OBJECT_SYSTEM, true, false, true},
                 {KODBC_OBJECT_ALL | KODBC_OBJECT_SYSTEM, true, true, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.flags);
        const auto items = List(c.flags);
        EXPECT_EQ(Contains(items, "kc_h6_alpha"), c.table);
        EXPECT_EQ(Contains(items, "kc_h6_view"), c.view);
        EXPECT_EQ(Contains(items, "USysKcH6a"), c.system);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, c.flags, "KC_H6_ALPHA"), c.table);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, c.flags, "kc_h6_View"), c.view);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, c.flags, "usyskch6a"), c.system);
    }
    EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_TABLE, "kc_h6_alph"), 0);
    EXPECT_EQ(Kodbc_DoesTableExist(nullptr, KODBC_OBJECT_TABLE, "kc_h6_alpha"), -1);
    EXPECT_TRUE(messages_.entries().empty());
    // A null separator is a comma.
    EXPECT_TRUE(Contains(List(KODBC_OBJECT_TABLE, nullptr, 0, nullptr), "kc_h6_alpha"));
    GuardedBuffer out(30000);
    ASSERT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, out.data(), out.size(), nullptr), 0);
    EXPECT_TRUE(Contains(Split(out.text(), ","), "kc_h6_room_b"));
}

TEST_P(CatalogTables, ListingStopsAtFirstNameThatDoesNotFit) {
    auto full = List(KODBC_OBJECT_TABLE);
    auto longName = std::find(full.begin(), full.end(), "kc_h6_room_aaaaaaaaaaaaaaaaaaaa");
    ASSERT_NE(longName, full.end());
    ASSERT_NE(std::find(longName, full.end(), "kc_h6_room_b"), full.end()) << "driver order assumed by name";
    std::size_t before = longName - full.begin();
    std::string prefix;
    for (std::size_t i = 0; i < before; ++i) prefix += (i ? "|" : "") + full[i];
    const std::string withLong = prefix + (before ? "|" : "") + *longName;

    // Exactly one byte short for the separator and the long name: the listing
    // stops there, although the short name behind it would fit.
    for (const auto &[size, expected] : {std::pair{withLong.size(), prefix}, {withLong.size() + 1, withLong}}) {
        GuardedBuffer out(static_cast<int>(size));
        EXPECT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, out.data(), out.size(), "|"), 0);
        EXPECT_EQ(out.text(), expected);
        EXPECT_TRUE(out.guards_intact());
    }
    GuardedBuffer out(1);
    EXPECT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, out.data(), out.size(), ","), 0);
    EXPECT_EQ(out.text(), "");
    EXPECT_TRUE(out.guards_intact());
    char untouched[4] = "abc";
    EXPECT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, untouched, 0, ","), -1);
    EXPECT_STREQ(untouched, "abc");
    EXPECT_EQ(Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, nullptr, 100, ","), -1);
    EXPECT_EQ(Kodbc_GetTables(nullptr, KODBC_OBJECT_TABLE, untouched, sizeof untouched, ","), -1);
}

TEST_P(CatalogTables, SchemaQualificationOnlyWhereSchemataAreUsed) {
    auto items = List(KODBC_OBJECT_TABLE, nullptr, KODBC_TABLES_QUALIFY);
    std::vector<std::string> schemata;
    ASSERT_TRUE(catalog::ListSchemata(hdbc_, schemata));
    if (Kodbc_GetSchemaUsage(hdbc_) == 0) {
        EXPECT_TRUE(Contains(items, "kc_h6_alpha"));
        EXPECT_EQ(Kodbc_DoesTableExistExtended(hdbc_, KODBC_OBJECT_TABLE, nullptr, "KC_H6_ALPHA"), 1);
        return;
    }
    auto qualified = std::find_if(items.begin(), items.end(), [](const std::string &item) {
        return item.size() > 12 && item.compare(item.size() - 12, 12, ".kc_h6_alpha") == 0;
    });
    ASSERT_NE(qualified, items.end());
    std::string schema = qualified->substr(0, qualified->size() - 12);
    EXPECT_EQ(std::count(schemata.begin(), schemata.end(), schema), 1);  // each schema once
    // The schema argument narrows the listing; the bare name no longer matches.
    EXPECT_TRUE(Contains(List(KODBC_OBJECT_TABLE, schema.c_str(), KODBC_TABLES_QUALIFY), *qualified));
    EXPECT_EQ(Kodbc_DoesTableExistExtended(hdbc_, KODBC_OBJECT_TABLE, schema.c_str(), qualified->c_str()), 1);
    EXPECT_EQ(Kodbc_DoesTableExistExtended(hdbc_, KODBC_OBJECT_TABLE, schema.c_str(), "kc_h6_alpha"), 0);
}

} // namespace
} // namespace kodbc::test
