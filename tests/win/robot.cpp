#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"

#include <commctrl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>

namespace wintest {
namespace {

constexpr int kPollMs = 50;
constexpr int kPaintMs = 400;
constexpr int kSettleMs = 300;  // a window that just came up, or a text just typed, is painted
constexpr int kMessageTextId = 0xFFFF;  // a message box's text has no id of its own
// Robots whose action is running: the windows they drive may stay open as
// long as the action needs (its waits are bounded), so the watchdog waits.
std::atomic<int> g_acting{0};
thread_local MessageBoxAnswerer *t_answerer = nullptr;

std::string ClassName(HWND window) {
    char cls[64] = {};
    GetClassNameA(window, cls, sizeof cls);
    return cls;
}

bool OursVisible(HWND window, const char *cls) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId() && IsWindowVisible(window) && ClassName(window) == cls;
}

void SelectLine(HWND dialog, int controlId, LRESULT index, bool notify) {
    HWND box = GetDlgItem(dialog, controlId);
    const bool combo = IsCombo(box);
    SendMessageA(box, combo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    if (notify && index >= 0)
        SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(controlId, combo ? CBN_SELCHANGE : LBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(box));
}

bool ClickAndClose(HWND window, int button) {
    Click(window, button);
    return WaitFor([&] { return !IsWindow(window); });
}

bool RunSql(SQLHDBC hdbc, const std::string &sql, std::vector<std::string> *rows) {
    SQLHSTMT stmt = nullptr;
    if (!hdbc || !SQL_SUCCEEDED(SQLAllocStmt(hdbc, &stmt))) return false;
    SQLSMALLINT columns = 0;
    const bool ok =
        SQL_SUCCEEDED(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS));
    if (ok && rows && SQL_SUCCEEDED(SQLNumResultCols(stmt, &columns))) {
        while (SQL_SUCCEEDED(SQLFetch(stmt))) {
            std::string row;
            for (SQLUSMALLINT column = 1; column <= columns; ++column) {
                char text[100] = {};
                SQLLEN indicator = 0;
                SQLGetData(stmt, column, SQL_C_CHAR, text, sizeof text, &indicator);
                row += (column > 1 ? "|" : "") + std::string(indicator == SQL_NULL_DATA ? "-" : text);
            }
            rows->push_back(row);
        }
    }
    SQLFreeStmt(stmt, SQL_DROP);
    return ok;
}

} // namespace

std::string WindowText(HWND window) {
    int length = static_cast<int>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0));
    if (length <= 0) return {};
    std::vector<char> text(static_cast<std::size_t>(length) + 1, '\0');
    SendMessageA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    return text.data();
}

std::string ControlText(HWND dialog, int controlId) {
    HWND control = GetDlgItem(dialog, controlId);
    return control ? WindowText(control) : std::string("<no control>");
}

bool ControlVisible(HWND dialog, int controlId) {
    return (GetWindowLongA(GetDlgItem(dialog, controlId), GWL_STYLE) & WS_VISIBLE) != 0;
}

bool Enabled(HWND dialog, int controlId) { return IsWindowEnabled(GetDlgItem(dialog, controlId)) != FALSE; }

void Click(HWND dialog, int controlId) { PostMessageA(GetDlgItem(dialog, controlId), BM_CLICK, 0, 0); }

void PressKey(HWND control, UINT virtualKey) {
    UINT scan = MapVirtualKeyA(virtualKey, MAPVK_VK_TO_VSC);
    PostMessageA(control, WM_KEYDOWN, virtualKey, static_cast<LPARAM>(1 | (scan << 16)));
    PostMessageA(control, WM_KEYUP, virtualKey, static_cast<LPARAM>(1 | (scan << 16) | 0xC0000000u));
}

HWND FocusOf(DWORD thread) {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(thread, &info) ? info.hwndFocus : nullptr;
}

bool WaitFor(const std::function<bool()> &condition, int timeoutMs) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (; !condition(); Sleep(kPollMs))
        if (std::chrono::steady_clock::now() >= end) return false;
    return true;
}

void Type(HWND dialog, int controlId, const std::string &text) {
    HWND control = GetDlgItem(dialog, controlId);
    if (_stricmp(ClassName(control).c_str(), "Edit") != 0) {
        SetWindowTextA(control, text.c_str());
        return;
    }
    SendMessageA(control, EM_SETSEL, 0, -1);
    SendMessageA(control, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

std::ostream &operator<<(std::ostream &os, const BoxLine &line) {
    return os << '"' << line.text << "\"/" << line.data;
}

bool IsCombo(HWND box) { return _stricmp(ClassName(box).c_str(), "ComboBox") == 0; }

std::vector<BoxLine> BoxLines(HWND box) {
    const bool combo = IsCombo(box);
    int count = static_cast<int>(SendMessageA(box, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0));
    std::vector<BoxLine> out;
    for (int i = 0; i < count; ++i) {
        char text[300] = {};
        SendMessageA(box, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        out.push_back({text, SendMessageA(box, combo ? CB_GETITEMDATA : LB_GETITEMDATA, static_cast<WPARAM>(i), 0)});
    }
    return out;
}

std::vector<std::string> BoxTexts(HWND box) {
    std::vector<std::string> out;
    for (const BoxLine &line : BoxLines(box)) out.push_back(line.text);
    return out;
}

bool Choose(HWND dialog, int controlId, const std::string &text, bool notify) {
    HWND box = GetDlgItem(dialog, controlId);
    const LRESULT index = text.empty() ? -1
                                       : SendMessageA(box, IsCombo(box) ? CB_FINDSTRINGEXACT : LB_FINDSTRINGEXACT,
                                                      static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
    SelectLine(dialog, controlId, index, notify);
    return text.empty() || index >= 0;
}

bool ChooseData(HWND dialog, int controlId, LPARAM data, bool notify) {
    const std::vector<BoxLine> lines = BoxLines(GetDlgItem(dialog, controlId));
    const auto line = std::find_if(lines.begin(), lines.end(), [&](const BoxLine &l) { return l.data == data; });
    if (line != lines.end()) SelectLine(dialog, controlId, line - lines.begin(), notify);
    return line != lines.end();
}

std::string ListViewCell(HWND list, int row, int column) {
    char text[200] = {};
    LVITEMA item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = sizeof text;
    SendMessageA(list, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

std::vector<std::string> ListViewRows(HWND list, int columns) {
    std::vector<std::string> rows = ListViewColumn(list, 0);
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (int column = 1; column < columns; ++column)
            rows[row] += "|" + ListViewCell(list, static_cast<int>(row), column);
    return rows;
}

std::vector<std::string> ListViewColumn(HWND list, int column) {
    std::vector<std::string> cells;
    const int count = static_cast<int>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) cells.push_back(ListViewCell(list, row, column));
    return cells;
}

void SelectRows(HWND list, const std::vector<int> &rows) {
    LVITEMA item = {};
    item.stateMask = LVIS_SELECTED;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    item.state = LVIS_SELECTED;
    for (int row : rows)
        SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

// The list's notice that a drag begins, then the mouse button released over the target.
void DragRow(HWND list, int from, int to) {
    HWND parent = GetParent(list);
    const int id = GetDlgCtrlID(list);
    NMLISTVIEW begin = {};
    begin.hdr = {list, static_cast<UINT_PTR>(id), LVN_BEGINDRAG};
    begin.iItem = from;
    SendMessageA(parent, WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&begin));
    RECT target = {LVIR_BOUNDS, 0, 0, 0};
    SendMessageA(list, LVM_GETITEMRECT, static_cast<WPARAM>(to), reinterpret_cast<LPARAM>(&target));
    POINT at = {target.left + 5, (target.top + target.bottom) / 2};
    MapWindowPoints(list, parent, &at, 1);
    PostMessageA(parent, WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
}

std::vector<HWND> TopWindows(const std::function<bool(HWND)> &match) {
    std::vector<HWND> all, found;
    auto collect = [](HWND window, LPARAM param) -> BOOL {
        reinterpret_cast<std::vector<HWND> *>(param)->push_back(window);
        return TRUE;
    };
    EnumWindows(collect, reinterpret_cast<LPARAM>(&all));
    std::copy_if(all.begin(), all.end(), std::back_inserter(found), match);
    return found;
}

HWND Visible(const char *cls, const char *text, HWND except) {
    const std::vector<HWND> found = TopWindows([&](HWND window) {
        return window != except && OursVisible(window, cls) && (!text || WindowText(window) == text);
    });
    return found.empty() ? nullptr : found[0];
}

HWND AwaitDialog(const std::string &title, HWND except) {
    HWND found = nullptr;
    WaitFor([&] { return (found = Visible("#32770", title.c_str(), except)) != nullptr; }, 10000);
    return found;
}

std::string AnswerBox(int button, const std::string &shot) {
    HWND box = AwaitDialog(kLibraryMessageCaption);
    if (!box) return "<none>";
    Sleep(kSettleMs);
    const std::string text = ControlText(box, kMessageTextId);
    if (!shot.empty()) SaveScreenshot(box, shot);
    ClickAndClose(box, button);
    return text;
}

std::string CloseErrorDisplay() {
    HWND error = AwaitDialog(kErrorTitle);
    if (!error) return "<none>";
    const std::string statement = ControlText(error, IDC_ODBC_ERROR_STATEMENT);
    ClickAndClose(error, IDC_ODBC_ERROR_CLOSE);
    return statement;
}

bool ChooseFile(const std::string &title, const std::string &path, std::string *offered) {
    HWND dialog = AwaitDialog(title);
    if (!dialog) return false;
    Sleep(kSettleMs);
    // The file name is typed into cmb13 where the system's dialog has one, else into edt1.
    const int nameId = GetDlgItem(dialog, 0x47c) ? 0x47c : 0x480;
    if (offered) *offered = ControlText(dialog, nameId);
    SetDlgItemTextA(dialog, nameId, path.c_str());
    return ClickAndClose(dialog, IDOK);
}

std::string NoticeText() {
    HWND notice = Visible("KorvelTempWind");
    return notice ? WindowText(notice) : std::string();
}

std::string SaveScreenshot(HWND window, const std::string &name) {
    RECT rect;
    if (!GetWindowRect(window, &rect) || rect.right <= rect.left || rect.bottom <= rect.top) return {};
    const int width = rect.right - rect.left, height = rect.bottom - rect.top;
    const DWORD size = static_cast<DWORD>((width * 3 + 3) & ~3) * static_cast<DWORD>(height);  // rows of 4-byte steps
    BITMAPINFOHEADER info = {sizeof info, width, height, 1, 24, BI_RGB, size, 0, 0, 0, 0};
    void *pixels = nullptr;
    HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
    HBITMAP bitmap =
        CreateDIBSection(screen, reinterpret_cast<BITMAPINFO *>(&info), DIB_RGB_COLORS, &pixels, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, bitmap);
    // What the screen shows; a window not yet shown is asked to draw itself.
    if (!IsWindowVisible(window) || !BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY))
        PrintWindow(window, memory, 0);
    GdiFlush();
    const char *dir = std::getenv("KODBC_SCREENSHOT_DIR");
    const std::string file = std::string(dir && *dir ? dir : ".") + "/" + name + ".bmp";
    const DWORD offset = sizeof(BITMAPFILEHEADER) + sizeof info;
    const BITMAPFILEHEADER header = {0x4D42, offset + size, 0, 0, offset};  // "BM"
    if (FILE *f = std::fopen(file.c_str(), "wb")) {
        std::fwrite(&header, sizeof header, 1, f);
        std::fwrite(&info, sizeof info, 1, f);
        std::fwrite(pixels, size, 1, f);
        std::fclose(f);
    }
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return file;
}

std::string TempFile(const std::string &name) {
    char dir[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, dir);
    const std::string path = dir + name;
    DeleteFileA(path.c_str());
    return path;
}

std::string FileText(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string Setting(const char *section, const char *name, const char *missing) {
    char value[1100] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kSettingsKey, 0, section, name, missing, value, sizeof value);
    return value;
}

std::vector<std::string> QueryRows(SQLHDBC hdbc, const std::string &sql) {
    std::vector<std::string> rows;
    RunSql(hdbc, sql, &rows);
    return rows;
}

DialogRobot::DialogRobot(std::string title, std::string shot, Action action, int timeoutMs)
    : worker_([=, this, thread = GetCurrentThreadId()] {
          auto start = std::chrono::steady_clock::now();
          bool acted = false;
          for (; !stop_; Sleep(kPollMs)) {
              const std::vector<HWND> found = TopWindows([&](HWND window) {
                  return GetWindowThreadProcessId(window, nullptr) == thread && OursVisible(window, "#32770") &&
                         WindowText(window) == title;
              });
              const bool late = std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(timeoutMs);
              if (found.empty() || (acted && !late)) continue;
              if (late) {
                  PostMessageA(found[0], WM_COMMAND, IDCANCEL, 0);  // unexpected, or left open by the action
              } else {
                  acted = true;
                  Sleep(kPaintMs);
                  if (!shot.empty()) SaveScreenshot(found[0], shot);
                  found_ = true;
                  ++g_acting;
                  if (action) action(found[0]);
                  --g_acting;
              }
              start = std::chrono::steady_clock::now();  // the action, or the cancel, gets its own time
          }
      }) {}

void DialogRobot::Join() {
    stop_ = true;
    if (worker_.joinable()) worker_.join();
}

MessageBoxAnswerer::MessageBoxAnswerer(std::string caption, int answer, std::string shot)
    : caption_(std::move(caption)), answer_(answer), shot_(std::move(shot)) {
    t_answerer = this;
    hook_ = SetWindowsHookExA(WH_CBT, Hook, nullptr, GetCurrentThreadId());
}

MessageBoxAnswerer::~MessageBoxAnswerer() {
    for (std::thread &t : answering_) t.join();
    if (hook_) UnhookWindowsHookEx(hook_);
    t_answerer = nullptr;
}

LRESULT CALLBACK MessageBoxAnswerer::Hook(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_ACTIVATE && t_answerer) t_answerer->OnActivate(reinterpret_cast<HWND>(wParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void MessageBoxAnswerer::OnActivate(HWND window) {
    // A box is activated again when focus comes back to it; count it once.
    if (ClassName(window) != "#32770" || WindowText(window) != caption_ || GetPropA(window, "wintest.seen")) return;
    SetPropA(window, "wintest.seen", reinterpret_cast<HANDLE>(1));
    seen_.push_back({ControlText(window, kMessageTextId), ControlVisible(window, IDCANCEL),
                     ControlVisible(window, IDYES), ControlVisible(window, IDNO)});
    // The answer is given once the box is on screen, so it can be photographed.
    static int shots = 0;
    std::string shot = shot_.empty() ? "messagebox-" + std::to_string(++shots) : shot_;
    HWND button = GetDlgItem(window, answer_);
    answering_.emplace_back([window, button, shot] {
        Sleep(kPaintMs);
        SaveScreenshot(window, shot);
        PostMessageA(button, BM_CLICK, 0, 0);
    });
}

void BoxesTest::SetUp() {
    list_ = CreateWindowA("LISTBOX", "", WS_POPUP | LBS_NOTIFY, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
    combo_ =
        CreateWindowA("COMBOBOX", "", WS_POPUP | CBS_DROPDOWNLIST, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(list_ && combo_);
}

void BoxesTest::TearDown() {
    if (list_) DestroyWindow(list_);
    if (combo_) DestroyWindow(combo_);
}

void ConnectedTest::SetUp() {
    BoxesTest::SetUp();
    const std::string dsn = Dsn();
    const char *started = std::getenv("KODBC_TEST_DSNS");
    if (dsn != DataSource() && !(started && std::strstr(started, dsn.c_str())))
        GTEST_SKIP() << dsn << " is not among this run's data sources (no servers)";
    DataSourceRecord source{};
    lstrcpynA(source.DataSourceName, dsn.c_str(), sizeof source.DataSourceName);
    ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED) << dsn;
}

void ConnectedTest::TearDown() {
    if (hdbc_)
        for (const std::string &table : owned_) Run("DROP " + table);
    Kodbc_DisconnectDataSource(&henv_, &hdbc_);
    BoxesTest::TearDown();
}

bool ConnectedTest::Run(const std::string &sql) { return RunSql(hdbc_, sql, nullptr); }

void ConnectedTest::OwnTables(std::initializer_list<std::string> tables) {
    for (const std::string &table : tables) {
        owned_.push_back(table.find(' ') != std::string::npos ? table : "TABLE " + table);
        Run("DROP " + owned_.back());
    }
}

void WizardWalker::Refused(int page) {
    Click(frame, KORVEL_WIZARD_NEXT);
    auto box = [] { return FindWindowA("#32770", kLibraryMessageCaption); };
    const bool shown = WaitFor([&] { return box() != nullptr; });
    Expect(shown && WaitFor([&] { return box() == nullptr; }), "no message box on page " + std::to_string(page));
    Expect(Showing(page), "left page " + std::to_string(page) + " despite the refusal");
}

void WizardWalker::InDialog(const char *title, const std::string &shot, const std::function<void(HWND)> &fill) {
    HWND dialog = AwaitDialog(title);
    Expect(dialog != nullptr, std::string("no dialog ") + title);
    if (!dialog) return;
    Sleep(kSettleMs);
    if (!shot.empty()) SaveScreenshot(dialog, shot);
    fill(dialog);
    Click(dialog, IDOK);
    Expect(WaitFor([&] { return !IsWindow(dialog); }), std::string("open after OK: ") + title);
    Sleep(100);
}

void WizardWalker::Set(int page, int id, const std::string &value) {
    HWND control = Control(page, id);
    if (_stricmp(ClassName(control).c_str(), "Button") == 0) {
        Click(Page(page), id);
        Sleep(200);
    } else if (_stricmp(ClassName(control).c_str(), "ListBox") == 0 ||
               (IsCombo(control) && (GetWindowLongA(control, GWL_STYLE) & 3) == CBS_DROPDOWNLIST)) {
        Expect(wintest::Choose(Page(page), id, value, true), "no entry " + value);
    } else {
        wintest::Type(Page(page), id, value);
    }
}

void WizardWalker::Walk(const std::vector<Step> &steps) {
    for (const Step &step : steps) {
        if (step.refused) {
            if (step.id) Set(step.page, step.id, step.refused);
            Refused(step.page);
        }
        if (step.id) Set(step.page, step.id, step.value);
        if (step.shot) {
            Sleep(kSettleMs);
            SaveScreenshot(frame, shotPrefix + std::to_string(step.page));
        }
        if (step.then == kStay) continue;
        Click(frame, step.button);
        Expect(WaitFor([&] { return step.then ? Showing(step.then) : !IsWindow(frame); }, 10000),
               "page " + std::to_string(step.then) + " after button " + std::to_string(step.button));
        Sleep(200);
    }
}

TableRecord TableNamed(const char *name) {
    TableRecord table{};
    lstrcpynA(table.Object.DbObjectName, name, sizeof table.Object.DbObjectName);
    table.Object.DbObjectType = KODBC_OBJECT_TABLE;
    std::memset(table.Reserved, 0x5A, sizeof table.Reserved);
    return table;
}

// A dialog left open far longer than any robot needs is reported, photographed and cancelled,
// so that a test gone wrong fails instead of hanging the run.
[[maybe_unused]] const bool g_watchdog = [] {
    std::thread([] {
        std::map<HWND, int> ages;  // in watches of 250 ms
        for (;; Sleep(250)) {
            std::map<HWND, int> next;
            for (HWND window : TopWindows([](HWND w) { return g_acting == 0 && OursVisible(w, "#32770"); })) {
                if ((next[window] = ages[window] + 1) < 40) continue;  // ten seconds
                std::fprintf(stderr, "watchdog: window \"%s\" left open, cancelling it\n", WindowText(window).c_str());
                SaveScreenshot(window, "watchdog");
                PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
                PostMessageA(window, WM_CLOSE, 0, 0);
                next[window] = 0;
            }
            ages.swap(next);
        }
    }).detach();
    return true;
}();

} // namespace wintest
