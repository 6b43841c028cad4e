// The wizard frame driven by a robot: a four-page wizard of the test
// program's own templates, its callback's events compared with the expected
// sequence, and the library's wizard pictures.
#include "robot.h"
#include "wizard_frame_test_ids.h"

#include <korvel/korvel32.h>

#include <gtest/gtest.h>

#include <mutex>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr UINT kActivate = WM_USER + 1;
constexpr UINT kLeave = WM_USER + 2;
constexpr int P1 = IDD_TEST_WIZARD_PAGE_1, P2 = IDD_TEST_WIZARD_PAGE_2, P3 = IDD_TEST_WIZARD_PAGE_3,
              P4 = IDD_TEST_WIZARD_PAGE_4;
constexpr KorvelWizardPage kTable[] = {{P1, {0, 0}}, {P2, {0, 0}}, {P3, {0, 0}}, {P4, {0, 0}}, {0, {0, 0}}};
constexpr char kTitle[] = "Testassistent mit vier Seiten";
constexpr char kNext[] = "&Weiter >";
constexpr char kFinish[] = "&Fertigstellen";

// One message the callback saw; `answer` is what the leave's answer held
// on arrival (-1 for other messages or a null pointer).
struct Event {
    int page;
    UINT message;
    WPARAM wParam;
    int answer;
    bool operator==(const Event &) const = default;
};
void PrintTo(const Event &e, std::ostream *os) {
    const char *name = e.message == WM_INITDIALOG ? "INIT" : e.message == kActivate ? "ACTIVATE" : "LEAVE";
    *os << "{" << e.page << " " << name << " w=" << e.wParam << " answer=" << e.answer << "}";
}
Event Init(int page) { return {page, WM_INITDIALOG, 0, -1}; }
Event Activate(int page) { return {page, kActivate, 0, -1}; }
Event Leave(int page, WPARAM direction) { return {page, kLeave, direction, 1}; }

// The test wizard: records its events, switches pages off when the first
// page is initialised, and refuses a page's next forward leave once.
class TestWizard {
public:
    std::set<int> disabledAtStart;
    std::set<int> refuseOnce;

    int Run() {
        return Wizzard_Perform(kTable, &Callback, kActivate, kLeave, this, IDB_TEST_WIZARD, IDS_TEST_WIZARD_TITLE,
                               GetModuleHandleA(nullptr), "KODBCTEST", 15, 1);
    }
    std::vector<Event> Events() {
        std::lock_guard<std::mutex> lock(mutex_);
        return events_;
    }

private:
    static int WINAPI Callback(LONG_PTR wizard, int page, HWND, UINT message, WPARAM wParam, LPARAM lParam) {
        auto *self = static_cast<TestWizard *>(Wizzard_GetParam(wizard));
        if (!self) return 0;
        if (message != WM_INITDIALOG && message != kActivate && message != kLeave) return 0;
        auto *answer = reinterpret_cast<int *>(lParam);
        {
            std::lock_guard<std::mutex> lock(self->mutex_);
            self->events_.push_back({page, message, message == kLeave ? wParam : 0,
                                     message == kLeave && answer ? *answer : -1});
        }
        if (message == WM_INITDIALOG && page == P1) {
            for (int id : self->disabledAtStart) Wizzard_EnableSubDialog(wizard, id, 0);
        }
        if (message == kLeave && wParam == KORVEL_WIZARD_FORWARD && answer && self->refuseOnce.erase(page)) *answer = 2;
        return 1;
    }

    std::mutex mutex_;
    std::vector<Event> events_;
};

std::vector<Event> Start(std::vector<Event> more) {
    std::vector<Event> events = {Init(P1), Init(P2), Init(P3), Init(P4), Activate(P1)};
    events.insert(events.end(), more.begin(), more.end());
    return events;
}

// What the frame showed after a step: the page, the next button's text, and
// whether back could be pressed.
std::string Shown(int page, const std::string &next, bool back) {
    return std::to_string(page) + " " + next + (back ? " back" : "");
}

int VisiblePage(HWND frame) {
    for (int id : {P1, P2, P3, P4}) {
        if (wintest::ControlVisible(frame, id)) return id;
    }
    return 0;
}

enum class Input { Next, Back, Enter, AltW };

// Which page comes next and what the buttons offer is decided by the walk
// (tests/native/platform_wizard_walk_test.cpp); the window shows that the
// frame carries it out: each input reaches it, the callback hears the
// leaves and activations in order, a refused leave stays, a page switched
// off is passed over both ways, and the buttons show what the walk offers.
TEST(WizardFrame, KeysAndButtonsWalkItAndTheCallbackHearsEveryStep) {
    TestWizard wizard;
    wizard.disabledAtStart = {P3};
    wizard.refuseOnce = {P2};
    const struct Step {
        Input input;
        std::size_t eventsAfter;  // the callback's event count once the step is done
        int page;
        const char *next;
    } steps[] = {
        {Input::Enter, 7, P2, kNext},    // Enter presses "Weiter"
        {Input::Next, 8, P2, kNext},     // the leave answered 2: stays
        {Input::AltW, 10, P4, kFinish},  // mnemonic; page 3 is off
        {Input::Back, 12, P2, kNext},
        {Input::Next, 14, P4, kFinish},
    };
    const DWORD thread = GetCurrentThreadId();
    auto look = [](HWND frame) {
        return Shown(VisiblePage(frame), wintest::ControlText(frame, KORVEL_WIZARD_NEXT),
                     wintest::Enabled(frame, KORVEL_WIZARD_BACK));
    };
    std::vector<int> tabOrder;
    std::vector<std::string> seen;
    wintest::DialogRobot robot(kTitle, "wizard-frame", [&](HWND frame) {
        // Tab runs through the page's controls and the enabled frame buttons.
        for (int i = 0; i < 4; ++i) {
            wintest::PressKey(wintest::FocusOf(thread), VK_TAB);
            Sleep(150);
            tabOrder.push_back(GetDlgCtrlID(wintest::FocusOf(thread)));
        }
        seen.push_back(look(frame));
        for (const Step &step : steps) {
            HWND focus = wintest::FocusOf(thread);
            switch (step.input) {
            case Input::Next: wintest::Click(frame, KORVEL_WIZARD_NEXT); break;
            case Input::Back: wintest::Click(frame, KORVEL_WIZARD_BACK); break;
            case Input::Enter: wintest::PressKey(focus, VK_RETURN); break;
            case Input::AltW: wintest::PressAltChar(focus, 'w'); break;
            }
            wintest::WaitFor(
                [&] { return wizard.Events().size() >= step.eventsAfter && VisiblePage(frame) == step.page; });
            seen.push_back(look(frame));
        }
        wintest::Click(frame, KORVEL_WIZARD_NEXT);  // "Fertigstellen"
    });
    int result = wizard.Run();
    robot.Join();

    ASSERT_TRUE(robot.Found()) << "the frame never appeared";
    EXPECT_EQ(result, 1);
    EXPECT_EQ(tabOrder, (std::vector<int>{IDC_TEST_WIZARD_CHECK, KORVEL_WIZARD_NEXT, IDCANCEL, IDC_TEST_WIZARD_EDIT}));
    std::vector<std::string> expected = {Shown(P1, kNext, false)};
    for (const Step &step : steps) expected.push_back(Shown(step.page, step.next, true));
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(wizard.Events(), Start({Leave(P1, 1), Activate(P2), Leave(P2, 1), Leave(P2, 1), Activate(P4),
                                      Leave(P4, 2), Activate(P2), Leave(P2, 1), Activate(P4), Leave(P4, 1)}));
}

// Translates the title, and only for the test wizard's module.
const char *TranslateTitle(const char *module, const char *, const char *text) {
    return module && std::string(module) == "KODBCTEST" && std::string(text) == kTitle ? "Vier Seiten" : nullptr;
}

// The frame's title goes through the module's translation; the system menu's
// close reaches the frame as WM_CLOSE.
TEST(WizardFrame, EveryWayOutButFinishCancelsWithoutALeave) {
    const struct {
        const char *name;
        void (*cancel)(HWND frame);
    } cases[] = {
        {"Abbrechen", [](HWND frame) { wintest::Click(frame, IDCANCEL); }},
        {"Escape",
         [](HWND frame) { wintest::PressKey(GetDlgItem(GetDlgItem(frame, P1), IDC_TEST_WIZARD_EDIT), VK_ESCAPE); }},
        {"SC_CLOSE", [](HWND frame) { PostMessageA(frame, WM_SYSCOMMAND, SC_CLOSE, 0); }},
    };
    Polo_InstallCatalogue(&TranslateTitle);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        TestWizard wizard;
        wintest::DialogRobot robot("Vier Seiten", "", [&](HWND frame) { c.cancel(frame); });
        int result = wizard.Run();
        robot.Join();
        EXPECT_TRUE(robot.Found()) << "no frame with the translated title";
        EXPECT_EQ(result, 2);
        EXPECT_EQ(wizard.Events(), Start({}));
    }
    Polo_InstallCatalogue(nullptr);
}

int WINAPI Unhandled(LONG_PTR, int, HWND, UINT, WPARAM, LPARAM) { return 0; }

TEST(WizardFrame, RefusesWhatItCannotRun) {
    const KorvelWizardPage empty[] = {{0, {0, 0}}};
    const KorvelWizardPage missing[] = {{P1, {0, 0}}, {IDD_TEST_WIZARD_MISSING, {0, 0}}, {0, {0, 0}}};
    const struct {
        const KorvelWizardPage *pages;
        KorvelWizardCallback callback;
        const char *what;
    } cases[] = {{empty, &Unhandled, "no page"},
                 {kTable, nullptr, "no callback"},
                 {missing, &Unhandled, "a page template that is not there"}};
    for (const auto &c : cases) {
        EXPECT_EQ(Wizzard_Perform(c.pages, c.callback, kActivate, kLeave, nullptr, IDB_TEST_WIZARD,
                                  IDS_TEST_WIZARD_TITLE, GetModuleHandleA(nullptr), "KODBCTEST", 15, 0),
                  0)
            << c.what;
    }
    TestWizard wizard;
    EXPECT_EQ(Wizzard_GetParam(reinterpret_cast<LONG_PTR>(&wizard)), nullptr) << "no wizard is running";
}

TEST(WizardBitmaps, TheLibraryHasAPictureForEveryWizard) {
    HMODULE library = GetModuleHandleA("kodbc.dll");
    ASSERT_TRUE(library);
    for (int id : {10013, 10014, 10019, 10020, 10021, 10022}) {
        SCOPED_TRACE(id);
        auto bitmap = static_cast<HBITMAP>(
            LoadImageA(library, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
        ASSERT_TRUE(bitmap);
        DIBSECTION dib = {};
        ASSERT_EQ(GetObjectA(bitmap, sizeof dib, &dib), static_cast<int>(sizeof dib));
        const BITMAP &bm = dib.dsBm;
        EXPECT_EQ(std::to_string(bm.bmWidth) + "x" + std::to_string(bm.bmHeight) + "x" + std::to_string(bm.bmBitsPixel),
                  "164x314x24");
        // A drawn picture, not a filled rectangle.
        std::set<COLORREF> colours;
        const auto *bits = static_cast<const BYTE *>(bm.bmBits);
        for (int y = 0; y < bm.bmHeight; y += 3) {
            for (int x = 0; x < bm.bmWidth; ++x) {
                const BYTE *p = bits + y * bm.bmWidthBytes + x * 3;
                colours.insert(RGB(p[2], p[1], p[0]));
            }
        }
        EXPECT_GT(colours.size(), 200u);
        DeleteObject(bitmap);
    }
}

} // namespace
