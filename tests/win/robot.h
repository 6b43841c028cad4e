// Driving the library's modal windows from the outside, as a user would.
//
// The library runs its dialogs on the calling (test) thread. A DialogRobot
// waits on a thread of its own for a dialog with a given title to appear on
// the test thread, photographs it and runs an action on it (read fields,
// press a button). A MessageBoxAnswerer answers message boxes from a CBT
// hook on the test thread, before they are even shown.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace wintest {

// Text of a dialog's control, read with WM_GETTEXT.
std::string ControlText(HWND dialog, int controlId);
std::string WindowText(HWND window);
bool ControlVisible(HWND dialog, int controlId);

// Presses a button the way a click would: BM_CLICK, posted.
void Click(HWND dialog, int controlId);
// Presses Escape on a control of the dialog.
void PressEscape(HWND dialog, int controlId);

// Keys as the dialog manager meets them: posted to `control` (keyboard
// focus is not needed). PressAltChar sends the mnemonic Alt+ch.
void PressKey(HWND control, UINT virtualKey);
void PressAltChar(HWND control, char ch);
// The window that has the keyboard focus on thread `thread`.
HWND FocusOf(DWORD thread);

// Polls `condition` until it holds or `timeoutMs` passed. Returns whether
// it held.
bool WaitFor(const std::function<bool()> &condition, int timeoutMs = 5000);

// Saves what the window shows as <dir>/<name>.bmp, dir from the environment
// variable KODBC_SCREENSHOT_DIR (else the working directory). Returns the
// file written, empty on failure.
std::string SaveScreenshot(HWND window, const std::string &name);

class DialogRobot {
public:
    using Action = std::function<void(HWND dialog)>;

    // Starts watching the calling thread's windows for a visible dialog
    // titled `title`. When found: screenshot `shot` (if not empty), then
    // `action`. After `timeoutMs` without one it gives up; a dialog that
    // shows up later, or that the action left open, is cancelled so that no
    // test hangs.
    DialogRobot(std::string title, std::string shot, Action action, int timeoutMs = 20000);
    ~DialogRobot();
    DialogRobot(const DialogRobot &) = delete;
    DialogRobot &operator=(const DialogRobot &) = delete;

    // Waits for the robot to finish (called by the destructor too).
    void Join();
    bool Found() const { return found_; }

private:
    void Run();

    DWORD thread_;
    std::string title_;
    std::string shot_;
    Action action_;
    int timeoutMs_;
    std::atomic<bool> found_{false};
    std::atomic<bool> stop_{false};
    std::thread worker_;
};

// What a message box said and offered.
struct MessageBoxSeen {
    std::string caption;
    std::string text;
    bool ok = false, cancel = false, yes = false, no = false;
    std::string yesText;  // what the "yes" button says (the system's language)
};

// Answers every message box on the calling thread whose caption is
// `caption` with button `answer` (IDOK, IDYES, ...), photographed as
// "messagebox-N", or as `shot` when one is given. One at a time per thread.
class MessageBoxAnswerer {
public:
    MessageBoxAnswerer(std::string caption, int answer, std::string shot = {});
    ~MessageBoxAnswerer();
    MessageBoxAnswerer(const MessageBoxAnswerer &) = delete;
    MessageBoxAnswerer &operator=(const MessageBoxAnswerer &) = delete;

    const std::vector<MessageBoxSeen> &Seen() const { return seen_; }

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam);
    void OnActivate(HWND window);

    std::string caption_;
    int answer_;
    std::string shot_;
    HHOOK hook_ = nullptr;
    std::vector<MessageBoxSeen> seen_;
    std::vector<std::thread> answering_;
};

} // namespace wintest
