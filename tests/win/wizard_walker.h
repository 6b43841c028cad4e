// Walking a wizard of the library as a user would: a robot on its own
// thread presses the frame's buttons, fills pages and notes what it finds,
// while the wizard runs modally on the test thread.
#pragma once

#include <korvel/korvel32.h>

#include "robot.h"
#include "win_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace wintest {

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
    void Shot(int page) {
        Sleep(300);  // what was just typed is painted
        SaveScreenshot(frame, shotPrefix + std::to_string(page));
    }
    // Presses a frame button and waits for page `then` (0: the frame closes).
    void Press(int button, int then) {
        Click(frame, button);
        bool ok = WaitFor([&] { return then ? Showing(then) : !IsWindow(frame); }, 10000);
        Expect(ok, "page " + std::to_string(then) + " after button " + std::to_string(button));
        Sleep(200);
    }
    // "Weiter" refused with a message box (clicked away by the answerer).
    void Refused(int page) {
        Click(frame, KORVEL_WIZARD_NEXT);
        auto box = [] { return FindWindowA("#32770", kLibraryMessageCaption); };
        bool shown = WaitFor([&] { return box() != nullptr; });
        Expect(shown && WaitFor([&] { return box() == nullptr; }), "no message box on page " + std::to_string(page));
        Expect(Showing(page), "left page " + std::to_string(page) + " despite the refusal");
    }
    // Selects the list or combo box entry `text` (empty: no entry).
    void Choose(int page, int id, const std::string &text) {
        Expect(wintest::Choose(Page(page), id, text), "no entry " + text);
    }
    void Type(int page, int id, const std::string &text) { wintest::Type(Page(page), id, text); }
};

// Runs `wizard` on this thread while a robot walks its frame (titled
// `title`) with `walk`; answers the library's message boxes with OK and
// hands back their texts. The first page is photographed as `firstShot`.
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
