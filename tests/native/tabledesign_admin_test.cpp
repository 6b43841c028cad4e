// Table administration's work on each data source: the list, the button
// rules, and the ALTER TABLE statements as each database takes them (what
// one refuses is shown and changes nothing).
#include "test_support.h"

#include "tabledesign/table_admin.h"
#include "transfer/import_statements.h"

#include <string>
#include <tuple>

namespace kodbc::test {
namespace {

using namespace tabledesign;

TEST(TableAdmin, ListColumnsFromTheirString) {
    const std::vector<ListHeaderColumn> columns = AdminListColumns();
    ASSERT_EQ(columns.size(), 5u);
    std::vector<std::string> captions;
    for (const ListHeaderColumn &column : columns) captions.push_back(column.caption);
    EXPECT_EQ(captions, (std::vector<std::string>{"Spaltenname", "Datentyp", "Leer erlaubt", "Vorbesetzung", "Kommentar"}));
    EXPECT_EQ(columns[2].width, 70);
    EXPECT_EQ(columns[4].width, 300);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(columns[static_cast<std::size_t>(i)].centred, i == 2) << i;
}

TEST(TableAdmin, ALengthIsRequiredWhereTheTypeNeedsOne) {
    const struct {
        int type, length, refused;
    } cases[] = {
        {KODBC_TYPE_FIXED_TEXT, 0, 1624}, {KODBC_TYPE_VAR_TEXT, -1, 1624}, {KODBC_TYPE_VAR_TEXT, 1, 0},
        {KODBC_TYPE_LONG_TEXT, 0, 0},     {KODBC_TYPE_INTEGER, 0, 0},      {0, 0, 0},
    };
    for (const auto &c : cases) EXPECT_EQ(CheckColumnLength(c.type, c.length), c.refused) << c.type << "/" << c.length;
}

TEST(TableAdmin, ButtonsFollowDatabaseAndTable) {
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

class TableAdminOn : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({kTable});
        Exec(std::string("CREATE TABLE ") + kTable +
             " (id INTEGER NOT NULL, name VARCHAR(20) DEFAULT 'x', ort VARCHAR(30))");
    }
    std::vector<std::string> Names() {
        std::vector<AdminColumn> columns;
        EXPECT_TRUE(ReadAdminColumns(hdbc_, kTable, columns));
        std::vector<std::string> names;
        for (const AdminColumn &column : columns) names.push_back(column.name + ":" + column.nullableText);
        return names;
    }
    static constexpr const char *kTable = "kodbc_ta";
};

// The list's rows as the dialog shows them: the library's type name with the
// driver's length, and the default as the driver words it.
TEST_P(TableAdminOn, ListRowsAddAndDropColumns) {
    const std::string dbms = DbmsName();
    const std::vector<std::string> expected =
        dbms == "SQLite"       ? std::vector<std::string>{"id|Ganzzahl (9)|Nein|NULL|", "name|VarText (20)|Ja|x|",
                                                          "ort|VarText (30)|Ja|NULL|"}
        : dbms == "PostgreSQL" ? std::vector<std::string>{"id|Ganzzahl (10)|Nein||",
                                                          "name|VarText (20)|Ja|'x'::character varying|",
                                                          "ort|VarText (30)|Ja||"}
                               : std::vector<std::string>{"id|Ganzzahl (10)|Nein||", "name|VarText (20)|Ja|'x'|",
                                                          "ort|VarText (30)|Ja|NULL|"};
    std::vector<AdminColumn> columns;
    ASSERT_TRUE(ReadAdminColumns(hdbc_, kTable, columns));
    std::vector<std::string> rows;
    for (const AdminColumn &c : columns)
        rows.push_back(c.name + "|" + c.type + "|" + c.nullableText + "|" + c.defaultValue + "|" + c.remark);
    EXPECT_EQ(rows, expected) << dbms;

    // A column name with a point is one column, added and dropped as such.
    EXPECT_FALSE(AddColumn(hdbc_, kTable, "Art.Nr", KODBC_TYPE_VAR_TEXT, 0));
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("Länge"), std::string::npos);
    messages_.clear();
    // The clause " NOT NULL DEFAULT ''" comes with every added column.
    EXPECT_TRUE(AddColumn(hdbc_, kTable, "Art.Nr", KODBC_TYPE_VAR_TEXT, 5));
    EXPECT_EQ(Names(), (std::vector<std::string>{"id:Nein", "name:Ja", "ort:Ja", "Art.Nr:Nein"}));

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
    EXPECT_EQ(Names(), (std::vector<std::string>{"id:Nein", "ort:Ja"}));
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(TableAdminOn, KeysAndAutoIncrementAsTheDatabaseTakesThem) {
    // None of the three has an auto-incrementing definition in the table.
    EXPECT_FALSE(MayAddAutoIncrement(hdbc_, kTable));
    ASSERT_EQ(messages_.entries().size(), 1u);
    messages_.clear();

    const std::string dbms = DbmsName();
    const bool sqlite = dbms == "SQLite", postgres = dbms == "PostgreSQL";
    EXPECT_EQ(KeyCandidates(hdbc_, kTable), std::vector<std::string>{"id"});
    EXPECT_TRUE(MayAddPrimaryKey(hdbc_, kTable));
    EXPECT_EQ(AddPrimaryKey(hdbc_, kTable, {"id"}), !sqlite) << "SQLite cannot add a key to a table";
    EXPECT_EQ(OdbcErrors(), sqlite ? 1u : 0u);
    EXPECT_EQ(PrimaryKeyText(hdbc_, kTable), sqlite ? "" : "id");
    messages_.clear();
    if (sqlite) {
        EXPECT_FALSE(DropPrimaryKey(hdbc_, kTable, false));
        ASSERT_EQ(messages_.entries().size(), 1u);  // 1646: no key
        EXPECT_EQ(OdbcErrors(), 0u);
        return;
    }
    EXPECT_FALSE(MayAddPrimaryKey(hdbc_, kTable));  // 1647
    messages_.clear();
    // PostgreSQL knows no "DROP PRIMARY KEY": its refusal is shown, the key stays.
    EXPECT_EQ(DropPrimaryKey(hdbc_, kTable, false), !postgres);
    EXPECT_EQ(OdbcErrors(), postgres ? 1u : 0u);
    EXPECT_EQ(PrimaryKeyText(hdbc_, kTable), postgres ? "id" : "");
}

// A Datum/Zeit and a Gleitkommazahl column keep a stamp and a number with
// eight digits, whether the import's new table has them or they are added
// to a table that holds a record already.
TEST_P(TableAdminOn, DateAndFloatColumnsKeepTheirValues) {
    constexpr const char *kNew = "kodbc_ta_new";
    OwnTables({kNew});
    transfer::ImportFieldList fields(2);
    fields[0].targetName = "d";
    fields[0].targetType = KODBC_TYPE_DATETIME;
    fields[1].targetName = "f";
    fields[1].targetType = KODBC_TYPE_FLOAT;
    ASSERT_TRUE(transfer::ImportStatementRunner(hdbc_).Run(
        transfer::CreateImportTableStatement(hdbc_, kNew, fields, "").c_str()));
    Exec(std::string("INSERT INTO ") + kNew + " (d, f) VALUES ('2024-03-15 10:00:00', 12345.678)");

    Exec(std::string("INSERT INTO ") + kTable + " (id) VALUES (1)");
    ASSERT_TRUE(AddColumn(hdbc_, kTable, "d", KODBC_TYPE_DATETIME, 0));
    ASSERT_TRUE(AddColumn(hdbc_, kTable, "f", KODBC_TYPE_FLOAT, 0));
    Exec(std::string("UPDATE ") + kTable + " SET d = '2024-03-15 10:00:00', f = 12345.678");

    for (const char *table : {kNew, kTable}) {
        SCOPED_TRACE(table);
        const std::vector<std::string> stamps = Column(std::string("SELECT d FROM ") + table);
        const std::vector<std::string> numbers = Column(std::string("SELECT f FROM ") + table);
        ASSERT_EQ(stamps.size(), 1u);
        ASSERT_EQ(numbers.size(), 1u);
        EXPECT_EQ(stamps[0].substr(0, 19), "2024-03-15 10:00:00");
        EXPECT_DOUBLE_EQ(std::stod(numbers[0]), 12345.678) << numbers[0];
    }
    EXPECT_EQ(OdbcErrors(), 0u);
}

KODBC_DATA_SOURCE_TEST_SUITE(TableAdminOn);

} // namespace
} // namespace kodbc::test
