// Where a wizard's walk goes: which page comes next or before, what the
// frame's buttons offer, what a press of back or next leads to. The frame
// only carries these decisions to its windows.
#pragma once

#include <vector>

namespace korvel {

inline constexpr char kWizardNextText[] = "&Weiter >";
inline constexpr char kWizardFinishText[] = "&Fertigstellen";

// Each page's switch, in page order: a page switched off is passed over.
using PageSwitches = std::vector<bool>;

// The nearest page switched on after (step 1) or before (step -1) `from`;
// -1 for none.
int NeighbourPage(const PageSwitches &on, int from, int step);

struct WizardButtons {
    bool back;             // a page lies before this one
    const char *nextText;  // the finish text on the last page
};
WizardButtons ButtonsOn(const PageSwitches &on, int current);

// A press of back (step -1) or next (step 1) on page `current`, before the
// page is asked to let go.
enum class WizardPress { Ignored, Leave, Finish };
WizardPress Press(const PageSwitches &on, int current, int step);

// Once the page let go: the page to show, or one of these. The leave may
// have switched pages on or off, so `on` is read again; a finishing press
// ends the wizard only when no page after it was switched on meanwhile.
inline constexpr int kWizardStays = -1, kWizardFinished = -2;
int AfterLeave(const PageSwitches &on, int current, int step, WizardPress press);

} // namespace korvel
