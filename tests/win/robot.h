// Driving the library's windows from the outside, as a user would. The
// library runs its dialogs on the test thread: a DialogRobot finds one from a
// thread of its own, photographs it and acts on it; a MessageBoxAnswerer
// answers message boxes from a hook before they are even shown.
#pragma once

#include <kodbc/kodbc.h>
#include <korvel/korvel32.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace wintest {

// The caption of the library's message boxes, the title of its error
// display, and its settings' key.
inline constexpr char kLibraryMessageCaption[] = "Datenbank";
inline constexpr char kErrorTitle[] = "Fehler beim ODBC-Datenbankzugriff";
inline constexpr char kSettingsKey[] = "Software\\Korvel Software\\Kodbc";

// The data source of the run (KODBC_TEST_DSN, else the private SQLite one).
const char *DataSource();

// A window's text (WM_GETTEXT), a dialog control's, whether it is visible,
// whether it is enabled.
std::string WindowText(HWND window);
std::string ControlText(HWND dialog, int controlId);
bool ControlVisible(HWND dialog, int controlId);
bool Enabled(HWND dialog, int controlId);
// Presses a button the way a click would: BM_CLICK, posted.
void Click(HWND dialog, int controlId);
// A key posted to `control` as the dialog manager meets it (no focus needed).
void PressKey(HWND control, UINT virtualKey);
// The window that has the keyboard focus on thread `thread`.
HWND FocusOf(DWORD thread);
// Polls `condition` until it holds or `timeoutMs` passed; whether it held.
bool WaitFor(const std::function<bool()> &condition, int timeoutMs = 5000);
// Types as a user would: an edit field's text selected and replaced (a
// multi-line one then sends its change notice), any other control's text set.
void Type(HWND dialog, int controlId, const std::string &text);

// One line of a list or combo box as the box holds it.
struct BoxLine {
    std::string text;
    LPARAM data;
    bool operator==(const BoxLine &) const = default;
};
std::ostream &operator<<(std::ostream &os, const BoxLine &line);
bool IsCombo(HWND box);
std::vector<BoxLine> BoxLines(HWND box);
std::vector<std::string> BoxTexts(HWND box);
// Selects the line of a list or combo box whose text is `text` (empty: no
// line) or whose item data is `data`; with `notify` the dialog hears of it as
// of a click. False when there is no such line.
bool Choose(HWND dialog, int controlId, const std::string &text, bool notify = false);
bool ChooseData(HWND dialog, int controlId, LPARAM data, bool notify = false);

// Report list views: a cell, each row's first `columns` cells joined by "|",
// one column top to bottom, the selected rows, exactly `rows` selected, and a
// row dragged onto another as the mouse would.
std::string ListViewCell(HWND list, int row, int column);
std::vector<std::string> ListViewRows(HWND list, int columns);
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
HWND AwaitDialog(const std::string &title, HWND except = nullptr);
// Answers the library's next message box with `button`, photographed first
// as `shot` unless that is empty; its text, "<none>" when none came.
std::string AnswerBox(int button, const std::string &shot = {});
// Closes the error display of a failed statement; the statement it showed,
// "<none>" when none came.
std::string CloseErrorDisplay();
// Picks `path` in the system's file dialog titled `title`; `offered` gets
// the name it offered first. False when it never came or did not close.
bool ChooseFile(const std::string &title, const std::string &path, std::string *offered = nullptr);
// The notice the library shows for a while (empty while there is none).
std::string NoticeText();
// Saves what the window shows as $KODBC_SCREENSHOT_DIR (else .)/<name>.bmp;
// the file written, empty on failure.
std::string SaveScreenshot(HWND window, const std::string &name);

// A file of the temporary folder (none is there yet), a file's bytes (empty
// when unreadable), a text of the library's settings.
std::string TempFile(const std::string &name);
std::string FileText(const std::string &path);
std::string Setting(const char *section, const char *name, const char *missing = "");
// Runs a statement past the library, its rows (columns joined by "|", NULL
// as "-") into `rows` unless null; true when it succeeded. QueryRows: the rows.
bool RunSql(SQLHDBC hdbc, const std::string &sql, std::vector<std::string> *rows);
std::vector<std::string> QueryRows(SQLHDBC hdbc, const std::string &sql);

class DialogRobot {
public:
    using Action = std::function<void(HWND dialog)>;
    // Watches this thread's windows for a visible dialog titled `title`:
    // photographs it as `shot` (unless empty), then runs `action`. One that
    // comes after `timeoutMs`, or stays `timeoutMs` after the action, is
    // cancelled so that no test hangs.
    DialogRobot(std::string title, std::string shot, Action action, int timeoutMs = 20000);
    ~DialogRobot() { Join(); }
    void Join();  // waits for the robot to finish
    bool Found() const { return found_; }

private:
    std::atomic<bool> found_{false}, stop_{false};
    std::thread worker_;
};

// What a message box said and offered.
struct MessageBoxSeen {
    std::string text;
    bool ok = false, cancel = false, yes = false, no = false;
    std::string yesText;  // what the "yes" button says (the system's language)
};

// Answers every message box on this thread captioned `caption` with button
// `answer`, photographed as `shot` or else "messagebox-N". One per thread.
class MessageBoxAnswerer {
public:
    MessageBoxAnswerer(std::string caption, int answer, std::string shot = {});
    ~MessageBoxAnswerer();
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

// A hidden, unsorted list box and drop-down list combo box for the test.
class BoxesTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    HWND list_ = nullptr, combo_ = nullptr;
};

// The boxes, and a connection to the run's data source or the one Dsn()
// names (skipped when the run has not started that server). The tables it
// owns are dropped when it starts and when it ends.
class ConnectedTest : public BoxesTest {
protected:
    virtual std::string Dsn() const { return DataSource(); }
    void SetUp() override;
    void TearDown() override;
    // Runs a statement past the library; true when it succeeded.
    bool Run(const std::string &sql) { return RunSql(hdbc_, sql, nullptr); }
    // Drops these tables now and when the test ends; "VIEW name" or
    // "SCHEMA name CASCADE" for other objects.
    void OwnTables(std::initializer_list<std::string> tables);
    std::vector<std::string> Query(const std::string &sql) { return QueryRows(hdbc_, sql); }
    // Whether this run's database is up (fixture set up, not skipped).
    bool Ready() { return !HasFatalFailure() && !IsSkipped(); }

    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;

private:
    std::vector<std::string> owned_;
};

// What every wizard walk does with the frame; a wizard's test adds its own.
struct WizardWalker {
    HWND frame;
    std::string shotPrefix;  // "<wizard>-": pictures are named after the page
    std::vector<std::string> failures;

    HWND Page(int id) const { return GetDlgItem(frame, id); }
    HWND Control(int page, int id) const { return GetDlgItem(Page(page), id); }
    bool Showing(int page) const { return ControlVisible(frame, page); }
    void Expect(bool condition, const std::string &what) {
        if (!condition) failures.push_back(what);
    }
    void Shot(int page);
    // Presses a frame button and waits for page `then` (0: the frame closes).
    void Press(int button, int then);
    // "Weiter" refused with a message box (clicked away by the answerer).
    void Refused(int page);
    void Choose(int page, int id, const std::string &text) {
        Expect(wintest::Choose(Page(page), id, text), "no entry " + text);
    }
    void Type(int page, int id, const std::string &text) { wintest::Type(Page(page), id, text); }
};

// Runs `wizard` on this thread while a robot walks its frame (titled `title`,
// first page photographed as `firstShot`) with `walk`; answers the library's
// message boxes with OK and hands back their texts.
template <class Walker>
int RunWizard(const char *title, const std::string &firstShot, const std::string &shotPrefix,
              const std::function<int()> &wizard, const std::function<void(Walker &)> &walk,
              std::vector<std::string> &messages, int timeoutMs = 60000) {
    MessageBoxAnswerer answerer(kLibraryMessageCaption, IDOK);
    std::vector<std::string> failures;
    DialogRobot robot(title, firstShot, [&](HWND frame) {
        Walker walker{{frame, shotPrefix, {}}};
        walk(walker);
        failures = walker.failures;
    }, timeoutMs);
    const int result = wizard();
    robot.Join();
    EXPECT_TRUE(robot.Found()) << "the wizard never appeared: " << title;
    for (const std::string &failure : failures) ADD_FAILURE() << failure;
    for (const MessageBoxSeen &seen : answerer.Seen()) messages.push_back(seen.text);
    return result;
}

} // namespace wintest
