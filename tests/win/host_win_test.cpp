// The host program started on the run's data source: each menu command opens its window over the
// host's (the only proof of that command's wiring), driven from outside the host's process.
#include "robot.h"

#include "../../apps/host/host_ids.h"

#include <string>
#include <vector>

namespace {

constexpr char kTable[] = "kodbc_host_t";

class HostProgram : public wintest::ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready()) return;
        OwnTables({kTable});
        ASSERT_TRUE(Run(std::string("CREATE TABLE ") + kTable + " (Name VARCHAR(20), Ort VARCHAR(20))"));

        // The build names the host by its Unix path (kodbc.dll beside it); Wine's drive Z: is the root.
        std::string command = "\"Z:" KODBC_HOST_EXE "\" ";
        command += wintest::DataSource();
        STARTUPINFOA startup = {};
        startup.cb = sizeof startup;
        ASSERT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                                   &process_))
            << command << " error " << GetLastError();
        ASSERT_TRUE(
            wintest::WaitFor([&] { return (main_ = FindWindowA(KODBC_HOST_CLASS, nullptr)) != nullptr; }, 20000));
    }
    void TearDown() override {
        if (process_.hProcess) {
            if (main_) PostMessageA(main_, WM_COMMAND, IDM_HOST_EXIT, 0);
            if (WaitForSingleObject(process_.hProcess, 10000) != WAIT_OBJECT_0) TerminateProcess(process_.hProcess, 1);
            CloseHandle(process_.hProcess);
            CloseHandle(process_.hThread);
        }
        ConnectedTest::TearDown();
    }
    PROCESS_INFORMATION process_ = {};
    HWND main_ = nullptr;
};

TEST_F(HostProgram, EveryMenuCommandOpensItsWindow) {
    // Chosen as a click would: the host hears of it.
    ASSERT_TRUE(wintest::Choose(main_, IDC_HOST_TABLES, kTable, true));
    ASSERT_TRUE(wintest::Choose(main_, IDC_HOST_FIELDS, "Ort", true));
    EXPECT_NE(wintest::WindowText(GetDlgItem(main_, IDC_HOST_STATUS)).find(kTable), std::string::npos);
    RedrawWindow(main_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    Sleep(300);  // the host paints in its own process
    wintest::SaveScreenshot(main_, "host-main");

    const struct {
        int command;
        const char *title;
    } commands[] = {
        {IDM_HOST_CONNECT, "Datenquelle ausw\xE4hlen"},
        {IDM_HOST_CONNECT_SCHEMA, "Datenquelle des kodbc-Hosts"},
        {IDM_HOST_CREATE_TABLE, "Neue Tabelle anlegen"},
        {IDM_HOST_TABLE_ADMIN, "Tabelle  [kodbc_host_t]"},
        {IDM_HOST_ADD_RECORDS, "SQL-Befehl aus einer Datei lesen"},  // the wizard's own odd title
        {IDM_HOST_DELETE_RECORDS, "L\xF6schen von Datens\xE4tzen aus einer Tabelle"},
        {IDM_HOST_UPDATE_RECORDS, "\xC4ndern von Datens\xE4tzen in einer Tabelle"},
        {IDM_HOST_EXPORT, "Exportieren von Datens\xE4tzen einer Tabelle"},
        {IDM_HOST_IMPORT, "Importieren einer Tabelle"},
        {IDM_HOST_SQL_DATASOURCE, "SQL-Befehl ausf\xFChren"},
        {IDM_HOST_SQL_CONNECTION, "SQL-Befehl ausf\xFChren"},
        {IDM_HOST_SCHEMA, "Datenbank-Schema ausw\xE4hlen"},
        {IDM_HOST_DRIVER_INFO, "Information \xFC" "ber ODBC-Datenquelle"},
        {IDM_HOST_ALIAS, "Eingabe eines neuen Verwendungs-Namens"},
        {IDM_HOST_ERROR_DISPLAY, "Fehler beim ODBC-Datenbankzugriff"},
        {IDM_HOST_QUERY_DESIGNER, "Assistent f\xFCr SELECT-Befehl"},
        {IDM_HOST_SELECTION_EDITOR, "Bedingungen eingeben"},
        {IDM_HOST_NEW_VIEW, "Abfrage bearbeiten"},
    };
    for (const auto &command : commands) {
        SCOPED_TRACE(command.command);
        PostMessageA(main_, WM_COMMAND, static_cast<WPARAM>(command.command), 0);
        // The host's other visible window is the one the command opened.
        std::vector<HWND> opened;
        ASSERT_TRUE(wintest::WaitFor([&] {
            opened = wintest::TopWindows([&](HWND window) {
                DWORD owner = 0;
                GetWindowThreadProcessId(window, &owner);
                return owner == process_.dwProcessId && window != main_ && IsWindowVisible(window);
            });
            return !opened.empty();
        }));
        EXPECT_EQ(wintest::WindowText(opened[0]), command.title);
        EXPECT_EQ(GetWindow(opened[0], GW_OWNER), main_) << "opens over the host's window";
        PostMessageA(opened[0], WM_COMMAND, IDCANCEL, 0);
        ASSERT_TRUE(wintest::WaitFor([&] { return !IsWindow(opened[0]); }));
    }
    // Still on the same table after every dialog was cancelled.
    EXPECT_NE(wintest::WindowText(GetDlgItem(main_, IDC_HOST_STATUS)).find(kTable), std::string::npos);
}

} // namespace
