// A wizard's walk over pages switched on and off: what the buttons offer on
// a page, what a press of back or next leads to, and where the walk goes
// once the page let go (the leave may switch pages itself).
#include "../../platform/common/wizard_walk.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using korvel::WizardPress;
using Switches = korvel::PageSwitches;
constexpr int kStays = korvel::kWizardStays, kFinished = korvel::kWizardFinished;
constexpr char kNext[] = "&Weiter >", kFinish[] = "&Fertigstellen";

TEST(PlatformWizardWalk, OpeningButtonsPressAndTargetFollowTheSwitches) {
    const struct Row {
        const char *what;
        Switches on;
        int current, step;
        bool back;  // the buttons on `current`
        const char *next;
        WizardPress press;
        Switches afterLeave;  // empty: the leave switched nothing
        int target;
    } rows[] = {
        {"back on the first page", {1, 1, 0, 1}, 0, -1, false, kNext, WizardPress::Ignored, {}, kStays},
        {"next passes an off page", {1, 1, 0, 1}, 1, 1, true, kNext, WizardPress::Leave, {}, 3},
        {"back passes it too", {1, 1, 0, 1}, 3, -1, true, kFinish, WizardPress::Leave, {}, 1},
        {"next on the last page", {1, 1, 0, 1}, 3, 1, true, kFinish, WizardPress::Finish, {}, kFinished},
        {"the last page before an off tail", {1, 1, 1, 0}, 2, 1, true, kFinish, WizardPress::Finish, {}, kFinished},
        {"an off first page has no back", {0, 1, 1}, 1, -1, false, kNext, WizardPress::Ignored, {}, kStays},
        {"a single page", {1}, 0, 1, false, kFinish, WizardPress::Finish, {}, kFinished},
        {"the leave switched a later page on", {1, 1, 0}, 1, 1, true, kFinish, WizardPress::Finish, {1, 1, 1}, 2},
        {"the leave switched the rest off", {1, 1, 1}, 1, 1, true, kNext, WizardPress::Leave, {1, 1, 0}, kStays},
        {"the leave switched the ones before off", {1, 1, 1}, 1, -1, true, kNext, WizardPress::Leave, {0, 1, 1},
         kStays},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        const korvel::WizardButtons buttons = korvel::ButtonsOn(row.on, row.current);
        EXPECT_EQ(buttons.back, row.back);
        EXPECT_EQ(std::string(buttons.nextText), row.next);
        EXPECT_EQ(korvel::Press(row.on, row.current, row.step), row.press);
        const Switches &after = row.afterLeave.empty() ? row.on : row.afterLeave;
        EXPECT_EQ(korvel::AfterLeave(after, row.current, row.step, row.press), row.target);
    }
    // The wizard opens on the first page switched on.
    EXPECT_EQ(korvel::NeighbourPage({1, 1}, -1, 1), 0);
    EXPECT_EQ(korvel::NeighbourPage({0, 0, 1}, -1, 1), 2);
    EXPECT_EQ(korvel::NeighbourPage({0, 0}, -1, 1), -1) << "nothing to run";
}

} // namespace
