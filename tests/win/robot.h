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
// A message box's text has no id of its own.
inline constexpr int kMessageTextId = 0xFFFF;

// Presses a button the way a click would: BM_CLICK, posted.
void Click(HWND dialog, int controlId);

// A key as the dialog manager meets it: posted to `control` (keyboard focus
// is not needed).
void PressKey(HWND control, UINT virtualKey);
// The window that has the keyboard focus on thread `thread`.
HWND FocusOf(DWORD thread);

// Polls `condition` until it holds or `timeoutMs` passed. Returns whether
// it held.
bool WaitFor(const std::function<bool()> &condition, int timeoutMs = 5000);

// The caption of the library's message boxes, and the title of its error
// display.
inline constexpr char kLibraryMessageCaption[] = "Datenbank";
inline constexpr char kErrorTitle[] = "Fehler beim ODBC-Datenbankzugriff";

bool Enabled(HWND dialog, int controlId);
// Types into a control as a user would: an edit field's text selected and
// replaced (a multi-line field then sends its change notice, which it
// leaves out for WM_SETTEXT), any other control's text set.
void Type(HWND dialog, int controlId, const std::string &text);
// Selects the line of a list or combo box whose text is `text` (empty: no
// line) or whose item data is `data`; with `notify` the dialog hears of it
// as of a click. False when there is no such line.
bool Choose(HWND dialog, int controlId, const std::string &text, bool notify = false);
bool ChooseData(HWND dialog, int controlId, LPARAM data, bool notify = false);

// Report list views: a cell's text, every row with its cells joined by "|"
// (the first `columns`, or all), one column top to bottom, the selected
// rows, exactly `rows` selected (as a click and Ctrl+clicks would), and a
// row dragged onto another as the mouse would (the list's notice that a
// drag begins, then the button released over the target).
std::string ListViewCell(HWND list, int row, int column);
std::vector<std::string> ListViewRows(HWND list, int columns = -1);
std::vector<std::string> ListViewColumn(HWND list, int column);
std::vector<int> SelectedRows(HWND list);
void SelectRows(HWND list, const std::vector<int> &rows);
void DragRow(HWND list, int from, int to);

// Every top-level window of the desktop that `match` accepts.
std::vector<HWND> TopWindows(const std::function<bool(HWND)> &match);
// A visible top-level window of this process of class `cls` (and text,
// unless null) other than `except`; null while there is none.
HWND Visible(const char *cls, const char *text = nullptr, HWND except = nullptr);
// Waits for a visible dialog of this process titled `title` other than
// `except`; null when none came.
HWND AwaitDialog(const std::string &title, HWND except = nullptr, int timeoutMs = 10000);
// Answers the library's next message box with `button`, photographed first
// as `shot` unless that is empty; its text, "<none>" when none came.
std::string AnswerBox(int button = IDOK, const std::string &shot = {});
// Closes the error display of a failed statement; the statement it showed,
// "<none>" when none came.
std::string CloseErrorDisplay();
// Picks `path` in the system's file dialog titled `title`; `offered` gets
// the name it offered first. False when it never came or did not close.
bool ChooseFile(const std::string &title, const std::string &path, std::string *offered = nullptr);
// The notice the library shows for a while (empty while there is none).
std::string NoticeText();

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
