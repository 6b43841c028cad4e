// What the data-source picker opens on, for the record the caller hands it.
#include "tools/remembered_user.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kodbc::tools {
namespace {

std::string RememberedFor(const char *dsn) { return std::string("user of ") + dsn; }

TEST(PickerOpening, TheRecordsOwnEntryElseTheFirstWithTheUserRememberedForIt) {
    DataSourceRecord record{};
    std::strcpy(record.DataSourceName, "kodbc_pg");
    std::strcpy(record.UserId, "anna");
    std::strcpy(record.Password, "geheim");
    const auto opening = [&record](const std::vector<std::string> &entries) {
        const PickerOpening shown = OpeningFor(entries, record, RememberedFor);
        return std::to_string(shown.index) + "|" + shown.user + "|" + shown.password;
    };
    EXPECT_EQ(opening({"kodbc_sqlite", "kodbc_pg"}), "1|anna|geheim");
    EXPECT_EQ(opening({"kodbc_sqlite", "KODBC_PG"}), "0|user of kodbc_sqlite|") << "only the very name is the record's";
    EXPECT_EQ(opening({}), "0|user of |");
}

} // namespace
} // namespace kodbc::tools
