// The tools: the driver information and the column listing on every data
// source, the SQL performer's recent list in the settings store and the
// data-source picker's memory (one user per data source, never the password).
#include "test_support.h"
#include "tools/driver_info.h"
#include "tools/recent_statements.h"
#include "tools/remembered_user.h"

#include <korvel/korvel32.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace kodbc::tools {
namespace {

using Lines = std::vector<std::string>;

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
    for (const auto &c : cases) EXPECT_EQ(DelimiterLine(c.quote), c.line) << "quote '" << c.quote << "'";
    EXPECT_EQ(DelimiterLine(std::string(200, 'x').c_str()).size(), 99u);
}

using CatalogTextTest = test::DataSourceTest;
KODBC_DATA_SOURCE_TEST_SUITE(CatalogTextTest);

TEST_P(CatalogTextTest, DriverInformationAndColumnDescriptions) {
    char text[4096];
    ASSERT_EQ(Kodbc_GetDriverInformation(hdbc_, text, sizeof text), KODBC_SUCCESS);
    std::vector<std::string> lines = test::Split(text, "\n");
    const char *labels[] = {"ODBC-Datenquelle", "Datenbank-System", "Datenbank-Version", "ODBC-Version",
                            "Treiberversion", "Datenbank", "Delimiter f\xc3\xbcr Namen"};
    ASSERT_EQ(lines.size(), std::size(labels)) << text;
    for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(lines[i].substr(0, lines[i].find('\t')), labels[i]);
    EXPECT_EQ(lines[0], std::string("ODBC-Datenquelle\t") + GetParam());
    EXPECT_EQ(lines[1], "Datenbank-System\t" + DbmsName());
    EXPECT_EQ(lines[6], "Delimiter f\xc3\xbcr Namen\t" + DelimiterLine(IdentifierQuote().c_str()));
    EXPECT_EQ(Kodbc_GetDriverInformation(nullptr, text, sizeof text), KODBC_FAILURE);

    // Type, length, null and default of each column.
    OwnTables({"cat_text"});
    Exec("CREATE TABLE cat_text (nr INTEGER NOT NULL, name VARCHAR(30) DEFAULT 'x', am DATE)");
    ASSERT_EQ(Kodbc_GetColumnDescriptions(hdbc_, "cat_text", text, sizeof text), KODBC_SUCCESS);
    lines = test::Split(text, "\n");
    ASSERT_EQ(lines.size(), 3u) << text;
    EXPECT_EQ(lines[0].substr(0, 11), "nr\tGanzzahl");
    EXPECT_NE(lines[0].find("\tNein\t"), std::string::npos) << lines[0];
    EXPECT_EQ(lines[1].substr(0, 21), "name\tVarText (30)\tJa\t") << lines[1];
    EXPECT_NE(lines[1].find("x", 21), std::string::npos) << "default missing: " << lines[1];
    EXPECT_EQ(lines[2].substr(0, 13), "am\tDatum/Zeit") << lines[2];
    // A buffer that holds only part of the list is cut, never overrun.
    EXPECT_EQ(test::Guarded(10, [&](char *out, int n) { Kodbc_GetColumnDescriptions(hdbc_, "cat_text", out, n); }),
              "nr\tGanzza");
}

class ToolSettingsTest : public test::PrivateRegistryTest {
protected:
    static std::string Read(const char *section, const char *name) {
        char value[1100];
        Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, section, name, "-", value, sizeof value);
        return value;
    }
    // "Total", then E001, E002, ... up to the first missing one.
    static Lines Stored() {
        Lines stored{Read(kRecentSection, "Total")};
        for (int i = 1;; ++i) {
            char name[16];
            std::snprintf(name, sizeof name, "E%03d", i);
            const std::string value = Read(kRecentSection, name);
            if (value == "-") return stored;
            stored.push_back(value);
        }
    }
};

TEST_F(ToolSettingsTest, AddingKeepsNewestFirstWithoutDuplicatesSurvivesTheStoreAndClears) {
    Lines many, newest;
    for (int i = 1; i <= 21; ++i) many.push_back("SELECT " + std::to_string(i));
    for (int i = 21; i >= 2; --i) newest.push_back("SELECT " + std::to_string(i));
    const struct {
        const char *what;
        Lines added, expected;
    } cases[] = {
        {"same twice: one entry, on top", {"A", "B", "A"}, {"A", "B"}},
        {"empty is not added", {"A", ""}, {"A"}},
        {"21 keep the 20 newest", many, newest},
        // The entries hold the encoded text, the search uses the typed one.
        {"a quote is kept twice", {"SELECT 'x'", "SELECT 'x'"}, {"SELECT \\Qx\\Q", "SELECT \\Qx\\Q"}},
        {"a tab is kept twice", {"A\tB", "C", "A\tB"}, {"A\\tB", "C", "A\\tB"}},
        {"cut to the encoding buffer", {std::string(1200, 'x')}, {std::string(990, 'x')}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        RecentStatements list;
        for (const std::string &statement : c.added) list.Add(statement);
        EXPECT_EQ(list.entries(), c.expected);

        // A longer list stored before must not leave entries behind.
        ASSERT_TRUE(list.Save());
        Lines stored{std::to_string(c.expected.size())};
        stored.insert(stored.end(), c.expected.begin(), c.expected.end());
        EXPECT_EQ(Stored(), stored);
        RecentStatements loaded;
        loaded.Load();
        EXPECT_EQ(loaded.entries(), c.expected);
    }

    // Clearing leaves Total 0 and takes the whole key, subkeys included; a
    // neighbour whose name starts the same stays.
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "SqlPerformer\\Recent\\Sub", "V", "gone");
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "SqlPerformer\\RecentX", "E001", "kept");
    RecentStatements list;
    list.Clear();
    ASSERT_TRUE(list.Save());
    EXPECT_EQ(Stored(), Lines{"0"});
    EXPECT_EQ(Read("SqlPerformer\\Recent\\Sub", "V"), "-");
    EXPECT_EQ(Read("SqlPerformer\\RecentX", "E001"), "kept");
}

TEST_F(ToolSettingsTest, LoadSkipsBlankEntriesAndReadsNothingWithoutTotal) {
    for (const auto &[name, value] :
         {std::pair{"E001", "A"}, {"E002", "  \t"}, {"E003", ""}, {"E004", "D"}, {"E005", "beyond"}})
        Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, kRecentSection, name, value);
    RecentStatements list;
    list.Load();
    EXPECT_EQ(list.entries(), Lines{}) << "no Total, no entries";
    Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, kRecentSection, "Total", 4);
    list.Load();
    EXPECT_EQ(list.entries(), (Lines{"A", "D"}));
}

TEST_F(ToolSettingsTest, OneUserPerDataSourceInTheDialogsSectionNoPassword) {
    EXPECT_EQ(RememberedUser("kodbc_sqlite"), "");
    ASSERT_TRUE(RememberChoice(DataSourceRecord{"kodbc_sqlite", "anna", "geheim-123", {}}));
    ASSERT_TRUE(RememberUser("kodbc_pg", std::string(60, 'u').c_str()));
    EXPECT_FALSE(RememberUser("", "anna"));

    EXPECT_EQ(Read("DataSourceDialog", "kodbc_sqlite"), "anna");
    EXPECT_EQ(RememberedUser("kodbc_sqlite"), "anna");
    EXPECT_EQ(RememberedUser("kodbc_pg"), std::string(49, 'u')) << "a record holds 49 characters of a user";
    EXPECT_EQ(RememberedUser(nullptr), "");
    for (const auto &entry : std::filesystem::recursive_directory_iterator(dir_))
        EXPECT_EQ(test::ReadFile(entry.path()).find("geheim-123"), std::string::npos) << entry.path();
}

TEST(PickerStartEntry, OnlyTheVeryNameCounts) {
    const std::vector<std::string> entries = {"kodbc_sqlite", "Kodbc_PG", "kodbc_pg"};
    const struct {
        const char *name;
        int index;
    } cases[] = {{"kodbc_pg", 2}, {"KODBC_SQLITE", -1}, {"kodbc", -1}, {"", -1}, {nullptr, -1}};
    for (const auto &c : cases)
        EXPECT_EQ(FindExactEntry(entries, c.name), c.index) << (c.name ? c.name : "(null)");
    EXPECT_EQ(FindExactEntry({}, "kodbc_pg"), -1);
}

} // namespace
} // namespace kodbc::tools
