// Message boxes, file error reports and the temporary notice window.
#include "module_win32.h"

#include "../common/message_text.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_messages.h>

#include <string>

namespace korvel::win32 {

HINSTANCE ThisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&ThisModule), &module);
    return module;
}

void CentreOver(HWND window, HWND owner) {
    RECT area;
    if (!owner || !IsWindowVisible(owner) || !GetWindowRect(owner, &area)) {
        SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    }
    RECT own;
    GetWindowRect(window, &own);
    int width = own.right - own.left;
    int height = own.bottom - own.top;
    int x = area.left + ((area.right - area.left) - width) / 2;
    int y = area.top + ((area.bottom - area.top) - height) / 2;
    SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace korvel::win32

namespace {

using korvel::win32::ThisModule;

constexpr int kMessageSize = 2048;
constexpr int kCaptionSize = 256;

UINT BoxStyle(int kind) {
    switch (kind) {
    case KODBC_MESSAGE_STOP: return MB_ICONSTOP | MB_OK;
    case KODBC_MESSAGE_NOTICE: return MB_ICONINFORMATION | MB_OK;
    case KODBC_MESSAGE_YESNO: return MB_ICONQUESTION | MB_YESNO;
    case KODBC_MESSAGE_YESNOCANCEL: return MB_ICONQUESTION | MB_YESNOCANCEL;
    default: return MB_OK;
    }
}

// A string of the request's module, translated for the request's module.
std::string LoadTranslated(HINSTANCE instance, int id, const char *module, int size) {
    std::string text(static_cast<std::size_t>(size), '\0');
    if (Korvel_LoadString(instance, id, text.data(), size) <= 0) return {};
    int length = Polo_TranslateString(module, nullptr, text.data(), size);
    text.resize(static_cast<std::size_t>(length > 0 ? length : 0));
    return text;
}

// The error handler's texts, one per error class, naming the file.
const char *ErrorClassText(int errorClass) {
    switch (errorClass) {
    case 2: return "Auf die Datei  %s  kann nicht zugegriffen werden.";
    case 3: return "Die Datei  %s  existiert nicht.";
    case 4: return "Die Datei  %s  existiert bereits.";
    case 5: return "Zu viele offene Dateien.";
    default: return "Fehler beim Zugriff auf die Datei  %s .";
    }
}

// The temporary notice: a borderless coloured popup that closes itself.
constexpr char kNoticeClass[] = "KorvelTempWind";
constexpr UINT_PTR kNoticeTimer = 1;
constexpr int kNoticePadding = 16;

LRESULT CALLBACK NoticeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_TIMER:
        if (wParam == kNoticeTimer) {
            KillTimer(window, kNoticeTimer);
            DestroyWindow(window);
        }
        return 0;
    case WM_LBUTTONDOWN:
        DestroyWindow(window);
        return 0;
    case WM_PAINT: {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        RECT client;
        GetClientRect(window, &client);
        auto color = static_cast<COLORREF>(GetWindowLongPtrA(window, GWLP_USERDATA));
        HBRUSH brush = CreateSolidBrush(color);
        FillRect(dc, &client, brush);
        DeleteObject(brush);
        FrameRect(dc, &client, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
        char text[kMessageSize];
        GetWindowTextA(window, text, sizeof text);
        SetBkMode(dc, TRANSPARENT);
        HGDIOBJ old = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
        DrawTextA(dc, text, -1, &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        SelectObject(dc, old);
        EndPaint(window, &paint);
        return 0;
    }
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

bool RegisterNoticeClass() {
    WNDCLASSA cls = {};
    if (GetClassInfoA(ThisModule(), kNoticeClass, &cls)) return true;
    cls.lpfnWndProc = NoticeProc;
    cls.hInstance = ThisModule();
    cls.hCursor = LoadCursor(nullptr, IDC_ARROW);
    cls.lpszClassName = kNoticeClass;
    return RegisterClassA(&cls) != 0;
}

KodbcMessageHandler g_handler = nullptr;

} // namespace

int Korvel_Message_Box(const KorvelMessageRequest *request) {
    if (!request) return IDOK;
    std::string format;
    if (request->loadFromResource) {
        format = LoadTranslated(request->instance, request->messageId, request->module, kMessageSize);
    }
    std::string caption = LoadTranslated(request->instance, request->captionId, request->module, kCaptionSize);
    korvel::MessageText parsed = korvel::ParseMessagePrefix(format);
    std::string text = korvel::FillMessageArguments(parsed.text, request->args);
    return MessageBoxA(Korvel_ActiveWindow(), text.c_str(), caption.c_str(), BoxStyle(parsed.kind) | MB_SETFOREGROUND);
}

int Korvel_ErrorHandler(const KorvelErrorRequest *request) {
    if (!request) return IDOK;
    const char *args[3] = {request->values[0], request->values[1], request->values[2]};
    std::string text = korvel::FillMessageArguments(ErrorClassText(request->errorClass), args);
    HWND owner = request->window ? request->window : request->owner;
    UINT style = request->style ? static_cast<UINT>(request->style) : MB_ICONSTOP;
    return MessageBoxA(owner, text.c_str(), request->caption ? request->caption : "", style | MB_OK);
}

void Korvel_DisplayTempWind(HINSTANCE instance, int stringId, int timing, COLORREF color) {
    char text[kMessageSize];
    if (Korvel_LoadString(instance, stringId, text, sizeof text) <= 0) return;
    if (!RegisterNoticeClass()) return;

    HWND owner = Korvel_ActiveWindow();
    HWND window = CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, kNoticeClass, text, WS_POPUP, 0, 0, 10, 10,
                                  owner, nullptr, ThisModule(), nullptr);
    if (!window) return;
    SetWindowLongPtrA(window, GWLP_USERDATA, static_cast<LONG_PTR>(color));

    // Size the popup to its text before it is shown.
    HDC dc = GetDC(window);
    HGDIOBJ old = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    SIZE extent = {};
    GetTextExtentPoint32A(dc, text, lstrlenA(text), &extent);
    SelectObject(dc, old);
    ReleaseDC(window, dc);
    SetWindowPos(window, nullptr, 0, 0, extent.cx + 4 * kNoticePadding, extent.cy + 2 * kNoticePadding,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    korvel::win32::CentreOver(window, owner);

    UINT delay = timing > 0 ? static_cast<UINT>(timing) * 100u : 1000u;
    SetTimer(window, kNoticeTimer, delay, nullptr);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    UpdateWindow(window);
}

namespace {
BOOL CALLBACK CloseIfNotice(HWND window, LPARAM) {
    char name[32] = {};
    GetClassNameA(window, name, sizeof name);
    if (lstrcmpA(name, kNoticeClass) == 0) DestroyWindow(window);
    return TRUE;
}
} // namespace

void Korvel_CloseTempWind() { EnumThreadWindows(GetCurrentThreadId(), &CloseIfNotice, 0); }

HWND Korvel_ActiveWindow() { return GetActiveWindow(); }

KodbcMessageHandler Korvel_SetMessageHandler(KodbcMessageHandler handler, void *) {
    // Windows shows its messages as windows; the handler is kept only so the
    // previous one can be handed back.
    KodbcMessageHandler previous = g_handler;
    g_handler = handler;
    return previous;
}

int Korvel_DeliverMessage(const KodbcMessage *message) {
    if (!message) return KODBC_ANSWER_OK;
    const char *text = message->text ? message->text : "";
    const char *caption = message->caption ? message->caption : "";
    switch (message->kind) {
    case KODBC_MESSAGE_PLAIN:
    case KODBC_MESSAGE_STOP:
    case KODBC_MESSAGE_NOTICE:
    case KODBC_MESSAGE_YESNO:
    case KODBC_MESSAGE_YESNOCANCEL:
    case KODBC_MESSAGE_TEMPORARY:
        return MessageBoxA(Korvel_ActiveWindow(), text, caption, BoxStyle(message->kind) | MB_SETFOREGROUND);
    default:
        return KODBC_ANSWER_OK;
    }
}
