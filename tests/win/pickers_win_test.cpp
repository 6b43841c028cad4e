// The data-source and schema pickers (dialogs 103, 10056, 10060) driven as a user drives them. What is
// remembered and what 103 opens on is the core's (tools_test.cpp, picker_opening_test.cpp).
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "tools/picker_dialog_ids.h"

#include <korvel/korvel32.h>

#include <algorithm>
#include <cstring>
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
    DataSourceRecord record{};
    lstrcpynA(record.DataSourceName, dsn, sizeof record.DataSourceName);
    lstrcpynA(record.UserId, user, sizeof record.UserId);
    lstrcpynA(record.Password, password, sizeof record.Password);
    std::memset(record.Reserved, kCallersBytes, sizeof record.Reserved);
    return record;
}

bool CallersBytesKept(const DataSourceRecord &record) {
    return std::all_of(std::begin(record.Reserved), std::end(record.Reserved),
                       [](unsigned char byte) { return byte == kCallersBytes; });
}

// The users remembered in the prefix's registry, forgotten after the test.
struct RememberedUsers {
    std::vector<std::string> dsns;
    ~RememberedUsers() {
        for (const std::string &dsn : dsns)
            Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, kSection, dsn.c_str());
    }
};

// What the picker's fields show: the selected entry, user and password.
std::string Fields(HWND dialog) {
    HWND list = GetDlgItem(dialog, IDC_DATASOURCE_PICKER_LIST);
    char dsn[100] = "<none>";
    SendMessageA(list, LB_GETTEXT, SendMessageA(list, LB_GETCURSEL, 0, 0), reinterpret_cast<LPARAM>(dsn));
    return std::string(dsn) + "|" + ControlText(dialog, IDC_DATASOURCE_PICKER_USER) + "|" +
           ControlText(dialog, IDC_DATASOURCE_PICKER_PASSWORD);
}

// "Abbrechen" leaves the record alone. A record naming a listed source opens on it; a choice that
// does not connect is answered by the connection's error, the picker stays open and the user
// typed for it is remembered all the same; another entry shows the user remembered for it, a
// double click confirms.
TEST(DataSourcePicker, OpensOnTheRecordRefusesAFailingChoiceAndConfirms) {
    RememberedUsers users{{kSqlite, kBroken}};
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kSettingsKey, 0, kSection, kSqlite, "vorher");
    DataSourceRecord record = Record("kodbc_gibt_es_nicht", "alt", "altes-pw");
    const DataSourceRecord before = record;
    DialogRobot cancel(kSourceTitle, "", [](HWND dialog) { Click(dialog, IDC_DATASOURCE_PICKER_CANCEL); });
    EXPECT_EQ(Kodbc_DataSourceDialog(&record), 2);
    cancel.Join();
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);

    record = Record(kBroken, "alt", "altes-pw");
    std::string opened, clicked;
    bool errorShown = false, stayedOpen = false;
    DialogRobot robot(kSourceTitle, "pickers-103", [&](HWND dialog) {
        opened = Fields(dialog);
        // Chosen by sent messages: the dialog has filled the user field
        // for it before the robot types over it.
        Choose(dialog, IDC_DATASOURCE_PICKER_LIST, kBroken, true);
        Type(dialog, IDC_DATASOURCE_PICKER_USER, "versuch");
        Click(dialog, IDC_DATASOURCE_PICKER_OK);
        HWND error = AwaitDialog(kErrorTitle, dialog);
        errorShown = error != nullptr;
        if (error) Click(error, IDC_ODBC_ERROR_CLOSE);
        WaitFor([&] { return !IsWindow(error); });
        // Answered only once the test thread is back in the dialog's loop,
        // that is after the handler that showed the error is done.
        SendMessageTimeoutA(dialog, WM_NULL, 0, 0, SMTO_NORMAL, 5000, nullptr);
        stayedOpen = IsWindow(dialog) && IsWindowVisible(dialog);
        Choose(dialog, IDC_DATASOURCE_PICKER_LIST, kSqlite, true);
        clicked = Fields(dialog);
        Type(dialog, IDC_DATASOURCE_PICKER_USER, "robot");
        Type(dialog, IDC_DATASOURCE_PICKER_PASSWORD, "geheim-123");
        PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_DATASOURCE_PICKER_LIST, LBN_DBLCLK),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDC_DATASOURCE_PICKER_LIST)));
        WaitFor([&] { return !IsWindow(dialog); });
    });
    EXPECT_EQ(Kodbc_DataSourceDialog(&record), 1);
    robot.Join();
    EXPECT_EQ(opened, std::string(kBroken) + "|alt|altes-pw");
    EXPECT_TRUE(errorShown) << "expected \"" << kErrorTitle << "\"";
    EXPECT_TRUE(stayedOpen);
    EXPECT_EQ(Setting(kSection, kBroken, "<none>"), "versuch") << "remembered before the connection is tried";
    EXPECT_EQ(clicked, std::string(kSqlite) + "|vorher|");
    EXPECT_EQ(std::string(record.DataSourceName) + "|" + record.UserId + "|" + record.Password,
              std::string(kSqlite) + "|robot|geheim-123");
    EXPECT_TRUE(CallersBytesKept(record));
}

// Dialog 10056 opens on the schema passed in; "Abbrechen" hands nothing back
// (OK hands the typed one back: the designer's view walk).
class SchemaPicker : public ConnectedTest {};

TEST_F(SchemaPicker, OpensOnTheSchemaPassedInAndCancelHandsNothingBack) {
    char schema[100] = "alt";
    std::string shown = "<unread>";
    DialogRobot robot(kSchemaTitle, "pickers-10056", [&](HWND dialog) {
        shown = ControlText(dialog, IDC_SCHEMA_PICKER_BOX);
        Type(dialog, IDC_SCHEMA_PICKER_BOX, "mein_schema");
        Click(dialog, IDC_SCHEMA_PICKER_CANCEL);
    });
    EXPECT_EQ(Kodbc_SelectDbaseSchema(nullptr, hdbc_, schema, 0, 0), 2);
    robot.Join();
    EXPECT_EQ(shown, "alt");
    EXPECT_STREQ(schema, "alt");
}

// Dialog 10060 on SQLite, which has no schemata (the schema controls stay
// disabled), ended by "Abbrechen", and on PostgreSQL, which has them (one is
// picked from the list), ended by OK. Either way another data source clears
// the schema passed in.
struct Target {
    const char *dsn;
    const char *title;  // the caller's; null: the template's
    const char *user, *pickedUser;
    bool schemata;  // ended with OK; without schemata with "Abbrechen"
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

TEST_P(SourceAndSchema, SchemaControlsFollowTheDatabaseAndAnotherChoiceClearsTheSchema) {
    const Target &t = GetParam();
    EXPECT_EQ(Kodbc_GetSchemaUsage(hdbc_) > 0, t.schemata);
    RememberedUsers users{{t.dsn}};
    DataSourceRecord record = Record(t.dsn, t.user, "");
    const DataSourceRecord before = record;
    char schema[6] = "alt";  // the result is cut to the caller's size
    const long sessions = t.schemata ? Sessions() : 0;
    long sessionsWhileOpen = 0;
    std::vector<std::string> seen;  // the fields, and whether the schema's controls are enabled
    auto look = [&seen](HWND dialog) {
        std::string line = ControlText(dialog, IDC_SOURCE_SCHEMA_DSN) + "|" +
                           ControlText(dialog, IDC_SOURCE_SCHEMA_USER) + "|" +
                           ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
        for (int id : {IDC_SOURCE_SCHEMA_SCHEMA_LABEL, IDC_SOURCE_SCHEMA_SCHEMA, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA})
            line += Enabled(dialog, id) ? " on" : " off";
        seen.push_back(line);
    };
    DialogRobot robot(t.title ? t.title : kSourceTitle, t.shot, [&](HWND dialog) {
        if (t.schemata) sessionsWhileOpen = Sessions();
        look(dialog);
        Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_DSN);
        if (HWND picker = AwaitDialog(kSourceTitle, dialog)) {
            Choose(picker, IDC_DATASOURCE_PICKER_LIST, t.dsn, true);
            Type(picker, IDC_DATASOURCE_PICKER_USER, t.pickedUser);
            Click(picker, IDC_DATASOURCE_PICKER_OK);
            WaitFor([&] { return !IsWindow(picker); });
        }
        WaitFor([&] { return ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA).empty(); });
        look(dialog);
        if (t.schemata) {
            Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
            if (HWND picker = AwaitDialog(kSchemaTitle)) {
                const bool listed = Choose(picker, IDC_SCHEMA_PICKER_BOX, kPgSchema);
                Click(picker, listed ? IDC_SCHEMA_PICKER_OK : IDC_SCHEMA_PICKER_CANCEL);
                WaitFor([&] { return !IsWindow(picker); });
            }
            look(dialog);
        }
        Click(dialog, t.schemata ? IDC_SOURCE_SCHEMA_OK : IDC_SOURCE_SCHEMA_CANCEL);
    });
    const int result = Kodbc_DataSourceAndSchemaDialog(nullptr, &record, schema, sizeof schema, t.title);
    robot.Join();

    const std::string on = t.schemata ? " on on on" : " off off off", dsn = std::string(t.dsn) + "|";
    std::vector<std::string> expected{dsn + t.user + "|alt" + on, dsn + t.pickedUser + "|" + on};
    if (t.schemata) expected.push_back(dsn + t.pickedUser + "|" + kPgSchema + on);
    EXPECT_EQ(seen, expected);
    // OK hands the choice back, cut to the caller's size; "Abbrechen" leaves it alone.
    EXPECT_EQ(result, t.schemata ? 1 : 2);
    EXPECT_STREQ(schema, t.schemata ? "kodbc" : "alt");
    EXPECT_TRUE(t.schemata || std::memcmp(&record, &before, sizeof record) == 0) << "the record is left alone";
    if (!t.schemata) return;
    EXPECT_STREQ(record.UserId, t.pickedUser);
    EXPECT_TRUE(CallersBytesKept(record));
    EXPECT_EQ(sessionsWhileOpen, sessions + 1) << "the dialog holds a connection of its own";
    EXPECT_TRUE(WaitFor([&] { return Sessions() == sessions; })) << "its connection ends with the dialog";
}

INSTANTIATE_TEST_SUITE_P(DataSources, SourceAndSchema,
                         ::testing::Values(Target{kSqlite, "Ziel w\xE4hlen", "anna", "bert", false, "pickers-10060"},
                                           Target{kPg, nullptr, "", "kodbc", true, "pickers-10060-pg"}),
                         [](const ::testing::TestParamInfo<Target> &info) { return std::string(info.param.dsn + 6); });

} // namespace
