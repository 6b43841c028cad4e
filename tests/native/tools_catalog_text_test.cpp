// What the driver information and the column listing show a reader, on
// every data source of the run.
#include "test_support.h"
#include "tools/driver_info.h"

#include <string>

namespace kodbc::test {
namespace {

TEST(DriverInfoDelimiter, QuoteShownAsTextDecimalAndHex) {
    const struct {
        const char *quote;
        const char *line;
    } cases[] = {
        {"\"", "Delimiter: \"  (Dezimal 34   Hex 22)"},
        {" ", "Delimiter:    (Dezimal 32   Hex 20)"},   // a driver that does not quote
        {"`", "Delimiter: `  (Dezimal 96   Hex 60)"},
        {"", "Delimiter:   (Dezimal 0   Hex 00)"},      // the query failed
    };
    for (const auto &c : cases) EXPECT_EQ(tools::DelimiterLine(c.quote), c.line) << "quote '" << c.quote << "'";
    EXPECT_EQ(tools::DelimiterLine(std::string(200, 'x').c_str()).size(), 99u);
}

class CatalogTextTest : public DataSourceTest {};

TEST_P(CatalogTextTest, DriverInformationHasSevenFieldsInOrder) {
    char text[4096];
    ASSERT_EQ(Kodbc_GetDriverInformation(hdbc_, text, sizeof text), KODBC_SUCCESS);
    std::vector<std::string> lines = Split(text, "\n");
    const char *labels[] = {"ODBC-Datenquelle", "Datenbank-System", "Datenbank-Version", "ODBC-Version",
                            "Treiberversion", "Datenbank", "Delimiter f\xc3\xbcr Namen"};
    ASSERT_EQ(lines.size(), std::size(labels)) << text;
    for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(lines[i].substr(0, lines[i].find('\t')), labels[i]);
    EXPECT_EQ(lines[0], std::string("ODBC-Datenquelle\t") + GetParam());
    EXPECT_EQ(lines[1], "Datenbank-System\t" + DbmsName());
    EXPECT_EQ(lines[6], "Delimiter f\xc3\xbcr Namen\t" + tools::DelimiterLine(IdentifierQuote().c_str()));
    EXPECT_EQ(Kodbc_GetDriverInformation(nullptr, text, sizeof text), KODBC_FAILURE);
}

TEST_P(CatalogTextTest, ColumnDescriptionsShowTypeLengthNullAndDefault) {
    OwnTables({"cat_text"});
    Exec("CREATE TABLE cat_text (nr INTEGER NOT NULL, name VARCHAR(30) DEFAULT 'x', am DATE)");
    char text[4096];
    ASSERT_EQ(Kodbc_GetColumnDescriptions(hdbc_, "cat_text", text, sizeof text), KODBC_SUCCESS);
    std::vector<std::string> lines = Split(text, "\n");
    ASSERT_EQ(lines.size(), 3u) << text;
    EXPECT_EQ(lines[0].substr(0, 11), "nr\tGanzzahl");
    EXPECT_NE(lines[0].find("\tNein\t"), std::string::npos) << lines[0];
    EXPECT_EQ(lines[1].substr(0, 21), "name\tVarText (30)\tJa\t") << lines[1];
    EXPECT_NE(lines[1].find("x"), std::string::npos) << "default missing: " << lines[1];
    EXPECT_EQ(lines[2].substr(0, 13), "am\tDatum/Zeit") << lines[2];
    // A buffer that holds only part of the list is cut, never overrun.
    EXPECT_EQ(Guarded(10, [&](char *out, int size) { Kodbc_GetColumnDescriptions(hdbc_, "cat_text", out, size); }),
              "nr\tGanzza");
}

KODBC_DATA_SOURCE_TEST_SUITE(CatalogTextTest);

} // namespace
} // namespace kodbc::test
