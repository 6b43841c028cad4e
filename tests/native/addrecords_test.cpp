// Add records: values, literals, conditions and what the wizards' pages enable without a data
// source; on every data source the preset mapping, the page checks, the statement builders and runs.
#include "test_support.h"

#include "transfer/export_wizard_state.h"
#include "transfer/import_wizard_state.h"
#include "wizards/add_records.h"
#include "wizards/add_records_run.h"
#include "wizards/record_statements.h"
#include "wizards/record_wizard_common.h"
#include "wizards/value_conversion.h"

#include <cstring>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

using namespace kodbc::wizards;

TEST(AddRecordsValues, TypeCompatibilityAndConversion) {
    struct Case { int source, destination; bool compatible; const char *value = nullptr, *expected = nullptr; };
    const Case cases[] = {
        {KODBC_TYPE_INTEGER, KODBC_TYPE_DATETIME, false}, {KODBC_TYPE_FLOAT, KODBC_TYPE_BINARY, false},
        {KODBC_TYPE_DATETIME, KODBC_TYPE_LONG_TEXT, false}, {KODBC_TYPE_DATETIME, KODBC_TYPE_FLOAT, false},
        {KODBC_TYPE_FLOAT, KODBC_TYPE_INTEGER, true}, {KODBC_TYPE_BINARY, KODBC_TYPE_INTEGER, true},
        {0, KODBC_TYPE_DATETIME, true},
        {KODBC_TYPE_FLOAT, KODBC_TYPE_VAR_TEXT, true, "3,5", "35"},  // the comma is dropped, not translated
        {KODBC_TYPE_FLOAT, KODBC_TYPE_FIXED_TEXT, true, "-1.5e3", "-1.53"},
        {KODBC_TYPE_INTEGER, KODBC_TYPE_LONG_TEXT, true, "+1.234 Stk", "+1234"},
        {KODBC_TYPE_DATETIME, KODBC_TYPE_VAR_TEXT, true, "2024-03-01 10:11:12", "01.03.2024"},
        {KODBC_TYPE_VAR_TEXT, KODBC_TYPE_DATETIME, true, "1.3.24", "2024-03-01 00:00:00"},
        {KODBC_TYPE_FIXED_TEXT, KODBC_TYPE_DATETIME, true, "kein Datum", "1900-01-01 00:00:00"},
        {KODBC_TYPE_DATETIME, KODBC_TYPE_DATETIME, true, "2024-03-01", "2024-03-01"},
        {KODBC_TYPE_VAR_TEXT, KODBC_TYPE_INTEGER, true, "12a", "12a"},
        {KODBC_TYPE_VAR_TEXT, KODBC_TYPE_VAR_TEXT, true, "O'Neil, 3,5", "O'Neil, 3,5"},
    };
    std::string out = "left over from the previous record";
    for (const Case &c : cases) {
        SCOPED_TRACE(std::to_string(c.source) + " -> " + std::to_string(c.destination));
        EXPECT_EQ(IsTypeCompatible(c.source, c.destination), c.compatible);
        if (!c.value) continue;
        ASSERT_TRUE(ConvertSourceValue(c.source, c.destination, c.value, out));
        EXPECT_EQ(out, c.expected) << c.value;
    }
}

TEST(AddRecordsValues, LiteralsAndMappingRows) {
    struct Case { int mode, type; const char *fixed, *value; bool null; const char *literal, *source, *sourceType; };
    const Case cases[] = {
        {kFillLeaveEmpty, KODBC_TYPE_VAR_TEXT, "x", "y", false, "NULL", "", ""},
        {kFillFixedValue, KODBC_TYPE_INTEGER, "O'Neil", "", true, "'O'Neil'", "'O'Neil'", "Fester Wert"},
        {kFillFixedValue, KODBC_TYPE_VAR_TEXT, "", "", true, "NULL", "''", "Fester Wert"},
        {kFillSourceField, KODBC_TYPE_VAR_TEXT, "", "O'Neil", false, "'O''Neil'", "name", "VarText (30)"},
        {kFillSourceField, KODBC_TYPE_FLOAT, "", "3.5", false, "3.5", "name", "VarText (30)"},
        {kFillSourceField, KODBC_TYPE_INTEGER, "", "", false, "NULL", "name", "VarText (30)"},
        {kFillSourceField, KODBC_TYPE_VAR_TEXT, "", "stale", true, "NULL", "name", "VarText (30)"},
    };
    for (const Case &c : cases) {
        AddRecField field{.destinationName = "ziel", .destinationType = c.type, .mode = c.mode, .sourceField = "name",
                          .sourceType = KODBC_TYPE_VAR_TEXT, .sourceLength = 30, .value = c.value,
                          .valueIsNull = c.null, .fixedValue = c.fixed};
        char text[100];
        korvel::BoundedText out(text, sizeof text);
        AppendValueLiteral(out, field);
        EXPECT_STREQ(text, c.literal) << c.mode << " " << c.value;
        MappingRowTexts row = MappingRowText(field);
        EXPECT_EQ(row.source, c.source);
        EXPECT_EQ(row.sourceType, c.sourceType);
        field.readOnly = true;  // a read-only field shows no source whatever its mode
        row = MappingRowText(field);
        EXPECT_EQ(row.source + row.sourceType, "");
        EXPECT_EQ(row.destination, "ziel");
    }
    EXPECT_EQ(TypeText(KODBC_TYPE_INTEGER, 0), "Ganzzahl");
}

TEST(AddRecordsValues, IdentifyingConditionAndCuts) {
    char condition[kIdentifyingConditionSize];
    // A type unknown is quoted; the condition is cut to its 300 characters.
    for (const auto &[value, type, expected] :
         {std::tuple{std::string("42"), SQL_DECIMAL, std::string("nr=42")}, {"O'N", SQL_VARCHAR, "nr='O''N'"},
          {"4", 0, "nr='4'"}, {std::string(400, 'x'), SQL_CHAR, "nr='" + std::string(295, 'x') + "'"}}) {
        BuildIdentifyingCondition("nr", value, type, condition, sizeof condition);
        EXPECT_EQ(condition, expected);
    }

    // A doubled quote goes in whole or not at all.
    char literal[6];
    korvel::BoundedText out(literal, sizeof literal);
    EXPECT_FALSE(AppendStringLiteral(out, "ab'c"));
    EXPECT_STREQ(literal, "'ab'");
}

// One active statement per connection: the first INSERT fails while the source query is open there.
TEST(AddRecordsValues, TheDestinationsConnectionReadsTheSourceOnlyWhereThatServesBoth) {
    const struct { ConnectionSharing sharing; bool shares; } cases[] = {
        {{false, 0, true}, false}, {{true, 1, false}, false}, {{true, 0, false}, true},
        {{true, 2, false}, true},  {{true, 1, true}, true},
    };
    for (const auto &c : cases)
        EXPECT_EQ(SharesSourceConnection(c.sharing), c.shares)
            << c.sharing.sameLogin << " " << c.sharing.activeStatements << " " << c.sharing.fileDatabase;
}

TEST(WizardPages, ImportRowsExportTypesAndAddRecordsChoices) {
    using Texts = std::vector<std::string>;
    transfer::ImportField field{.sourceName = "Nr", .targetName = "Nummer"};
    EXPECT_EQ(ImportFieldRow(field), (Texts{"Nr", "Nummer", "VarText (255)", "VarText (255)", "Nein", "Ja", "Nein"}));
    field = {.sourceName = "Nr", .targetName = "Nummer", .targetType = KODBC_TYPE_INTEGER, .targetLength = 0,
             .autoIncrement = true, .imported = false, .fileContent = true};
    EXPECT_EQ(ImportFieldRow(field), (Texts{"Nr", "Nummer", "VarText (255)", "Ganzzahl", "Ja", "Nein", "Ja"}));
    // 12 is ODBC's VARCHAR, which no library type has: no type is shown.
    for (const auto &[sqlType, shown] : {std::pair{KODBC_TYPE_DATETIME, "Datum/Zeit"}, {12, ""}})
        EXPECT_EQ(transfer::ExportFieldTypeText({"f", "f", sqlType, true}), shown) << sqlType;

    EXPECT_TRUE(IdFieldListsEnabled(kRecordModeReplace));
    EXPECT_FALSE(IdFieldListsEnabled(kRecordModeAdd));
    AddRecField fill;
    EXPECT_TRUE(IsFillChoiceEnabled(fill, kFillFixedValue, kFillFixedValue));
    EXPECT_FALSE(IsFillChoiceEnabled(fill, kFillFixedValue, kFillSourceField));
    fill.readOnly = true;
    EXPECT_FALSE(IsFillChoiceEnabled(fill, kFillFixedValue, kFillFixedValue));
}

class AddRecords : public DataSourceTest {
protected:
    // A backslash as this server's literals take it: some read one as an escape.
    std::string Backslash() const { return DbmsName() == "MariaDB" ? "\\\\" : "\\"; }

    void SetUp() override {
        DataSourceTest::SetUp();
        OwnTables({"ar_src", "ar_src2", "ar_dst"});
        Exec("CREATE TABLE ar_src (id INTEGER, name VARCHAR(30), betrag FLOAT, tag DATE)");
        Exec("INSERT INTO ar_src VALUES (1, 'O''Neil', 3.5, '2024-03-01'), (2, 'Mei" + Backslash() +
             "er', -2, NULL), (3, 'Schulze', NULL, '1999-12-31')");
        Exec("CREATE TABLE ar_src2 (name VARCHAR(30))");
        Exec("CREATE TABLE ar_dst (id INTEGER, name VARCHAR(30), betrag VARCHAR(20), tag VARCHAR(12),"
             " note VARCHAR(30), anzahl INTEGER)");
        ASSERT_NO_FATAL_FAILURE(Open(context_, "ar_dst", "ar_src"));
        messages_.clear();
    }
    void TearDown() override {
        if (context_) context_->sourceDbc = nullptr;
        context_.reset();
        DataSourceTest::TearDown();
    }
    // The test's own connection is lent as the source's, taken back before the context goes.
    void Open(std::unique_ptr<AddRecordsContext> &context, const char *destination, const char *source) {
        if (context) context->sourceDbc = nullptr;
        TableRecord table{};
        std::strcpy(table.Object.DbObjectName, destination);
        context = CreateAddRecordsContext(hdbc_, &table);
        ASSERT_TRUE(context);
        context->sourceDbc = hdbc_;
        std::strcpy(context->source.DataSourceName, GetParam().c_str());
        ASSERT_FALSE(LeaveSourceTablePage(*context, source).stays());
    }
    AddRecField &Field(const char *name) {
        for (auto &field : context_->fields)
            if (field && field->destinationName == name) return *field;
        ADD_FAILURE() << "no field " << name;
        return *context_->fields.front();
    }
    std::vector<int> Modes() {
        std::vector<int> modes;
        for (auto &field : context_->fields) modes.push_back(field ? field->mode : 0);
        return modes;
    }
    std::unique_ptr<AddRecordsContext> context_;
};
KODBC_DATA_SOURCE_TEST_SUITE(AddRecords);

TEST_P(AddRecords, MappingPresetKeptForTheSameSourceRebuiltForAnother) {
    EXPECT_EQ(Modes(), (std::vector<int>{kFillSourceField, kFillSourceField, kFillSourceField, kFillSourceField,
                                         kFillLeaveEmpty, kFillLeaveEmpty}));
    EXPECT_EQ(Field("betrag").sourceType, KODBC_TYPE_FLOAT);
    EXPECT_EQ(Field("tag").sourceType, KODBC_TYPE_DATETIME);
    EXPECT_EQ(MappingRowText(Field("name")).destinationType, "VarText (30)");

    ASSERT_TRUE(ApplyFieldChoice(Field("note"), kFillFixedValue, "fest", nullptr));
    LeaveRowsEmpty(context_->fields, {0});
    EXPECT_FALSE(LeaveSourceTablePage(*context_, "AR_SRC").stays());  // the same source, other case
    EXPECT_EQ(Field("note").mode, kFillFixedValue);
    EXPECT_EQ(Field("id").mode, kFillLeaveEmpty);

    EXPECT_FALSE(LeaveSourceTablePage(*context_, "ar_src2").stays());
    EXPECT_EQ(Modes(), (std::vector<int>{kFillLeaveEmpty, kFillSourceField, kFillLeaveEmpty, kFillLeaveEmpty,
                                         kFillLeaveEmpty, kFillLeaveEmpty}));
    EXPECT_STREQ(CreateAddRecordsContext(hdbc_, nullptr)->sourceTable, "ar_src2");  // remembered
}

TEST_P(AddRecords, PageChecks) {
    // The last field is never checked: a date into a number passes there...
    ASSERT_TRUE(ApplyFieldChoice(Field("anzahl"), kFillSourceField, nullptr, "tag"));
    PageDecision decision = LeaveMappingPage(*context_);
    EXPECT_FALSE(decision.stays());
    EXPECT_TRUE(messages_.entries().empty());
    // ...and fails on any other.
    ASSERT_TRUE(ApplyFieldChoice(Field("name"), kFillSourceField, nullptr, "id"));   // a number into text is fine
    ASSERT_TRUE(ApplyFieldChoice(Field("betrag"), kFillSourceField, nullptr, "tag"));
    ASSERT_TRUE(ApplyFieldChoice(Field("id"), kFillSourceField, nullptr, "tag"));
    LeaveRowsEmpty(context_->fields, {0});  // the stale source type is still checked
    decision = LeaveMappingPage(*context_);
    EXPECT_EQ(decision.messageId, 1630);
    EXPECT_EQ(decision.focusRow, 0);
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("'tag'"), std::string::npos) << messages_.entries()[0].text;

    // Fixed values alone map nothing from the source.
    LeaveRowsEmpty(context_->fields, {0, 1, 2, 3, 4, 5});
    ASSERT_TRUE(ApplyFieldChoice(Field("note"), kFillFixedValue, "x", nullptr));
    EXPECT_EQ(LeaveMappingPage(*context_).messageId, 1633);

    // Replace mode with an empty identifying field complains but goes on.
    messages_.clear();
    decision = LeaveIdFieldsPage(*context_, kRecordModeReplace, "id", "");
    EXPECT_FALSE(decision.stays());
    EXPECT_EQ(decision.messageId, 1632);
    EXPECT_EQ(messages_.entries().size(), 1u);
    EXPECT_EQ(LeaveIdFieldsPage(*context_, kRecordModeAdd, "", "").messageId, 0);
    EXPECT_EQ(SummaryText(*context_), "Es werden 3 Datensätze aus der Quelltabelle importiert.");
}

// The source page opens a connection of its own and remembers the choices; the rows are read on
// the destination's connection where that serves both (a file database must not lock itself out).
TEST_P(AddRecords, SourceOnItsOwnConnectionAndTheChoicesRemembered) {
    DataSourceRecord entered{};
    EXPECT_EQ(LeaveSourceDataSourcePage(*context_, entered).messageId, 1608);
    std::strcpy(entered.DataSourceName, GetParam().c_str());
    context_->sourceDbc = nullptr;  // from here on the context connects by itself
    ASSERT_FALSE(LeaveSourceDataSourcePage(*context_, entered).stays());
    ASSERT_NE(context_->sourceDbc, nullptr);
    ASSERT_NE(context_->sourceDbc, hdbc_);
    const ConnectionSharing read = ReadConnectionSharing(context_->sourceDbc, hdbc_);
    EXPECT_TRUE(read.sameLogin);
    EXPECT_EQ(read.fileDatabase, DbmsName() == "SQLite");
    EXPECT_EQ(SourceQueryConnection(context_->sourceDbc, hdbc_),
              SharesSourceConnection(read) ? hdbc_ : context_->sourceDbc);
    RecordingProgress progress;
    AddRecordsRunCounts counts;
    EXPECT_EQ(RunAddRecords(*context_, progress, &counts), 1);
    EXPECT_EQ(counts.written, 3);
    EXPECT_EQ(OdbcErrors(), 0u);

    LeaveIdFieldsPage(*context_, kRecordModeAdd, "nr", "id2");
    auto reloaded = CreateAddRecordsContext(hdbc_, nullptr);
    EXPECT_STREQ(reloaded->source.DataSourceName, GetParam().c_str());
    EXPECT_EQ(std::string(reloaded->sourceIdField) + "/" + reloaded->destIdField, "nr/id2");
    ActivateSourceDataSourcePage(*context_);  // drops the source connection
    EXPECT_EQ(context_->sourceDbc, nullptr);
}

TEST_P(AddRecords, StatementBuilders) {
    AddRecFieldList fields;
    auto add = [&](const char *name, int type, int mode, const char *value, bool readOnly = false) {
        fields.push_back(std::make_unique<AddRecField>(AddRecField{
            .destinationName = name, .destinationType = type, .readOnly = readOnly, .mode = mode, .sourceField = "s",
            .value = value, .valueIsNull = false, .fixedValue = value}));
        fields.push_back(nullptr);  // null slots are skipped
    };
    add("id", KODBC_TYPE_INTEGER, kFillSourceField, "7");
    add("mein feld", KODBC_TYPE_VAR_TEXT, kFillFixedValue, "a'b");
    add("leer", KODBC_TYPE_VAR_TEXT, kFillLeaveEmpty, "x");
    add("auto", KODBC_TYPE_INTEGER, kFillSourceField, "1", true);
    add("x", KODBC_TYPE_VAR_TEXT, kFillSourceField, "");
    RecordStatementParts parts;
    ASSERT_TRUE(PrepareRecordStatementParts(hdbc_, "ar_dst", fields, parts));
    const std::string q = IdentifierQuote(), mein = q + "mein feld" + q;
    char sql[kRecordStatementSize];
    EXPECT_TRUE(BuildInsertStatement(parts, fields, sql, sizeof sql));
    EXPECT_EQ(std::string(sql), "INSERT INTO ar_dst (id," + mein + ",x) VALUES (7,'a'b',NULL)");
    BuildUpdateStatement(parts, fields, "id=7", sql, sizeof sql);
    EXPECT_EQ(std::string(sql), "UPDATE ar_dst SET id=7," + mein + "='a'b',x=NULL WHERE id=7");
    BuildDeleteStatement(parts, "", sql, sizeof sql);
    EXPECT_STREQ(sql, "DELETE FROM ar_dst");

    fields[8]->value.assign(40000, 'v');
    EXPECT_FALSE(BuildInsertStatement(parts, fields, sql, sizeof sql));
    EXPECT_EQ(std::strlen(sql), static_cast<std::size_t>(kRecordStatementSize - 1));
}

// Whole runs adding or replacing the matching records; the early ends keep what was written.
TEST_P(AddRecords, RunsAddReplaceAndEndEarly) {
    const std::vector<std::string> all = {"O'Neil", "Mei\\er", "Schulze"};
    const struct {
        const char *what, *source;
        int mode;
        long cancelAt;
        const char *fixed;
        long read, written;
        bool cancelled, stopped;
        std::vector<std::string> names;  // in the destination by id
    } cases[] = {
        {"add", "ar_src", kRecordModeAdd, 0, "fest", 3, 3, false, false, all},
        {"replace", "ar_src", kRecordModeReplace, 0, "", 3, 3, false, false, all},
        {"cancelled after the second record", "ar_src", kRecordModeAdd, 2, "", 2, 2, true, false, {"O'Neil", "Mei\\er"}},
        {"a typed quote breaks the statement", "ar_src", kRecordModeAdd, 0, "a'b", 1, 0, false, true, {}},
        {"an empty source runs no statement", "ar_src2", kRecordModeAdd, 0, "", 0, 0, false, false, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        Exec("DELETE FROM ar_dst");
        if (c.mode == kRecordModeReplace) Exec("INSERT INTO ar_dst (id, name) VALUES (2, 'alt')");
        ASSERT_FALSE(LeaveSourceTablePage(*context_, c.source).stays());
        ApplyFieldChoice(Field("note"), kFillFixedValue, c.fixed, nullptr);
        LeaveIdFieldsPage(*context_, c.mode, "id", "id");
        messages_.clear();
        RecordingProgress progress(c.cancelAt);
        AddRecordsRunCounts counts;
        EXPECT_EQ(RunAddRecords(*context_, progress, &counts), 1);
        EXPECT_EQ(counts.read, c.read);
        EXPECT_EQ(counts.written, c.written);
        EXPECT_EQ(counts.cancelled, c.cancelled);
        EXPECT_EQ(counts.stopped, c.stopped);
        EXPECT_EQ(OdbcErrors(), c.stopped ? 1u : 0u);
        EXPECT_EQ(Column("SELECT name FROM ar_dst ORDER BY id"), c.names);
        EXPECT_TRUE(progress.finished_);
        if (c.fixed != std::string("fest")) continue;
        EXPECT_EQ(progress.maximum_, 3);
        EXPECT_EQ(progress.steps_, (std::vector<long>{1, 2, 3}));
        EXPECT_EQ(Column("SELECT tag FROM ar_dst ORDER BY id"), (std::vector<std::string>{"01.03.2024", "", "31.12.1999"}));
        EXPECT_EQ(Column("SELECT betrag FROM ar_dst WHERE id = 1"), std::vector<std::string>{"3.5"});
        EXPECT_EQ(Column("SELECT note FROM ar_dst WHERE id = 3"), std::vector<std::string>{"fest"});
    }
}

// Columns named with a point are one name each; a text of 1000 multi-byte characters is copied
// whole; bytes go as bytes into a binary column, as hex digits into a text column.
TEST_P(AddRecords, PointedNamesLongTextsAndBytes) {
    OwnTables({"ar_pt_src", "ar_pt_dst"});
    const bool postgres = DbmsName() == "PostgreSQL";
    const std::string q = IdentifierQuote(), art = q + "Art.Nr" + q, preis = q + "Preis.Netto" + q;
    const std::string bytes = "00090D0A275C00FF", columns = " DOUBLE PRECISION, t VARCHAR(1000), b ";
    std::string euros;
    for (int i = 0; i < 1000; ++i) euros += "\xE2\x82\xAC";
    Exec("CREATE TABLE ar_pt_src (" + art + " VARCHAR(20), " + preis + columns + (postgres ? "BYTEA)" : "BLOB)"));
    Exec("CREATE TABLE ar_pt_dst (" + art + " VARCHAR(20), " + preis + columns + (postgres ? "BYTEA" : "BLOB") +
         ", h VARCHAR(20))");
    Exec("INSERT INTO ar_pt_src VALUES ('A.1', 12.5, '" + euros + "', " +
         (postgres ? "decode('" + bytes + "', 'hex')" : "X'" + bytes + "'") + ")");
    Exec("INSERT INTO ar_pt_src VALUES ('B.2', 0.25, 'kurz', NULL)");
    Exec("INSERT INTO ar_pt_dst VALUES ('B.2', 99, 'alt', NULL, NULL)");
    ASSERT_NO_FATAL_FAILURE(Open(context_, "ar_pt_dst", "ar_pt_src"));
    EXPECT_EQ(Modes(), (std::vector<int>{kFillSourceField, kFillSourceField, kFillSourceField, kFillSourceField,
                                         kFillLeaveEmpty}));
    ASSERT_TRUE(ApplyFieldChoice(Field("h"), kFillSourceField, nullptr, "b"));
    LeaveIdFieldsPage(*context_, kRecordModeReplace, "Art.Nr", "Art.Nr");
    RecordingProgress progress;
    AddRecordsRunCounts counts;
    EXPECT_EQ(RunAddRecords(*context_, progress, &counts), 1);
    EXPECT_EQ(counts.written, 2);
    EXPECT_EQ(Column("SELECT " + art + " FROM ar_pt_dst ORDER BY " + art), (std::vector<std::string>{"A.1", "B.2"}));
    EXPECT_EQ(Column("SELECT t FROM ar_pt_dst ORDER BY " + art), (std::vector<std::string>{euros, "kurz"}));
    EXPECT_EQ(Column("SELECT " + art + " FROM ar_pt_dst WHERE " + preis + " = 0.25"), std::vector<std::string>{"B.2"});
    EXPECT_EQ(Column(std::string(postgres ? "SELECT upper(encode(b, 'hex'))" : "SELECT hex(b)") +
                     " FROM ar_pt_dst WHERE b IS NOT NULL"),
              std::vector<std::string>{bytes});
    EXPECT_EQ(Column("SELECT h FROM ar_pt_dst WHERE h IS NOT NULL"), std::vector<std::string>{bytes});
    EXPECT_EQ(OdbcErrors(), 0u);
}

// The command-line tool's way: one transaction, many records to an INSERT. A refused record is
// named by its number and leaves the destination as it was; a cancel leaves nothing.
TEST_P(AddRecords, BatchIsAllOrNothingAndNamesTheRefusedRecord) {
    const long kRecords = 1201;  // three statements, the last not full
    OwnTables({"ar_big_src", "ar_big_dst"});
    Exec("CREATE TABLE ar_big_src (id INTEGER, name VARCHAR(40))");
    Exec("CREATE TABLE ar_big_dst (id INTEGER, name VARCHAR(40) UNIQUE)");
    std::string fill = "INSERT INTO ar_big_src VALUES ";
    for (long id = 1; id <= kRecords; ++id)
        fill += (id > 1 ? ", (" : "(") + std::to_string(id) + ", " +
                (id % 100 ? "'O''Brien " + Backslash() + " " + std::to_string(id) + "'" : "NULL") + ")";
    Exec(fill);
    AutoCommitOff autoCommitOff(hdbc_);
    const struct {
        const char *name;
        bool clash;  // the destination holds record 701's name already
        long cancelAt, written, left;
        const char *said, *then;  // in the messages, in this order
    } cases[] = {
        {"refused", true, 0, 0, 1, "Der Datensatz 701 der Quelltabelle konnte nicht hinzugef", "zur\xC3\xBC" "ckgenommen"},
        {"cancelled", false, 900, 0, 0, "abgebrochen und zur\xC3\xBC" "ckgenommen", ""},
        {"through", false, 0, kRecords, kRecords, "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Exec("DELETE FROM ar_big_dst");
        if (c.clash) Exec("INSERT INTO ar_big_dst SELECT 0, name FROM ar_big_src WHERE id = 701");
        SQLEndTran(SQL_HANDLE_DBC, hdbc_, SQL_COMMIT);
        ASSERT_NO_FATAL_FAILURE(Open(context_, "ar_big_dst", "ar_big_src"));
        context_->batch = true;
        messages_.clear();
        RecordingProgress progress(c.cancelAt);
        AddRecordsRunCounts counts;
        EXPECT_EQ(RunAddRecords(*context_, progress, &counts), 1);
        EXPECT_EQ(counts.written, c.written);
        SQLEndTran(SQL_HANDLE_DBC, hdbc_, SQL_ROLLBACK);  // what the run did not commit is gone now
        std::string said;
        for (const auto &entry : messages_.entries()) said += entry.text + "\n";
        const std::size_t at = said.find(c.said);
        EXPECT_NE(at, std::string::npos) << said;
        EXPECT_NE(said.find(c.then, at == std::string::npos ? 0 : at), std::string::npos) << said;
        EXPECT_EQ(Column("SELECT COUNT(*) FROM ar_big_dst"), std::vector<std::string>{std::to_string(c.left)});
        if (c.written == 0) continue;
        EXPECT_EQ(Column("SELECT COUNT(*) FROM ar_big_dst d, ar_big_src s WHERE d.id = s.id AND d.name = s.name"),
                  std::vector<std::string>{std::to_string(kRecords - kRecords / 100)});
        EXPECT_EQ(Column("SELECT COUNT(*) FROM ar_big_dst WHERE name IS NULL"),
                  std::vector<std::string>{std::to_string(kRecords / 100)});
    }
}

} // namespace
} // namespace kodbc::test
