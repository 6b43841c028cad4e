// The data-source and schema pickers (dialogs 103, 10056, 10060) driven as
// a user drives them: what they give back, what they remember, when they
// stay open, and what the summary dialog allows on a database with and
// without schemata.
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "tools/picker_dialog_ids.h"
#include "win_support.h"

#include <korvel/korvel32.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace wintest;

constexpr char kSourceTitle[] = "Datenquelle ausw\xE4hlen";
constexpr char kSchemaTitle[] = "Datenbank-Schema ausw\xE4hlen";
constexpr char kSection[] = "DataSourceDialog";
constexpr char kSqlite[] = "kodbc_sqlite";
constexpr char kBroken[] = "kodbc_broken";  // configured, but its database cannot be opened
constexpr char kPg[] = "kodbc_pg";
constexpr char kPgSchema[] = "kodbc_pickers";
constexpr unsigned char kCallersBytes = 0xA5;  // the record's last 20 bytes, which are the caller's

DataSourceRecord Record(const char *dsn, const char *user = "", const char *password = "") {
    DataSourceRecord record;
    std::memset(&record, 0, sizeof record);
    lstrcpynA(record.DataSourceName, dsn, sizeof record.DataSourceName);
    lstrcpynA(record.UserId, user, sizeof record.UserId);
    lstrcpynA(record.Password, password, sizeof record.Password);
    std::memset(record.Reserved, kCallersBytes, sizeof record.Reserved);
    return record;
}

bool CallersBytesKept(const DataSourceRecord &record) {
    for (unsigned char byte : record.Reserved)
        if (byte != kCallersBytes) return false;
    return true;
}

// ---------------------------------------------------------------------------
// The remembered users in the prefix's registry, put back as they were.

std::string Remembered(const char *dsn) { return Setting(kSection, dsn, "<none>"); }

class RememberedUsers {
public:
    explicit RememberedUsers(std::vector<std::string> dsns) {
        for (std::string &dsn : dsns) saved_.push_back({dsn, Remembered(dsn.c_str())});
    }
    ~RememberedUsers() {
        for (const auto &[dsn, user] : saved_) {
            if (user == "<none>") Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, kSection, dsn.c_str());
            else Korvel_WriteRegistryString(HKEY_CURRENT_USER, kSettingsKey, 0, kSection, dsn.c_str(), user.c_str());
        }
    }
    void Set(const char *dsn, const char *user) {
        if (user) Korvel_WriteRegistryString(HKEY_CURRENT_USER, kSettingsKey, 0, kSection, dsn, user);
        else Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, kSection, dsn);
    }

private:
    std::vector<std::pair<std::string, std::string>> saved_;
};

// Every name and text below the dialog's section.
std::string SectionContents() {
    std::string all;
    HKEY key = nullptr;
    const std::string path = std::string(kSettingsKey) + "\\" + kSection;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return all;
    for (DWORD i = 0;; ++i) {
        char name[256] = {}, data[256] = {};
        DWORD nameSize = sizeof name, dataSize = sizeof data - 1;
        if (RegEnumValueA(key, i, name, &nameSize, nullptr, nullptr, reinterpret_cast<BYTE *>(data), &dataSize) !=
            ERROR_SUCCESS)
            break;
        all += std::string(name) + "=" + data + "\n";
    }
    RegCloseKey(key);
    return all;
}

// ---------------------------------------------------------------------------
// Windows

int Entry(HWND dialog, const char *dsn) {
    return static_cast<int>(SendDlgItemMessageA(dialog, IDC_DATASOURCE_PICKER_LIST, LB_FINDSTRINGEXACT,
                                                static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(dsn)));
}

int Selection(HWND dialog) {
    return static_cast<int>(SendDlgItemMessageA(dialog, IDC_DATASOURCE_PICKER_LIST, LB_GETCURSEL, 0, 0));
}

// Clicks (or double-clicks) an entry of the data-source list with the mouse.
void ClickEntry(HWND dialog, const char *dsn, bool twice = false) {
    HWND list = GetDlgItem(dialog, IDC_DATASOURCE_PICKER_LIST);
    RECT r = {};
    SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(Entry(dialog, dsn)), reinterpret_cast<LPARAM>(&r));
    const LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    PostMessageA(list, WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageA(list, WM_LBUTTONUP, 0, at);
    if (twice) {
        PostMessageA(list, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
        PostMessageA(list, WM_LBUTTONUP, 0, at);
    }
}

// In an open dialog 103: picks dsn with user and password and confirms.
void PickInSourceDialog(HWND picker, const char *dsn, const char *user, const char *password = "") {
    ClickEntry(picker, dsn);
    WaitFor([&] { return Selection(picker) == Entry(picker, dsn); });
    Type(picker, IDC_DATASOURCE_PICKER_USER, user);
    Type(picker, IDC_DATASOURCE_PICKER_PASSWORD, password);
    Click(picker, IDC_DATASOURCE_PICKER_OK);
    WaitFor([&] { return !IsWindow(picker); });
}

// ---------------------------------------------------------------------------
// Dialog 103

struct Confirmation {
    const char *how;
    bool doubleClick;
    const char *shot;
};

TEST(DataSourcePicker, ConfirmingFillsTheRecordAndRemembersOnlyTheUser) {
    const Confirmation confirmations[] = {{"OK button", false, "pickers-103"}, {"double click", true, ""}};
    for (const Confirmation &c : confirmations) {
        SCOPED_TRACE(c.how);
        RememberedUsers users({kSqlite, kBroken});
        users.Set(kSqlite, "vorher");
        DataSourceRecord record = Record(kBroken, "alt", "altes-pw");
        struct {
            bool openedOnRecord = false;
            std::string userAfterClick = "<unread>", passwordAfterClick = "<unread>";
        } seen;
        DialogRobot robot(kSourceTitle, c.shot, [&](HWND dialog) {
            seen.openedOnRecord = Selection(dialog) == Entry(dialog, kBroken) &&
                                  ControlText(dialog, IDC_DATASOURCE_PICKER_USER) == "alt" &&
                                  ControlText(dialog, IDC_DATASOURCE_PICKER_PASSWORD) == "altes-pw";
            ClickEntry(dialog, kSqlite);
            WaitFor([&] { return ControlText(dialog, IDC_DATASOURCE_PICKER_USER) == "vorher"; });
            seen.userAfterClick = ControlText(dialog, IDC_DATASOURCE_PICKER_USER);
            seen.passwordAfterClick = ControlText(dialog, IDC_DATASOURCE_PICKER_PASSWORD);
            Type(dialog, IDC_DATASOURCE_PICKER_USER, "robot");
            Type(dialog, IDC_DATASOURCE_PICKER_PASSWORD, "geheim-123");
            if (c.doubleClick) ClickEntry(dialog, kSqlite, true);
            else Click(dialog, IDC_DATASOURCE_PICKER_OK);
            WaitFor([&] { return !IsWindow(dialog); });
        });
        const int result = Kodbc_DataSourceDialog(&record);
        robot.Join();

        ASSERT_TRUE(robot.Found()) << "dialog 103 never appeared";
        EXPECT_TRUE(seen.openedOnRecord) << "the record's own data source, user and password first";
        EXPECT_EQ(seen.userAfterClick, "vorher") << "another data source shows the user remembered for it";
        EXPECT_EQ(seen.passwordAfterClick, "");
        EXPECT_EQ(result, 1);
        EXPECT_STREQ(record.DataSourceName, kSqlite);
        EXPECT_STREQ(record.UserId, "robot");
        EXPECT_STREQ(record.Password, "geheim-123");
        EXPECT_TRUE(CallersBytesKept(record));
        EXPECT_EQ(Remembered(kSqlite), "robot");
        EXPECT_EQ(SectionContents().find("geheim-123"), std::string::npos) << SectionContents();
    }
}

TEST(DataSourcePicker, AbsentDataSourceOpensOnTheFirstWithItsRememberedUser) {
    HWND probe = CreateWindowA("LISTBOX", "", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(probe, nullptr);
    Kodbc_FillDataSourcesBox(probe);
    const std::vector<std::string> names = BoxTexts(probe);
    DestroyWindow(probe);
    ASSERT_FALSE(names.empty());
    RememberedUsers users({names[0]});
    users.Set(names[0].c_str(), "erster");

    DataSourceRecord record = Record("kodbc_gibt_es_nicht", "alt", "altes-pw");
    const DataSourceRecord before = record;
    int selection = -2;
    std::string user = "<unread>", password = "<unread>";
    DialogRobot robot(kSourceTitle, "", [&](HWND dialog) {
        WaitFor([&] { return ControlText(dialog, IDC_DATASOURCE_PICKER_USER) == "erster"; });
        selection = Selection(dialog);
        user = ControlText(dialog, IDC_DATASOURCE_PICKER_USER);
        password = ControlText(dialog, IDC_DATASOURCE_PICKER_PASSWORD);
        Click(dialog, IDC_DATASOURCE_PICKER_CANCEL);
    });
    const int result = Kodbc_DataSourceDialog(&record);
    robot.Join();

    ASSERT_TRUE(robot.Found());
    EXPECT_EQ(selection, 0);
    EXPECT_EQ(user, "erster");
    EXPECT_EQ(password, "");
    EXPECT_EQ(result, 2);
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0) << "a cancelled picker leaves the record alone";
}

// A choice that cannot be used is answered by a message or the connection's
// error, and the picker stays open for another try.
struct UnusableChoice {
    const char *what;
    std::function<void(HWND)> choose;
    const char *popupTitle;
    bool robotClosesPopup;  // else the message-box answerer does
};

TEST(DataSourcePicker, StaysOpenWhenTheChoiceCannotBeUsed) {
    const UnusableChoice choices[] = {
        {"nothing selected",
         [](HWND dialog) { SendDlgItemMessageA(dialog, IDC_DATASOURCE_PICKER_LIST, LB_SETCURSEL, static_cast<WPARAM>(-1), 0); },
         kLibraryMessageCaption, false},
        {"a data source that does not connect",
         [](HWND dialog) {
             // Chosen by sent messages: the dialog has filled the user field
             // for it before the robot types over it.
             HWND list = GetDlgItem(dialog, IDC_DATASOURCE_PICKER_LIST);
             SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(Entry(dialog, kBroken)), 0);
             SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_DATASOURCE_PICKER_LIST, LBN_SELCHANGE),
                          reinterpret_cast<LPARAM>(list));
             Type(dialog, IDC_DATASOURCE_PICKER_USER, "versuch");
         },
         kErrorTitle, true},
    };
    for (const UnusableChoice &c : choices) {
        SCOPED_TRACE(c.what);
        RememberedUsers users({kSqlite, kBroken});
        DataSourceRecord record = Record(kSqlite);
        const DataSourceRecord before = record;
        bool brokenListed = false, popupShown = false, stayedOpen = false;
        MessageBoxAnswerer answerer(kLibraryMessageCaption, IDOK);
        DialogRobot robot(kSourceTitle, "", [&](HWND dialog) {
            brokenListed = Entry(dialog, kBroken) != LB_ERR;
            if (!brokenListed) {
                Click(dialog, IDC_DATASOURCE_PICKER_CANCEL);
                return;
            }
            c.choose(dialog);
            Click(dialog, IDC_DATASOURCE_PICKER_OK);
            HWND popup = AwaitDialog(c.popupTitle, dialog);
            popupShown = popup != nullptr;
            if (popup && c.robotClosesPopup) Click(popup, IDC_ODBC_ERROR_CLOSE);
            WaitFor([&] { return !IsWindow(popup); });
            // Answered only once the test thread is back in the dialog's
            // loop, that is after the handler that showed the popup is done.
            SendMessageTimeoutA(dialog, WM_NULL, 0, 0, SMTO_NORMAL, 5000, nullptr);
            stayedOpen = IsWindow(dialog) && IsWindowVisible(dialog);
            Click(dialog, IDC_DATASOURCE_PICKER_CANCEL);
        });
        const int result = Kodbc_DataSourceDialog(&record);
        robot.Join();

        ASSERT_TRUE(robot.Found());
        ASSERT_TRUE(brokenListed) << "the test configuration lacks " << kBroken;
        EXPECT_TRUE(popupShown) << "expected \"" << c.popupTitle << "\"";
        EXPECT_TRUE(stayedOpen);
        EXPECT_EQ(result, 2);
        EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
        if (c.robotClosesPopup) {
            EXPECT_TRUE(answerer.Seen().empty());
            EXPECT_EQ(Remembered(kBroken), "versuch") << "the user is remembered before the connection is tried";
        } else {
            EXPECT_EQ(answerer.Seen().size(), 1u);
            if (!answerer.Seen().empty()) {
                EXPECT_EQ(answerer.Seen()[0].text, "Es mu\xDF eine Datenquelle ausgew\xE4hlt werden.");
            }
        }
    }
}

// ---------------------------------------------------------------------------
// Dialog 10056 on SQLite, which has no schemata: the text is typed.

class SchemaPicker : public ConnectedTest {};

TEST_F(SchemaPicker, TakesTheTypedTextOnlyOnOk) {
    const struct {
        int button;
        int result;
        const char *schema;
        const char *shot;
    } cases[] = {{IDC_SCHEMA_PICKER_OK, 1, "mein_schema", "pickers-10056"}, {IDC_SCHEMA_PICKER_CANCEL, 2, "alt", ""}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.schema);
        char schema[100] = "alt";
        std::string shown = "<unread>";
        DialogRobot robot(kSchemaTitle, c.shot, [&](HWND dialog) {
            shown = ControlText(dialog, IDC_SCHEMA_PICKER_BOX);
            Type(dialog, IDC_SCHEMA_PICKER_BOX, "mein_schema");
            Click(dialog, c.button);
        });
        const int result = Kodbc_SelectDbaseSchema(nullptr, hdbc_, schema, 0, 0);
        robot.Join();
        ASSERT_TRUE(robot.Found());
        EXPECT_EQ(shown, "alt") << "opens with the schema passed in";
        EXPECT_EQ(result, c.result);
        EXPECT_STREQ(schema, c.schema);
    }
}

// ---------------------------------------------------------------------------
// Dialog 10060 on SQLite, which has no schemata (the schema controls stay
// disabled), and on PostgreSQL, which has them (one is picked from the list).
// Either way another data source clears the schema; OK hands the choice
// back, "Abbrechen" leaves the caller's record and schema alone.

struct Target {
    const char *dsn;
    const char *title;  // the caller's; null: the template's
    const char *user, *pickedUser;
    bool schemata;
    int ending;
    const char *shot;
};

class SourceAndSchema : public ConnectedTest, public ::testing::WithParamInterface<Target> {
protected:
    std::string Dsn() const override { return GetParam().dsn; }
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready() || !GetParam().schemata) return;
        OwnTables({std::string("SCHEMA ") + kPgSchema + " CASCADE"});
        ASSERT_TRUE(Run(std::string("CREATE SCHEMA ") + kPgSchema));
        ASSERT_TRUE(Run(std::string("CREATE TABLE ") + kPgSchema + ".t (id INTEGER)"));
    }
    // Sessions on the test database, this fixture's own included (PostgreSQL).
    long Sessions() {
        const auto rows = Query("SELECT count(*) FROM pg_stat_activity WHERE datname = current_database()");
        return rows.empty() ? -1 : std::stol(rows[0]);
    }
};

// In an open dialog 10056: picks kPgSchema from the list.
bool PickListedSchema() {
    HWND picker = AwaitDialog(kSchemaTitle);
    if (!picker) return false;
    if (!Choose(picker, IDC_SCHEMA_PICKER_BOX, kPgSchema)) {
        Click(picker, IDC_SCHEMA_PICKER_CANCEL);
        return false;
    }
    Click(picker, IDC_SCHEMA_PICKER_OK);
    return WaitFor([&] { return !IsWindow(picker); });
}

TEST_P(SourceAndSchema, SchemaControlsFollowTheDatabaseAndAnotherChoiceClearsTheSchema) {
    const Target &t = GetParam();
    EXPECT_EQ(Kodbc_GetSchemaUsage(hdbc_) > 0, t.schemata);
    RememberedUsers users({t.dsn});
    DataSourceRecord record = Record(t.dsn, t.user, "");
    const DataSourceRecord before = record;
    char schema[6] = "alt";  // the result is cut to the caller's size
    const long sessions = t.schemata ? Sessions() : 0;
    struct {
        std::string shown, picked, afterChoice, finalSchema;
        bool enabled[3] = {}, enabledAfterChoice = false;
        long sessionsWhileOpen = 0;
    } seen;
    DialogRobot robot(t.title ? t.title : kSourceTitle, t.shot, [&](HWND dialog) {
        if (t.schemata) seen.sessionsWhileOpen = Sessions();
        seen.shown = ControlText(dialog, IDC_SOURCE_SCHEMA_DSN) + "|" + ControlText(dialog, IDC_SOURCE_SCHEMA_USER) +
                     "|" + ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
        int i = 0;
        for (int id : {IDC_SOURCE_SCHEMA_SCHEMA_LABEL, IDC_SOURCE_SCHEMA_SCHEMA, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA})
            seen.enabled[i++] = Enabled(dialog, id);
        if (t.schemata) {
            Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
            if (PickListedSchema()) seen.picked = ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
        }
        Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_DSN);
        if (HWND picker = AwaitDialog(kSourceTitle, dialog)) PickInSourceDialog(picker, t.dsn, t.pickedUser);
        WaitFor([&] { return ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA).empty(); });
        seen.afterChoice = ControlText(dialog, IDC_SOURCE_SCHEMA_USER) + "|" + ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
        seen.enabledAfterChoice = Enabled(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
        if (t.schemata) {
            Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
            PickListedSchema();
        }
        seen.finalSchema = ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
        Click(dialog, t.ending);
    });
    const int result = Kodbc_DataSourceAndSchemaDialog(nullptr, &record, schema, sizeof schema, t.title);
    robot.Join();

    ASSERT_TRUE(robot.Found()) << "dialog 10060 never appeared";
    EXPECT_EQ(seen.shown, std::string(t.dsn) + "|" + t.user + "|alt");
    for (bool enabled : seen.enabled) EXPECT_EQ(enabled, t.schemata);
    EXPECT_EQ(seen.afterChoice, std::string(t.pickedUser) + "|") << "another data source clears the schema";
    EXPECT_EQ(seen.enabledAfterChoice, t.schemata);
    EXPECT_EQ(seen.finalSchema, t.schemata ? kPgSchema : "");
    if (t.schemata) {
        EXPECT_EQ(seen.picked, kPgSchema);
        EXPECT_EQ(seen.sessionsWhileOpen, sessions + 1) << "the dialog holds a connection of its own";
        EXPECT_TRUE(WaitFor([&] { return Sessions() == sessions; })) << "its connection ends with the dialog";
    }
    if (t.ending == IDC_SOURCE_SCHEMA_OK) {
        EXPECT_EQ(result, 1);
        EXPECT_STREQ(record.UserId, t.pickedUser);
        EXPECT_TRUE(CallersBytesKept(record));
        EXPECT_STREQ(schema, t.schemata ? "kodbc" : "");
    } else {
        EXPECT_EQ(result, 2);
        EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
        EXPECT_STREQ(schema, "alt");
    }
}

INSTANTIATE_TEST_SUITE_P(
    DataSources, SourceAndSchema,
    ::testing::Values(Target{kSqlite, "Ziel w\xE4hlen", "anna", "bert", false, IDC_SOURCE_SCHEMA_OK, "pickers-10060"},
                      Target{kPg, nullptr, "", "", true, IDC_SOURCE_SCHEMA_OK, "pickers-10060-pg"},
                      Target{kPg, nullptr, "", "", true, IDC_SOURCE_SCHEMA_CANCEL, ""}),
    [](const ::testing::TestParamInfo<Target> &info) {
        return std::string(info.param.dsn + 6) + (info.param.ending == IDC_SOURCE_SCHEMA_OK ? "Ok" : "Cancel");
    });

} // namespace
