// The wizard frame's window wiring, on a four-page wizard of the test program's own templates;
// the walk's rules are tests/native/platform_wizard_walk_test.cpp's.
#include "robot.h"
#include "wizard_frame_test_ids.h"

#include <korvel/korvel32.h>

#include <gtest/gtest.h>

#include <mutex>
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

// The test wizard: records the messages it hears ("<page> init", "<page> on" for an activation,
// "<page> next" or "<page> back" for a leave whose answer arrived as 1), switches page 3 off when
// page 1 is initialised, and refuses page 2's first forward leave.
struct TestWizard {
    int Run(const KorvelWizardPage *pages = kTable, KorvelWizardCallback callback = &Callback) {
        return Wizzard_Perform(pages, callback, kActivate, kLeave, this, IDB_TEST_WIZARD, IDS_TEST_WIZARD_TITLE,
                               GetModuleHandleA(nullptr), "KODBCTEST", 15, 1);
    }
    std::vector<std::string> Events() {
        std::lock_guard<std::mutex> lock(mutex);
        return events;
    }
    static int WINAPI Callback(LONG_PTR wizard, int page, HWND, UINT message, WPARAM wParam, LPARAM lParam) {
        auto *self = static_cast<TestWizard *>(Wizzard_GetParam(wizard));
        if (!self || (message != WM_INITDIALOG && message != kActivate && message != kLeave)) return 0;
        auto *answer = reinterpret_cast<int *>(lParam);
        const char *what = message == WM_INITDIALOG ? " init"
                           : message == kActivate ? " on"
                           : wParam == KORVEL_WIZARD_FORWARD ? " next"
                           : wParam == KORVEL_WIZARD_BACKWARD ? " back"
                                                              : " leave in no direction";
        std::string event = std::to_string(page - P1 + 1) + what;
        if (message == kLeave && !(answer && *answer == 1)) event += " with a wrong answer";
        {
            std::lock_guard<std::mutex> lock(self->mutex);
            self->events.push_back(event);
        }
        if (message == WM_INITDIALOG && page == P1) Wizzard_EnableSubDialog(wizard, P3, 0);
        if (message == kLeave && wParam == KORVEL_WIZARD_FORWARD && answer && page == P2 && !self->refused) {
            self->refused = true;
            *answer = 2;
        }
        return 1;
    }

    std::mutex mutex;
    std::vector<std::string> events;
    bool refused = false;
};

// The page shown, the next button's text, and whether back can be pressed.
std::string Shown(HWND frame) {
    std::string page = "none";
    for (int id : {P1, P2, P3, P4})
        if (wintest::ControlVisible(frame, id)) page = std::to_string(id - P1 + 1);
    return page + " " + wintest::ControlText(frame, KORVEL_WIZARD_NEXT) +
           (wintest::Enabled(frame, KORVEL_WIZARD_BACK) ? " back" : "");
}

enum class Input { Next, Back, Enter, AltW };

// Each input reaches the frame, the callback hears the leaves and activations in order, a refused
// leave stays, and the buttons show what the walk offers.
TEST(WizardFrame, KeysAndButtonsWalkItAndTheCallbackHearsEveryStep) {
    TestWizard wizard;
    const struct Step {
        Input input;
        std::size_t eventsAfter;  // the callback's event count once the step is done
        const char *shown;
    } steps[] = {
        {Input::Enter, 7, "2 &Weiter > back"},        // Enter presses "Weiter"
        {Input::Next, 8, "2 &Weiter > back"},         // the leave answered 2: stays
        {Input::AltW, 10, "4 &Fertigstellen back"},  // page 3 is off
        {Input::Back, 12, "2 &Weiter > back"},
        {Input::Next, 14, "4 &Fertigstellen back"},
    };
    const DWORD thread = GetCurrentThreadId();
    std::vector<int> tabOrder;
    std::vector<std::string> seen;
    wintest::DialogRobot robot(kTitle, "wizard-frame", [&](HWND frame) {
        // Tab runs through the page's controls and the enabled frame buttons.
        for (int i = 0; i < 4; ++i) {
            wintest::PressKey(wintest::FocusOf(thread), VK_TAB);
            Sleep(150);
            tabOrder.push_back(GetDlgCtrlID(wintest::FocusOf(thread)));
        }
        seen.push_back(Shown(frame));
        for (const Step &step : steps) {
            HWND focus = wintest::FocusOf(thread);
            switch (step.input) {
            case Input::Next: wintest::Click(frame, KORVEL_WIZARD_NEXT); break;
            case Input::Back: wintest::Click(frame, KORVEL_WIZARD_BACK); break;
            case Input::Enter: wintest::PressKey(focus, VK_RETURN); break;
            case Input::AltW: PostMessageA(focus, WM_SYSCHAR, 'w', 1 | (1 << 29)); break;  // the mnemonic
            }
            wintest::WaitFor([&] { return wizard.Events().size() >= step.eventsAfter && Shown(frame) == step.shown; });
            seen.push_back(Shown(frame));
        }
        wintest::Click(frame, KORVEL_WIZARD_NEXT);  // "Fertigstellen"
    });
    int result = wizard.Run();
    robot.Join();

    EXPECT_EQ(result, 1);
    EXPECT_EQ(tabOrder, (std::vector<int>{IDC_TEST_WIZARD_CHECK, KORVEL_WIZARD_NEXT, IDCANCEL, IDC_TEST_WIZARD_EDIT}));
    std::vector<std::string> expected = {"1 &Weiter >"};
    for (const Step &step : steps) expected.push_back(step.shown);
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(wizard.Events(), (std::vector<std::string>{"1 init", "2 init", "3 init", "4 init", "1 on", "1 next",
                                                         "2 on", "2 next", "2 next", "4 on", "4 back", "2 on",
                                                         "2 next", "4 on", "4 next"}));
}

// The frame's title goes through the module's translation (and only its);
// the system menu's close reaches the frame as WM_CLOSE.
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
    Polo_InstallCatalogue([](const char *module, const char *, const char *text) -> const char * {
        return module && std::string(module) == "KODBCTEST" && std::string(text) == kTitle ? "Vier Seiten" : nullptr;
    });
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        TestWizard wizard;
        wintest::DialogRobot robot("Vier Seiten", "", [&](HWND frame) { c.cancel(frame); });
        int result = wizard.Run();
        robot.Join();
        EXPECT_TRUE(robot.Found()) << "no frame with the translated title";
        EXPECT_EQ(result, 2);
        EXPECT_EQ(wizard.Events(), (std::vector<std::string>{"1 init", "2 init", "3 init", "4 init", "1 on"}));
    }
    Polo_InstallCatalogue(nullptr);
}

TEST(WizardFrame, RefusesWhatItCannotRun) {
    const KorvelWizardPage empty[] = {{0, {0, 0}}};
    const KorvelWizardPage missing[] = {{P1, {0, 0}}, {IDD_TEST_WIZARD_MISSING, {0, 0}}, {0, {0, 0}}};
    TestWizard wizard;
    EXPECT_EQ(wizard.Run(empty), 0) << "no page";
    EXPECT_EQ(wizard.Run(kTable, nullptr), 0) << "no callback";
    EXPECT_EQ(wizard.Run(missing), 0) << "a page template that is not there";
    EXPECT_EQ(Wizzard_GetParam(reinterpret_cast<LONG_PTR>(&wizard)), nullptr) << "no wizard is running";
}

TEST(WizardBitmaps, TheLibraryHasAPictureForEveryWizard) {
    HMODULE library = GetModuleHandleA("kodbc.dll");
    for (int id : {10013, 10014, 10019, 10020, 10021, 10022}) {
        SCOPED_TRACE(id);
        auto bitmap = static_cast<HBITMAP>(
            LoadImageA(library, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
        DIBSECTION dib = {};
        ASSERT_EQ(bitmap ? GetObjectA(bitmap, sizeof dib, &dib) : 0, static_cast<int>(sizeof dib));
        const BITMAP &bm = dib.dsBm;
        EXPECT_EQ(std::to_string(bm.bmWidth) + "x" + std::to_string(bm.bmHeight) + "x" + std::to_string(bm.bmBitsPixel),
                  "164x314x24");
        // A drawn picture, not a filled rectangle.
        std::set<COLORREF> colours;
        for (int y = 0; y < bm.bmHeight; y += 3)
            for (const BYTE *p = static_cast<const BYTE *>(bm.bmBits) + y * bm.bmWidthBytes, *end = p + bm.bmWidth * 3;
                 p < end; p += 3)
                colours.insert(RGB(p[2], p[1], p[0]));
        EXPECT_GT(colours.size(), 200u);
        DeleteObject(bitmap);
    }
}

} // namespace
