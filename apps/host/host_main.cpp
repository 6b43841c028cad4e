// A small window program that stands in for the family's applications: it
// holds one connection and a current table, and its menu opens every dialog
// and wizard the library exports on them. What a person runs under Wine to
// try the library by hand, and what the Windows tests drive from outside.
//   kodbc_host.exe [DSN [USER [PASSWORD]]]
// Without a data source it starts unconnected ("Datei" > "Verbinden...").
#include "host_ids.h"

#include <kodbc/kodbc.h>

#include <windows.h>

#include <stdlib.h>  // __argc, __argv

#include <string>

namespace {

constexpr char kTitle[] = "kodbc-Host";
constexpr char kFailingStatement[] = "SELECT * FROM kodbc_host_no_such_table";
constexpr int kTablesBox = IDC_HOST_TABLES;
constexpr int kFieldsBox = IDC_HOST_FIELDS;
constexpr int kStatusLine = IDC_HOST_STATUS;

// What the menu needs before a command can run.
enum class Needs { nothing, connection, table, field };

struct MenuItem {
    int id;              // 0: separator; negative: a new top-level menu titled text
    const char *text;    // code page 1252
    Needs needs;
};

constexpr MenuItem kMenu[] = {
    {-1, "&Datei", Needs::nothing},
    {IDM_HOST_CONNECT, "&Verbinden...", Needs::nothing},
    {IDM_HOST_CONNECT_SCHEMA, "Datenquelle und &Schema...", Needs::nothing},
    {IDM_HOST_DISCONNECT, "&Trennen", Needs::connection},
    {0, nullptr, Needs::nothing},
    {IDM_HOST_CREATE_TABLE, "Neue &Tabelle...", Needs::connection},
    {IDM_HOST_TABLE_ADMIN, "Tabelle &verwalten...", Needs::table},
    {0, nullptr, Needs::nothing},
    {IDM_HOST_EXIT, "&Beenden", Needs::nothing},
    {-1, "D&atens\xE4tze", Needs::nothing},
    {IDM_HOST_ADD_RECORDS, "&Hinzuf\xFCgen...", Needs::connection},
    {IDM_HOST_DELETE_RECORDS, "&L\xF6schen...", Needs::connection},
    {IDM_HOST_UPDATE_RECORDS, "\xC4&ndern...", Needs::connection},
    {IDM_HOST_EXPORT, "&Exportieren...", Needs::connection},
    {IDM_HOST_IMPORT, "&Importieren...", Needs::connection},
    {-1, "&Extras", Needs::nothing},
    {IDM_HOST_SQL_DATASOURCE, "SQL-Befehl auf einer &Datenquelle...", Needs::nothing},
    {IDM_HOST_SQL_CONNECTION, "&SQL-Befehl ausf\xFChren...", Needs::connection},
    {IDM_HOST_SCHEMA, "S&chema w\xE4hlen...", Needs::connection},
    {IDM_HOST_DRIVER_INFO, "&Treiberinformation...", Needs::connection},
    {IDM_HOST_ALIAS, "Feld-&Alias...", Needs::field},
    {IDM_HOST_ERROR_DISPLAY, "&Fehleranzeige...", Needs::connection},
    {IDM_HOST_QUERY_DESIGNER, "SELECT-Befehl &entwerfen...", Needs::connection},
    {IDM_HOST_SELECTION_EDITOR, "&Bedingungen eingeben...", Needs::table},
    {IDM_HOST_NEW_VIEW, "Neue Abfra&ge...", Needs::connection},
    {IDM_HOST_EDIT_VIEW, "Abfrage bearbeite&n...", Needs::table},
};

struct Host {
    HWND window = nullptr;
    DataSourceRecord source = {};
    char schema[100] = {};
    TableRecord table = {};
    SQLHENV henv = nullptr;
    SQLHDBC hdbc = nullptr;
};

Host g_host;

HWND Child(int id) { return GetDlgItem(g_host.window, id); }

bool HasTable() { return g_host.hdbc && g_host.table.Object.DbObjectName[0]; }

void ShowStatus() {
    std::string line = "Datenquelle: ";
    line += g_host.hdbc ? g_host.source.DataSourceName : "(keine)";
    if (g_host.schema[0]) line += std::string("   Schema: ") + g_host.schema;
    line += std::string("   Tabelle: ") + (HasTable() ? g_host.table.Object.DbObjectName : "(keine)");
    SetWindowTextA(Child(kStatusLine), line.c_str());

    HMENU menu = GetMenu(g_host.window);
    const bool field = SendMessageA(Child(kFieldsBox), LB_GETCURSEL, 0, 0) != LB_ERR;
    for (const MenuItem &item : kMenu) {
        if (item.id <= 0) continue;
        const bool possible = item.needs == Needs::nothing || (item.needs == Needs::connection && g_host.hdbc) ||
                              (item.needs == Needs::table && HasTable()) ||
                              (item.needs == Needs::field && HasTable() && field);
        EnableMenuItem(menu, static_cast<UINT>(item.id), MF_BYCOMMAND | (possible ? MF_ENABLED : MF_GRAYED));
    }
}

// Lists the current table's fields again, keeping the selected one where it is still there.
void FillFields() {
    HWND fields = Child(kFieldsBox);
    char selected[300] = {};
    const LRESULT index = SendMessageA(fields, LB_GETCURSEL, 0, 0);
    if (index != LB_ERR && SendMessageA(fields, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0) < 300)
        SendMessageA(fields, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(selected));
    SendMessageA(fields, LB_RESETCONTENT, 0, 0);
    if (HasTable()) Kodbc_FillFieldsBox(g_host.hdbc, g_host.table.Object.DbObjectName, 0, fields);
    if (!selected[0]) return;
    const LRESULT again =
        SendMessageA(fields, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(selected));
    if (again != LB_ERR) SendMessageA(fields, LB_SETCURSEL, static_cast<WPARAM>(again), 0);
}

// Lists the tables again and keeps the current one selected where it is still there.
void FillTables() {
    HWND tables = Child(kTablesBox);
    SendMessageA(tables, LB_RESETCONTENT, 0, 0);
    if (g_host.hdbc) Kodbc_FillTablesBox(g_host.hdbc, KODBC_OBJECT_TABLE | KODBC_OBJECT_VIEW, tables);
    const LRESULT index = g_host.table.Object.DbObjectName[0]
                              ? SendMessageA(tables, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                             reinterpret_cast<LPARAM>(g_host.table.Object.DbObjectName))
                              : LB_ERR;
    if (index == LB_ERR) g_host.table.Object.DbObjectName[0] = '\0';
    SendMessageA(tables, LB_SETCURSEL, index == LB_ERR ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(index), 0);
    FillFields();
    ShowStatus();
}

void Disconnect() {
    if (g_host.hdbc) Kodbc_DisconnectDataSource(&g_host.henv, &g_host.hdbc);
    g_host.henv = nullptr;
    g_host.hdbc = nullptr;
}

// Connects to g_host.source; the library shows what goes wrong.
void Connect() {
    Disconnect();
    if (Kodbc_ConnectDataSource(&g_host.source, &g_host.henv, &g_host.hdbc) != KODBC_CONNECTED) {
        g_host.henv = nullptr;
        g_host.hdbc = nullptr;
    }
    FillTables();
}

void ShowFailingStatement() {
    SQLHSTMT hstmt = nullptr;
    if (SQLAllocStmt(g_host.hdbc, &hstmt) != SQL_SUCCESS) return;
    SQLRETURN rc =
        SQLExecDirect(hstmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(kFailingStatement)), SQL_NTS);
    if (!SQL_SUCCEEDED(rc)) Kodbc_DisplayErrorHstmt(hstmt, kFailingStatement);
    SQLFreeStmt(hstmt, SQL_DROP);
}

// The designer on the current table; the statement it made is shown.
void DesignQuery() {
    SelFact *query = nullptr;
    const int created = Kodbc_SelFact_Create(&query, g_host.hdbc, g_host.schema, 0);
    if (created != SELFACT_OK) {
        Kodbc_SelFact_DisplayError(created);
        return;
    }
    if (HasTable()) {
        const std::string table = std::string(g_host.table.Object.DbObjectName) + "\t\t\t\t\t";
        Kodbc_SelFact_SetDescriptor(query, SELFACT_TABLES, table.c_str(), 0);
    }
    if (Kodbc_SelFact_Edit(query, g_host.window) == KODBC_DIALOG_OK) {
        char sql[10000] = {};
        Kodbc_SelFact_CreateSql(query, sql, sizeof sql, 0);
        MessageBoxA(g_host.window, sql, "SELECT-Befehl", MB_OK | MB_ICONINFORMATION);
    }
    Kodbc_SelFact_Destroy(query);
}

// The selection editor on the current table's fields; what the user wrote is
// shown as its descriptor (tabs and line ends visible) and as a WHERE
// clause. The next call starts from it.
void EditSelection() {
    static char selDesc[5000];
    static char fields[30000];
    if (Kodbc_GetFields(g_host.hdbc, g_host.table.Object.DbObjectName, KODBC_FIELDS_WITH_TYPE, "\t", fields,
                        sizeof fields) != 1)
        return;
    if (Kodbc_Edit_SelDesc(selDesc, sizeof selDesc, fields, 0, 0) != 1) return;
    std::string shown;
    for (const char *c = selDesc; *c; ++c) {
        if (*c == '\t') shown += " | ";
        else if (*c == '\n') shown += "\r\n";
        else if (*c == '\v') shown += "--- oder ---\r\n";
        else shown += *c;
    }
    char where[5000] = {};
    Kodbc_SelDesc_To_WhereClause(g_host.hdbc, selDesc, where, sizeof where);
    shown += std::string("\r\nWHERE ") + where;
    MessageBoxA(g_host.window, shown.c_str(), "Selektion", MB_OK | MB_ICONINFORMATION);
}

// A stored view, new or the current table; the view made becomes current.
void EditView(bool existing) {
    char name[sizeof g_host.table.Object.DbObjectName] = {};
    if (existing) lstrcpynA(name, g_host.table.Object.DbObjectName, sizeof name);
    const int mode = (existing ? KODBC_VIEW_MODE_EXISTING : KODBC_VIEW_MODE_NEW) | KODBC_VIEW_MODE_CALLER;
    if (Kodbc_View_Edit(g_host.hdbc, g_host.schema, name, sizeof name, mode, g_host.window) == KODBC_DIALOG_OK)
        lstrcpynA(g_host.table.Object.DbObjectName, name, sizeof name);
}

void RunCommand(int id) {
    TableRecord *table = &g_host.table;
    switch (id) {
    case IDM_HOST_CONNECT:
        if (Kodbc_DataSourceDialog(&g_host.source) == KODBC_DIALOG_OK) Connect();
        return;
    case IDM_HOST_CONNECT_SCHEMA:
        if (Kodbc_DataSourceAndSchemaDialog(g_host.window, &g_host.source, g_host.schema, sizeof g_host.schema,
                                            "Datenquelle des kodbc-Hosts") == KODBC_DIALOG_OK)
            Connect();
        return;
    case IDM_HOST_DISCONNECT:
        Disconnect();
        FillTables();
        return;
    case IDM_HOST_EXIT:
        DestroyWindow(g_host.window);
        return;
    case IDM_HOST_CREATE_TABLE: {
        char created[sizeof g_host.table.Object.DbObjectName] = {};
        if (Kodbc_CreateTableWizzard(g_host.hdbc, created, sizeof created) == KODBC_DIALOG_OK)
            lstrcpynA(g_host.table.Object.DbObjectName, created, sizeof created);
        break;
    }
    case IDM_HOST_TABLE_ADMIN:
        Kodbc_TableAdmin(g_host.hdbc, g_host.table.Object.DbObjectName, 0);
        break;
    case IDM_HOST_ADD_RECORDS:
        Kodbc_AddRecordsWizzard(g_host.hdbc, table);
        break;
    case IDM_HOST_DELETE_RECORDS:
        Kodbc_DeleteRecordsWizzard(g_host.hdbc, table, 0);
        break;
    case IDM_HOST_UPDATE_RECORDS:
        Kodbc_UpdateRecordsWizzard(g_host.hdbc, table, 0);
        break;
    case IDM_HOST_EXPORT:
        Kodbc_ExportWizzard(g_host.hdbc, table, 0);
        break;
    case IDM_HOST_IMPORT: {
        char imported[sizeof g_host.table.Object.DbObjectName] = {};
        if (Kodbc_ImportTableWizzard(g_host.hdbc, imported, sizeof imported) == KODBC_SUCCESS)
            lstrcpynA(g_host.table.Object.DbObjectName, imported, sizeof imported);
        break;
    }
    case IDM_HOST_SQL_DATASOURCE:
        Kodbc_DialogSqlPerformer(&g_host.source);
        break;
    case IDM_HOST_SQL_CONNECTION:
        Kodbc_SqlPerformer(g_host.hdbc);
        break;
    case IDM_HOST_SCHEMA:
        Kodbc_SelectDbaseSchema(g_host.window, g_host.hdbc, g_host.schema, 0, 0);
        break;
    case IDM_HOST_DRIVER_INFO:
        Kodbc_DisplayDriverInformation(g_host.hdbc, g_host.window);
        return;
    case IDM_HOST_ALIAS:
        Kodbc_FieldsBox_EditAlias(Child(kFieldsBox), -1);
        return;
    case IDM_HOST_ERROR_DISPLAY:
        ShowFailingStatement();
        return;
    case IDM_HOST_QUERY_DESIGNER:
        DesignQuery();
        return;
    case IDM_HOST_SELECTION_EDITOR:
        EditSelection();
        return;
    case IDM_HOST_NEW_VIEW:
    case IDM_HOST_EDIT_VIEW:
        EditView(id == IDM_HOST_EDIT_VIEW);
        break;
    default:
        return;
    }
    FillTables();  // what the dialog did may have changed tables or the current one
}

void CreateChildren(HWND window) {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    HFONT font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    const struct {
        const char *cls;
        DWORD style;
        int id;
    } children[] = {
        {"STATIC", SS_LEFT | SS_NOPREFIX, kStatusLine},
        {"LISTBOX", LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_BORDER | WS_TABSTOP, kTablesBox},
        {"LISTBOX", LBS_NOTIFY | LBS_USETABSTOPS | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_BORDER | WS_TABSTOP,
         kFieldsBox},
    };
    for (const auto &child : children) {
        HWND created = CreateWindowExA(0, child.cls, "", WS_CHILD | WS_VISIBLE | child.style, 0, 0, 0, 0, window,
                                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(child.id)), instance, nullptr);
        SendMessageA(created, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }
}

void LayOut(int width, int height) {
    const int status = 24, gap = 8, half = (width - 3 * gap) / 2;
    MoveWindow(Child(kStatusLine), gap, 4, width - 2 * gap, status - 8, TRUE);
    MoveWindow(Child(kTablesBox), gap, status, half, height - status - gap, TRUE);
    MoveWindow(Child(kFieldsBox), 2 * gap + half, status, half, height - status - gap, TRUE);
}

HMENU BuildMenu() {
    HMENU bar = CreateMenu();
    HMENU current = nullptr;
    for (const MenuItem &item : kMenu) {
        if (item.id < 0) {
            current = CreatePopupMenu();
            AppendMenuA(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(current), item.text);
        } else if (item.id == 0) {
            AppendMenuA(current, MF_SEPARATOR, 0, nullptr);
        } else {
            AppendMenuA(current, MF_STRING, static_cast<UINT_PTR>(item.id), item.text);
        }
    }
    return bar;
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        g_host.window = window;
        CreateChildren(window);
        return 0;
    case WM_SIZE:
        LayOut(LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_COMMAND:
        if (LOWORD(wParam) == kTablesBox && HIWORD(wParam) == LBN_SELCHANGE) {
            HWND tables = Child(kTablesBox);
            const LRESULT index = SendMessageA(tables, LB_GETCURSEL, 0, 0);
            char name[300] = {};
            if (index != LB_ERR && SendMessageA(tables, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0) < 300)
                SendMessageA(tables, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(name));
            lstrcpynA(g_host.table.Object.DbObjectName, name, sizeof g_host.table.Object.DbObjectName);
            FillFields();
            ShowStatus();
        } else if (LOWORD(wParam) == kFieldsBox && HIWORD(wParam) == LBN_SELCHANGE) {
            ShowStatus();
        } else if (lParam == 0) {
            RunCommand(LOWORD(wParam));
        }
        return 0;
    case WM_DESTROY:
        Disconnect();
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

void CopyField(char *field, int size, const char *value) {
    if (value) lstrcpynA(field, value, size);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show) {
    if (__argc > 1) CopyField(g_host.source.DataSourceName, sizeof g_host.source.DataSourceName, __argv[1]);
    if (__argc > 2) CopyField(g_host.source.UserId, sizeof g_host.source.UserId, __argv[2]);
    if (__argc > 3) CopyField(g_host.source.Password, sizeof g_host.source.Password, __argv[3]);
    g_host.table.Object.DbObjectType = KODBC_OBJECT_TABLE;

    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = WindowProcedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = KODBC_HOST_CLASS;
    if (!RegisterClassA(&windowClass)) return 1;
    HWND window = CreateWindowExA(0, KODBC_HOST_CLASS, kTitle, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                                  640, 420, nullptr, BuildMenu(), instance, nullptr);
    if (!window) return 1;
    if (g_host.source.DataSourceName[0]) Connect(); else FillTables();
    ShowWindow(window, show);
    UpdateWindow(window);

    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}
