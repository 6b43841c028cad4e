// The data-source picker's memory: one user per data source in its own
// section, cut to the record's field, never the password, and the entry it
// opens on.
#include "test_support.h"

#include "tools/remembered_user.h"

#include <korvel/korvel32.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace kodbc::tools {
namespace {

class RememberedUserTest : public kodbc::test::PrivateRegistryTest {};

TEST_F(RememberedUserTest, OneUserPerDataSourceInTheDialogsSection) {
    EXPECT_EQ(RememberedUser("kodbc_sqlite"), "");
    ASSERT_TRUE(RememberUser("kodbc_sqlite", "anna"));
    ASSERT_TRUE(RememberUser("kodbc_pg", std::string(60, 'u').c_str()));
    EXPECT_FALSE(RememberUser("", "anna"));

    char stored[100] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, "DataSourceDialog", "kodbc_sqlite", "<none>", stored,
                              sizeof stored);
    EXPECT_STREQ(stored, "anna");
    EXPECT_EQ(RememberedUser("kodbc_sqlite"), "anna");
    EXPECT_EQ(RememberedUser("kodbc_pg"), std::string(49, 'u')) << "a record holds 49 characters of a user";
    EXPECT_EQ(RememberedUser(nullptr), "");
}

TEST_F(RememberedUserTest, ConfirmedChoiceKeepsTheUserButNoTraceOfThePassword) {
    DataSourceRecord chosen{};
    std::strcpy(chosen.DataSourceName, "kodbc_sqlite");
    std::strcpy(chosen.UserId, "anna");
    std::strcpy(chosen.Password, "geheim-123");
    ASSERT_TRUE(RememberChoice(chosen));
    EXPECT_EQ(RememberedUser("kodbc_sqlite"), "anna");
    for (const auto &entry : std::filesystem::recursive_directory_iterator(dir_)) {
        if (!entry.is_regular_file()) continue;
        std::ostringstream stored;
        stored << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        EXPECT_EQ(stored.str().find("geheim-123"), std::string::npos) << entry.path();
    }
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
