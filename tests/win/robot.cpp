#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "win_support.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

namespace wintest {
namespace {

constexpr int kPollMs = 50;
constexpr int kPaintMs = 400;
constexpr int kSettleMs = 300;  // a window that just came up, or a text just typed, is painted
// Robots whose action is running: the windows they drive may stay open as
// long as the action needs (its waits are bounded), so the watchdog waits.
std::atomic<int> g_acting{0};

std::string ClassName(HWND window) {
    char cls[64] = {};
    GetClassNameA(window, cls, sizeof cls);
    return cls;
}

// A visible top-level window of this process of class `cls`.
bool OursVisible(HWND window, const char *cls) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId() && IsWindowVisible(window) && ClassName(window) == cls;
}

// Selects line `index` (-1: none) of a list or combo box, notifying the dialog when asked.
void SelectLine(HWND dialog, int controlId, LRESULT index, bool notify) {
    HWND box = GetDlgItem(dialog, controlId);
    const bool combo = IsCombo(box);
    SendMessageA(box, combo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    if (notify && index >= 0)
        SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(controlId, combo ? CBN_SELCHANGE : LBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(box));
}

thread_local MessageBoxAnswerer *t_answerer = nullptr;

} // namespace

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
    HWND control = GetDlgItem(dialog, controlId);
    return control && (GetWindowLongA(control, GWL_STYLE) & WS_VISIBLE);
}

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
    auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        Sleep(kPollMs);
    }
    return true;
}

bool Enabled(HWND dialog, int controlId) { return IsWindowEnabled(GetDlgItem(dialog, controlId)) != FALSE; }

void Type(HWND dialog, int controlId, const std::string &text) {
    HWND control = GetDlgItem(dialog, controlId);
    if (_stricmp(ClassName(control).c_str(), "Edit") != 0) {
        SetWindowTextA(control, text.c_str());
        return;
    }
    SendMessageA(control, EM_SETSEL, 0, -1);
    SendMessageA(control, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
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
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].data != data) continue;
        SelectLine(dialog, controlId, static_cast<LRESULT>(i), notify);
        return true;
    }
    return false;
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
    if (columns < 0) columns = static_cast<int>(SendMessageA(ListView_GetHeader(list), HDM_GETITEMCOUNT, 0, 0));
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

std::vector<int> SelectedRows(HWND list) {
    std::vector<int> rows;
    for (int row = -1; (row = static_cast<int>(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row),
                                                             LVNI_SELECTED))) >= 0;)
        rows.push_back(row);
    return rows;
}

void SelectRows(HWND list, const std::vector<int> &rows) {
    LVITEMA item = {};
    item.stateMask = LVIS_SELECTED;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    item.state = LVIS_SELECTED;
    for (int row : rows)
        SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void DragRow(HWND list, int from, int to) {
    HWND parent = GetParent(list);
    const int id = GetDlgCtrlID(list);
    NMLISTVIEW begin = {};
    begin.hdr = {list, static_cast<UINT_PTR>(id), LVN_BEGINDRAG};
    begin.iItem = from;
    SendMessageA(parent, WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&begin));
    RECT target = {};
    target.left = LVIR_BOUNDS;
    SendMessageA(list, LVM_GETITEMRECT, static_cast<WPARAM>(to), reinterpret_cast<LPARAM>(&target));
    POINT at = {target.left + 5, (target.top + target.bottom) / 2};
    MapWindowPoints(list, parent, &at, 1);
    PostMessageA(parent, WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
}

HWND Visible(const char *cls, const char *text, HWND except) {
    const std::vector<HWND> found = TopWindows([&](HWND window) {
        return window != except && OursVisible(window, cls) && (!text || WindowText(window) == text);
    });
    return found.empty() ? nullptr : found[0];
}

HWND AwaitDialog(const std::string &title, HWND except, int timeoutMs) {
    HWND found = nullptr;
    WaitFor([&] { return (found = Visible("#32770", title.c_str(), except)) != nullptr; }, timeoutMs);
    return found;
}

std::string AnswerBox(int button, const std::string &shot) {
    HWND box = AwaitDialog(kLibraryMessageCaption);
    if (!box) return "<none>";
    Sleep(kSettleMs);
    const std::string text = ControlText(box, kMessageTextId);
    if (!shot.empty()) SaveScreenshot(box, shot);
    Click(box, button);
    WaitFor([&] { return !IsWindow(box); });
    return text;
}

std::string CloseErrorDisplay() {
    HWND error = AwaitDialog(kErrorTitle);
    if (!error) return "<none>";
    const std::string statement = ControlText(error, IDC_ODBC_ERROR_STATEMENT);
    Click(error, IDC_ODBC_ERROR_CLOSE);
    WaitFor([&] { return !IsWindow(error); });
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
    Click(dialog, IDOK);
    return WaitFor([&] { return !IsWindow(dialog); });
}

std::string NoticeText() {
    HWND notice = Visible("KorvelTempWind");
    return notice ? WindowText(notice) : std::string();
}

std::string SaveScreenshot(HWND window, const std::string &name) {
    RECT rect;
    if (!GetWindowRect(window, &rect)) return {};
    const int width = rect.right - rect.left, height = rect.bottom - rect.top;
    if (width <= 0 || height <= 0) return {};

    const DWORD size = static_cast<DWORD>((width * 3 + 3) & ~3) * static_cast<DWORD>(height);  // rows of 4-byte steps
    BITMAPINFOHEADER info = {sizeof info, width, height, 1, 24, BI_RGB, size, 0, 0, 0, 0};
    void *pixels = nullptr;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    HBITMAP bitmap =
        CreateDIBSection(screen, reinterpret_cast<BITMAPINFO *>(&info), DIB_RGB_COLORS, &pixels, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, bitmap);
    // What the screen shows, as the user sees it; a window not yet shown is
    // asked to draw itself.
    if (!IsWindowVisible(window) || !BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY)) {
        PrintWindow(window, memory, 0);
    }
    GdiFlush();

    const char *dir = std::getenv("KODBC_SCREENSHOT_DIR");
    std::string file = std::string(dir && *dir ? dir : ".") + "/" + name + ".bmp";
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

DialogRobot::DialogRobot(std::string title, std::string shot, Action action, int timeoutMs)
    : thread_(GetCurrentThreadId()), title_(std::move(title)), shot_(std::move(shot)), action_(std::move(action)),
      timeoutMs_(timeoutMs), worker_([this] { Run(); }) {}

DialogRobot::~DialogRobot() { Join(); }

void DialogRobot::Join() {
    stop_ = true;
    if (worker_.joinable()) worker_.join();
}

void DialogRobot::Run() {
    auto start = std::chrono::steady_clock::now();
    bool acted = false;
    for (; !stop_; Sleep(kPollMs)) {
        const std::vector<HWND> found = TopWindows([&](HWND window) {
            return GetWindowThreadProcessId(window, nullptr) == thread_ && OursVisible(window, "#32770") &&
                   WindowText(window) == title_;
        });
        if (found.empty()) continue;
        HWND dialog = found[0];
        const bool late = std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(timeoutMs_);
        if (!acted && !late) {
            acted = true;
            Sleep(kPaintMs);
            if (!shot_.empty()) SaveScreenshot(dialog, shot_);
            found_ = true;
            if (action_) {
                ++g_acting;
                action_(dialog);
                --g_acting;
            }
            start = std::chrono::steady_clock::now();  // the action gets its own time to close it
        } else if (late) {
            // Unexpected, or left open by the action: never let the test hang.
            PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
            start = std::chrono::steady_clock::now();
        }
    }
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

    MessageBoxSeen seen;
    seen.text = ControlText(window, kMessageTextId);
    seen.ok = ControlVisible(window, IDOK);
    seen.cancel = ControlVisible(window, IDCANCEL);
    seen.yes = ControlVisible(window, IDYES);
    seen.no = ControlVisible(window, IDNO);
    if (seen.yes) seen.yesText = ControlText(window, IDYES);
    seen_.push_back(seen);
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

namespace {

// Last line of defence: a dialog or message box of this process that stays
// open far longer than any robot needs is reported with its texts and
// cancelled, so a test that goes wrong fails instead of hanging the run.
class Watchdog : public ::testing::Environment {
public:
    void SetUp() override { worker_ = std::thread([this] { Run(); }); }
    void TearDown() override {
        stop_ = true;
        if (worker_.joinable()) worker_.join();
    }

private:
    static BOOL CALLBACK Describe(HWND child, LPARAM) {
        std::string text = WindowText(child);
        if (!text.empty()) std::fprintf(stderr, "    [%d] %s\n", GetDlgCtrlID(child), text.c_str());
        return TRUE;
    }
    void Run() {
        std::map<HWND, int> ages;  // in watches of 250 ms
        for (; !stop_; Sleep(250)) {
            if (g_acting > 0) {
                ages.clear();
                continue;
            }
            std::map<HWND, int> next;
            for (HWND window : TopWindows([](HWND w) { return OursVisible(w, "#32770"); })) {
                int &age = next[window] = ages[window] + 1;
                if (age < kLimit) continue;
                std::fprintf(stderr, "watchdog: window \"%s\" left open, cancelling it\n", WindowText(window).c_str());
                EnumChildWindows(window, Describe, 0);
                SaveScreenshot(window, "watchdog");
                PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
                PostMessageA(window, WM_CLOSE, 0, 0);
                age = 0;
            }
            ages.swap(next);
        }
    }

    static constexpr int kLimit = 40;  // ten seconds
    std::atomic<bool> stop_{false};
    std::thread worker_;
};

[[maybe_unused]] ::testing::Environment *const g_watchdog = ::testing::AddGlobalTestEnvironment(new Watchdog);

} // namespace
} // namespace wintest
