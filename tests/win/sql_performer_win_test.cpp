// The SQL performer as the user meets it: statements typed and executed on
// the test connection (dialog 10058) and on a data source of its own
// (dialog 101), the recent list in the registry, and the examples of the
// help dialog taken over into the edit field.
#include "wizard_walker.h"

#include "frame/diagnostics_dialog_ids.h"
#include "tools/picker_dialog_ids.h"
#include "tools/recent_statements.h"
#include "tools/sql_performer_ids.h"

#include <kodbc/kodbc_tools.h>
#include <korvel/korvel32.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

using wintest::ControlText;
using wintest::DialogRobot;
using wintest::WaitFor;

constexpr char kTitle[] = "SQL-Befehl ausf\xFChren";
constexpr char kHelpTitle[] = "M\xF6gliche SQL-Befehle";
constexpr char kPickerTitle[] = "Datenquelle ausw\xE4hlen";
constexpr char kErrorTitle[] = "Fehler beim ODBC-Datenbankzugriff";
constexpr char kKey[] = "Software\\Korvel Software\\Kodbc";
constexpr char kExecuted[] = "Der SQL-Befehl wurde fehlerfrei ausgef\xFChrt";

constexpr char kCreate[] = "CREATE TABLE kodbc_perf (name VARCHAR(20), n INTEGER)";
constexpr char kInsert[] = "INSERT INTO kodbc_perf VALUES ('Schmidt', 100)";
constexpr char kInsertEncoded[] = "INSERT INTO kodbc_perf VALUES (\\QSchmidt\\Q, 100)";
constexpr char kFailing[] = "INSERT INTO kodbc_perf_missing VALUES (1)";

std::string Entry(int position) {
    char name[16], value[1100];
    std::snprintf(name, sizeof name, "E%03d", position);
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, kodbc::tools::kRecentSection, name, "<none>", value,
                              sizeof value);
    return value;
}

long Total() { return Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, kodbc::tools::kRecentSection, "Total", -1); }

// The notice the performer shows after a statement ran, on the dialog's thread.
std::string NoticeText(DWORD thread) {
    std::string text;
    EnumThreadWindows(
        thread,
        [](HWND window, LPARAM param) -> BOOL {
            char cls[32] = {};
            GetClassNameA(window, cls, sizeof cls);
            if (lstrcmpA(cls, "KorvelTempWind") != 0 || !IsWindowVisible(window)) return TRUE;
            *reinterpret_cast<std::string *>(param) = wintest::WindowText(window);
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&text));
    return text;
}

// Drives one performer window from the robot's thread. Buttons are pressed
// with a sent click, so each returns once the dialog has done its work
// (message boxes and the error display are answered meanwhile).
struct Performer {
    HWND dialog;
    DWORD thread = GetWindowThreadProcessId(dialog, nullptr);

    HWND Edit() const { return GetDlgItem(dialog, IDC_SQL_PERFORMER_EDIT); }
    void Press(int id) const { SendMessageA(GetDlgItem(dialog, id), BM_CLICK, 0, 0); }
    // Types text into the emptied edit field, key by key.
    bool Type(const std::string &text) const {
        SendMessageA(Edit(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(""));
        for (char c : text) PostMessageA(Edit(), WM_CHAR, static_cast<unsigned char>(c), 1);
        return WaitFor([&] { return wintest::WindowText(Edit()) == text; });
    }
    // Executes what the field holds; the notice it showed, empty for none.
    std::string Execute() const {
        WaitFor([&] { return NoticeText(thread).empty(); });  // the last one has gone
        Press(IDC_SQL_PERFORMER_EXECUTE);
        return NoticeText(thread);
    }
    std::vector<std::string> Recent() const { return wintest::BoxTexts(GetDlgItem(dialog, IDC_SQL_PERFORMER_RECENT)); }
    void SelectRecent(int index) const {
        SendDlgItemMessageA(dialog, IDC_SQL_PERFORMER_RECENT, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
    void Close() const { SendMessageA(dialog, WM_COMMAND, IDCANCEL, 0); }
};

// Picks the run's data source in the picker that "Datenquelle wählen..."
// opens (robot thread).
void ChooseRunsDataSource(HWND performer) {
    wintest::Click(performer, IDC_SQL_PERFORMER_CHOOSE_DSN);
    HWND picker = nullptr;
    if (!WaitFor([&] { return (picker = FindWindowA("#32770", kPickerTitle)) != nullptr; })) return;
    Sleep(300);
    HWND list = GetDlgItem(picker, IDC_DATASOURCE_PICKER_LIST);
    const LRESULT index = SendMessageA(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                       reinterpret_cast<LPARAM>(wintest::DataSource()));
    SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageA(picker, WM_COMMAND, MAKEWPARAM(IDC_DATASOURCE_PICKER_LIST, LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
    wintest::Click(picker, IDC_DATASOURCE_PICKER_OK);
    WaitFor([&] { return !IsWindow(picker); }, 10000);
}

class SqlPerformerTest : public wintest::ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        Forget();
    }
    void TearDown() override {
        Forget();
        ConnectedTest::TearDown();
    }
    void Forget() {
        Korvel_DeleteRegistryKey(HKEY_CURRENT_USER, kKey, 0, kodbc::tools::kRecentSection);
        Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, kodbc::tools::kPresetSection, kodbc::tools::kPresetValue);
        // The picker remembers the user it was confirmed with.
        Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "DataSourceDialog", wintest::DataSource());
        for (const char *table : {"kodbc_perf", "kodbc_perf_ds"}) Run(std::string("DROP TABLE ") + table);
    }
};

TEST_F(SqlPerformerTest, ExecutesTypedStatementsAndRemembersThemFailedOnesToo) {
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Parameters", "Sql", "SELECT 42");
    wintest::MessageBoxAnswerer answerer(wintest::kLibraryMessageCaption, IDOK);
    std::string errorStatement;
    DialogRobot error(kErrorTitle, "", [&](HWND dialog) {
        errorStatement = ControlText(dialog, IDC_ODBC_ERROR_STATEMENT);
        wintest::Click(dialog, IDC_ODBC_ERROR_CLOSE);
    }, 60000);
    std::string preset, emptyNotice, createNotice, insertNotice, failNotice, usedLast, chosen;
    bool typed = true;
    std::vector<std::string> recent;
    long totalAfterFailure = 0;
    std::string firstAfterFailure;
    DialogRobot robot(kTitle, "", [&](HWND dialog) {
        Performer p{dialog};
        preset = wintest::WindowText(p.Edit());
        p.Type("");
        emptyNotice = p.Execute();
        typed = p.Type(kCreate) && typed;
        createNotice = p.Execute();
        typed = p.Type(kInsert) && typed;
        insertNotice = p.Execute();
        typed = p.Type(kFailing) && typed;
        failNotice = p.Execute();
        totalAfterFailure = Total();
        firstAfterFailure = Entry(1);
        recent = p.Recent();
        Sleep(300);
        wintest::SaveScreenshot(dialog, "sqlperformer-10058");
        p.SelectRecent(1);
        p.Press(IDC_SQL_PERFORMER_USE_LAST);
        usedLast = wintest::WindowText(p.Edit());
        p.SelectRecent(2);
        SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_SQL_PERFORMER_RECENT, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDC_SQL_PERFORMER_RECENT)));
        chosen = wintest::WindowText(p.Edit());
        p.Close();
    }, 60000);
    const int result = Kodbc_SqlPerformer(hdbc_);
    robot.Join();
    error.Join();

    ASSERT_TRUE(robot.Found()) << "dialog 10058 never appeared";
    EXPECT_EQ(result, 2);
    EXPECT_TRUE(typed) << "the edit field did not take the typing";
    EXPECT_EQ(preset, "SELECT 42") << "preset from Parameters\\Sql";
    ASSERT_EQ(answerer.Seen().size(), 1u) << "one message, for the empty field";
    EXPECT_EQ(answerer.Seen()[0].text, "Es mu\xDF ein SQL-Befehl eingegeben werden.");
    EXPECT_EQ(emptyNotice, "");
    EXPECT_EQ(createNotice, kExecuted);
    EXPECT_EQ(insertNotice, kExecuted);
    EXPECT_EQ(failNotice, "");
    EXPECT_TRUE(error.Found()) << "no error display for the failing statement";
    EXPECT_EQ(errorStatement, kFailing);
    EXPECT_EQ(totalAfterFailure, 3);
    EXPECT_EQ(firstAfterFailure, kFailing) << "kept although it failed";
    EXPECT_EQ(recent, (std::vector<std::string>{kFailing, kInsertEncoded, kCreate}));
    EXPECT_EQ(usedLast, kInsert) << "decoded into the edit field";
    EXPECT_EQ(chosen, kCreate);
    EXPECT_EQ(wintest::QueryRows(hdbc_, "SELECT name, n FROM kodbc_perf"), std::vector<std::string>{"Schmidt|100"});
}

TEST_F(SqlPerformerTest, KeepsTheTwentyNewestAndClears) {
    std::vector<std::string> kept;
    long total = 0, totalCleared = -1;
    std::string last, afterLast, firstCleared;
    std::size_t shownCleared = 99;
    DialogRobot robot(kTitle, "", [&](HWND dialog) {
        Performer p{dialog};
        for (int i = 1; i <= 21; ++i) {
            SetWindowTextA(p.Edit(), ("SELECT " + std::to_string(i)).c_str());
            p.Press(IDC_SQL_PERFORMER_EXECUTE);
        }
        total = Total();
        for (int i = 1; i <= 20; ++i) kept.push_back(Entry(i));
        afterLast = Entry(21);
        p.Press(IDC_SQL_PERFORMER_CLEAR_RECENT);
        totalCleared = Total();
        firstCleared = Entry(1);
        shownCleared = p.Recent().size();
        p.Close();
    }, 60000);
    Kodbc_SqlPerformer(hdbc_);
    robot.Join();

    ASSERT_TRUE(robot.Found());
    std::vector<std::string> newest;
    for (int i = 21; i >= 2; --i) newest.push_back("SELECT " + std::to_string(i));
    EXPECT_EQ(total, 20);
    EXPECT_EQ(kept, newest);
    EXPECT_EQ(afterLast, "<none>");
    EXPECT_EQ(totalCleared, 0);
    EXPECT_EQ(firstCleared, "<none>");
    EXPECT_EQ(shownCleared, 0u);
}

// "Übernehmen" and a double click both copy the chosen example.
TEST_F(SqlPerformerTest, HelpDialogHandsTheChosenExampleOver) {
    const struct {
        int example;
        bool doubleClick;
    } cases[] = {{12, false}, {17, true}};
    std::vector<std::string> taken;
    std::vector<int> examples;
    DialogRobot robot(kTitle, "", [&](HWND dialog) {
        Performer p{dialog};
        for (const auto &c : cases) {
            wintest::Click(dialog, IDC_SQL_PERFORMER_HELP);
            HWND help = nullptr;
            if (!WaitFor([&] { return (help = FindWindowA("#32770", kHelpTitle)) != nullptr; })) break;
            Sleep(300);
            examples.push_back(static_cast<int>(SendDlgItemMessageA(help, IDC_SQL_HELP_LIST, LB_GETCOUNT, 0, 0)));
            SendDlgItemMessageA(help, IDC_SQL_HELP_LIST, LB_SETCURSEL, static_cast<WPARAM>(c.example), 0);
            if (!c.doubleClick) {
                wintest::SaveScreenshot(help, "sqlperformer-10037");
                wintest::Click(help, IDC_SQL_HELP_TAKE);
            } else {
                PostMessageA(help, WM_COMMAND, MAKEWPARAM(IDC_SQL_HELP_LIST, LBN_DBLCLK),
                             reinterpret_cast<LPARAM>(GetDlgItem(help, IDC_SQL_HELP_LIST)));
            }
            WaitFor([&] { return !IsWindow(help); });
            taken.push_back(wintest::WindowText(p.Edit()));
        }
        p.Close();
    }, 60000);
    Kodbc_SqlPerformer(hdbc_);
    robot.Join();

    ASSERT_TRUE(robot.Found());
    EXPECT_EQ(examples, (std::vector<int>{18, 18}));
    EXPECT_EQ(taken, (std::vector<std::string>{"INSERT INTO tablename (name,count) VALUES ('Schmidt',100)",
                                               "CREATE INDEX indexname ON tablename (colname)"}));
}

// Dialog 101 connects for each statement: on the record's data source, on
// one chosen through "Datenquelle wählen...", and with none the connection
// refuses and nothing runs.
TEST_F(SqlPerformerTest, DataSourceVariantConnectsForEachStatement) {
    const struct {
        const char *what;
        bool withRecord;      // else a null record
        const char *start;    // the record's data source
        bool choose;          // the run's data source chosen through the button
        const char *message;  // what the library said, empty for nothing
    } cases[] = {
        {"record of the run's data source", true, wintest::DataSource(), false, ""},
        {"no record", false, "", false, "Es ist keine Datenquelle angegeben"},
        {"empty record, data source chosen", true, "", true, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        Run("DROP TABLE kodbc_perf_ds");
        DataSourceRecord record{};
        lstrcpynA(record.DataSourceName, c.start, sizeof record.DataSourceName);
        wintest::MessageBoxAnswerer answerer(wintest::kLibraryMessageCaption, IDOK);
        std::string shownSource, notice;
        DialogRobot robot(kTitle, *c.start ? "sqlperformer-101" : "", [&](HWND dialog) {
            Performer p{dialog};
            if (c.choose) ChooseRunsDataSource(dialog);
            shownSource = ControlText(dialog, IDC_SQL_PERFORMER_DSN);
            SetWindowTextA(p.Edit(), "CREATE TABLE kodbc_perf_ds (n INTEGER)");
            notice = p.Execute();
            p.Close();
        }, 60000);
        const int result = Kodbc_DialogSqlPerformer(c.withRecord ? &record : nullptr);
        robot.Join();

        ASSERT_TRUE(robot.Found()) << "dialog 101 never appeared";
        const bool runs = !*c.message;
        EXPECT_EQ(result, 2);
        EXPECT_EQ(shownSource, runs ? wintest::DataSource() : "");
        EXPECT_EQ(!notice.empty(), runs) << notice;
        std::vector<std::string> messages;
        for (const wintest::MessageBoxSeen &seen : answerer.Seen()) messages.push_back(seen.text);
        EXPECT_EQ(messages, runs ? std::vector<std::string>{} : std::vector<std::string>{c.message});
        EXPECT_EQ(Run("SELECT * FROM kodbc_perf_ds"), runs) << "the table exists only when it ran";
        if (c.withRecord) {
            EXPECT_STREQ(record.DataSourceName, runs ? wintest::DataSource() : c.start) << "the caller's record";
        }
    }
}

} // namespace
