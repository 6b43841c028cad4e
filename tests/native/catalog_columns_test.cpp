// Single-column properties and primary keys.
#include "test_support.h"

#include <cstring>

namespace kodbc::test {
namespace {

class CatalogColumns : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({"kc_h6_cols", "kc_h6_pk", "kc_h6_auto"});
        Exec("CREATE TABLE kc_h6_cols (id INTEGER NOT NULL, label VARCHAR(40), amount FLOAT)");
        Exec("CREATE TABLE kc_h6_pk (a INTEGER NOT NULL, b INTEGER NOT NULL, c VARCHAR(10), PRIMARY KEY (a, b))");
        Exec("CREATE TABLE kc_h6_auto (n " + AutoIncrementKey() + ", v INTEGER)");
    }
};
KODBC_DATA_SOURCE_TEST_SUITE(CatalogColumns);

TEST_P(CatalogColumns, TypeLengthAndPropertiesRecord) {
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_cols", "id"), SQL_INTEGER);
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_cols", "label"), SQL_VARCHAR);
    EXPECT_GE(Kodbc_GetColumnLength(hdbc_, "kc_h6_cols", "label"), 40);
    ColumnPropertiesRecord record;
    std::memset(&record, 0x55, sizeof record);
    ASSERT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_cols", "label", &record), KODBC_SUCCESS);
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
        EXPECT_EQ(Kodbc_IsColumnUpdateable(hdbc_, "kc_h6_cols", "amount"), 1);
    }
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(CatalogColumns, BadArgumentsFailAtOnceWithoutMessages) {
    ColumnPropertiesRecord record;
    std::memset(&record, 0x55, sizeof record);
    EXPECT_EQ(Kodbc_GetColumnProperties(hdbc_, " ", "id", &record), KODBC_FAILURE);
    const ColumnPropertiesRecord zero{};
    EXPECT_EQ(std::memcmp(&record, &zero, sizeof record), 0);
    EXPECT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_cols", "id", nullptr), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_cols", nullptr), 0);
    EXPECT_EQ(Kodbc_GetColumnLength(hdbc_, "", "label"), -1);
    EXPECT_EQ(Kodbc_GetColumnLength(nullptr, "kc_h6_cols", "label"), -1);
    EXPECT_EQ(Kodbc_IsColumnAutoIncrement(hdbc_, "kc_h6_auto", "\t"), 0);
    EXPECT_EQ(Kodbc_IsColumnUpdateable(nullptr, "kc_h6_cols", "id"), 0);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(CatalogColumns, MissingColumnShowsTheDriversError) {
    EXPECT_EQ(Kodbc_GetColumnDataType(hdbc_, "kc_h6_cols", "no_such_column"), 0);
    ASSERT_FALSE(messages_.entries().empty());
    EXPECT_EQ(messages_.entries().back().kind, KODBC_MESSAGE_ODBC_ERROR);
    messages_.clear();
    EXPECT_EQ(Kodbc_GetColumnLength(hdbc_, "kc_h6_nosuchtable", "id"), -1);
    EXPECT_FALSE(messages_.entries().empty());
    messages_.clear();
    ColumnPropertiesRecord record;
    EXPECT_EQ(Kodbc_GetColumnProperties(hdbc_, "kc_h6_cols", "no_such_column", &record), KODBC_FAILURE);
    EXPECT_EQ(messages_.entries().size(), 1u);
}

TEST_P(CatalogColumns, PrimaryKeyColumnsInKeyOrderAndTheKeysName) {
    auto keys = [&](const char *table, int flags, const char *separator, int size) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_GetPrimaryKeyColumns(hdbc_, table, flags, separator, out, n), KODBC_SUCCESS) << table;
        });
    };
    EXPECT_EQ(keys("kc_h6_pk", 0, nullptr, 100), "a\tb");
    EXPECT_EQ(keys("kc_h6_pk", KODBC_PK_QUOTE, ",", 100), "a,b");
    EXPECT_EQ(keys("kc_h6_pk", 0, ",", 2), "a");
    EXPECT_EQ(keys("kc_h6_cols", 0, nullptr, 100), "");
    EXPECT_EQ(keys("  ", 0, nullptr, 100), "");
    EXPECT_EQ(Kodbc_GetPrimaryKeyColumns(hdbc_, "kc_h6_pk", 0, nullptr, nullptr, 100), KODBC_FAILURE);

    auto keyName = [&](const char *table, int size) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_GetPrimaryKeyName(hdbc_, table, 0, out, n), KODBC_SUCCESS) << table;
        });
    };
    const std::string name = keyName("kc_h6_pk", 100);
    if (DbmsName() == "PostgreSQL") {
        EXPECT_EQ(name, "kc_h6_pk_pkey");
    }
    EXPECT_EQ(keyName("kc_h6_cols", 100), "");
    EXPECT_EQ(keyName("kc_h6_pk", 1), "");
    char out[8];
    EXPECT_EQ(Kodbc_GetPrimaryKeyName(nullptr, "kc_h6_pk", 0, out, sizeof out), KODBC_FAILURE);
    EXPECT_TRUE(messages_.entries().empty());
}

} // namespace
} // namespace kodbc::test
