// Table design: the capability rows, table administration's list, its rows, buttons
// and ALTER TABLE statements, the create-table wizard's structures, names and
// statements on each data source (what one refuses is shown, changes nothing).
#include "test_support.h"

#include "internal/db_capabilities.h"
#include "tabledesign/create_table.h"
#include "tabledesign/table_admin.h"
#include "transfer/import_statements.h"

#include <kodbc/kodbc_catalog.h>

#include <cstring>
#include <tuple>

namespace kodbc::test {
namespace {

using namespace tabledesign;
using V = std::vector<std::string>;

// An import writes one INSERT per record where several would be refused.
TEST(DbCapabilities, LookupForEveryDatabaseTypeAndColumnTypesThatKeepTheValue) {
    using Row = std::tuple<int, int, bool, bool, const char *>;  // type, the row it finds, auto-inc., multi-row
    for (const auto &[type, rowType, autoIncrement, multiRowValues, dropView] :
         {Row{KODBC_DBTYPE_OTHER, 0, false, true, "DROP VIEW"}, {KODBC_DBTYPE_PROGRESS, 1, false, false, "DROP VIEW"},
          {KODBC_DBTYPE_MYSQL, 2, true, true, "DROP VIEW"},      {KODBC_DBTYPE_ACCESS, 3, true, false, "DROP TABLE"},
          {KODBC_DBTYPE_SQLSERVER, 4, true, true, "DROP VIEW"},  {KODBC_DBTYPE_EXCEL, 5, false, false, "DROP VIEW"},
          {KODBC_DBTYPE_ORACLE, 6, false, false, "DROP VIEW"},   {7, 7, false, false, "DROP VIEW"},
          {99, 0, false, true, "DROP VIEW"},                     {-1, 0, false, true, "DROP VIEW"}}) {
        SCOPED_TRACE(type);
        const DbCapabilityRow &row = CapabilitiesOf(type);
        EXPECT_EQ(std::tuple(row.databaseType, SupportsAutoIncrement(row), row.multiRowValues),
                  std::tuple(rowType, autoIncrement, multiRowValues));
        EXPECT_STREQ(DropViewStatement(row), dropView);
    }
    // Where the database cannot drop a key or wants no clause, nothing is offered.
    EXPECT_EQ(CapabilitiesOf(KODBC_DBTYPE_ACCESS).dropPrimaryKey, nullptr);
    EXPECT_EQ(CapabilitiesOf(KODBC_DBTYPE_EXCEL).addedColumnClause, nullptr);
    EXPECT_FALSE(CapabilitiesOf(KODBC_DBTYPE_MYSQL).selectInto);

    // Decided by the DBMS name: MySQL, MariaDB and PostgreSQL all may count as
    // "other". Only text columns get the empty-text clause when added.
    for (const auto &[dbms, type, instead] :
         {std::tuple<const char *, int, const char *>{"PostgreSQL", KODBC_TYPE_DATETIME, "TIMESTAMP"},
          {"PostgreSQL", KODBC_TYPE_FLOAT, nullptr}, {"MySQL", KODBC_TYPE_FLOAT, "DOUBLE"},
          {"mariadb", KODBC_TYPE_FLOAT, "DOUBLE"}, {"MariaDB", KODBC_TYPE_DATETIME, nullptr},
          {"SQLite", KODBC_TYPE_FLOAT, nullptr}, {nullptr, KODBC_TYPE_FLOAT, nullptr}})
        EXPECT_STREQ(ColumnTypeInsteadOfTemplate(dbms, type), instead) << (dbms ? dbms : "-") << type;
    const DbCapabilityRow &other = CapabilitiesOf(KODBC_DBTYPE_OTHER);
    EXPECT_STREQ(AddedColumnClause(other, "PostgreSQL", KODBC_TYPE_FIXED_TEXT), " NOT NULL DEFAULT ''");
    for (int type : {KODBC_TYPE_INTEGER, KODBC_TYPE_FLOAT, KODBC_TYPE_DATETIME}) {
        EXPECT_EQ(AddedColumnClause(other, "MariaDB", type), nullptr) << type;
        EXPECT_STREQ(AddedColumnClause(other, "SQLite", type), " NOT NULL DEFAULT ''") << type;
    }
}

// Without a connection names are not quoted: the statements as they are.
TEST(CreateTableStructure, ChoicesAndStatementsFollowTheDatabase) {
    using Choice = std::tuple<int, int, bool, bool, int>;  // database, kind stored, buttons enabled, checked
    for (const auto &[databaseType, stored, autoIncrement, copy, checked] :
         {Choice{KODBC_DBTYPE_MYSQL, kAutoIncrementTable, true, false, kAutoIncrementTable},
          {KODBC_DBTYPE_MYSQL, kCopiedStructure, true, false, kCopiedStructure},  // checked on a disabled button
          {KODBC_DBTYPE_SQLSERVER, 0, true, true, kAutoIncrementTable},          // nothing stored yet
          {KODBC_DBTYPE_OTHER, kAutoIncrementTable, false, true, kAddressTable},
          {KODBC_DBTYPE_OTHER, kCopiedStructure, false, true, kAddressTable},
          {KODBC_DBTYPE_EXCEL, kCopiedStructure, false, false, kAddressTable}}) {
        const StructureChoice choice = ChooseStructure(CapabilitiesOf(databaseType), stored);
        EXPECT_EQ(std::tuple(choice.autoIncrementEnabled, choice.copyEnabled, choice.checkedKind),
                  std::tuple(autoIncrement, copy, checked))
            << databaseType << "/" << stored;
    }
    const std::string t = "kodbc_ct";
    const struct {
        int databaseType, kind, refusal;
        std::vector<std::string> statements;
    } plans[] = {
        {KODBC_DBTYPE_MYSQL, kAutoIncrementTable, 0,
         {"CREATE TABLE " + t + " (Id INTEGER NOT NULL AUTO_INCREMENT PRIMARY KEY)"}},
        {KODBC_DBTYPE_MYSQL, kCopiedStructure, 1642, {}},
        {KODBC_DBTYPE_ACCESS, kAddressTable, 0,
         {"CREATE TABLE " + t + " (Name VARCHAR (255), Vorname VARCHAR (255), Strasse VARCHAR (255), " +
              "Plz VARCHAR (20), Ort VARCHAR (255))",
          "ALTER TABLE " + t + " ADD Id AUTOINCREMENT"}},
        {KODBC_DBTYPE_SQLSERVER, kCopiedStructure, 0, {"SELECT * INTO " + t + " FROM quelle WHERE 3=5"}},
        {KODBC_DBTYPE_EXCEL, kAutoIncrementTable, 1642, {}},
    };
    for (const auto &c : plans) {
        SCOPED_TRACE(testing::Message() << c.databaseType << "/" << c.kind);
        const CreateTablePlan plan =
            PlanCreateTable(nullptr, CapabilitiesOf(c.databaseType), c.kind, t.c_str(), "quelle");
        EXPECT_EQ(plan.refusal, c.refusal);
        std::vector<std::string> texts;
        for (const CreateTableStatement &statement : plan.statements) texts.push_back(statement.text);
        EXPECT_EQ(texts, c.statements);
    }
}

TEST(TableAdmin, ListColumnsLengthRequiredAndButtons) {
    EXPECT_EQ(AdminListColumns(), ParseListHeader("Spaltenname|130\tDatentyp|100\tLeer erlaubt|70|C\tVorbesetzung|130"
                                                  "\tKommentar|300"));
    for (const auto &[type, length, refused] :
         {std::tuple{KODBC_TYPE_FIXED_TEXT, 0, 1624}, {KODBC_TYPE_VAR_TEXT, -1, 1624}, {KODBC_TYPE_VAR_TEXT, 1, 0},
          {KODBC_TYPE_LONG_TEXT, 0, 0}, {KODBC_TYPE_INTEGER, 0, 0}, {0, 0, 0}})
        EXPECT_EQ(CheckColumnLength(type, length), refused) << type << "/" << length;

    const struct {
        int databaseType, columns, selected;
        bool key, autoIncrement;
        AdminAbilities expected;  // add, drop, add key, drop key, add auto-increment
    } cases[] = {
        {KODBC_DBTYPE_OTHER, 3, 0, false, false, {true, false, true, false, false}},
        {KODBC_DBTYPE_OTHER, 3, 3, true, false, {true, false, false, true, false}},   // not every column
        {KODBC_DBTYPE_MYSQL, 3, 1, false, false, {true, true, true, false, true}},
        {KODBC_DBTYPE_MYSQL, 3, 1, true, true, {true, true, false, true, false}},
        {KODBC_DBTYPE_ACCESS, 3, 2, true, false, {true, true, false, false, true}},  // no key drop there
    };
    for (const auto &c : cases) {
        const auto tie = [](const AdminAbilities &a) {
            return std::tie(a.addColumn, a.dropColumns, a.addPrimaryKey, a.dropPrimaryKey, a.addAutoIncrement);
        };
        EXPECT_EQ(tie(AdminAbilitiesOf(CapabilitiesOf(c.databaseType), c.columns, c.selected, c.key, c.autoIncrement)),
                  tie(c.expected))
            << c.databaseType << "/" << c.selected << "/" << c.key;
    }
}

TEST(TableAdmin, RowOfANameInAnyCaseAndRowSelectedAfterADrop) {
    const V columns{"Nr", "Name", "Ort"};
    EXPECT_EQ(AdminRowOf(columns, "name"), 1);
    EXPECT_EQ(AdminRowOf(columns, "ORT"), 2);
    EXPECT_EQ(AdminRowOf(columns, "Nam"), -1);
    const struct {
        const char *what;
        std::vector<int> rows;
        V names, left;
        int expected;
    } cases[] = {
        {"the column that moved up", {1}, {"Name"}, {"Nr", "Ort", "Tel"}, 1},
        {"the first that went (Nr was kept)", {0, 1, 3}, {"Nr", "Name", "Tel"}, {"Nr", "Ort", "Fax"}, 1},
        {"the last row when the list ends before", {2, 3}, {"Ort", "Tel"}, {"Nr", "Name"}, 1},
        {"none left", {0}, {"Nr"}, {}, -1},
    };
    for (const auto &c : cases) EXPECT_EQ(AdminRowAfterDrop(c.rows, c.names, c.left), c.expected) << c.what;
}

class TableDesign : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({kTable});
        Exec(std::string("CREATE TABLE ") + kTable +
             " (id INTEGER NOT NULL, name VARCHAR(20) DEFAULT 'x', ort VARCHAR(30))");
    }
    // The list's rows as the dialog shows them, or only name and nullability.
    V Rows(bool whole = false) {
        std::vector<AdminColumn> columns;
        EXPECT_TRUE(ReadAdminColumns(hdbc_, kTable, columns));
        V rows;
        for (const AdminColumn &c : columns)
            rows.push_back(whole ? c.name + "|" + c.type + "|" + c.nullableText + "|" + c.defaultValue + "|" + c.remark
                                 : c.name + ":" + c.nullableText);
        return rows;
    }
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
    static constexpr const char *kTable = "kodbc_ta";
};
KODBC_DATA_SOURCE_TEST_SUITE(TableDesign);

// The library's type name with the driver's length, the default as the driver words it.
TEST_P(TableDesign, ListRowsAddAndDropColumns) {
    const std::string dbms = DbmsName();
    const V expected =
        dbms == "SQLite"       ? V{"id|Ganzzahl (9)|Nein|NULL|", "name|VarText (20)|Ja|x|", "ort|VarText (30)|Ja|NULL|"}
        : dbms == "PostgreSQL" ? V{"id|Ganzzahl (10)|Nein||", "name|VarText (20)|Ja|'x'::character varying|",
                                   "ort|VarText (30)|Ja||"}
                               : V{"id|Ganzzahl (10)|Nein||", "name|VarText (20)|Ja|'x'|", "ort|VarText (30)|Ja|NULL|"};
    EXPECT_EQ(Rows(true), expected) << dbms;

    // A column name with a point is one column, added and dropped as such.
    EXPECT_FALSE(AddColumn(hdbc_, kTable, "Art.Nr", KODBC_TYPE_VAR_TEXT, 0));
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("Länge"), std::string::npos);
    messages_.clear();
    // The clause " NOT NULL DEFAULT ''" comes with every added column.
    EXPECT_TRUE(AddColumn(hdbc_, kTable, "Art.Nr", KODBC_TYPE_VAR_TEXT, 5));
    EXPECT_EQ(Rows(), (V{"id:Nein", "name:Ja", "ort:Ja", "Art.Nr:Nein"}));

    bool cancelled = false;
    messages_.set_answer(KODBC_ANSWER_NO);
    EXPECT_EQ(DropColumns(hdbc_, kTable, {"name", "ort"}, true, &cancelled), 0);
    EXPECT_FALSE(cancelled);
    messages_.set_answer(KODBC_ANSWER_CANCEL);
    EXPECT_EQ(DropColumns(hdbc_, kTable, {"name", "ort"}, true, &cancelled), 0);
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(messages_.entries().size(), 3u) << "one question per column until the cancel";
    messages_.clear();
    EXPECT_EQ(DropColumns(hdbc_, kTable, {"name", "Art.Nr"}, false, &cancelled), 2);
    EXPECT_EQ(Rows(), (V{"id:Nein", "ort:Ja"}));
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(TableDesign, KeysAndAutoIncrementAsTheDatabaseTakesThem) {
    // None of the three has an auto-incrementing definition in the table.
    EXPECT_FALSE(MayAddAutoIncrement(hdbc_, kTable));
    ASSERT_EQ(messages_.entries().size(), 1u);
    messages_.clear();

    const std::string dbms = DbmsName();
    const bool sqlite = dbms == "SQLite", postgres = dbms == "PostgreSQL";
    EXPECT_EQ(KeyCandidates(hdbc_, kTable), V{"id"});
    EXPECT_TRUE(MayAddPrimaryKey(hdbc_, kTable));
    EXPECT_EQ(AddPrimaryKey(hdbc_, kTable, {"id"}), !sqlite) << "SQLite cannot add a key to a table";
    EXPECT_EQ(OdbcErrors(), sqlite ? 1u : 0u);
    EXPECT_EQ(PrimaryKeyText(hdbc_, kTable), sqlite ? "" : "id");
    messages_.clear();
    EXPECT_EQ(MayAddPrimaryKey(hdbc_, kTable), sqlite);  // 1647 where there is a key
    messages_.clear();
    // SQLite has no key to drop (1646); PostgreSQL knows no "DROP PRIMARY KEY": its refusal is
    // shown, the key stays.
    EXPECT_EQ(DropPrimaryKey(hdbc_, kTable, false), !sqlite && !postgres);
    EXPECT_EQ(messages_.entries().size(), 1u);
    EXPECT_EQ(OdbcErrors(), postgres ? 1u : 0u);
    EXPECT_EQ(PrimaryKeyText(hdbc_, kTable), postgres ? "id" : "");
}

// A Datum/Zeit and a Gleitkommazahl column keep a stamp and eight digits, in the import's
// new table as added to a table that holds a record already.
TEST_P(TableDesign, DateAndFloatColumnsKeepTheirValues) {
    constexpr const char *kNew = "kodbc_ta_new";
    OwnTables({kNew});
    const transfer::ImportFieldList fields{{.targetName = "d", .targetType = KODBC_TYPE_DATETIME},
                                           {.targetName = "f", .targetType = KODBC_TYPE_FLOAT}};
    ASSERT_TRUE(transfer::ImportStatementRunner(hdbc_).Run(
        transfer::CreateImportTableStatement(hdbc_, kNew, fields, "").c_str()));
    Exec(std::string("INSERT INTO ") + kNew + " (d, f) VALUES ('2024-03-15 10:00:00', 12345.678)");

    Exec(std::string("INSERT INTO ") + kTable + " (id) VALUES (1)");
    ASSERT_TRUE(AddColumn(hdbc_, kTable, "d", KODBC_TYPE_DATETIME, 0));
    ASSERT_TRUE(AddColumn(hdbc_, kTable, "f", KODBC_TYPE_FLOAT, 0));
    Exec(std::string("UPDATE ") + kTable + " SET d = '2024-03-15 10:00:00', f = 12345.678");

    for (const char *table : {kNew, kTable}) {
        SCOPED_TRACE(table);
        EXPECT_EQ(Column(std::string("SELECT d FROM ") + table).at(0).substr(0, 19), "2024-03-15 10:00:00");
        EXPECT_DOUBLE_EQ(std::stod(Column(std::string("SELECT f FROM ") + table).at(0)), 12345.678);
    }
    EXPECT_EQ(OdbcErrors(), 0u);
}

TEST_P(TableDesign, NameProposalChecksAndEachStructureAsTheDatabaseAllows) {
    OwnTables({"Neue_Tabelle", "VIEW kodbc_ct_view", "kodbc_ct_auto", "kodbc_ct_copy", "kodbc_ct_address"});
    EXPECT_EQ(ProposeNewTableName(hdbc_), "Neue_Tabelle");
    Exec("CREATE TABLE Neue_Tabelle (a INTEGER)");
    EXPECT_EQ(ProposeNewTableName(hdbc_), "Neue_Tabelle_1");

    Exec(std::string("CREATE VIEW kodbc_ct_view AS SELECT id FROM ") + kTable);
    EXPECT_EQ(CheckNewTableName(hdbc_, ""), 1625);
    EXPECT_EQ(CheckNewTableName(hdbc_, "Neue_Tabelle"), 1616);
    EXPECT_EQ(CheckNewTableName(hdbc_, "kodbc_ct_view"), 1616) << "a view's name is taken too";
    EXPECT_EQ(CheckNewTableName(hdbc_, "kodbc_ct_free"), 0);

    Exec(std::string("INSERT INTO ") + kTable + " (id) VALUES (1)");
    // MariaDB names itself so, not MySQL: like the others it has no auto-incrementing definition.
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

    // SELECT INTO is tried where the table says so; only PostgreSQL has it (structure, no rows).
    messages_.clear();
    EXPECT_EQ(Create(kCopiedStructure, "kodbc_ct_copy", kTable), postgres);
    EXPECT_EQ(Fields("kodbc_ct_copy"), postgres ? "id,name,ort" : "");
    EXPECT_TRUE(!postgres || Column("SELECT COUNT(*) FROM kodbc_ct_copy") == V{"0"});
    ASSERT_EQ(messages_.entries().size(), postgres ? 0u : 1u);
    EXPECT_TRUE(postgres || (messages_.entries()[0].kind == KODBC_MESSAGE_ODBC_ERROR) == capabilities.selectInto);

    // The address table, with the auto-incrementing Id where there is one.
    messages_.clear();
    EXPECT_TRUE(Create(kAddressTable, "kodbc_ct_address"));
    std::string expected = postgres ? "name,vorname,strasse,plz,ort" : "Name,Vorname,Strasse,Plz,Ort";
    if (autoIncrement) expected += ",Id";
    EXPECT_EQ(Fields("kodbc_ct_address"), expected);
    EXPECT_TRUE(messages_.entries().empty());
}

} // namespace
} // namespace kodbc::test
