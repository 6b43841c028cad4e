// Which capability row a kind of database gets and what is read from it;
// the create-table wizard's work on each data source: what the structure
// page offers, the name proposal and checks, and the three structures'
// real statements (what a database refuses is shown and creates nothing).
#include "test_support.h"

#include "internal/db_capabilities.h"
#include "tabledesign/create_table.h"

#include <kodbc/kodbc_catalog.h>

#include <cstring>

namespace kodbc::test {
namespace {

using namespace tabledesign;

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
        const DbCapabilityRow &row = CapabilitiesOf(c.type);
        EXPECT_EQ(row.databaseType, c.rowType);
        EXPECT_EQ(SupportsAutoIncrement(row), c.autoIncrement);
        EXPECT_EQ(row.multiRowValues, c.multiRowValues);
        EXPECT_STREQ(DropViewStatement(row), c.dropView);
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
        EXPECT_STREQ(ColumnTypeInsteadOfTemplate(c.dbms, c.type), c.instead) << (c.dbms ? c.dbms : "(null)") << "/"
                                                                             << c.type;
    }
    const DbCapabilityRow &other = CapabilitiesOf(KODBC_DBTYPE_OTHER);
    EXPECT_STREQ(AddedColumnClause(other, "PostgreSQL", KODBC_TYPE_FIXED_TEXT), " NOT NULL DEFAULT ''");
    for (int type : {KODBC_TYPE_INTEGER, KODBC_TYPE_FLOAT, KODBC_TYPE_DATETIME}) {
        EXPECT_EQ(AddedColumnClause(other, "MariaDB", type), nullptr) << type;
        EXPECT_STREQ(AddedColumnClause(other, "SQLite", type), " NOT NULL DEFAULT ''") << type;
    }
}

TEST(CreateTableStructure, ChoicesFollowTheDatabase) {
    const struct {
        int databaseType, stored;
        bool autoIncrement, copy;
        int checked;
    } cases[] = {
        {KODBC_DBTYPE_MYSQL, kAutoIncrementTable, true, false, kAutoIncrementTable},
        {KODBC_DBTYPE_MYSQL, kCopiedStructure, true, false, kCopiedStructure},  // checked on a disabled button
        {KODBC_DBTYPE_SQLSERVER, 0, true, true, kAutoIncrementTable},          // nothing stored yet
        {KODBC_DBTYPE_OTHER, kAutoIncrementTable, false, true, kAddressTable},
        {KODBC_DBTYPE_OTHER, kCopiedStructure, false, true, kAddressTable},
        {KODBC_DBTYPE_EXCEL, kCopiedStructure, false, false, kAddressTable},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.databaseType << "/" << c.stored);
        const StructureChoice choice = ChooseStructure(CapabilitiesOf(c.databaseType), c.stored);
        EXPECT_EQ(choice.autoIncrementEnabled, c.autoIncrement);
        EXPECT_EQ(choice.copyEnabled, c.copy);
        EXPECT_EQ(choice.checkedKind, c.checked);
    }
}

// Without a connection names are not quoted: the statements as they are.
TEST(CreateTableStructure, StatementsOfOtherDatabases) {
    const std::string t = "kodbc_ct";
    const struct {
        int databaseType, kind, refusal;
        std::vector<std::string> statements;
    } cases[] = {
        {KODBC_DBTYPE_MYSQL, kAutoIncrementTable, 0,
         {"CREATE TABLE " + t + " (Id INTEGER NOT NULL AUTO_INCREMENT PRIMARY KEY)"}},
        {KODBC_DBTYPE_MYSQL, kCopiedStructure, 1642, {}},
        {KODBC_DBTYPE_ACCESS, kAddressTable, 0,
         {"CREATE TABLE " + t +
              " (Name VARCHAR (255), Vorname VARCHAR (255), Strasse VARCHAR (255), Plz VARCHAR (20), Ort VARCHAR (255))",
          "ALTER TABLE " + t + " ADD Id AUTOINCREMENT"}},
        {KODBC_DBTYPE_SQLSERVER, kCopiedStructure, 0, {"SELECT * INTO " + t + " FROM quelle WHERE 3=5"}},
        {KODBC_DBTYPE_EXCEL, kAutoIncrementTable, 1642, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.databaseType << "/" << c.kind);
        const CreateTablePlan plan = PlanCreateTable(nullptr, CapabilitiesOf(c.databaseType), c.kind, t.c_str(), "quelle");
        EXPECT_EQ(plan.refusal, c.refusal);
        std::vector<std::string> texts;
        for (const CreateTableStatement &statement : plan.statements) texts.push_back(statement.text);
        EXPECT_EQ(texts, c.statements);
    }
}

class CreateTable : public DataSourceTest {
protected:
    std::string Fields(const char *table) {
        return Guarded(1000, [&](char *out, int n) { EXPECT_EQ(Kodbc_GetFields(hdbc_, table, 0, ",", out, n), 1); });
    }
    // As the wizard ends: the name handed back only for a table created.
    bool Create(int kind, const char *name, const char *source = "") {
        CreateTableContext context;
        context.hdbc = hdbc_;
        context.kind = kind;
        std::strcpy(context.name, name);
        std::strcpy(context.source, source);
        char created[kNewTableNameSize] = "-";
        const bool done = FinishCreateTable(context, created, sizeof created) == KODBC_SUCCESS;
        EXPECT_STREQ(created, done ? name : "-");
        return done;
    }
};

TEST_P(CreateTable, NameProposalChecksAndEachStructureAsTheDatabaseAllows) {
    OwnTables({"Neue_Tabelle", "VIEW kodbc_ct_view", "kodbc_ct_view_base", "kodbc_ct_auto", "kodbc_ct_copy",
               "kodbc_ct_address", "kodbc_ct_source"});
    EXPECT_EQ(ProposeNewTableName(hdbc_), "Neue_Tabelle");
    Exec("CREATE TABLE Neue_Tabelle (a INTEGER)");
    EXPECT_EQ(ProposeNewTableName(hdbc_), "Neue_Tabelle_1");

    Exec("CREATE TABLE kodbc_ct_view_base (a INTEGER)");
    Exec("CREATE VIEW kodbc_ct_view AS SELECT a FROM kodbc_ct_view_base");
    EXPECT_EQ(CheckNewTableName(hdbc_, ""), 1625);
    EXPECT_EQ(CheckNewTableName(hdbc_, "Neue_Tabelle"), 1616);
    EXPECT_EQ(CheckNewTableName(hdbc_, "kodbc_ct_view"), 1616) << "a view's name is taken too";
    EXPECT_EQ(CheckNewTableName(hdbc_, "kodbc_ct_free"), 0);

    Exec("CREATE TABLE kodbc_ct_source (Nummer INTEGER, Titel VARCHAR(30))");
    Exec("INSERT INTO kodbc_ct_source VALUES (1, 'eins')");
    // MariaDB names itself so, not MySQL: like the others it has no
    // auto-incrementing definition of its own.
    const DbCapabilityRow &capabilities = CapabilitiesOf(hdbc_);
    const bool autoIncrement = SupportsAutoIncrement(capabilities);
    const bool postgres = DbmsName() == "PostgreSQL";

    messages_.clear();
    EXPECT_EQ(Create(kAutoIncrementTable, "kodbc_ct_auto"), autoIncrement);
    EXPECT_EQ(Fields("kodbc_ct_auto"), autoIncrement ? "Id" : "");
    if (!autoIncrement) {
        ASSERT_EQ(messages_.entries().size(), 1u);
        EXPECT_NE(messages_.entries()[0].text.find("selbsthochz"), std::string::npos) << messages_.entries()[0].text;
    }

    // SELECT INTO is tried wherever the table says so; only PostgreSQL has
    // it (the structure without the rows), the others' drivers refuse it.
    messages_.clear();
    EXPECT_EQ(Create(kCopiedStructure, "kodbc_ct_copy", "kodbc_ct_source"), postgres);
    EXPECT_EQ(Fields("kodbc_ct_copy"), postgres ? "nummer,titel" : "");
    if (postgres) {
        EXPECT_EQ(Column("SELECT COUNT(*) FROM kodbc_ct_copy"), std::vector<std::string>{"0"});
    }
    EXPECT_EQ(messages_.entries().size(), postgres ? 0u : 1u);
    if (!messages_.entries().empty()) {
        EXPECT_EQ(messages_.entries()[0].kind == KODBC_MESSAGE_ODBC_ERROR, capabilities.selectInto);
    }

    // The address table, with the auto-incrementing Id where there is one.
    messages_.clear();
    EXPECT_TRUE(Create(kAddressTable, "kodbc_ct_address"));
    std::string expected = postgres ? "name,vorname,strasse,plz,ort" : "Name,Vorname,Strasse,Plz,Ort";
    if (autoIncrement) expected += ",Id";
    EXPECT_EQ(Fields("kodbc_ct_address"), expected);
    EXPECT_TRUE(messages_.entries().empty());
}

KODBC_DATA_SOURCE_TEST_SUITE(CreateTable);

} // namespace
} // namespace kodbc::test
