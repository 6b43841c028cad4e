// The progress indicator: a small window with a bar and "Abbrechen". It is
// modeless; Set pumps the thread's messages so the button can be pressed
// while the caller works.
#include "module_win32.h"

#include <korvel/korvel32.h>

#include <commctrl.h>

#include <new>

struct KorvelProgress {
    HWND window = nullptr;
    HWND bar = nullptr;
    HWND owner = nullptr;
    bool ownerWasEnabled = false;
    bool cancelled = false;
};

namespace {

using korvel::win32::ThisModule;

constexpr char kProgressClass[] = "KorvelProgress";
constexpr int kBarId = 100;
constexpr int kWidth = 360;
constexpr int kHeight = 120;

LRESULT CALLBACK ProgressProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto *progress = reinterpret_cast<KorvelProgress *>(GetWindowLongPtrA(window, GWLP_USERDATA));
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL && progress) progress->cancelled = true;
        return 0;
    case WM_CLOSE:
        if (progress) progress->cancelled = true;
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

bool RegisterProgressClass() {
    WNDCLASSA cls = {};
    if (GetClassInfoA(ThisModule(), kProgressClass, &cls)) return true;
    cls.lpfnWndProc = ProgressProc;
    cls.hInstance = ThisModule();
    cls.hCursor = LoadCursor(nullptr, IDC_ARROW);
    cls.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    cls.lpszClassName = kProgressClass;
    return RegisterClassA(&cls) != 0;
}

void PumpMessages(HWND window) {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(msg.wParam));
            return;
        }
        if (!IsDialogMessageA(window, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
}

} // namespace

KorvelProgress *Korvel_Progress_Create(HWND owner, const char *caption, long start, long maximum) {
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    if (!RegisterProgressClass()) return nullptr;

    auto *progress = new (std::nothrow) KorvelProgress;
    if (!progress) return nullptr;
    progress->owner = owner;
    progress->window = CreateWindowExA(WS_EX_DLGMODALFRAME, kProgressClass, caption ? caption : "",
                                       WS_POPUP | WS_CAPTION | WS_SYSMENU, 0, 0, kWidth, kHeight, owner, nullptr,
                                       ThisModule(), nullptr);
    if (!progress->window) {
        delete progress;
        return nullptr;
    }
    SetWindowLongPtrA(progress->window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(progress));
    HFONT font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    RECT client;
    GetClientRect(progress->window, &client);
    progress->bar = CreateWindowExA(0, PROGRESS_CLASSA, "", WS_CHILD | WS_VISIBLE, 12, 12, client.right - 24, 20,
                                    progress->window, reinterpret_cast<HMENU>(kBarId), ThisModule(), nullptr);
    HWND button = CreateWindowExA(0, "BUTTON", "Abbrechen", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON,
                                  (client.right - 90) / 2, client.bottom - 36, 90, 24, progress->window,
                                  reinterpret_cast<HMENU>(IDCANCEL), ThisModule(), nullptr);
    SendMessageA(button, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    SendMessageA(progress->bar, PBM_SETRANGE32, static_cast<WPARAM>(start), static_cast<LPARAM>(maximum));
    SendMessageA(progress->bar, PBM_SETPOS, static_cast<WPARAM>(start), 0);

    // Modal to the owner while the work goes on, as a dialog would be.
    if (owner && IsWindowEnabled(owner)) {
        progress->ownerWasEnabled = true;
        EnableWindow(owner, FALSE);
    }
    korvel::win32::CentreOver(progress->window, owner);
    ShowWindow(progress->window, SW_SHOW);
    UpdateWindow(progress->window);
    PumpMessages(progress->window);
    return progress;
}

int Korvel_Progress_Set(KorvelProgress *progress, long value) {
    if (!progress) return 0;
    SendMessageA(progress->bar, PBM_SETPOS, static_cast<WPARAM>(value), 0);
    PumpMessages(progress->window);
    return progress->cancelled ? 1 : 0;
}

void Korvel_Progress_SetText(KorvelProgress *progress, const char *text) {
    if (progress && progress->window) SetWindowTextA(progress->window, text ? text : "");
}

int Korvel_Progress_IsCancelled(const KorvelProgress *progress) {
    return progress && progress->cancelled ? 1 : 0;
}

void Korvel_Progress_Destroy(KorvelProgress *progress) {
    if (!progress) return;
    // The owner comes back before the window goes, so activation returns to it.
    if (progress->ownerWasEnabled) EnableWindow(progress->owner, TRUE);
    if (progress->window) DestroyWindow(progress->window);
    delete progress;
}
