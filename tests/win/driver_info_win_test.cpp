// Dialog 10061 on the run's data source: each line of the windowless export
// under its label, in the same order (what the lines say is the core's,
// tests/native/tools_test.cpp), and its close button ends it.
#include "robot.h"

#include "tools/driver_info_dialog_ids.h"

#include <sstream>
#include <string>
#include <vector>

namespace {

using DriverInfoDialog = wintest::ConnectedTest;

TEST_F(DriverInfoDialog, ShowsTheDriversFieldsUnderTheirLabels) {
    char text[4096] = {};
    ASSERT_EQ(Kodbc_GetDriverInformation(hdbc_, text, sizeof text), 1);
    std::vector<std::string> expected, shown;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) expected.push_back(line);

    wintest::DialogRobot robot("Information \xFC" "ber ODBC-Datenquelle", "driverinfo-10061", [&](HWND dialog) {
        for (int i = 0; i < static_cast<int>(expected.size()); ++i)
            shown.push_back(wintest::ControlText(dialog, IDC_DRIVER_INFO_FIRST_LABEL + 2 * i) + "\t" +
                            wintest::ControlText(dialog, IDC_DRIVER_INFO_FIRST_FIELD + 2 * i));
        wintest::Click(dialog, IDC_DRIVER_INFO_CLOSE);
    });
    EXPECT_EQ(Kodbc_DisplayDriverInformation(hdbc_, nullptr), 2);
    robot.Join();

    EXPECT_EQ(shown, expected);
}

} // namespace
