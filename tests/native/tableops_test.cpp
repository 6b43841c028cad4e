// Table operations, aggregates, field tests and the system table against every data source.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_exec.h>
#include <kodbc/kodbc_systable.h>
#include <kodbc/kodbc_tableops.h>

#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

class TableOps : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({"kc_h9_adr", "kc_h9_adr_1", "kc_h9_adr_2", "kc_h9_empty", "kc_h9_copy", "kc_h9_auto",
                   "kc_h9_xUNIONx"});
        Exec("CREATE TABLE kc_h9_adr (id INTEGER, betrag FLOAT, name VARCHAR(40))");
        Exec("INSERT INTO kc_h9_adr VALUES (1, 2.5, 'Müller'), (2, 10.25, 'Meier'), (3, -1, 'Schulze')");
        Exec("CREATE TABLE kc_h9_empty (id INTEGER, betrag FLOAT)");
        DropSystemTable();
        ProvideBlobType();
        messages_.clear();
    }
    void TearDown() override {
        if (hdbc_) DropSystemTable();
        DataSourceTest::TearDown();
    }
    bool Exists(const char *table) { return Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_ALL, table) == 1; }
    long Rows(const char *table) { return Kodbc_GetRecordCount(hdbc_, table, 0); }
    bool SysTableExists() {
        return Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_TABLE | KODBC_OBJECT_SYSTEM, "KorvelSysTable") == 1;
    }
    long SysTableRows() { return OdbcEh_CountRows(nullptr, hdbc_, "SELECT Object FROM KorvelSysTable"); }
    std::string Read(const char *object, const char *type, const char *item, const char *def = "default") {
        auto read = [&](char *out, int n) { Kodbc_ReadSysTableString(hdbc_, object, type, item, def, out, n); };
        return Guarded(6000, read);
    }
};
KODBC_DATA_SOURCE_TEST_SUITE(TableOps);

TEST_P(TableOps, DropAsksFirstOnlyYesDropsAndAMissingTableIsToleratedOnlyForTheNoSuchTableStates) {
    EXPECT_EQ(Kodbc_DeleteTable(hdbc_, " \t", KODBC_DROP_NO_QUESTION), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_DeleteTable(nullptr, "kc_h9_adr", KODBC_DROP_NO_QUESTION), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_DeleteTableExtended(hdbc_, "kc_h9_adr", nullptr, KODBC_DROP_NO_QUESTION), KODBC_FAILURE);
    EXPECT_TRUE(messages_.entries().empty());

    for (const auto &[answer, flags] : {std::pair{KODBC_ANSWER_NO, 0}, {KODBC_ANSWER_CANCEL, KODBC_DROP_MISSING_OK},
                                        {KODBC_ANSWER_YES, 0}}) {
        messages_.clear();
        messages_.set_answer(answer);
        const bool yes = answer == KODBC_ANSWER_YES;
        EXPECT_EQ(Kodbc_DeleteTable(hdbc_, "kc_h9_adr", flags), yes ? KODBC_SUCCESS : KODBC_FAILURE);
        ASSERT_EQ(messages_.entries().size(), 1u);
        const auto &question = messages_.entries()[0];
        EXPECT_EQ(question.kind, KODBC_MESSAGE_YESNO);
        EXPECT_NE(question.text.find("Wollen Sie die Tabelle 'kc_h9_adr' wirklich l"), std::string::npos)
            << question.text;
        EXPECT_EQ(question.text.back(), '"');  // the stray quote of the text stays
        EXPECT_EQ(Exists("kc_h9_adr"), !yes);
    }

    // Without the question nothing is asked at all; a schema goes before the name.
    messages_.clear();
    const char *schema = DbmsName() == "PostgreSQL" ? "public" : nullptr;
    EXPECT_EQ(Kodbc_DeleteTableExtended(hdbc_, schema, "kc_h9_empty", KODBC_DROP_NO_QUESTION), KODBC_SUCCESS);
    EXPECT_TRUE(messages_.entries().empty());
    EXPECT_FALSE(Exists("kc_h9_empty"));

    EXPECT_EQ(Kodbc_DeleteTable(hdbc_, "kc_h9_missing", KODBC_DROP_NO_QUESTION), KODBC_FAILURE);
    ASSERT_EQ(OdbcErrors(), 1u);
    const std::string state = messages_.entries().back().sqlState;
    EXPECT_NE(messages_.entries().back().statement.find("DROP TABLE kc_h9_missing"), std::string::npos);
    messages_.clear();

    // Only S0002 / 42S02 count as "already gone"; other drivers still see their error.
    const bool noSuchTable = strcasecmp(state.c_str(), "42S02") == 0 || strcasecmp(state.c_str(), "S0002") == 0;
    EXPECT_TRUE(DbmsName() == "SQLite" || noSuchTable == (DbmsName() == "MariaDB")) << state;
    const int flags = KODBC_DROP_NO_QUESTION | KODBC_DROP_MISSING_OK;
    EXPECT_EQ(Kodbc_DeleteTable(hdbc_, "kc_h9_missing", flags), noSuchTable ? KODBC_SUCCESS : KODBC_FAILURE);
    EXPECT_EQ(OdbcErrors(), noSuchTable ? 0u : 1u);
}

TEST_P(TableOps, RenameCopiesWhereTheDataSourceCanAndLosesNothingWhereItCannot) {
    // Onto an existing name, or without names: nothing copied, nothing said.
    EXPECT_EQ(Kodbc_RenameTable(hdbc_, "kc_h9_adr", "KC_H9_EMPTY", KODBC_RENAME_NOTICE), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_RenameTable(hdbc_, "kc_h9_adr", "", 0), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_RenameTable(hdbc_, nullptr, "kc_h9_copy", 0), KODBC_FAILURE);
    EXPECT_TRUE(messages_.entries().empty());
    EXPECT_EQ(Rows("kc_h9_empty"), 0);

    // Without SELECT … INTO the error is shown with the statement, the source keeps every row
    // and no half copy is left behind.
    const bool copied = DbmsName() == "PostgreSQL";
    EXPECT_EQ(Kodbc_RenameTable(hdbc_, "kc_h9_adr", "kc_h9_copy", KODBC_RENAME_NOTICE),
              copied ? KODBC_SUCCESS : KODBC_FAILURE);
    ASSERT_EQ(messages_.entries().size(), copied ? 1u : 2u);
    EXPECT_EQ(messages_.entries()[0].kind, KODBC_MESSAGE_TEMPORARY);
    EXPECT_EQ(messages_.entries()[0].text, "Die Tabelle wird kopiert ...");
    EXPECT_EQ(OdbcErrors(), copied ? 0u : 1u);
    EXPECT_EQ(messages_.entries().back().statement, copied ? "" : "SELECT * INTO kc_h9_copy FROM kc_h9_adr");
    EXPECT_EQ(std::pair(Exists("kc_h9_adr"), Exists("kc_h9_copy")), std::pair(!copied, copied));
    EXPECT_EQ(Rows(copied ? "kc_h9_copy" : "kc_h9_adr"), 3);
}

// Two searches for a free name: the table operations' cuts every candidate to the buffer (and
// ends on a taken name when nothing longer fits); the execution functions' lets the base give way.
TEST_P(TableOps, UniqueNameTakesTheFirstFreeNumber) {
    Exec("CREATE TABLE kc_h9_adr_1 (id INTEGER)");
    const struct {
        bool exec;
        const char *name;
        int size;
        const char *unique;
    } cases[] = {
        {false, "kc_h9_adr", 40, "kc_h9_adr_2"}, {false, "kc_h9_free", 40, "kc_h9_free"}, {false, "", 40, "_1"},
        {false, "kc_h9_adr", 11, "kc_h9_adr_"},  {false, "kc_h9_adr", 10, "kc_h9_adr"},
        {true, "kc_h9_adr", 40, "kc_h9_adr_2"},  {true, "KC_H9_ADR_1", 40, "KC_H9_ADR_1_1"},
        {true, "kc_h9_free", 40, "kc_h9_free"},  {true, "", 40, "_1"}, {true, "kc_h9_adr", 10, "kc_h9_adr"},
    };
    for (const auto &c : cases) {
        auto search = [&](char *name, int n) {
            if (!c.exec) return Kodbc_CreateUniqueTableName(hdbc_, name, n);
            EXPECT_EQ(OdbcEh_CreateUniqueTableName(nullptr, hdbc_, nullptr, name, n, 0), 1);
        };
        EXPECT_EQ(GuardedInPlace(c.name, c.size, search), c.unique) << c.exec << " " << c.name << " in " << c.size;
    }
    EXPECT_EQ(OdbcEh_CreateUniqueTableName(nullptr, hdbc_, nullptr, nullptr, 10, 0), 2);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(TableOps, CountsSumsAndMaximaAndRefusedByTheDumpEverythingFailsSilently) {
    // A failed count is 0 too, but the user has seen why.
    for (const auto &[table, condition, count] :
         {std::tuple{"kc_h9_adr", "id > 1", 2}, {"kc_h9_adr", "", 3}, {"kc_h9_adr", "name = 'Müller'", 1},
          {"kc_h9_adr", "no_such_field = 1", 0}, {"kc_h9_missing", "", 0}}) {
        messages_.clear();
        EXPECT_EQ(Kodbc_GetRecordCountExt(hdbc_, table, condition, 0), count) << condition;
        EXPECT_EQ(OdbcErrors(), count ? 0u : 1u) << condition;
        EXPECT_EQ(messages_.entries().size(), count ? 0u : 1u) << condition;
    }
    EXPECT_EQ(messages_.entries().back().statement, "SELECT Count(*) FROM kc_h9_missing");
    messages_.clear();

    // NULL of no rows reads as 0.
    for (const auto &[aggregate, table, field, condition, expected] :
         {std::tuple{&Kodbc_AddFields, "kc_h9_adr", "betrag", "", 11.75},
          {Kodbc_AddFields, "kc_h9_adr", "betrag", "id < 3", 12.75},
          {Kodbc_GetMaximum, "kc_h9_adr", "betrag", "", 10.25},
          {Kodbc_GetMaximum, "kc_h9_adr", "id", "betrag < 5", 3.0},
          {Kodbc_GetMaximum, "kc_h9_empty", "betrag", "", 0.0}}) {
        double result = 99;
        EXPECT_EQ(aggregate(hdbc_, table, field, *condition ? condition : nullptr, &result), 0) << field;
        EXPECT_DOUBLE_EQ(result, expected) << field << " " << condition;
    }
    EXPECT_TRUE(messages_.entries().empty());

    double result = 99;
    EXPECT_EQ(Kodbc_AddFields(hdbc_, "kc_h9_adr", "no_such_field", nullptr, &result), -1);
    EXPECT_DOUBLE_EQ(result, 0);
    EXPECT_EQ(OdbcErrors(), 1u);
    EXPECT_EQ(Kodbc_GetMaximum(hdbc_, "kc_h9_adr", "betrag", nullptr, nullptr), -1);
    EXPECT_EQ(Kodbc_GetMaximum(hdbc_, "kc_h9_adr", " ", nullptr, &result), -1);

    // Refused by the dump, everything fails silently.
    messages_.clear();
    SetDumpState(KORVEL_DUMP_ASK);
    messages_.set_answer(KODBC_ANSWER_NO);
    EXPECT_EQ(Kodbc_GetRecordCount(hdbc_, "kc_h9_adr", 0), 0);
    EXPECT_EQ(Kodbc_AddFields(hdbc_, "kc_h9_adr", "betrag", nullptr, &result), -1);
    EXPECT_EQ(Kodbc_DeleteTable(hdbc_, "kc_h9_adr", KODBC_DROP_NO_QUESTION), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_RenameTable(hdbc_, "kc_h9_adr", "kc_h9_copy", 0), KODBC_FAILURE);
    EXPECT_EQ(Kodbc_DeleteTableExtended(hdbc_, "public", "kc_h9_adr", KODBC_DROP_NO_QUESTION), KODBC_FAILURE);
    // Only the dump's own questions, one per statement: no error follows a refusal. The last
    // shows the schema going before the name on every data source, not only where one exists.
    ASSERT_EQ(messages_.entries().size(), 5u);
    EXPECT_EQ(messages_.entries()[4].text, "DROP TABLE public.kc_h9_adr");
    SetDumpState(0);
    EXPECT_EQ(Rows("kc_h9_adr"), 3);
}

TEST_P(TableOps, FieldExistenceTheFirstAutoIncrementFieldAndRowSetCount) {
    EXPECT_EQ(Kodbc_DoesFieldExist(hdbc_, "kc_h9_adr", "BETRAG"), 1);

    Exec("CREATE TABLE kc_h9_auto (label VARCHAR(10), nr " + AutoIncrementKey() + ")");
    // Cut to the buffer, never past it; no such column, no such table: 2 and an empty output.
    for (const auto &[table, size, result, expected] :
         {std::tuple{"kc_h9_auto", 20, KODBC_SUCCESS, "nr"}, {"kc_h9_auto", 2, KODBC_SUCCESS, "n"},
          {"kc_h9_adr", 20, KODBC_FAILURE, ""}, {"kc_h9_missing", 20, KODBC_FAILURE, ""}})
        EXPECT_EQ(GuardedInPlace("old", size, [&, table = table, result = result](char *out, int n) {
                      EXPECT_EQ(Kodbc_FindFirstAutoIncrementField(hdbc_, table, out, n), result) << table;
                  }),
                  expected);
    EXPECT_EQ(Kodbc_FindFirstAutoIncrementField(hdbc_, "kc_h9_auto", nullptr, 20), KODBC_FAILURE);
    EXPECT_TRUE(messages_.entries().empty());

    // The row-set count rewrites the column list and drops the sort order. An upper-case UNION
    // between blanks is answered without asking the data source; any other goes to it.
    Exec("CREATE TABLE kc_h9_xUNIONx (id INTEGER)");
    Exec("INSERT INTO kc_h9_xUNIONx VALUES (7)");
    for (const auto &[hdbc, sql, count, errors] : {  // errors and messages
             std::tuple{hdbc_, "SELECT name, betrag FROM kc_h9_adr WHERE id > 1 ORDER BY name DESC", 2L, 0u},
             {hdbc_, "select * from kc_h9_adr order by id", 3, 0}, {hdbc_, "SELECT id FROM kc_h9_empty", 0, 0},
             {hdbc_, "SELECT id FROM kc_h9_xUNIONx", 1, 0},
             {hdbc_, "SELECT a FROM kc_h9_nowhere UNION SELECT b FROM kc_h9_nothing", KODBC_ROWSET_COUNT_UNION, 0},
             {nullptr, "SELECT id FROM kc_h9_adr\nUNION\tSELECT id FROM kc_h9_empty", KODBC_ROWSET_COUNT_UNION, 0},
             {hdbc_, "SELECT id FROM kc_h9_xUNIONx union SELECT id, name FROM kc_h9_adr", 0, 1},
             {hdbc_, "  ", 0, 0}, {hdbc_, nullptr, 0, 0}, {hdbc_, "SELECT id FROM kc_h9_missing", 0, 1}}) {
        SCOPED_TRACE(sql ? sql : "(null)");
        messages_.clear();
        EXPECT_EQ(Kodbc_GetRowSetCount(hdbc, sql), count);
        EXPECT_EQ(OdbcErrors(), errors);
        EXPECT_EQ(messages_.entries().size(), errors);
    }
}

TEST_P(TableOps, SysTableReadsCreateTheTableValuesComeBackAndItemsAreDeleted) {
    // Blank names look at nothing, not even the table's existence.
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", " ", "x"), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, nullptr, "FORM", "Left", "x"), KODBC_SUCCESS);
    GuardedBuffer small(8);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, " ", "FORM", "Left", "a long default", small.data(), small.size()), 1);
    EXPECT_EQ(small.text(), "a long ");
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Left", "d", nullptr, 10), 0);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Left", "d", small.data(), 0), 0);
    EXPECT_TRUE(small.guards_intact());
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "Left"), 0);  // no table yet
    EXPECT_FALSE(SysTableExists());

    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Width", "640", small.data(), small.size()), 3);
    EXPECT_EQ(small.text(), "640");
    EXPECT_TRUE(SysTableExists());

    ASSERT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Caption", "Adressen\tund\tTelefon"), KODBC_SUCCESS);
    // The stored text ("Adressen\\tund…") is cut to the buffer before it is decoded.
    auto caption = [&](char *out, int n) { Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Caption", "", out, n); };
    EXPECT_EQ(Guarded(12, caption), "Adressen\tu");
    EXPECT_TRUE(messages_.entries().empty());
    // A second creation is an error the user sees.
    EXPECT_EQ(Kodbc_CreateSystemTable(hdbc_), KODBC_FAILURE);
    EXPECT_EQ(messages_.entries().size(), 1u);
    messages_.clear();

    // Values come back unchanged or cut to fit the statement.
    std::string longValue(3000, 'a');
    for (std::size_t i = 0; i < longValue.size(); i += 7) longValue[i] = '\t';
    const std::string values[] = {
        "it's \"quoted\" ''twice''",     "tab\there\nline\r\nbreak", "C:\\Programme\\Korvel\\x41 \\Q",
        "Grüße aus Köln, Straße, ÄÖÜ", "\x01\x1F control",         longValue,
    };
    int n = 0;
    for (const std::string &v : values) {
        std::string item = "Item" + std::to_string(n++);
        EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Query1", "VIEW", item.c_str(), v.c_str()), KODBC_SUCCESS);
        const std::string back = Read("Query1", "VIEW", item.c_str());
        // The long one is cut so that the statement stays closed, not split.
        EXPECT_EQ(back, v.substr(0, &v == &values[5] ? back.size() : std::string::npos)) << item;
    }
    const std::size_t cut = Read("Query1", "VIEW", "Item5").size();
    EXPECT_TRUE(cut > 700 && cut < 1000) << cut;
    // Writing again replaces rather than adds.
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Query1", "VIEW", "Item0", "neu"), KODBC_SUCCESS);
    EXPECT_EQ(Read("Query1", "VIEW", "Item0"), "neu");
    ASSERT_EQ(SysTableRows(), 7);

    // Deleted by an empty value, one item, or all items of an object and type (Caption's too).
    for (const char *item : {"Left", "Top", "Width", "Height"})
        Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", item, "1");
    Kodbc_WriteSysTableString(hdbc_, "Form1", "REPORT", "Left", "2");
    Kodbc_WriteSysTableString(hdbc_, "Form2", "FORM", "Left", "3");
    ASSERT_EQ(SysTableRows(), 7 + 6);

    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Height", " "), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "Top"), KODBC_SUCCESS);
    EXPECT_EQ(Read("Form1", "FORM", "Height") + Read("Form1", "FORM", "Top") + Read("Form1", "FORM", "Left"),
              "defaultdefault1");
    EXPECT_EQ(SysTableRows(), 7 + 4);  // the blank value is no row
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "NoSuchItem"), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", ""), KODBC_SUCCESS);
    EXPECT_EQ(Read("Form1", "REPORT", "Left") + Read("Form2", "FORM", "Left"), "23");
    // Blank object or type: nothing happens, and that counts as done.
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "", "FORM", nullptr), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form2", "\t", nullptr), KODBC_SUCCESS);
    EXPECT_EQ(SysTableRows(), 6 + 2);
    EXPECT_TRUE(messages_.entries().empty());
}

// PostgreSQL without a BLOB type: the creation fails, shown once; reads keep the default, writes do nothing.
TEST_P(TableOps, SysTableFailedCreationIsShownAndTheDefaultStays) {
    if (DbmsName() != "PostgreSQL") GTEST_SKIP() << "BLOB exists here";
    Exec("DROP DOMAIN blob");
    EXPECT_EQ(Guarded(30, [&](char *out, int n) {
                  EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Width", "640", out, n), KODBC_FAILURE);
              }),
              "640");
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_EQ(messages_.entries()[0].kind, KODBC_MESSAGE_ODBC_ERROR);
    EXPECT_NE(messages_.entries()[0].statement.find("ItemValue BLOB)"), std::string::npos);
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Width", "800"), KODBC_FAILURE);
    EXPECT_FALSE(SysTableExists());
}

} // namespace
} // namespace kodbc::test
