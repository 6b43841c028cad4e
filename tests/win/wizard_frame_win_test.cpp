// The wizard frame driven by a robot: a four-page wizard of the test
// program's own templates, its callback's events compared with the expected
// sequence, and the library's wizard pictures.
#include "robot.h"
#include "wizard_frame_test_ids.h"

#include <korvel/korvel32.h>

#include <gtest/gtest.h>

#include <algorithm>
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
    std::size_t Count() {
        std::lock_guard<std::mutex> lock(mutex_);
        return events_.size();
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

// What the frame showed after a step.
struct Shown {
    int page = 0;
    std::string next;
    bool backEnabled = false;
    bool operator==(const Shown &) const = default;
};
void PrintTo(const Shown &s, std::ostream *os) {
    *os << "{page " << s.page << ", \"" << s.next << "\", back " << (s.backEnabled ? "on" : "off") << "}";
}

int VisiblePage(HWND frame) {
    for (int id : {P1, P2, P3, P4}) {
        if (wintest::ControlVisible(frame, id)) return id;
    }
    return 0;
}

Shown Look(HWND frame) {
    return {VisiblePage(frame), wintest::ControlText(frame, KORVEL_WIZARD_NEXT),
            IsWindowEnabled(GetDlgItem(frame, KORVEL_WIZARD_BACK)) != FALSE};
}

enum class Input { Next, Back, Enter, AltW };

struct Step {
    Input input;
    std::size_t eventsAfter;  // the callback's event count once the step is done
    Shown expected;
};

// Runs `steps` on the frame from the robot's thread and notes what it showed
// after each; the comparison happens on the test thread.
struct Walk {
    TestWizard &wizard;
    DWORD thread;
    std::vector<Shown> seen;

    void operator()(HWND frame, const std::vector<Step> &steps) {
        seen.push_back(Look(frame));
        for (const Step &step : steps) {
            HWND focus = wintest::FocusOf(thread);
            switch (step.input) {
            case Input::Next: wintest::Click(frame, KORVEL_WIZARD_NEXT); break;
            case Input::Back: wintest::Click(frame, KORVEL_WIZARD_BACK); break;
            case Input::Enter: wintest::PressKey(focus, VK_RETURN); break;
            case Input::AltW: wintest::PressAltChar(focus, 'w'); break;
            }
            wintest::WaitFor([&] { return wizard.Count() >= step.eventsAfter && IsWindow(frame) &&
                                          VisiblePage(frame) == step.expected.page; });
            if (!IsWindow(frame)) return;
            seen.push_back(Look(frame));
        }
    }
};

TEST(WizardFrame, WalksForwardAndBackSkippingADisabledPage) {
    TestWizard wizard;
    wizard.disabledAtStart = {P3};
    wizard.refuseOnce = {P2};
    const std::vector<Step> steps = {
        {Input::Enter, 7, {P2, kNext, true}},     // Enter presses "Weiter"
        {Input::Next, 8, {P2, kNext, true}},      // the leave answered 2: stays
        {Input::AltW, 10, {P4, kFinish, true}},   // mnemonic; page 3 skipped, page 4 is the last
        {Input::Back, 12, {P2, kNext, true}},     // page 3 skipped backwards too
        {Input::Back, 14, {P1, kNext, false}},
        {Input::Next, 16, {P2, kNext, true}},
        {Input::Next, 18, {P4, kFinish, true}},
    };
    Walk walk{wizard, GetCurrentThreadId(), {}};
    std::vector<int> tabOrder;
    wintest::DialogRobot robot(kTitle, "wizard-frame", [&](HWND frame) {
        // Tab runs through the page's controls and the enabled frame buttons.
        for (int i = 0; i < 4; ++i) {
            wintest::PressKey(wintest::FocusOf(walk.thread), VK_TAB);
            Sleep(150);
            tabOrder.push_back(GetDlgCtrlID(wintest::FocusOf(walk.thread)));
        }
        walk(frame, steps);
        wintest::Click(frame, KORVEL_WIZARD_NEXT);  // "Fertigstellen"
    });
    int result = wizard.Run();
    robot.Join();

    ASSERT_TRUE(robot.Found()) << "the frame never appeared";
    EXPECT_EQ(result, 1);
    EXPECT_EQ(tabOrder, (std::vector<int>{IDC_TEST_WIZARD_CHECK, KORVEL_WIZARD_NEXT, IDCANCEL, IDC_TEST_WIZARD_EDIT}));
    std::vector<Shown> expected = {{P1, kNext, false}};
    for (const Step &step : steps) expected.push_back(step.expected);
    EXPECT_EQ(walk.seen, expected);
    EXPECT_EQ(wizard.Events(),
              Start({Leave(P1, 1), Activate(P2), Leave(P2, 1), Leave(P2, 1), Activate(P4), Leave(P4, 2), Activate(P2),
                     Leave(P2, 2), Activate(P1), Leave(P1, 1), Activate(P2), Leave(P2, 1), Activate(P4),
                     Leave(P4, 1)}));
}

// Translates the title, and only for the test wizard's module.
const char *TranslateTitle(const char *module, const char *, const char *text) {
    return module && std::string(module) == "KODBCTEST" && std::string(text) == kTitle ? "Vier Seiten" : nullptr;
}

TEST(WizardFrame, FinishesOnTheLastEnabledPage) {
    TestWizard wizard;
    wizard.disabledAtStart = {P4};
    Walk walk{wizard, GetCurrentThreadId(), {}};
    Polo_InstallCatalogue(&TranslateTitle);
    wintest::DialogRobot robot("Vier Seiten", "", [&](HWND frame) {
        walk(frame, {{Input::Next, 7, {P2, kNext, true}}, {Input::Next, 9, {P3, kFinish, true}}});
        wintest::Click(frame, KORVEL_WIZARD_NEXT);
    });
    int result = wizard.Run();
    robot.Join();
    Polo_InstallCatalogue(nullptr);
    ASSERT_TRUE(robot.Found()) << "no frame with the translated title";
    EXPECT_EQ(result, 1);
    ASSERT_EQ(walk.seen.size(), 3u);
    EXPECT_EQ(walk.seen[2], (Shown{P3, kFinish, true}));
    EXPECT_EQ(wizard.Events(), Start({Leave(P1, 1), Activate(P2), Leave(P2, 1), Activate(P3), Leave(P3, 1)}));
}

TEST(WizardFrame, EveryWayOutButFinishCancelsWithoutALeave) {
    struct Case {
        const char *name;
        void (*cancel)(HWND frame);
    };
    const Case cases[] = {
        {"Abbrechen", [](HWND frame) { wintest::Click(frame, IDCANCEL); }},
        {"Escape", [](HWND frame) {
             wintest::PressKey(GetDlgItem(GetDlgItem(frame, P2), IDC_TEST_WIZARD_EDIT), VK_ESCAPE);
         }},
        {"WM_CLOSE", [](HWND frame) { PostMessageA(frame, WM_CLOSE, 0, 0); }},
        {"SC_CLOSE", [](HWND frame) { PostMessageA(frame, WM_SYSCOMMAND, SC_CLOSE, 0); }},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        TestWizard wizard;
        Walk walk{wizard, GetCurrentThreadId(), {}};
        wintest::DialogRobot robot(kTitle, "", [&](HWND frame) {
            walk(frame, {{Input::Next, 7, {P2, kNext, true}}});
            c.cancel(frame);
        });
        int result = wizard.Run();
        robot.Join();
        EXPECT_EQ(result, 2);
        EXPECT_EQ(wizard.Events(), Start({Leave(P1, 1), Activate(P2)}));
    }
}

int WINAPI Unhandled(LONG_PTR, int, HWND, UINT, WPARAM, LPARAM) { return 0; }

TEST(WizardFrame, RefusesWhatItCannotRun) {
    const KorvelWizardPage empty[] = {{0, {0, 0}}};
    const KorvelWizardPage missing[] = {{P1, {0, 0}}, {IDD_TEST_WIZARD_MISSING, {0, 0}}, {0, {0, 0}}};
    TestWizard wizard;
    auto run = [&](const KorvelWizardPage *pages) {
        return Wizzard_Perform(pages, nullptr, kActivate, kLeave, &wizard, IDB_TEST_WIZARD, IDS_TEST_WIZARD_TITLE,
                               GetModuleHandleA(nullptr), "KODBCTEST", 15, 0);
    };
    EXPECT_EQ(run(empty), 0);
    EXPECT_EQ(run(kTable), 0) << "no callback";
    EXPECT_EQ(Wizzard_Perform(missing, &Unhandled, kActivate, kLeave, nullptr, IDB_TEST_WIZARD, IDS_TEST_WIZARD_TITLE, GetModuleHandleA(nullptr),
                              "KODBCTEST", 15, 0),
              0)
        << "a page template that is not there";
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
        EXPECT_EQ(dib.dsBm.bmWidth, 164);
        EXPECT_EQ(dib.dsBm.bmHeight, 314);
        EXPECT_EQ(dib.dsBm.bmBitsPixel, 24);
        // A drawn picture, not a filled rectangle.
        std::set<COLORREF> colours;
        const auto *bits = static_cast<const BYTE *>(dib.dsBm.bmBits);
        for (int y = 0; y < dib.dsBm.bmHeight; y += 3) {
            for (int x = 0; x < dib.dsBm.bmWidth; ++x) {
                const BYTE *p = bits + y * dib.dsBm.bmWidthBytes + x * 3;
                colours.insert(RGB(p[2], p[1], p[0]));
            }
        }
        EXPECT_GT(colours.size(), 200u);
        DeleteObject(bitmap);
    }
}

} // namespace
