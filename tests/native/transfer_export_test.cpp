// The export writer on each data source: the file's bytes for the format
// choices, NULL against empty, names with blanks or a point, long and
// binary values, the record bound of the count, and files that cannot be
// written.
#include "test_support.h"

#include "transfer/export_file.h"

#include <cstdio>

namespace kodbc::test {
namespace {

using namespace transfer;

class ExportFile : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({kTable, kOddTable});
        const std::string q = IdentifierQuote();
        Exec(std::string("CREATE TABLE ") + kTable + " (nr INTEGER, " + q + "Preis Netto" + q +
             " DOUBLE PRECISION, name VARCHAR(40))");
        Exec(std::string("INSERT INTO ") + kTable +
             " VALUES (1, 12.5, 'M\xC3\xBCller \"der \xC3\x84ltere\"'), (2, NULL, ''), (3, 0.25, 'Gro\xC3\x9F;Klein')");
        file_ = ::testing::TempDir() + "kodbc_export_test.txt";
    }
    void TearDown() override {
        std::remove(file_.c_str());
        DataSourceTest::TearDown();
    }
    // Writes the file and gives its bytes ("" when it failed).
    std::string Export(const ExportFormat &format, long maxRecords = 100, const std::string &where = "",
                       RecordingProgress *progress = nullptr, const char *table = kTable) {
        RecordingProgress own;
        std::vector<ExportField> fields;
        EXPECT_TRUE(ReadExportFields(hdbc_, table, fields));
        const std::string sql = ExportStatement(hdbc_, table, fields, where) + " ORDER BY nr";
        if (!WriteExportFile(hdbc_, sql, fields, format, file_.c_str(), maxRecords, progress ? *progress : own))
            return "";
        return ReadFile(file_);
    }

    static constexpr const char *kTable = "kodbc_ex";
    static constexpr const char *kOddTable = "kodbc_ex_odd";
    ScopedLocale utf8_;  // the ANSI side of the OEM conversion
    std::string file_;
};

// A name with a blank is written with a dash.
TEST_P(ExportFile, BytesForEachFormat) {
    const ExportFormat tabs;  // the wizard's defaults
    ExportFormat other, ascii, csv;
    other.header = false;
    other.delimiter = csv.delimiter = DelimiterChoice::Other;
    other.otherDelimiter = "||";
    other.decimal = csv.decimal = DecimalChoice::Point;
    other.leftBracket = csv.leftBracket = '[';  // not written in CSV
    other.rightBracket = ']';
    ascii.encoding = ExportEncoding::Ascii;
    ascii.delimiter = DelimiterChoice::Blank;
    ascii.decimal = DecimalChoice::Other;
    ascii.otherDecimal = "'x";
    csv.csv = true;
    csv.otherDelimiter = ";";
    csv.nullText = "";
    ExportFormat csvNull = csv;
    csvNull.nullText = "NULL";

    const struct {
        const char *what;
        const ExportFormat &format;
        std::string bytes;
    } cases[] = {
        {"defaults", tabs,
         "nr\tPreis-Netto\tname\r\n1\t12,5\tM\xC3\xBCller \"der \xC3\x84ltere\"\r\n2\t\t\r\n3\t0,25\tGro\xC3\x9F;Klein\r\n"},
        // NULL writes nothing, not even brackets; the empty text writes them.
        {"other delimiter, brackets", other,
         "[1]||[12.5]||[M\xC3\xBCller \"der \xC3\x84ltere\"]\r\n[2]||||[]\r\n[3]||[0.25]||[Gro\xC3\x9F;Klein]\r\n"},
        {"ASCII, blank, other mark", ascii,
         "nr Preis-Netto name\r\n1 12'5 M\x81ller \"der \x8E" "ltere\"\r\n2  \r\n3 0'25 Gro\xE1;Klein\r\n"},
        // Quotes where a CSV reader would misread; NULL and the empty text
        // apart once NULL has a text of its own.
        {"CSV, NULL as nothing, the empty text quoted", csv,
         "nr;Preis-Netto;name\r\n1;12.5;\"M\xC3\xBCller \"\"der \xC3\x84ltere\"\"\"\r\n2;;\"\"\r\n3;0.25;\"Gro\xC3\x9F;Klein\"\r\n"},
        {"CSV, NULL as a text", csvNull,
         "nr;Preis-Netto;name\r\n1;12.5;\"M\xC3\xBCller \"\"der \xC3\x84ltere\"\"\"\r\n2;NULL;\r\n3;0.25;\"Gro\xC3\x9F;Klein\"\r\n"},
    };
    for (const auto &c : cases) EXPECT_EQ(Export(c.format), c.bytes) << c.what;
}

TEST_P(ExportFile, CountBoundsTheLoopAndCancelKeepsWhatWasWritten) {
    ExportFormat format;
    format.header = false;
    // Records beyond the count taken before the wizard's last page stay out.
    EXPECT_EQ(Export(format, 2), "1\t12,5\tM\xC3\xBCller \"der \xC3\x84ltere\"\r\n2\t\t\r\n");
    EXPECT_EQ(Export(format, 100, "nr > 1"), "2\t\t\r\n3\t0,25\tGro\xC3\x9F;Klein\r\n");

    RecordingProgress cancelling(2);
    EXPECT_EQ(Export(format, 3, "", &cancelling), "1\t12,5\tM\xC3\xBCller \"der \xC3\x84ltere\"\r\n2\t\t");
    EXPECT_EQ(cancelling.maximum_, 3);
    EXPECT_TRUE(cancelling.finished_);
}

// A column name with a point is one name; texts of multi-byte characters
// and others longer than the first read arrive whole, up to the value
// buffer's 9999 characters, never beyond; bytes are written as hex digits,
// the same on every driver (a tab, CR LF or NUL among them included).
TEST_P(ExportFile, PointedNamesLongValuesAndBinaryValues) {
    std::string hex, umlauts, euros;
    for (int i = 0; i < 1000; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", i & 0xFF);
        if (i < 300) hex += digits;
        umlauts += "\xC3\xA4";
        euros += "\xE2\x82\xAC";
    }
    const bool postgres = DbmsName() == "PostgreSQL";
    const std::string q = IdentifierQuote(), longer(300, 'a'), longest(12000, 'b');
    Exec(std::string("CREATE TABLE ") + kOddTable + " (nr INTEGER, " + q + "Art.Nr" + q +
         " VARCHAR(20), t VARCHAR(12000), b " + (postgres ? "BYTEA" : "BLOB") + ")");
    Exec(std::string("INSERT INTO ") + kOddTable + " VALUES (1, 'A-1', '" + umlauts + "', " +
         (postgres ? "decode('" + hex + "', 'hex')" : "X'" + hex + "'") + "), (2, 'B.2', '" + euros +
         "', NULL), (3, NULL, '" + longer + "', NULL), (4, NULL, '" + longest + "', NULL)");
    EXPECT_EQ(Export(ExportFormat(), 100, "", nullptr, kOddTable),
              "nr\tArt-Nr\tt\tb\r\n1\tA-1\t" + umlauts + "\t" + hex + "\r\n2\tB.2\t" + euros + "\t\r\n3\t\t" + longer +
                  "\t\r\n4\t\t" + std::string(9999, 'b') + "\t\r\n");
    EXPECT_EQ(OdbcErrors(), 0u);
}

TEST_P(ExportFile, FilesThatCannotBeWrittenFailLoudly) {
    std::vector<ExportField> fields;
    ASSERT_TRUE(ReadExportFields(hdbc_, kTable, fields));
    const std::string sql = ExportStatement(hdbc_, kTable, fields, "");
    RecordingProgress progress;
    for (const auto &[file, message] : {std::pair{"/dev/full", "Fehler beim Schreiben der Datei"},
                                        {"/nonexistent-folder/export.txt", "existiert nicht"}}) {
        messages_.clear();
        EXPECT_FALSE(WriteExportFile(hdbc_, sql, fields, ExportFormat(), file, 100, progress)) << file;
        ASSERT_EQ(messages_.entries().size(), 1u) << file;
        EXPECT_NE(messages_.last_text().find(message), std::string::npos) << messages_.last_text();
    }
}

KODBC_DATA_SOURCE_TEST_SUITE(ExportFile);

} // namespace
} // namespace kodbc::test
