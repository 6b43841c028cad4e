// Driving the library's windows as a user would: the library runs its
// dialogs on the test thread, so robots act from threads of their own.
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
#include <type_traits>
#include <utility>
#include <vector>

namespace wintest {

inline constexpr char kLibraryMessageCaption[] = "Datenbank";
inline constexpr char kErrorTitle[] = "Fehler beim ODBC-Datenbankzugriff";
inline constexpr char kSettingsKey[] = "Software\\Korvel Software\\Kodbc";

inline const char *DataSource() { return "kodbc_sqlite"; }  // the run's own, beside its servers
std::string WindowText(HWND window);
std::string ControlText(HWND dialog, int controlId);
bool ControlVisible(HWND dialog, int controlId);
bool Enabled(HWND dialog, int controlId);
void Click(HWND dialog, int controlId);
void PressKey(HWND control, UINT virtualKey);  // posted: no focus needed
HWND FocusOf(DWORD thread);
bool WaitFor(const std::function<bool()> &condition, int timeoutMs = 5000);  // whether it came to hold
// An edit field's text selected and replaced (its change notice follows), any other control's set.
void Type(HWND dialog, int controlId, const std::string &text);

struct BoxLine {
    std::string text;
    LPARAM data;
    bool operator==(const BoxLine &) const = default;
};
std::ostream &operator<<(std::ostream &os, const BoxLine &line);
bool IsCombo(HWND box);
std::vector<BoxLine> BoxLines(HWND box);
std::vector<std::string> BoxTexts(HWND box);
// Selects the line with `text` (empty: none) or item data `data`; with `notify` the dialog hears
// of it as of a click. False when there is no such line.
bool Choose(HWND dialog, int controlId, const std::string &text, bool notify = false);
bool ChooseData(HWND dialog, int controlId, LPARAM data, bool notify = false);

// Report list views; rows are their first `columns` cells joined by "|".
std::string ListViewCell(HWND list, int row, int column);
std::vector<std::string> ListViewRows(HWND list, int columns);
std::vector<std::string> ListViewColumn(HWND list, int column);
void SelectRows(HWND list, const std::vector<int> &rows);
void DragRow(HWND list, int from, int to);

std::vector<HWND> TopWindows(const std::function<bool(HWND)> &match);  // of the whole desktop
// Visible top-level windows of this process; null while there is none.
HWND Visible(const char *cls, const char *text = nullptr, HWND except = nullptr);
HWND AwaitDialog(const std::string &title, HWND except = nullptr);
// The library's next message box, photographed unless `shot` is empty, answered; its text or "<none>".
std::string AnswerBox(int button, const std::string &shot = {});
std::string CloseErrorDisplay();  // the statement the error display showed, or "<none>"
// Picks `path` in the system's file dialog; false when it never came or did not close.
bool ChooseFile(const std::string &title, const std::string &path, std::string *offered = nullptr);
std::string NoticeText();  // empty while no notice is shown
// Writes $KODBC_SCREENSHOT_DIR (else .)/<name>.bmp; the file's name.
std::string SaveScreenshot(HWND window, const std::string &name);

std::string TempFile(const std::string &name);  // none is there yet
std::string FileText(const std::string &path);
std::string Setting(const char *section, const char *name, const char *missing = "");
// The rows of a statement, columns joined by "|", NULL as "-".
std::vector<std::string> QueryRows(SQLHDBC hdbc, const std::string &sql);

class DialogRobot {
public:
    using Action = std::function<void(HWND dialog)>;
    // Photographs this thread's dialog `title` and acts on it; one that comes after `timeoutMs`,
    // or stays that long after the action, is cancelled so that no test hangs.
    DialogRobot(std::string title, std::string shot, Action action, int timeoutMs = 20000);
    ~DialogRobot() { Join(); }
    void Join();
    bool Found() const { return found_; }

private:
    std::atomic<bool> found_{false}, stop_{false};
    std::thread worker_;
};

struct MessageBoxSeen {
    std::string text;
    bool cancel = false, yes = false, no = false;
};

// Answers every message box of this thread captioned `caption` from a hook, photographed as
// `shot` or else "messagebox-N". One per thread.
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

// A hidden list box and drop-down list combo box.
class BoxesTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    HWND list_ = nullptr, combo_ = nullptr;
};

// The boxes and a connection to Dsn() (skipped when the run has not started that server).
class ConnectedTest : public BoxesTest {
protected:
    virtual std::string Dsn() const { return DataSource(); }
    void SetUp() override;
    void TearDown() override;
    bool Run(const std::string &sql);  // whether it succeeded
    // Dropped now and when the test ends; "VIEW name" or "SCHEMA name CASCADE" for other objects.
    void OwnTables(std::initializer_list<std::string> tables);
    std::vector<std::string> Query(const std::string &sql) { return QueryRows(hdbc_, sql); }
    bool Ready() { return !HasFatalFailure() && !IsSkipped(); }

    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;

private:
    std::vector<std::string> owned_;
};

// A table record naming table `name`, its tail filled with 0x5A: the library must leave it alone.
TableRecord TableNamed(const char *name);

inline constexpr bool kShot = true;
inline constexpr int kStay = -1, kBack = KORVEL_WIZARD_BACK;

// What every wizard walk does with the frame; a wizard's test adds its own.
struct WizardWalker {
    // A row of a walk on `page`: when `refused` is given, `id` set to it (no `id`: the page as it is)
    // and the refusal awaited; `id` set to `value`; the page photographed when `shot`; `button`
    // pressed and page `then` awaited (0: the frame closes; kStay: nothing pressed).
    struct Step {
        int page, id = 0;
        std::string value = {};
        const char *refused = nullptr;
        bool shot = false;
        int then = kStay, button = KORVEL_WIZARD_NEXT;
    };

    HWND frame;
    std::string shotPrefix;  // pictures are named after the page
    std::vector<std::string> failures;

    HWND Page(int id) const { return GetDlgItem(frame, id); }
    HWND Control(int page, int id) const { return GetDlgItem(Page(page), id); }
    bool Showing(int page) const { return ControlVisible(frame, page); }
    void Expect(bool condition, const std::string &what) {
        if (!condition) failures.push_back(what);
    }
    void Refused(int page);
    // The dialog `title` that was asked for: photographed as `shot` (unless empty), filled, closed with OK.
    void InDialog(const char *title, const std::string &shot, const std::function<void(HWND)> &fill);
    // A list's line chosen as by a click, a button clicked, any other control typed into.
    void Set(int page, int id, const std::string &value);
    void Walk(const std::vector<Step> &steps);
};

// Runs `wizard` while a robot walks its frame with `walk`: its result, and the texts of the library's message
// boxes, each answered with OK.
template <class Walker = WizardWalker>
auto RunWizard(const char *title, const std::string &firstShot, const std::string &shotPrefix,
               const std::function<int()> &wizard, const std::function<void(std::type_identity_t<Walker> &)> &walk,
               int timeoutMs = 60000) {
    MessageBoxAnswerer answerer(kLibraryMessageCaption, IDOK);
    std::vector<std::string> failures;
    DialogRobot robot(title, firstShot, [&](HWND frame) {
        Walker walker;
        static_cast<WizardWalker &>(walker) = {frame, shotPrefix, {}};
        walk(walker);
        failures = walker.failures;
    }, timeoutMs);
    std::pair<int, std::vector<std::string>> run{wizard(), {}};
    robot.Join();
    EXPECT_TRUE(robot.Found()) << "the wizard never appeared: " << title;
    for (const std::string &failure : failures) ADD_FAILURE() << failure;
    for (const MessageBoxSeen &seen : answerer.Seen()) run.second.push_back(seen.text);
    return run;
}

} // namespace wintest
