// The SQL performer's recent list: what adding keeps, what the settings
// store holds afterwards, and what loading reads back.
#include "test_support.h"
#include "tools/recent_statements.h"

#include <korvel/korvel32.h>

#include <string>
#include <vector>

namespace kodbc::test {
namespace {

using tools::RecentStatements;

class RecentStatementsTest : public PrivateRegistryTest {
protected:
    static std::string Entry(int position) {
        char name[16], value[1100];
        std::snprintf(name, sizeof name, "E%03d", position);
        Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, tools::kRecentSection, name, "<none>", value,
                                  sizeof value);
        return value;
    }
    static long Total() {
        return Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, tools::kRecentSection, "Total", -1);
    }
    // The stored list, E001 up to the first missing entry.
    static std::vector<std::string> Stored() {
        std::vector<std::string> entries;
        for (int i = 1; Entry(i) != "<none>"; ++i) entries.push_back(Entry(i));
        return entries;
    }
};

TEST_F(RecentStatementsTest, AddingKeepsNewestFirstWithoutDuplicatesAndSurvivesTheStore) {
    std::vector<std::string> many, newest;
    for (int i = 1; i <= 21; ++i) many.push_back("SELECT " + std::to_string(i));
    for (int i = 21; i >= 2; --i) newest.push_back("SELECT " + std::to_string(i));
    const struct {
        const char *what;
        std::vector<std::string> added, expected;
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
        EXPECT_EQ(Total(), static_cast<long>(c.expected.size()));
        EXPECT_EQ(Stored(), c.expected);
        RecentStatements loaded;
        loaded.Load();
        EXPECT_EQ(loaded.entries(), c.expected);
    }
}

TEST_F(RecentStatementsTest, DecodedGivesTheTypedStatementBack) {
    RecentStatements list;
    list.Add("INSERT INTO t VALUES ('a\tb', \"c\")\r\nC:\\x");
    EXPECT_EQ(list.Decoded(0), "INSERT INTO t VALUES ('a\tb', \"c\")\r\nC:\\x");
    EXPECT_EQ(list.Decoded(1), "");
}

TEST_F(RecentStatementsTest, ClearingLeavesTotalZeroAndNoEntries) {
    RecentStatements list;
    for (const char *statement : {"A", "B", "C"}) list.Add(statement);
    ASSERT_TRUE(list.Save());
    // The whole key goes, subkeys included; a neighbour whose name starts the same stays.
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "SqlPerformer\\Recent\\Sub", "V", "gone"), 1);
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "SqlPerformer\\RecentX", "E001", "kept"), 1);

    list.Clear();
    ASSERT_TRUE(list.Save());
    EXPECT_EQ(Total(), 0);
    EXPECT_EQ(Stored(), std::vector<std::string>{});
    char kept[16];
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, "SqlPerformer\\RecentX", "E001", "", kept, sizeof kept);
    EXPECT_STREQ(kept, "kept");
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, "SqlPerformer\\Recent\\Sub", "V", "", kept, sizeof kept);
    EXPECT_STREQ(kept, "");
}

TEST_F(RecentStatementsTest, LoadSkipsBlankEntriesAndReadsNothingWithoutTotal) {
    auto write = [](const char *name, const char *value) {
        Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, tools::kRecentSection, name, value);
    };
    write("E001", "A");
    RecentStatements list;
    list.Load();
    EXPECT_EQ(list.entries(), std::vector<std::string>{}) << "no Total, no entries";

    write("E002", "  \t");
    write("E003", "");
    write("E004", "D");
    write("E005", "beyond Total");
    Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, tools::kRecentSection, "Total", 4);
    list.Load();
    EXPECT_EQ(list.entries(), (std::vector<std::string>{"A", "D"}));
}

} // namespace
} // namespace kodbc::test
