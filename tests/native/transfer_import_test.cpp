// The import: splitting and reading lines, unique names, the field page's
// checks, value conversions, INSERTs and the wizard's decisions without a
// database; then, per data source, the file, table and selection-file
// sources, text and CSV runs, failures, and the all-or-nothing batch.
#include "test_support.h"

#include "internal/library.h"
#include "transfer/csv_format.h"
#include "transfer/import_run.h"
#include "transfer/import_values.h"
#include "transfer/import_wizard_state.h"

#include <kodbc_internal/message_ids.h>
#include <korvel/korvel32.h>

#include <cstdio>
#include <fstream>
#include <optional>

namespace kodbc::test {
namespace {

using namespace transfer;
using Values = std::vector<std::string>;

Values Split(std::string_view line, char delimiter, char left = 0, char right = 0) {
    Values values;
    values.resize(SplitLine(line, delimiter, left, right, values));
    return values;
}

TEST(ImportText, SplitsLines) {
    const struct {
        std::string line;
        char delimiter, left, right;
        Values values;
    } cases[] = {
        {"a\tb\t", '\t', 0, 0, {"a", "b", ""}},
        {"", ';', 0, 0, {}},
        {" a ; b ", ';', 0, 0, {" a ", " b "}},
        {"[a;b];c]", ';', '[', ']', {"a;b", "c]"}},
        {"\"Sag \"\"hallo\"\"\";x", ';', '"', '"', {"Sag hallo", "x"}},
        {std::string(120, 'x') + ";y", ';', 0, 0, {std::string(99, 'x'), "y"}},
    };
    for (const auto &c : cases) EXPECT_EQ(Split(c.line, c.delimiter, c.left, c.right), c.values) << c.line;
}

Values TargetNames(const ImportFieldList &fields) {
    Values names;
    for (const ImportField &field : fields) names.push_back(field.targetName);
    return names;
}

TEST(ImportText, NamesFieldsUniquely) {
    ImportTextFormat semicolon;
    semicolon.delimiter = DelimiterChoice::Other;
    semicolon.otherDelimiter = ";x";
    ImportTextFormat numbered = semicolon;
    numbered.namesInFirstLine = false;
    const struct {
        const char *line;
        const ImportTextFormat &format;
        std::vector<std::string> names;
    } cases[] = {
        {"a;b;a", semicolon, {"a", "b", "a_1"}},
        {"x.y;x.y", semicolon, {"x_y", "x.y_1"}},
        {"a_1;a;a", semicolon, {"a_1", "a", "a_2"}},
        {"1;2;3", numbered, {"F0", "F1", "F2"}},
    };
    ImportFieldList fields;
    for (const auto &c : cases) {
        FieldsFromNameLine(c.line, c.format, fields);
        EXPECT_EQ(TargetNames(fields), c.names) << c.line;
    }
    ImportFieldList typed;
    for (int type : {KODBC_TYPE_LONG_TEXT, KODBC_TYPE_BINARY, KODBC_TYPE_DATETIME}) AddImportField(typed, "f", type, 20);
    EXPECT_EQ(typed[0].targetType, KODBC_TYPE_VAR_TEXT);
    EXPECT_EQ(typed[0].targetLength, 255);
    EXPECT_FALSE(typed[1].imported);
    EXPECT_EQ(typed[1].sourceType, KODBC_TYPE_BINARY);
    EXPECT_TRUE(typed[2].imported);
    EXPECT_EQ(typed[2].targetType, KODBC_TYPE_DATETIME);
    EXPECT_EQ(TargetNames(typed), (std::vector<std::string>{"f", "f_1", "f_2"})) << "added one at a time";
}

TEST(ImportText, FormatDescriptionEndsAtAMissingBracket) {
    ImportTextFormat format;
    EXPECT_EQ(FormatDescription("a.txt", format), "a.txt\\0\\0\\\t\\,\\");
    ImportTextFormat right = format;
    right.rightBracket = ']';
    EXPECT_EQ(FormatDescription("a.txt", right), FormatDescription("a.txt", format));
    right.leftBracket = '[';
    EXPECT_EQ(FormatDescription("a.txt", right), "a.txt\\0\\0\\\t\\,\\[\\]");
}

ImportField Field(const char *name, int source = KODBC_TYPE_VAR_TEXT, int target = KODBC_TYPE_VAR_TEXT,
                  bool autoIncrement = false, bool imported = true) {
    ImportField field;
    field.sourceName = field.targetName = name;
    field.sourceType = source;
    field.targetType = target;
    field.autoIncrement = autoIncrement;
    field.imported = imported;
    return field;
}

TEST(ImportFields, ChecksInOrderAndNeverTheLastFieldButForDuplicates) {
    const int date = KODBC_TYPE_DATETIME, integer = KODBC_TYPE_INTEGER;
    const struct {
        const char *what;
        ImportFieldList fields;
        int message;
        std::size_t field;
    } cases[] = {
        {"bracket", {Field("a"), Field("b(2)"), Field("c")}, msg::IMPORT_NAME_INVALID_CHARS, 1},
        {"point in the last field", {Field("a"), Field("b.c")}, 0, 0},
        {"characters before duplicates", {Field("a"), Field("a'"), Field("a")}, msg::IMPORT_NAME_INVALID_CHARS, 1},
        {"duplicate in the last field", {Field("a"), Field("b"), Field("a")}, msg::IMPORT_NAME_TWICE, 2},
        {"not imported is not checked", {Field("a", 10, 10, false, false), Field("a")}, 0, 0},
        {"second auto-increment", {Field("a", 2, 2, true), Field("b", 2, 2, true), Field("c")}, msg::IMPORT_AUTOINC_TWICE, 1},
        {"second auto-increment last", {Field("a"), Field("b", 2, 2, true), Field("c", 2, 2, true)}, 0, 0},
        {"date into number", {Field("d", date, integer), Field("x")}, msg::TYPE_CONVERSION_SENSELESS, 0},
        {"number into date", {Field("n", integer, date), Field("x")}, msg::TYPE_CONVERSION_SENSELESS, 0},
        {"date into number, last", {Field("x"), Field("d", date, integer)}, 0, 0},
        {"text into anything", {Field("t", KODBC_TYPE_VAR_TEXT, date), Field("x")}, 0, 0},
        {"empty name, even last", {Field("a"), Field("b(2)"), Field("")}, msg::IMPORT_NAME_EMPTY, 2},
        {"two empty names", {Field(""), Field("")}, msg::IMPORT_NAME_EMPTY, 0},
        {"empty name not imported", {Field("", 10, 10, false, false), Field("a")}, 0, 0},
        {"nothing imported", {Field("a", 10, 10, false, false), Field("b", 10, 10, false, false)},
         msg::IMPORT_NOTHING_IMPORTED, 0},
    };
    for (const auto &c : cases) {
        const ImportFieldCheck check = CheckImportFields(c.fields);
        EXPECT_EQ(check.message, c.message) << c.what;
        if (c.message) {
            EXPECT_EQ(check.field, c.field) << c.what;
        }
    }
}

// Numbers keep only digits, signs, marks and an exponent (noted as changed)
// or are refused, never written bare.
TEST(ImportValues, ConvertByTargetType) {
    const int text = KODBC_TYPE_VAR_TEXT, number = KODBC_TYPE_FLOAT, date = KODBC_TYPE_DATETIME;
    const ValueResult taken = ValueResult::Taken, refused = ValueResult::NotANumber;
    const std::optional<std::string> none;
    const struct {
        int type;
        const char *text;
        char mark;
        ValueResult result;
        std::optional<std::string> value;
        bool changed;
    } cases[] = {
        {text, " O'Brien, 12 ", ',', taken, " O'Brien, 12 ", false},
        {text, "", ',', taken, none, false},
        {KODBC_TYPE_INTEGER, "1.234.567", ',', taken, "1234567", true},
        {number, "-1.234,50 EUR", ',', taken, "-1234.50", true},
        {number, "1,234.5", '.', taken, "1234.5", true},
        {number, "n/a", ',', taken, "", true},
        {number, "1e20", '.', taken, "1e20", false},
        {number, "1,0e+20", ',', taken, "1.0e+20", false},
        {number, "-2.5e-7", '.', taken, "-2.5e-7", false},
        {number, "1E-05", ',', taken, "1e-05", false},
        {number, " 42 ", ',', taken, "42", false},
        {number, "1.234,5 \xE2\x82\xAC", ',', taken, "1234.5", true},
        {number, "4.10", ',', taken, "410", true},
        {number, "-1.234,50e3", ',', taken, "-1234.50e3", true},
        {number, "e5", ',', taken, "5", true},
        {number, "12-05-2024", ',', refused, none, false},
        {number, "1.0+20", '.', refused, none, false},
        {number, "1,5,5", ',', refused, none, false},
        {number, "-", ',', refused, none, false},
        {date, "15.03.2024", ',', taken, "2024-03-15 00:00:00", false},
        {date, "1.2.24 13:45", ',', taken, "2024-02-01 13:45:00", false},
        {date, "kein Datum", ',', taken, none, false},
        {KODBC_TYPE_BINARY, "x", ',', taken, none, false},
    };
    for (const auto &c : cases) {
        ImportField field = Field("f", KODBC_TYPE_VAR_TEXT, c.type);
        bool changed = false;
        EXPECT_EQ(SetImportValue(field, c.text, c.mark, "", &changed), c.result) << c.text;
        EXPECT_EQ(field.value, c.value) << c.text;
        EXPECT_EQ(changed, c.changed) << c.text;
    }
}

TEST(ImportValues, FileContentFromTheSourceFolder) {
    const std::string folder = ::testing::TempDir();
    std::ofstream(folder + "kodbc_import_content.txt", std::ios::binary) << std::string("Zeile 1\r\nZeile 2\0Rest", 22);
    ImportField field = Field("f");
    field.fileContent = true;
    EXPECT_EQ(SetImportValue(field, "kodbc_import_content.txt", ',', folder), ValueResult::Taken);
    EXPECT_EQ(field.value, "Zeile 1\r\nZeile 2");
    std::remove((folder + "kodbc_import_content.txt").c_str());

    MessageRecorder messages;
    for (bool silent : {true, false}) {
        field.noFileMessage = silent;
        EXPECT_EQ(SetImportValue(field, "kodbc_import_content.txt", ',', folder), ValueResult::Taken);
        EXPECT_FALSE(field.value);
    }
    ASSERT_EQ(messages.entries().size(), 1u);
    EXPECT_NE(messages.entries()[0].text.find("kodbc_import_content.txt"), std::string::npos);
}

// Quotes (and backslashes where the server reads escapes) doubled; a literal
// that does not fit is cut, a doubled character whole or not at all, the
// statement still closes; one without room for its values says so.
TEST(ImportStatements, InsertValuesAndCutLiterals) {
    ImportInsertParts parts;
    parts.head = "INSERT INTO t (";
    parts.names = {"a", "n", "", "d", "x"};
    ImportFieldList fields = {Field("a"), Field("n", 10, KODBC_TYPE_FLOAT), Field("c", 10, 10, true),
                              Field("d", 10, KODBC_TYPE_DATETIME), Field("x", 10, KODBC_TYPE_VAR_TEXT, false, false)};
    fields[2].value = "7";
    fields[4].value = "8";
    const std::string head = "INSERT INTO t (a,n,d) VALUES ";
    ASSERT_EQ(ImportInsertHead(parts, fields), head);
    const std::optional<std::string> null;
    const std::string day = "2024-03-15 00:00:00", x56(56, 'x'), tail = "',-12.5,'2024-15-03 00:00:00')";
    const int all = kImportStatementSize;
    const struct {
        std::optional<std::string> text, number, date;
        bool server;  // backslash escapes and swapped date parts
        int size;
        bool whole;
        std::string values;
    } rows[] = {
        {"It's \\ x", "-12.5", day, false, all, true, "('It''s \\ x',-12.5,'2024-03-15 00:00:00')"},
        {"It's \\ x", "-12.5", day, true, all, true, "('It''s \\\\ x" + tail},
        {null, null, null, false, all, true, "(NULL,NULL,NULL)"},
        {null, null, null, false, 40, false, "(NULL,NULL"},
        {"", "1e+20", "", false, all, true, "('',1e+20,NULL)"},
        {std::string(200, 'x'), "-12.5", day, true, 120, false, "('" + x56 + "xx" + tail},
        {x56 + "x\\", "-12.5", day, true, 120, false, "('" + x56 + "x" + tail},
        {x56 + "x'", "-12.5", day, false, 120, false, "('" + x56 + "x',-12.5,'2024-03-15 00:00:00')"},
        {std::string(40000, '\''), "0", null, false, all, false, "('" + std::string(29958, '\'') + "',0,NULL)"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.values.substr(0, 40));
        parts.backslashEscapes = parts.swapDateParts = row.server;
        fields[0].value = row.text;
        fields[1].value = row.number;
        fields[3].value = row.date;
        std::vector<char> whole(static_cast<std::size_t>(row.size)), values(whole.size());
        EXPECT_EQ(BuildImportInsert(parts, fields, whole.data(), row.size), row.whole);
        EXPECT_EQ(whole.data(), head + row.values);
        EXPECT_EQ(BuildImportValues(parts, fields, values.data(), row.size - static_cast<int>(head.size())), row.whole);
        EXPECT_EQ(values.data(), row.values);
    }
}

std::FILE *Open(const std::string &bytes) { return fmemopen(const_cast<char *>(bytes.data()), bytes.size(), "r"); }

Values Lines(const std::string &bytes) {
    std::FILE *file = Open(bytes);
    LineReader reader(file);
    Values lines;
    std::string_view line;
    while (reader.Next(line)) lines.emplace_back(line);
    std::fclose(file);
    return lines;
}

TEST(ImportText, ReadsLineEndsNulBytesAndOverlongLines) {
    const std::string longLine = std::string(40000, 'L') + "\tz";
    EXPECT_EQ(Lines("a\r\nb\n\r\nc"), (Values{"a", "b", "", "c"}));
    EXPECT_EQ(Lines(std::string("p\0q\tr\r\nx", 9)), (Values{"p", "x"}));
    // The rest of an overlong line is dropped; the next line stays a line.
    EXPECT_EQ(Lines(longLine + "\r\nnext\n"), (Values{std::string(kImportLineSize - 1, 'L'), "next"}));
    EXPECT_EQ(Lines(std::string(kImportLineSize - 1, 'x') + "\r\n"), Values{std::string(kImportLineSize - 1, 'x')});
}

TEST(CsvFormat, QuotesWhatAReaderWouldMisread) {
    const struct {
        std::string value, delimiter;
        bool quoted;
        std::string field;
    } cases[] = {
        {"plain", ",", false, "plain"},
        {"a;b", ",", false, "a;b"},
        {"a;b", ";", false, "\"a;b\""},
        {"a||b|", "||", false, "\"a||b|\""},
        {"Sag \"hi\"", ",", false, "\"Sag \"\"hi\"\"\""},
        {"it's", ",", false, "it's"},
        {"zwei\r\nZeilen\n", ",", false, "\"zwei\r\nZeilen\n\""},
        {" vorn", ",", false, "\" vorn\""},
        {"hinten\t", ",", false, "\"hinten\t\""},
        {"in der Mitte", ",", false, "in der Mitte"},
        {"", ",", false, ""},
        {"", ",", true, "\"\""},
        {"NULL", ",", true, "\"NULL\""},
    };
    for (const auto &c : cases) {
        std::string out = "x,";
        AppendCsvField(out, c.value, c.delimiter, c.quoted);
        EXPECT_EQ(out, "x," + c.field) << c.value;
    }
    char date[64] = "2024-03-15 10:00:00.000";
    ToIsoDate(date, sizeof date);
    EXPECT_STREQ(date, "2024-03-15 10:00:00");
    char german[64] = "07.03.2024";
    ToIsoDate(german, sizeof german);
    EXPECT_STREQ(german, "2024-03-07");
}

// Every record of a file as the CSV reader hands it on, a quoted value
// marked with a leading "q:".
std::vector<Values> CsvRecords(const std::string &bytes, char delimiter = ',') {
    std::FILE *file = Open(bytes);
    CsvReader reader(file, delimiter);
    std::vector<Values> records;
    Values values;
    std::vector<bool> quoted;
    std::size_t count = 0;
    while (reader.Next(values, quoted, count)) {
        Values record;
        for (std::size_t i = 0; i < count; ++i) record.push_back((quoted[i] ? "q:" : "") + values[i]);
        records.push_back(record);
    }
    std::fclose(file);
    return records;
}

TEST(CsvFormat, ReadsRecordsAcrossLinesAndBothLineEnds) {
    const std::string longText(5000, 'x');
    const struct {
        std::string bytes;
        std::vector<Values> records;
    } cases[] = {
        {"a,b\r\n1,2\n3,\r\n", {{"a", "b"}, {"1", "2"}, {"3", ""}}},
        {"\"a,b\",\"c\"\"d\"\"\",e", {{"q:a,b", "q:c\"d\"", "e"}}},
        {"\"zwei\r\nZeilen\nund\r\",x\r\ny,z", {{"q:zwei\r\nZeilen\nund\r", "x"}, {"y", "z"}}},
        {"\r\n\n\"\"\r\n\n", {{"q:"}}},
        {"\" a \",b\rc,\"ende", {{"q: a ", "b\rc", "q:ende"}}},
        {"\"ab\"cd,e\n", {{"q:abcd", "e"}}},
        {longText + "," + longText + "\n", {{longText, longText}}},
    };
    for (const auto &c : cases) EXPECT_EQ(CsvRecords(c.bytes), c.records) << c.bytes;
    EXPECT_EQ(CsvRecords("a;\"b;c\"\n", ';'), (std::vector<Values>{{"a", "q:b;c"}}));
}

TEST(ImportWizardFields, MovedFieldsKeepTheirSourceColumn) {
    const struct {
        int from, to, moved;
        Values order;
    } cases[] = {
        {2, 0, 0, {"c", "a", "b"}}, {0, 2, 2, {"b", "c", "a"}}, {1, 1, -1, {"a", "b", "c"}},
        {0, 3, -1, {"a", "b", "c"}}, {-1, 0, -1, {"a", "b", "c"}},
    };
    for (const auto &c : cases) {
        ImportFieldList fields;
        for (const char *name : {"a", "b", "c"}) AddImportField(fields, name);
        EXPECT_EQ(MoveImportField(fields, c.from, c.to), c.moved) << c.from << "->" << c.to;
        EXPECT_EQ(TargetNames(fields), c.order);
        ASSERT_TRUE(SetRecordValues(fields, {"A", "B", "C"}, 3, ',', "", true));
        for (const ImportField &field : fields)
            EXPECT_EQ(field.value.value_or("-"), std::string(1, static_cast<char>(field.sourceName[0] - 'a' + 'A')));
    }
}

TEST(ImportWizardFields, FieldDialogTakesAKnownTypeAndAPositiveLength) {
    ImportField field;
    ImportFieldChoice choice{"Neu", KODBC_TYPE_FLOAT, "x12", false, true, false, true};
    EXPECT_TRUE(TakeImportFieldChoice(field, choice));
    EXPECT_EQ(field.targetName, "Neu");
    EXPECT_EQ(field.targetType, KODBC_TYPE_FLOAT);
    EXPECT_EQ(field.targetLength, kDefaultImportLength) << "not a number";
    EXPECT_FALSE(field.imported);
    EXPECT_TRUE(field.fileContent && field.autoIncrement && !field.noFileMessage);
    choice.length = "40";
    choice.type = 99;
    EXPECT_FALSE(TakeImportFieldChoice(field, choice)) << "a type outside the table";
    EXPECT_EQ(field.targetLength, kDefaultImportLength);
    choice.type = KODBC_TYPE_FIXED_TEXT;
    EXPECT_TRUE(TakeImportFieldChoice(field, choice));
    EXPECT_EQ(field.targetLength, 40);
}

using ImportWizardFilePage = PrivateRegistryTest;

// Each kind of file is chosen with its own filter (text last: the walk starts
// there); its fields are discovered again only when the format or kind changed.
TEST_F(ImportWizardFilePage, FiltersAndDiscoveringAgainOnlyWhenFormatOrKindChanged) {
    MessageRecorder messages;
    const auto setting = [](const char *name) {
        char text[300] = {};
        Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, kImportSection, name, "", text, sizeof text);
        return std::string(text);
    };
    const std::string text = dir_ + "/Kunden.liste.txt", sel = dir_ + "/k.sel";
    std::ofstream(text, std::ios::binary) << "a;b\r\n1;2\r\n";
    std::ofstream(sel, std::ios::binary) << "Kopf\r\n1,0\r\n1,C,s,C\r\n";
    auto state = CreateImportWizardState(nullptr);
    ASSERT_TRUE(state);
    for (const auto &[kind, filter] :
         {std::pair{ImportSource::Sdi, "Merrit-Windows Selektionsdateien (*.sdi)|*.sdi|"},
          {ImportSource::Sel, "Merrit 4.xx Selektionsdateien (*.sel)|*.sel|"},
          {ImportSource::Text, "Alle Dateien (*.*)|*.*|Textdateien (*.txt)|*.txt|"}}) {
        state->kind = kind;
        char filters[200] = {};
        LoadLibraryString(LibraryInstance(), ImportFileFilter(*state), filters, sizeof filters);
        EXPECT_STREQ(filters, filter);
    }
    state->format.delimiter = DelimiterChoice::Other;
    state->format.otherDelimiter = ";";

    EXPECT_TRUE(LeaveImportFilePage(*state, 2, "").goOn) << "backwards is never checked";
    EXPECT_EQ(LeaveImportFilePage(*state, 1, "").messageId, msg::SELECT_FILE);
    ASSERT_TRUE(LeaveImportFilePage(*state, 1, text).goOn);
    EXPECT_EQ(TargetNames(state->fields), (Values{"a", "b"}));
    EXPECT_EQ(state->tableName, "Kunden.liste");
    EXPECT_EQ(setting("TextFile"), text);

    const struct {
        const char *what;
        ImportSource kind;
        DelimiterChoice delimiter;
        std::string file;
        Values names;
        bool goOn = true;
    } steps[] = {
        {"same format: the edit stays", ImportSource::Text, DelimiterChoice::Other, text, {"x", "b"}},
        {"other delimiter", ImportSource::Text, DelimiterChoice::Tab, text, {"a;b"}},
        {"other kind", ImportSource::Sel, DelimiterChoice::Tab, sel, {"s"}},
        {"same name, other kind: read again and refused", ImportSource::Sdi, DelimiterChoice::Tab, sel, {"x"}, false},
        {"back to the text file", ImportSource::Text, DelimiterChoice::Tab, text, {"a;b"}},
    };
    for (const auto &step : steps) {
        state->fields[0].targetName = "x";
        state->kind = step.kind;
        state->format.delimiter = step.delimiter;
        EXPECT_EQ(LeaveImportFilePage(*state, 1, step.file).goOn, step.goOn) << step.what;
        EXPECT_EQ(TargetNames(state->fields), step.names) << step.what;
    }
    EXPECT_EQ(setting("SelFile"), sel);
    EXPECT_EQ(state->tableName, "Kunden.liste") << "a name given is kept";

    // A file that cannot be read keeps the page and the fields.
    EXPECT_FALSE(LeaveImportFilePage(*state, 1, dir_ + "/fehlt.txt").goOn);
    EXPECT_EQ(TargetNames(state->fields), (Values{"a;b"}));
    EXPECT_NE(messages.last_text().find("fehlt.txt"), std::string::npos) << messages.last_text();
}

class ImportRun : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({"kodbc_imp_src", "kodbc_imp_dst"});
        q_ = IdentifierQuote();
        file_ = ::testing::TempDir() + "kodbc_imp_dst.txt";
    }
    void TearDown() override {
        std::remove(file_.c_str());
        DataSourceTest::TearDown();
    }
    void WriteFile(const std::string &bytes) { std::ofstream(file_, std::ios::binary) << bytes; }
    // A text column of the new table, NULL shown as "(NULL)", by nr.
    Values Of(const std::string &column) {
        return Column("SELECT COALESCE(" + column + ", '(NULL)') FROM kodbc_imp_dst ORDER BY COALESCE(nr, 0)");
    }
    bool DstExists() {
        std::vector<char> out(30000);
        Kodbc_GetTables(hdbc_, KODBC_OBJECT_TABLE, out.data(), static_cast<int>(out.size()), "|");
        return ("|" + std::string(out.data()) + "|").find("|kodbc_imp_dst|") != std::string::npos;
    }
    int ImportFile(std::vector<KodbcImportField> choices, KodbcImportResult &result, KodbcImportOptions options = {}) {
        options.fields = choices.data();
        options.fieldCount = static_cast<int>(choices.size());
        return Kodbc_ImportTextFile(hdbc_, "kodbc_imp_dst", file_.c_str(), &options, &result);
    }

    ScopedLocale utf8_;
    std::string q_, file_;
};

// NULL and the empty text arrive as one nothing, numbers keep their value,
// dates their day; from the table only, a pointed name loses its point, long
// multi-byte texts arrive whole and bytes as their hex digits.
TEST_P(ImportRun, FileAndTableSourcesKeepValues) {
    const bool postgres = DbmsName() == "PostgreSQL";
    const int date = postgres ? KODBC_TYPE_VAR_TEXT : KODBC_TYPE_DATETIME;  // no DATETIME template there
    std::string umlauts, euros;
    for (int i = 0; i < 1000; ++i) umlauts += "\xC3\xA4", euros += "\xE2\x82\xAC";
    Exec("CREATE TABLE kodbc_imp_src (nr INTEGER, " + q_ + "Preis Netto" + q_ + " DOUBLE PRECISION, name VARCHAR(40), "
         "tag DATE, " + q_ + "Art.Nr" + q_ + " VARCHAR(20), t VARCHAR(1000), b " + (postgres ? "BYTEA)" : "BLOB)"));
    const std::string rest = ", NULL, NULL, NULL";
    for (const std::string &row :
         {"1, 1234.5, 'M\xC3\xBCller \"der \xC3\x84ltere\" O''Brien', '2024-03-15', 'A.1', '" + umlauts + "', " +
              (postgres ? "decode('00090D0AFF', 'hex')" : "X'00090D0AFF'"),
          "2, NULL, '', NULL, 'B''2', '" + euros + "', NULL", "3, 0.25, 'Gro\xC3\x9F;Klein', '1999-12-31'" + rest,
          "4, 1e20, NULL, NULL" + rest, "5, 1e-5, NULL, NULL" + rest, "6, -2.5e-7, NULL, NULL" + rest})
        Exec("INSERT INTO kodbc_imp_src VALUES (" + row + ")");
    // Compared by range: each driver prints a double in its own way.
    const struct {
        const char *nr, *low, *high;
    } prices[] = {{"1", "1234.4", "1234.6"}, {"3", "0.249", "0.251"}, {"4", "0.999e20", "1.001e20"},
                  {"5", "0.999e-5", "1.001e-5"}, {"6", "-2.501e-7", "-2.499e-7"}};
    for (const bool file : {true, false}) {
        SCOPED_TRACE(file ? "file" : "table");
        DropTables({"kodbc_imp_dst"});
        const int text = file ? 0 : KODBC_TYPE_VAR_TEXT, skip = file ? KODBC_IMPORT_SKIP : 0;
        const KodbcImportField types[] = {{"tag", nullptr, date, 0, 0},
                                          {"t", nullptr, text, 1000, skip},
                                          {"b", nullptr, text, 20, skip},
                                          {"Art-Nr", nullptr, 0, 0, KODBC_IMPORT_SKIP},
                                          {"nr", nullptr, KODBC_TYPE_INTEGER, 0, 0},
                                          {"Preis-Netto", "Preis Netto", KODBC_TYPE_FLOAT, 0, 0}};
        KodbcImportOptions options{};
        options.fields = types;
        options.fieldCount = file ? 6 : 3;
        KodbcImportResult result{};
        if (file) {
            ASSERT_EQ(Kodbc_ExportTable(hdbc_, "kodbc_imp_src", nullptr, nullptr, file_.c_str(), nullptr),
                      KODBC_SUCCESS);
            ASSERT_EQ(Kodbc_ImportTextFile(hdbc_, nullptr, file_.c_str(), &options, &result), KODBC_SUCCESS);
        } else {
            ASSERT_EQ(Kodbc_ImportTable(hdbc_, "kodbc_imp_dst", hdbc_, "kodbc_imp_src", &options, &result),
                      KODBC_SUCCESS);
        }
        EXPECT_EQ(result.written, 6);
        EXPECT_EQ(Of("name"), (Values{"M\xC3\xBCller \"der \xC3\x84ltere\" O'Brien", "(NULL)", "Gro\xC3\x9F;Klein",
                                      "(NULL)", "(NULL)", "(NULL)"}));
        for (const auto &p : prices)
            EXPECT_EQ(Column("SELECT nr FROM kodbc_imp_dst WHERE " + q_ + "Preis Netto" + q_ + " BETWEEN " + p.low +
                             " AND " + p.high),
                      Values{p.nr})
                << ::testing::PrintToString(Of(q_ + "Preis Netto" + q_));
        EXPECT_EQ(Column("SELECT nr FROM kodbc_imp_dst WHERE " + q_ + "Preis Netto" + q_ + " IS NULL"), Values{"2"});
        const Values dates = Of("tag");
        ASSERT_EQ(dates.size(), 6u);
        EXPECT_EQ(dates[0].substr(0, 10), postgres ? "15.03.2024" : "2024-03-15");
        EXPECT_EQ(dates[1], "(NULL)");
        EXPECT_EQ(dates[2].substr(0, 10), postgres ? "31.12.1999" : "1999-12-31");
        if (file) continue;
        EXPECT_EQ(Of("Art_Nr"), (Values{"A.1", "B'2", "(NULL)", "(NULL)", "(NULL)", "(NULL)"}));
        EXPECT_EQ(Of("t"), (Values{umlauts, euros, "(NULL)", "(NULL)", "(NULL)", "(NULL)"}));
        EXPECT_EQ(Of("b"), (Values{"00090D0AFF", "(NULL)", "(NULL)", "(NULL)", "(NULL)", "(NULL)"}));
        EXPECT_EQ(OdbcErrors(), 0u);
    }
    ImportFieldList fields;
    ASSERT_TRUE(DiscoverTableFields(hdbc_, "kodbc_imp_src", fields));
    ASSERT_EQ(fields.size(), 7u);
    EXPECT_EQ(fields[0].sourceType, KODBC_TYPE_INTEGER);
    EXPECT_EQ(fields[2].sourceLength, 40);
}

TEST_P(ImportRun, CreateStatementTakesTemplatesAndTheCounterType) {
    ImportFieldList fields = {Field("Id", 2, 2, true), Field("Preis Netto", 10, KODBC_TYPE_FLOAT), Field("t"),
                              Field("skipped", 10, 10, false, false), Field("x", 10, 99)};
    fields[2].targetLength = 20;
    const std::string number = DbmsName() == "MariaDB" ? " DOUBLE" : " FLOAT";  // FLOAT is single there
    EXPECT_EQ(CreateImportTableStatement(hdbc_, "kodbc_imp_dst", fields, "COUNTER"),
              "CREATE TABLE kodbc_imp_dst (Id COUNTER, " + q_ + "Preis Netto" + q_ + number + ", t VARCHAR (20))");
    fields[0].targetType = KODBC_TYPE_FIXED_TEXT;  // a text counts by no type of the data source
    EXPECT_EQ(CreateImportTableStatement(hdbc_, "kodbc_imp_dst", fields, "COUNTER"),
              "CREATE TABLE kodbc_imp_dst (Id CHAR (255), " + q_ + "Preis Netto" + q_ + number + ", t VARCHAR (20))");
}

// A record at a time: an empty line is a record without values (as many
// lines at the end stay unread as there are empty ones); CSV keeps line
// breaks, lengths, and NULL apart from the empty text; a value that makes no
// number ends the run after what was written (no table before the first).
TEST_P(ImportRun, TextAndCsvRunsAndTheirRefusals) {
    const KodbcImportField nr = {"a", "nr", KODBC_TYPE_INTEGER, 0, 0};
    const KodbcImportField number = {"b", nullptr, KODBC_TYPE_INTEGER, 0, 0};
    const std::optional<Values> noTable;
    const struct {
        const char *what;
        std::string file;
        std::vector<KodbcImportField> fields;
        int code;
        long written;
        std::optional<Values> b;  // by nr
        const char *said;         // the one message, if any
    } runs[] = {
        {"empty line", "a\tb\n1\tx\n\n2\ty\n3\tz\n", {nr}, KODBC_SUCCESS, 3, Values{"(NULL)", "x", "y"}, ""},
        {"csv",
         "nr,b\r\n1,\"zwei\r\nZeilen, \"\"zitiert\"\"\"\n2,-\r\n3,\r\n4,\"-\"\n5," + std::string(300, 'w') + "\r\n",
         {{"nr", nullptr, KODBC_TYPE_INTEGER, 0, 0}, {"b", nullptr, KODBC_TYPE_VAR_TEXT, 400, 0}}, KODBC_SUCCESS, 5,
         Values{"zwei\r\nZeilen, \"zitiert\"", "(NULL)", "", "-", std::string(300, 'w')}, ""},
        {"no number", "a\tb\n1\t5\n2\t12-05-2024\n3\t7\n", {nr, number}, KODBC_FAILURE, 1, Values{"5"},
         "'12-05-2024'  in Zeile 3 ergibt f\xC3\xBCr das Feld  'b'"},
        {"no number first", "a\tb\n2\t12-05-2024\n", {nr, number}, KODBC_FAILURE, 0, noTable, "in Zeile 2 ergibt"},
        {"names alone", "a\tb\n", {nr, number}, KODBC_SUCCESS, 0, Values{}, ""},
        {"name twice", "a\ta\n1\t2\n", {{"a_1", "a", 0, 0, 0}}, KODBC_FAILURE, 0, noTable,
         "'a'  kommt mehr als einmal"},
    };
    KodbcImportResult result{};
    for (const auto &run : runs) {
        SCOPED_TRACE(run.what);
        DropTables({"kodbc_imp_dst"});
        messages_.clear();
        WriteFile(run.file);
        const bool csv = run.file[0] == 'n';
        KodbcImportOptions options{};
        options.flags = csv ? KODBC_IMPORT_CSV : 0;
        options.delimiter = csv ? KODBC_EXPORT_OTHER : KODBC_EXPORT_TAB;
        options.otherDelimiter = ",";
        options.nullText = csv ? "-" : nullptr;
        char create[300] = {};
        result.createStatement = create;
        result.createSize = sizeof create;
        EXPECT_EQ(ImportFile(run.fields, result, options), run.code);
        EXPECT_EQ(result.written, run.written);
        EXPECT_EQ(result.valuesCut, 0);
        EXPECT_EQ(DstExists(), run.b.has_value());
        // A number column takes no text for NULL.
        const bool numbers = run.fields.size() > 1 && run.fields.back().targetType == KODBC_TYPE_INTEGER;
        EXPECT_EQ(!run.b ? Values{} : numbers ? Column("SELECT b FROM kodbc_imp_dst ORDER BY nr") : Of("b"),
                  run.b.value_or(Values{}));
        EXPECT_TRUE(!csv || std::string(create).find("b VARCHAR (400)") != std::string::npos) << create;
        EXPECT_EQ(messages_.entries().size(), *run.said ? 1u : 0u);
        EXPECT_NE(messages_.last_text().find(run.said), std::string::npos) << messages_.last_text();
    }
    KodbcImportResult unknown{};  // the runs' statement buffer is gone with their loop
    EXPECT_EQ(ImportFile({{"a_1", "a", 0, 0, 0}, {"zz", nullptr, 0, 0, 0}}, unknown), KODBC_IMPORT_NO_SUCH_FIELD);
    EXPECT_EQ(unknown.badField, 1);
}

// The wizard's run: a cancel keeps what was written; a file gone since its
// fields were discovered leaves no table.
TEST_P(ImportRun, WizardCancelKeepsWhatWasWrittenAndAFileGoneNoTable) {
    WriteFile("a\tb\n1\tx\n2\ty\n3\tz\n");
    auto state = CreateImportWizardState(hdbc_);
    ASSERT_TRUE(state);
    state->kind = ImportSource::Text;
    state->textFile = file_;
    state->tableName = "kodbc_imp_dst";
    ASSERT_TRUE(DiscoverTextFields(file_.c_str(), state->format, state->fields));
    RecordingProgress cancelling(2);
    EXPECT_TRUE(RunImportWizard(*state, cancelling));
    EXPECT_EQ(Column("SELECT COUNT(*) FROM kodbc_imp_dst"), Values{"2"});
    DropTables({"kodbc_imp_dst"});
    state->textFile = file_ + ".fehlt";
    RecordingProgress progress;
    EXPECT_FALSE(RunImportWizard(*state, progress));
    EXPECT_FALSE(DstExists());
}

// The command-line tool's batch of many records in one transaction: a
// refused record (named by its line), a stop or a value that makes no number
// leaves neither rows nor table; a run that gets through holds every record.
TEST_P(ImportRun, BatchIsAllOrNothingAndNamesTheRefusedLine) {
    const long kLines = 1201;  // three statements, the last not full
    std::string text = "a\tb\n";
    for (long n = 1; n <= kLines; ++n) text += std::to_string(n) + "\tO'Brien \\ " + std::to_string(n) + "\n";
    std::string refused = text;
    const std::string line701 = "O'Brien \\ 700\n";
    refused.replace(refused.find(line701), line701.size(), "O'Brien \\ 640\n");
    // The tool's own connection runs without auto-commit.
    AutoCommitOff autoCommitOff(hdbc_);
    const struct {
        const char *name;
        std::string file;
        long cancelAt;
        bool ok;
        long written;
        const char *said;  // in the messages, in this order
        const char *then;
    } cases[] = {
        {"refused", refused, 0, false, 0, "Die Zeile 701 konnte nicht importiert werden:", "zur\xC3\xBC" "ckgenommen"},
        {"cancelled", text, 900, true, 0, "abgebrochen und zur\xC3\xBC" "ckgenommen", ""},
        {"no number", std::string(text).replace(text.find("\n1000\t") + 1, 4, "12-05-2024"), 0, false, 0,
         "in Zeile 1001 ergibt", "zur\xC3\xBC" "ckgenommen"},
        {"through", text, 0, true, kLines, "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        WriteFile(c.file);
        messages_.clear();
        ImportTextFormat format;
        ImportFieldList fields;
        ASSERT_TRUE(DiscoverTextFields(file_.c_str(), format, fields));
        fields[0].targetName = "nr";
        fields[0].targetType = KODBC_TYPE_INTEGER;
        ImportCounts counts;
        {
            ImportRecordWriter writer(hdbc_, "kodbc_imp_dst", fields, false,
                                      "CREATE TABLE kodbc_imp_dst (nr INTEGER, b VARCHAR(40) UNIQUE)", true);
            RecordingProgress progress(c.cancelAt);
            EXPECT_EQ(ImportTextRecords(file_.c_str(), format, fields, writer, progress, 100000, counts), c.ok);
        }
        EXPECT_EQ(counts.written, c.written);
        // What the run did not commit is gone now.
        SQLEndTran(SQL_HANDLE_DBC, hdbc_, SQL_ROLLBACK);
        std::string said;
        for (const auto &entry : messages_.entries()) said += entry.text + "\n";
        const std::size_t at = said.find(c.said);
        EXPECT_NE(at, std::string::npos) << said;
        EXPECT_NE(said.find(c.then, at == std::string::npos ? 0 : at), std::string::npos) << said;
        EXPECT_EQ(DstExists(), c.written > 0);
        if (c.written == 0) continue;
        EXPECT_EQ(Column("SELECT COUNT(*) FROM kodbc_imp_dst WHERE b LIKE 'O''Brien %'"),
                  Values{std::to_string(kLines)});
        EXPECT_EQ(Column("SELECT b FROM kodbc_imp_dst WHERE nr = 1201"), Values{"O'Brien \\ 1201"});
    }
}

// Selection files: SDI records split at tabs after their OEM conversion,
// numbers with the comma, the contact conversion per record, the surplus
// value in no field; a SEL record the file ends inside is not written.
TEST_P(ImportRun, SdiAndSelRecords) {
    WriteFile("SDI\r\nx\r\nx\r\nx\r\n5\r\nKUNDE.NR FORMAT=NG5\r\nKUNDE.NAME\r\nPREIS FORMAT=N10,2\r\nKo_Name1\r\n"
              "Ko_Nummer1\r\nx\r\n1\tM\x81ller 'Alt'\t1.234,50\tHandy\t0171 555\r\n2\t\t\t\t\r\n"
              "3\tGro\xE1\t0,25\tPager\t99\tzuviel\r\n");
    ImportFieldList fields;
    ContactConversion conversion;
    conversion.on = true;
    conversion.keywords = {"Handy"};
    ASSERT_TRUE(DiscoverSdiFields(file_.c_str(), fields, conversion));
    RecordingProgress progress;
    ImportCounts counts;
    {
        ImportRecordWriter writer(hdbc_, "kodbc_imp_dst", fields, false,
                                  CreateImportTableStatement(hdbc_, "kodbc_imp_dst", fields, ""));
        EXPECT_TRUE(ImportSdiRecords(file_.c_str(), fields, conversion, writer, progress, 1000, counts));
    }
    EXPECT_EQ(progress.steps_, (std::vector<long>{1, 2, 3}));
    EXPECT_EQ(Of("NAME"), (Values{"M\xC3\xBCller 'Alt'", "(NULL)", "Gro\xC3\x9F"}));
    EXPECT_EQ(Column("SELECT NR FROM kodbc_imp_dst WHERE PREIS BETWEEN 1234.4 AND 1234.6 OR PREIS = 0.25 ORDER BY NR"),
              (Values{"1", "3"}));
    EXPECT_EQ(Of("Handy"), (Values{"0171 555", "(NULL)", "(NULL)"}));

    DropTables({"kodbc_imp_dst"});
    WriteFile("Kopf\r\n3,5\r\n1,C,Nr,CN5\r\n2,C, Name ,C30\r\n3,C,,C10\r\n1\r\n  M\x94" "bius  \r\nx\r\n"
              "2,5\r\n\r\n\r\n3\r\nLetzter\r\n");
    KodbcImportOptions options{};
    options.kind = KODBC_IMPORT_KIND_SEL;
    KodbcImportResult result{};
    ASSERT_EQ(Kodbc_ImportTextFile(hdbc_, nullptr, file_.c_str(), &options, &result), KODBC_SUCCESS);
    EXPECT_EQ(result.written, 2);
    EXPECT_EQ(Of("Name"), (Values{"M\xC3\xB6" "bius", "(NULL)"}));
    EXPECT_EQ(Of("Unbenannt_2"), (Values{"x", "(NULL)"}));
    EXPECT_EQ(Column("SELECT COUNT(*) FROM kodbc_imp_dst WHERE Nr = 2.5"), Values{"1"});
    options.kind = 7;
    EXPECT_EQ(Kodbc_ImportTextFile(hdbc_, "kodbc_imp_src", file_.c_str(), &options, &result), KODBC_FAILURE);
}

KODBC_DATA_SOURCE_TEST_SUITE(ImportRun);

} // namespace
} // namespace kodbc::test
