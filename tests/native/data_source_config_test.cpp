// The SQLite data source the tests run on is configured as the test command
// and the demo write theirs: results stream instead of being held whole.
#include "test_support.h"

#include <cstdlib>
#include <string>

namespace kodbc::test {
namespace {

// The lines of one section of an odbc.ini text, "key=value" with blanks removed.
std::vector<std::string> Section(const std::string &ini, const std::string &name) {
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line : Split(ini, "\n")) {
        std::erase_if(line, [](char c) { return c == ' ' || c == '\t' || c == '\r'; });
        if (!line.empty() && line.front() == '[') inside = line == "[" + name + "]";
        else if (inside && !line.empty()) lines.push_back(line);
    }
    return lines;
}

TEST(TestDataSources, SqliteStepsThroughResults) {
    DataSources();  // sets up the private configuration when the run has none
    const char *ini = std::getenv("ODBCINI");
    ASSERT_NE(ini, nullptr);
    std::vector<std::string> section = Section(ReadFile(ini), "kodbc_sqlite");
    ASSERT_FALSE(section.empty()) << ini;
    EXPECT_TRUE(Contains(section, "StepAPI=1")) << "the driver would hold every result whole in " << ini;
}

} // namespace
} // namespace kodbc::test
