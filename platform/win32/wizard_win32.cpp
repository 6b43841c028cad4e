// The wizard frame: a modal dialog built in memory that holds the wizard's
// bitmap, its pages as child dialogs and the three buttons. The frame is an
// ordinary dialog so that the window system's dialog manager gives it Tab,
// Enter, Escape and mnemonics across the pages' controls, and robots can
// drive it with plain messages.
#include "module_win32.h"

#include "../common/wizard_walk.h"

#include <korvel/korvel32.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using korvel::win32::ThisModule;

constexpr char kPageProperty[] = "KorvelWizardPage";
constexpr char kBackText[] = "< &Zur\xFC" "ck";
constexpr char kCancelText[] = "Abbrechen";
constexpr int kTitleSize = 256;
constexpr int kPictureId = 0x3020;
constexpr int kSeparatorId = 0x3021;

// Dialog units of the frame's layout.
constexpr int kMarginDlu = 7;
constexpr int kButtonWidthDlu = 50;
constexpr int kButtonHeightDlu = 14;

struct WizardFrame;

struct Page {
    int id = 0;
    HWND window = nullptr;
    WizardFrame *frame = nullptr;
};

struct WizardFrame {
    std::vector<Page> pages;
    korvel::PageSwitches on;  // each page's switch
    KorvelWizardCallback callback = nullptr;
    UINT activateMessage = 0;
    UINT leaveMessage = 0;
    void *userParam = nullptr;
    HINSTANCE instance = nullptr;
    const char *module = nullptr;
    int titleId = 0;
    HBITMAP bitmap = nullptr;
    SIZE bitmapSize = {0, 0};
    HWND window = nullptr;
    HWND back = nullptr;
    HWND next = nullptr;
    int current = -1;
    bool moving = false;  // a leave is being asked: no second move meanwhile

    LONG_PTR Handle() { return reinterpret_cast<LONG_PTR>(this); }
};

// Wizards of this thread that are running, innermost last: a handle is only
// believed when it names one of them.
thread_local std::vector<WizardFrame *> t_running;
// The page whose window is being created: its first messages arrive before
// CreateDialogParam returns.
thread_local Page *t_creating = nullptr;

WizardFrame *Running(LONG_PTR handle) {
    if (!handle) return nullptr;
    auto *frame = reinterpret_cast<WizardFrame *>(handle);
    return std::find(t_running.begin(), t_running.end(), frame) != t_running.end() ? frame : nullptr;
}

std::string Translated(const WizardFrame &frame, const char *text) {
    char buffer[kTitleSize];
    KorvelCopyString(buffer, text, sizeof buffer);
    Polo_TranslateString(frame.module, nullptr, buffer, sizeof buffer);
    return buffer;
}

void SetTextIfChanged(HWND window, const std::string &text) {
    char current[kTitleSize] = {};
    GetWindowTextA(window, current, sizeof current);
    if (text != current) SetWindowTextA(window, text.c_str());
}

void UpdateButtons(WizardFrame &frame) {
    if (!frame.back || !frame.next || frame.current < 0) return;
    const korvel::WizardButtons buttons = korvel::ButtonsOn(frame.on, frame.current);
    if (!buttons.back && GetFocus() == frame.back) SendMessageA(frame.window, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(frame.back, buttons.back);
    SetTextIfChanged(frame.next, Translated(frame, buttons.nextText));
}

int Ask(WizardFrame &frame, const Page &page, UINT message, WPARAM wParam, LPARAM lParam) {
    return frame.callback(frame.Handle(), page.id, page.window, message, wParam, lParam);
}

void ShowPage(WizardFrame &frame, int index) {
    Page &page = frame.pages[static_cast<std::size_t>(index)];
    if (frame.current >= 0 && frame.current != index) {
        ShowWindow(frame.pages[static_cast<std::size_t>(frame.current)].window, SW_HIDE);
    }
    frame.current = index;
    Ask(frame, page, frame.activateMessage, 0, 0);
    UpdateButtons(frame);
    ShowWindow(page.window, SW_SHOW);
    // The page may have chosen its focus while it was activated; otherwise
    // its first control gets it, as in any dialog.
    HWND focus = GetFocus();
    if (!focus || (focus != page.window && !IsChild(page.window, focus))) {
        HWND first = GetNextDlgTabItem(page.window, nullptr, FALSE);
        // The frame itself is not shown yet at the start: the controls' own
        // visibility is what counts.
        if (first && IsChild(page.window, first) && (GetWindowLongA(first, GWL_STYLE) & WS_VISIBLE) &&
            IsWindowEnabled(first)) {
            SendMessageA(frame.window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
        } else {
            SendMessageA(frame.window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(frame.next), TRUE);
        }
    }
}

// Asks the current page to let go in `direction`; true when it agrees.
bool Leave(WizardFrame &frame, WPARAM direction) {
    const Page &page = frame.pages[static_cast<std::size_t>(frame.current)];
    int answer = 1;
    Ask(frame, page, frame.leaveMessage, direction, reinterpret_cast<LPARAM>(&answer));
    return answer == 1;
}

void Move(WizardFrame &frame, int step) {
    if (frame.moving || frame.current < 0) return;
    const korvel::WizardPress press = korvel::Press(frame.on, frame.current, step);
    if (press == korvel::WizardPress::Ignored) return;
    frame.moving = true;
    bool agreed = Leave(frame, step > 0 ? KORVEL_WIZARD_FORWARD : KORVEL_WIZARD_BACKWARD);
    frame.moving = false;
    if (!agreed) return;
    const int target = korvel::AfterLeave(frame.on, frame.current, step, press);
    if (target >= 0) {
        ShowPage(frame, target);
    } else if (target == korvel::kWizardFinished) {
        EndDialog(frame.window, 1);
    } else {
        UpdateButtons(frame);
    }
}

HWND AddButton(WizardFrame &frame, int id, const char *text, DWORD style) {
    return CreateWindowExA(0, "BUTTON", Translated(frame, text).c_str(), WS_CHILD | WS_VISIBLE | WS_TABSTOP | style,
                           0, 0, 0, 0, frame.window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ThisModule(),
                           nullptr);
}

void PlaceLast(HWND window, int x, int y, int width, int height, UINT flags = 0) {
    // Tab order follows the z-order: each control goes behind the ones before.
    SetWindowPos(window, HWND_BOTTOM, x, y, width, height, SWP_NOACTIVATE | flags);
}

INT_PTR CALLBACK PageProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

bool CreatePages(WizardFrame &frame) {
    for (Page &page : frame.pages) {
        t_creating = &page;
        HWND window = CreateDialogParamA(frame.instance, MAKEINTRESOURCEA(page.id), frame.window, PageProc, 0);
        t_creating = nullptr;
        if (!window) return false;
        page.window = window;
        SetWindowLongPtrA(window, GWLP_ID, page.id);
        ShowWindow(window, SW_HIDE);
    }
    return true;
}

// Lays out picture, pages, separator and buttons, and sizes the frame.
void Layout(WizardFrame &frame) {
    RECT units = {kMarginDlu, kButtonWidthDlu, kButtonHeightDlu, 0};
    MapDialogRect(frame.window, &units);
    const int margin = units.left, buttonWidth = units.top, buttonHeight = units.right;

    SIZE area = {0, 0};
    for (const Page &page : frame.pages) {
        RECT rect;
        GetWindowRect(page.window, &rect);
        area.cx = std::max(area.cx, rect.right - rect.left);
        area.cy = std::max(area.cy, rect.bottom - rect.top);
    }
    const int left = frame.bitmapSize.cx + margin;
    const int content = std::max(frame.bitmapSize.cy, area.cy + 2 * margin);
    const int width = left + area.cx + margin;
    const int buttonsTop = content + margin;
    const int height = buttonsTop + buttonHeight + margin;

    PlaceLast(GetDlgItem(frame.window, kPictureId), 0, 0, frame.bitmapSize.cx, content);
    for (const Page &page : frame.pages) PlaceLast(page.window, left, margin, 0, 0, SWP_NOSIZE);
    PlaceLast(GetDlgItem(frame.window, kSeparatorId), 0, content, width, 2);
    const int cancelLeft = width - margin - buttonWidth;
    const int nextLeft = cancelLeft - margin - buttonWidth;
    PlaceLast(frame.back, nextLeft - buttonWidth, buttonsTop, buttonWidth, buttonHeight);
    PlaceLast(frame.next, nextLeft, buttonsTop, buttonWidth, buttonHeight);
    PlaceLast(GetDlgItem(frame.window, IDCANCEL), cancelLeft, buttonsTop, buttonWidth, buttonHeight);

    RECT outer = {0, 0, width, height};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongA(frame.window, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongA(frame.window, GWL_EXSTYLE)));
    SetWindowPos(frame.window, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    korvel::win32::CentreOver(frame.window, GetWindow(frame.window, GW_OWNER));
}

// Builds the frame's content; false when it cannot be run.
bool Build(WizardFrame &frame) {
    char title[kTitleSize];
    if (Korvel_LoadString(frame.instance, frame.titleId, title, sizeof title) > 0) {
        Polo_TranslateString(frame.module, nullptr, title, sizeof title);
        SetWindowTextA(frame.window, title);
    }
    HFONT font = reinterpret_cast<HFONT>(SendMessageA(frame.window, WM_GETFONT, 0, 0));
    CreateWindowExA(0, "STATIC", "", WS_CHILD | WS_VISIBLE | SS_OWNERDRAW, 0, 0, 0, 0, frame.window,
                    reinterpret_cast<HMENU>(kPictureId), ThisModule(), nullptr);
    if (!CreatePages(frame)) return false;
    CreateWindowExA(0, "STATIC", "", WS_CHILD | WS_VISIBLE | SS_ETCHEDHORZ, 0, 0, 0, 0, frame.window,
                    reinterpret_cast<HMENU>(kSeparatorId), ThisModule(), nullptr);
    frame.back = AddButton(frame, KORVEL_WIZARD_BACK, kBackText, BS_PUSHBUTTON);
    frame.next = AddButton(frame, KORVEL_WIZARD_NEXT, korvel::kWizardNextText, BS_DEFPUSHBUTTON);
    HWND cancel = AddButton(frame, IDCANCEL, kCancelText, BS_PUSHBUTTON);
    if (!frame.back || !frame.next || !cancel) return false;
    for (HWND button : {frame.back, frame.next, cancel}) {
        SendMessageA(button, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }
    SendMessageA(frame.window, DM_SETDEFID, KORVEL_WIZARD_NEXT, 0);
    Layout(frame);

    int first = korvel::NeighbourPage(frame.on, -1, 1);
    if (first < 0) return false;
    ShowPage(frame, first);
    return true;
}

// The bitmap at the top of the left side; below it the bitmap's last row
// colour continues, so pages taller than the picture leave no seam.
void DrawPicture(const WizardFrame &frame, const DRAWITEMSTRUCT &item) {
    if (!frame.bitmap) {
        FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
        return;
    }
    HDC memory = CreateCompatibleDC(item.hDC);
    HGDIOBJ old = SelectObject(memory, frame.bitmap);
    COLORREF below = GetPixel(memory, 0, frame.bitmapSize.cy - 1);
    HBRUSH brush = CreateSolidBrush(below);
    RECT rest = item.rcItem;
    rest.top = frame.bitmapSize.cy;
    if (rest.top < rest.bottom) FillRect(item.hDC, &rest, brush);
    DeleteObject(brush);
    BitBlt(item.hDC, 0, 0, frame.bitmapSize.cx, frame.bitmapSize.cy, memory, 0, 0, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
}

INT_PTR CALLBACK FrameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        if (message == WM_INITDIALOG) {
            auto *frame = reinterpret_cast<WizardFrame *>(lParam);
            SetWindowLongPtrA(window, DWLP_USER, lParam);
            frame->window = window;
            if (!Build(*frame)) EndDialog(window, 0);
            return FALSE;  // the focus is set
        }
        auto *frame = reinterpret_cast<WizardFrame *>(GetWindowLongPtrA(window, DWLP_USER));
        if (!frame) return FALSE;
        switch (message) {
        case WM_COMMAND:
            switch (LOWORD(wParam)) {
            case KORVEL_WIZARD_BACK: Move(*frame, -1); return TRUE;
            case KORVEL_WIZARD_NEXT:
            case IDOK: Move(*frame, 1); return TRUE;
            case IDCANCEL:
                if (!frame->moving) EndDialog(window, 2);
                return TRUE;
            default: return FALSE;
            }
        case WM_CLOSE:
            if (!frame->moving) EndDialog(window, 2);
            return TRUE;
        case WM_DRAWITEM:
            if (wParam != kPictureId) return FALSE;
            DrawPicture(*frame, *reinterpret_cast<const DRAWITEMSTRUCT *>(lParam));
            return TRUE;
        default: return FALSE;
        }
    } catch (...) {
        return FALSE;
    }
}

INT_PTR CALLBACK PageProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        auto *page = static_cast<Page *>(GetPropA(window, kPageProperty));
        if (!page && t_creating) {
            page = t_creating;
            page->window = window;
            SetPropA(window, kPageProperty, page);
        }
        if (!page) return FALSE;
        INT_PTR handled = Ask(*page->frame, *page, message, wParam, lParam);
        if (message == WM_NCDESTROY) {
            RemovePropA(window, kPageProperty);
            page->window = nullptr;
        }
        return handled;
    } catch (...) {
        return FALSE;
    }
}

// Makes the frame known to Wizzard_GetParam for the length of the run.
class RunningGuard {
public:
    explicit RunningGuard(WizardFrame *frame) : frame_(frame) { t_running.push_back(frame); }
    ~RunningGuard() { t_running.erase(std::find(t_running.begin(), t_running.end(), frame_)); }
    RunningGuard(const RunningGuard &) = delete;
    RunningGuard &operator=(const RunningGuard &) = delete;

private:
    WizardFrame *frame_;
};

struct BitmapOwner {
    HBITMAP bitmap = nullptr;
    ~BitmapOwner() {
        if (bitmap) DeleteObject(bitmap);
    }
};

// An empty modal dialog template in the shell font; the frame fills it.
std::vector<WORD> FrameTemplate() {
    std::vector<WORD> words(sizeof(DLGTEMPLATE) / sizeof(WORD), 0);
    auto *header = reinterpret_cast<DLGTEMPLATE *>(words.data());
    header->style = DS_MODALFRAME | DS_SETFONT | DS_3DLOOK | WS_POPUP | WS_CAPTION | WS_SYSMENU;
    header->dwExtendedStyle = WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME;
    words.push_back(0);  // no menu
    words.push_back(0);  // the dialog class
    words.push_back(0);  // no title yet
    words.push_back(8);  // point size
    for (const char *c = "MS Shell Dlg"; *c; ++c) words.push_back(static_cast<WORD>(*c));
    words.push_back(0);
    return words;
}

} // namespace

int Wizzard_Perform(const KorvelWizardPage *pages, KorvelWizardCallback callback, UINT activateMessage,
                    UINT leaveMessage, void *userParam, int bitmapId, int titleId, HINSTANCE instance,
                    const char *module, int, int) {
    if (!pages || !callback || pages[0].templateId == 0) return 0;
    try {
        WizardFrame frame;
        frame.callback = callback;
        frame.activateMessage = activateMessage;
        frame.leaveMessage = leaveMessage;
        frame.userParam = userParam;
        frame.instance = instance;
        frame.module = module;
        frame.titleId = titleId;
        for (const KorvelWizardPage *p = pages; p->templateId != 0; ++p) {
            frame.pages.push_back(Page{p->templateId, nullptr, &frame});
            frame.on.push_back(true);
        }
        BitmapOwner picture;
        picture.bitmap = static_cast<HBITMAP>(
            LoadImageA(instance, MAKEINTRESOURCEA(bitmapId), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
        frame.bitmap = picture.bitmap;
        if (frame.bitmap) {
            BITMAP info = {};
            GetObjectA(frame.bitmap, sizeof info, &info);
            frame.bitmapSize = {info.bmWidth, info.bmHeight};
        }
        std::vector<WORD> dialog = FrameTemplate();

        RunningGuard running(&frame);
        INT_PTR result = DialogBoxIndirectParamA(ThisModule(), reinterpret_cast<LPCDLGTEMPLATEA>(dialog.data()),
                                                 Korvel_ActiveWindow(), FrameProc, reinterpret_cast<LPARAM>(&frame));
        return result == 1 || result == 2 ? static_cast<int>(result) : 0;
    } catch (...) {
        return 0;
    }
}

void *Wizzard_GetParam(LONG_PTR wizard) {
    WizardFrame *frame = Running(wizard);
    return frame ? frame->userParam : nullptr;
}

void Wizzard_EnableSubDialog(LONG_PTR wizard, int page, int enable) {
    WizardFrame *frame = Running(wizard);
    if (!frame) return;
    for (std::size_t i = 0; i < frame->pages.size(); ++i) {
        if (frame->pages[i].id == page) frame->on[i] = enable != 0;
    }
    UpdateButtons(*frame);
}
