// The SQL performer: statements run on the test connection (10058) and on a
// data source of its own (101), the recent list, the help's examples.
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "tools/picker_dialog_ids.h"
#include "tools/recent_statements.h"
#include "tools/sql_performer_ids.h"

#include <kodbc/kodbc_tools.h>
#include <korvel/korvel32.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using namespace wintest;
using Lines = std::vector<std::string>;

constexpr char kTitle[] = "SQL-Befehl ausf\xFChren";
constexpr char kExecuted[] = "Der SQL-Befehl wurde fehlerfrei ausgef\xFChrt";
constexpr char kCreate[] = "CREATE TABLE kodbc_perf (name VARCHAR(20), n INTEGER)";
constexpr char kInsert[] = "INSERT INTO kodbc_perf VALUES ('Schmidt', 100)";
constexpr char kInsertEncoded[] = "INSERT INTO kodbc_perf VALUES (\\QSchmidt\\Q, 100)";
constexpr char kFailing[] = "INSERT INTO kodbc_perf_missing VALUES (1)";

// How many statements the stored list holds (its entries: tools_test.cpp).
int Stored() {
    return Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kSettingsKey, 0, kodbc::tools::kRecentSection, "Total", -1);
}

// Types and executes `sql` (a sent click returns when done); the notice shown.
std::string Execute(HWND dialog, const std::string &sql) {
    Type(dialog, IDC_SQL_PERFORMER_EDIT, sql);
    WaitFor([&] { return NoticeText().empty(); });  // the last one has gone
    SendMessageA(GetDlgItem(dialog, IDC_SQL_PERFORMER_EXECUTE), BM_CLICK, 0, 0);
    return NoticeText();
}

// Opens dialog `title` with button `opener`, lets `act` answer it.
void Through(HWND dialog, int opener, const char *title, const std::function<void(HWND)> &act) {
    Click(dialog, opener);
    HWND other = AwaitDialog(title);
    if (!other) return;
    Sleep(300);
    act(other);
    WaitFor([&] { return !IsWindow(other); }, 10000);
}

class SqlPerformerTest : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({"kodbc_perf", "kodbc_perf_ds"});
        Forget();
    }
    void TearDown() override {
        Forget();
        ConnectedTest::TearDown();
    }
    void Forget() {
        Korvel_DeleteRegistryKey(HKEY_CURRENT_USER, kSettingsKey, 0, kodbc::tools::kRecentSection);
        Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, kodbc::tools::kPresetSection,
                                   kodbc::tools::kPresetValue);
        // The picker remembers the user it was confirmed with.
        Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, "DataSourceDialog", DataSource());
    }
};

TEST_F(SqlPerformerTest, RunsTypedStatementsRemembersThemAndTakesExamplesOver) {
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kSettingsKey, 0, "Parameters", "Sql", "SELECT 42");
    MessageBoxAnswerer answerer(kLibraryMessageCaption, IDOK);
    std::string errorShown;
    DialogRobot error(kErrorTitle, "", [&](HWND dialog) {
        errorShown = ControlText(dialog, IDC_ODBC_ERROR_STATEMENT);
        Click(dialog, IDC_ODBC_ERROR_CLOSE);
    }, 60000);
    Lines seen;
    int stored = -1, cleared = -1;
    DialogRobot robot(kTitle, "", [&](HWND dialog) {
        HWND recent = GetDlgItem(dialog, IDC_SQL_PERFORMER_RECENT);
        seen.push_back("preset " + ControlText(dialog, IDC_SQL_PERFORMER_EDIT));
        for (const char *statement : {"", kCreate, kInsert, kFailing})
            seen.push_back(std::string(statement) + " -> " + Execute(dialog, statement));
        stored = Stored();
        for (const std::string &entry : BoxTexts(recent)) seen.push_back(entry);
        Sleep(300);
        SaveScreenshot(dialog, "sqlperformer-10058");
        // The second entry taken with the button, the third as a click in the list would.
        Choose(dialog, IDC_SQL_PERFORMER_RECENT, kInsertEncoded);
        SendMessageA(GetDlgItem(dialog, IDC_SQL_PERFORMER_USE_LAST), BM_CLICK, 0, 0);
        seen.push_back("reused " + ControlText(dialog, IDC_SQL_PERFORMER_EDIT));
        Choose(dialog, IDC_SQL_PERFORMER_RECENT, kCreate, true);
        seen.push_back("chosen " + ControlText(dialog, IDC_SQL_PERFORMER_EDIT));
        // Examples taken over from the help dialog with its button and by a double click.
        for (int example : {12, 17}) {
            Through(dialog, IDC_SQL_PERFORMER_HELP, "M\xF6gliche SQL-Befehle", [&](HWND help) {
                HWND list = GetDlgItem(help, IDC_SQL_HELP_LIST);
                SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(example), 0);
                if (example == 17) {
                    PostMessageA(help, WM_COMMAND, MAKEWPARAM(IDC_SQL_HELP_LIST, LBN_DBLCLK),
                                 reinterpret_cast<LPARAM>(list));
                    return;
                }
                Sleep(300);  // the selection is painted
                SaveScreenshot(help, "sqlperformer-10037");
                Click(help, IDC_SQL_HELP_TAKE);
            });
            seen.push_back("taken " + ControlText(dialog, IDC_SQL_PERFORMER_EDIT));
        }
        SendMessageA(GetDlgItem(dialog, IDC_SQL_PERFORMER_CLEAR_RECENT), BM_CLICK, 0, 0);
        cleared = Stored();
        seen.push_back("entries left " + std::to_string(BoxTexts(recent).size()));
        SendMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    }, 90000);
    const int result = Kodbc_SqlPerformer(hdbc_);
    robot.Join();
    error.Join();

    EXPECT_EQ(result, 2);
    EXPECT_EQ(seen, (Lines{"preset SELECT 42", " -> ", std::string(kCreate) + " -> " + kExecuted,
                           std::string(kInsert) + " -> " + kExecuted, std::string(kFailing) + " -> ",
                           kFailing, kInsertEncoded, kCreate,  // the drop-down list, encoded
                           std::string("reused ") + kInsert, std::string("chosen ") + kCreate,
                           "taken INSERT INTO tablename (name,count) VALUES ('Schmidt',100)",
                           "taken CREATE INDEX indexname ON tablename (colname)", "entries left 0"}));
    ASSERT_EQ(answerer.Seen().size(), 1u) << "one message, for the empty field";
    EXPECT_EQ(answerer.Seen()[0].text, "Es mu\xDF ein SQL-Befehl eingegeben werden.");
    EXPECT_EQ(errorShown, kFailing) << "the error display with the failing statement";
    EXPECT_EQ(stored, 3) << "a failing statement is kept too";
    EXPECT_EQ(cleared, 0);
    EXPECT_EQ(QueryRows(hdbc_, "SELECT name, n FROM kodbc_perf"), Lines{"Schmidt|100"});
}

// Dialog 101 connects for each statement: to the data source chosen, which
// the caller's record then names; with no record nothing runs.
TEST_F(SqlPerformerTest, DataSourceVariantConnectsForEachStatement) {
    for (bool withRecord : {true, false}) {
        SCOPED_TRACE(withRecord);
        DataSourceRecord record{};
        lstrcpynA(record.DataSourceName, "kodbc_broken", sizeof record.DataSourceName);
        MessageBoxAnswerer answerer(kLibraryMessageCaption, IDOK);
        std::string shown, notice;
        DialogRobot robot(kTitle, "", [&](HWND dialog) {
            shown = ControlText(dialog, IDC_SQL_PERFORMER_DSN);
            if (withRecord) {
                Through(dialog, IDC_SQL_PERFORMER_CHOOSE_DSN, "Datenquelle ausw\xE4hlen", [](HWND picker) {
                    Choose(picker, IDC_DATASOURCE_PICKER_LIST, DataSource(), true);
                    Click(picker, IDC_DATASOURCE_PICKER_OK);
                });
                shown += " -> " + ControlText(dialog, IDC_SQL_PERFORMER_DSN);
                Sleep(300);
                SaveScreenshot(dialog, "sqlperformer-101");
            }
            notice = Execute(dialog, "CREATE TABLE kodbc_perf_ds (n INTEGER)");
            SendMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        }, 60000);
        EXPECT_EQ(Kodbc_DialogSqlPerformer(withRecord ? &record : nullptr), 2);
        robot.Join();

        EXPECT_EQ(shown, withRecord ? std::string("kodbc_broken -> ") + DataSource() : "");
        EXPECT_EQ(notice, withRecord ? kExecuted : "");
        // The refusal's text and kind are the connection's (frame_test.cpp).
        EXPECT_EQ(answerer.Seen().size(), withRecord ? 0u : 1u);
        EXPECT_EQ(Run("DROP TABLE kodbc_perf_ds"), withRecord) << "the table exists only when it ran";
        if (withRecord) EXPECT_STREQ(record.DataSourceName, DataSource()) << "the caller's record";
    }
}

} // namespace
