// Dialog 10061 on the run's data source: the fields are those of the
// windowless export, in the same order, and its close button ends it.
#include "robot.h"

#include "tools/driver_info_dialog_ids.h"

#include <sstream>
#include <string>
#include <vector>

namespace {

using wintest::ControlText;
using wintest::DialogRobot;

constexpr char kTitle[] = "Information \xFC" "ber ODBC-Datenquelle";
constexpr int kFields = 7;

class DriverInfoDialog : public wintest::ConnectedTest {};

TEST_F(DriverInfoDialog, ShowsTheDriversFieldsUnderTheirLabels) {
    char text[4096] = {};
    ASSERT_EQ(Kodbc_GetDriverInformation(hdbc_, text, sizeof text), 1);
    std::vector<std::string> expected;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) expected.push_back(line);
    ASSERT_EQ(expected.size(), static_cast<std::size_t>(kFields));

    std::vector<std::string> shown;
    DialogRobot robot(kTitle, "driverinfo-10061", [&](HWND dialog) {
        for (int i = 0; i < kFields; ++i)
            shown.push_back(ControlText(dialog, IDC_DRIVER_INFO_FIRST_LABEL + 2 * i) + "\t" +
                            ControlText(dialog, IDC_DRIVER_INFO_FIRST_FIELD + 2 * i));
        wintest::Click(dialog, IDC_DRIVER_INFO_CLOSE);
    });
    const int result = Kodbc_DisplayDriverInformation(hdbc_, nullptr);
    robot.Join();

    ASSERT_TRUE(robot.Found()) << "dialog 10061 never appeared";
    EXPECT_EQ(result, 2);
    EXPECT_EQ(shown, expected);
    EXPECT_NE(shown[0].find(wintest::DataSource()), std::string::npos) << shown[0];
}

} // namespace
