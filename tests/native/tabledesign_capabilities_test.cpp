// Which capability row a kind of database gets, and what the wizards read
// from it.
#include "test_support.h"

#include "internal/db_capabilities.h"

namespace kodbc::test {
namespace {

using tabledesign::CapabilitiesOf;

TEST(DbCapabilities, LookupForEveryDatabaseTypeAndTheFallback) {
    // An import writes one INSERT per record where several would be refused.
    const struct {
        int type;
        int rowType;  // the row the lookup must find
        bool autoIncrement, multiRowValues;
        const char *dropView;
    } cases[] = {
        {KODBC_DBTYPE_OTHER, 0, false, true, "DROP VIEW"},     {KODBC_DBTYPE_PROGRESS, 1, false, false, "DROP VIEW"},
        {KODBC_DBTYPE_MYSQL, 2, true, true, "DROP VIEW"},      {KODBC_DBTYPE_ACCESS, 3, true, false, "DROP TABLE"},
        {KODBC_DBTYPE_SQLSERVER, 4, true, true, "DROP VIEW"},  {KODBC_DBTYPE_EXCEL, 5, false, false, "DROP VIEW"},
        {KODBC_DBTYPE_ORACLE, 6, false, false, "DROP VIEW"},   {7, 7, false, false, "DROP VIEW"},
        {99, 0, false, true, "DROP VIEW"},                     {-1, 0, false, true, "DROP VIEW"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.type);
        const tabledesign::DbCapabilityRow &row = CapabilitiesOf(c.type);
        EXPECT_EQ(row.databaseType, c.rowType);
        EXPECT_EQ(tabledesign::SupportsAutoIncrement(row), c.autoIncrement);
        EXPECT_EQ(row.multiRowValues, c.multiRowValues);
        EXPECT_STREQ(tabledesign::DropViewStatement(row), c.dropView);
    }
    // Where the database cannot drop a key or wants no clause, nothing is offered.
    EXPECT_EQ(CapabilitiesOf(KODBC_DBTYPE_ACCESS).dropPrimaryKey, nullptr);
    EXPECT_EQ(CapabilitiesOf(KODBC_DBTYPE_EXCEL).addedColumnClause, nullptr);
    EXPECT_FALSE(CapabilitiesOf(KODBC_DBTYPE_MYSQL).selectInto);
}

// Decided by the DBMS name: MySQL, MariaDB and PostgreSQL all may count as
// "other". Only text columns get the empty-text clause when added.
TEST(DbCapabilities, ColumnTypesThatKeepTheValue) {
    const struct {
        const char *dbms;
        int type;
        const char *instead;
    } cases[] = {
        {"PostgreSQL", KODBC_TYPE_DATETIME, "TIMESTAMP"}, {"PostgreSQL", KODBC_TYPE_FLOAT, nullptr},
        {"MySQL", KODBC_TYPE_FLOAT, "DOUBLE"},            {"mariadb", KODBC_TYPE_FLOAT, "DOUBLE"},
        {"MariaDB", KODBC_TYPE_DATETIME, nullptr},        {"SQLite", KODBC_TYPE_FLOAT, nullptr},
        {nullptr, KODBC_TYPE_FLOAT, nullptr},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << (c.dbms ? c.dbms : "(null)") << "/" << c.type);
        const char *got = tabledesign::ColumnTypeInsteadOfTemplate(c.dbms, c.type);
        EXPECT_STREQ(got, c.instead);
    }
    const tabledesign::DbCapabilityRow &other = CapabilitiesOf(KODBC_DBTYPE_OTHER);
    EXPECT_STREQ(tabledesign::AddedColumnClause(other, "PostgreSQL", KODBC_TYPE_FIXED_TEXT), " NOT NULL DEFAULT ''");
    for (int type : {KODBC_TYPE_INTEGER, KODBC_TYPE_FLOAT, KODBC_TYPE_DATETIME}) {
        EXPECT_EQ(tabledesign::AddedColumnClause(other, "MariaDB", type), nullptr) << type;
        EXPECT_STREQ(tabledesign::AddedColumnClause(other, "SQLite", type), " NOT NULL DEFAULT ''") << type;
    }
}

} // namespace
} // namespace kodbc::test
