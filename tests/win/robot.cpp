#include "robot.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace wintest {
namespace {

constexpr int kPollMs = 50;
constexpr int kPaintMs = 400;
// Robots whose action is running: the windows they drive may stay open as
// long as the action needs (its waits are bounded), so the watchdog waits.
std::atomic<int> g_acting{0};

struct Search {
    const std::string *title;
    HWND found = nullptr;
};

BOOL CALLBACK FindDialog(HWND window, LPARAM param) {
    auto *search = reinterpret_cast<Search *>(param);
    char cls[64];
    if (!IsWindowVisible(window) || !GetClassNameA(window, cls, sizeof cls) || lstrcmpA(cls, "#32770") != 0) {
        return TRUE;
    }
    if (WindowText(window) != *search->title) return TRUE;
    search->found = window;
    return FALSE;
}

void WriteBitmap(const std::string &file, int width, int height, const void *pixels) {
    BITMAPFILEHEADER header = {};
    BITMAPINFOHEADER info = {};
    DWORD stride = static_cast<DWORD>((width * 3 + 3) & ~3);
    info.biSize = sizeof info;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    info.biSizeImage = stride * static_cast<DWORD>(height);
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof info;
    header.bfSize = header.bfOffBits + info.biSizeImage;
    if (FILE *f = std::fopen(file.c_str(), "wb")) {
        std::fwrite(&header, sizeof header, 1, f);
        std::fwrite(&info, sizeof info, 1, f);
        std::fwrite(pixels, info.biSizeImage, 1, f);
        std::fclose(f);
    }
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
    HWND control = GetDlgItem(dialog, controlId);
    return control && (GetWindowLongA(control, GWL_STYLE) & WS_VISIBLE);
}

void Click(HWND dialog, int controlId) { PostMessageA(GetDlgItem(dialog, controlId), BM_CLICK, 0, 0); }

void PressEscape(HWND dialog, int controlId) {
    HWND control = GetDlgItem(dialog, controlId);
    PostMessageA(control, WM_KEYDOWN, VK_ESCAPE, 0x00010001);
    PostMessageA(control, WM_KEYUP, VK_ESCAPE, 0xC0010001);
}

void PressKey(HWND control, UINT virtualKey) {
    UINT scan = MapVirtualKeyA(virtualKey, MAPVK_VK_TO_VSC);
    PostMessageA(control, WM_KEYDOWN, virtualKey, static_cast<LPARAM>(1 | (scan << 16)));
    PostMessageA(control, WM_KEYUP, virtualKey, static_cast<LPARAM>(1 | (scan << 16) | 0xC0000000u));
}

void PressAltChar(HWND control, char ch) {
    PostMessageA(control, WM_SYSCHAR, static_cast<unsigned char>(ch), static_cast<LPARAM>(1 | (1u << 29)));
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

std::string SaveScreenshot(HWND window, const std::string &name) {
    RECT rect;
    if (!GetWindowRect(window, &rect)) return {};
    int width = rect.right - rect.left;
    int height = rect.bottom - rect.top;
    if (width <= 0 || height <= 0) return {};

    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void *pixels = nullptr;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, bitmap);
    // What the screen shows, as the user sees it; a window not yet shown is
    // asked to draw itself.
    if (!IsWindowVisible(window) || !BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY)) {
        PrintWindow(window, memory, 0);
    }
    GdiFlush();

    const char *dir = std::getenv("KODBC_SCREENSHOT_DIR");
    std::string file = std::string(dir && *dir ? dir : ".") + "/" + name + ".bmp";
    WriteBitmap(file, width, height, pixels);

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
    while (!stop_) {
        Search search{&title_};
        EnumThreadWindows(thread_, FindDialog, reinterpret_cast<LPARAM>(&search));
        auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
        if (search.found) {
            if (!acted && elapsed.count() < timeoutMs_) {
                acted = true;
                Sleep(kPaintMs);
                if (!shot_.empty()) SaveScreenshot(search.found, shot_);
                found_ = true;
                if (action_) {
                    ++g_acting;
                    action_(search.found);
                    --g_acting;
                }
                start = std::chrono::steady_clock::now();  // the action gets its own time to close it
            } else if (elapsed.count() >= timeoutMs_) {
                // Unexpected, or left open by the action: never let the test hang.
                PostMessageA(search.found, WM_COMMAND, IDCANCEL, 0);
                start = std::chrono::steady_clock::now();
            }
        }
        Sleep(kPollMs);
    }
}

namespace {

thread_local MessageBoxAnswerer *t_answerer = nullptr;

BOOL CALLBACK CollectStatic(HWND child, LPARAM param) {
    char cls[32];
    if (GetClassNameA(child, cls, sizeof cls) && lstrcmpiA(cls, "Static") == 0) {
        std::string text = WindowText(child);
        auto *longest = reinterpret_cast<std::string *>(param);
        if (text.size() > longest->size()) *longest = text;
    }
    return TRUE;
}

} // namespace

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
    char cls[64];
    if (!GetClassNameA(window, cls, sizeof cls) || lstrcmpA(cls, "#32770") != 0) return;
    if (WindowText(window) != caption_) return;
    // A box is activated again when focus comes back to it; count it once.
    for (const MessageBoxSeen &s : seen_) {
        if (s.caption == caption_ && GetPropA(window, "wintest.seen")) return;
    }
    SetPropA(window, "wintest.seen", reinterpret_cast<HANDLE>(1));

    MessageBoxSeen seen;
    seen.caption = caption_;
    EnumChildWindows(window, CollectStatic, reinterpret_cast<LPARAM>(&seen.text));
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

} // namespace wintest

namespace wintest {
namespace {

// Last line of defence: a dialog or message box of this process that stays
// open far longer than any robot needs is reported with its texts and
// cancelled, so a test that goes wrong fails instead of hanging the run.
class Watchdog : public ::testing::Environment {
public:
    void SetUp() override {
        worker_ = std::thread([this] { Run(); });
    }
    void TearDown() override {
        stop_ = true;
        if (worker_.joinable()) worker_.join();
    }

private:
    static BOOL CALLBACK Collect(HWND window, LPARAM param) {
        DWORD pid = 0;
        GetWindowThreadProcessId(window, &pid);
        char cls[64];
        if (pid == GetCurrentProcessId() && IsWindowVisible(window) && GetClassNameA(window, cls, sizeof cls) &&
            lstrcmpA(cls, "#32770") == 0) {
            reinterpret_cast<std::vector<HWND> *>(param)->push_back(window);
        }
        return TRUE;
    }
    static BOOL CALLBACK Describe(HWND child, LPARAM) {
        std::string text = WindowText(child);
        if (!text.empty()) std::fprintf(stderr, "    [%d] %s\n", GetDlgCtrlID(child), text.c_str());
        return TRUE;
    }
    void Run() {
        std::vector<std::pair<HWND, int>> ages;
        while (!stop_) {
            if (g_acting > 0) {
                ages.clear();
                Sleep(250);
                continue;
            }
            std::vector<HWND> open;
            EnumWindows(Collect, reinterpret_cast<LPARAM>(&open));
            std::vector<std::pair<HWND, int>> next;
            for (HWND window : open) {
                int age = 0;
                for (auto &[w, a] : ages) {
                    if (w == window) age = a;
                }
                if (++age == kLimit) {
                    std::fprintf(stderr, "watchdog: window \"%s\" left open, cancelling it\n",
                                 WindowText(window).c_str());
                    EnumChildWindows(window, Describe, 0);
                    SaveScreenshot(window, "watchdog");
                    PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
                    PostMessageA(window, WM_CLOSE, 0, 0);
                    age = 0;
                }
                next.emplace_back(window, age);
            }
            ages.swap(next);
            Sleep(250);
        }
    }

    static constexpr int kLimit = 40;  // ten seconds
    std::atomic<bool> stop_{false};
    std::thread worker_;
};

[[maybe_unused]] ::testing::Environment *const g_watchdog = ::testing::AddGlobalTestEnvironment(new Watchdog);

} // namespace
} // namespace wintest
