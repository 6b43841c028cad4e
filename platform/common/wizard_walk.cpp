#include "wizard_walk.h"

namespace korvel {

int NeighbourPage(const PageSwitches &on, int from, int step) {
    for (int i = from + step; i >= 0 && i < static_cast<int>(on.size()); i += step) {
        if (on[static_cast<std::size_t>(i)]) return i;
    }
    return -1;
}

WizardButtons ButtonsOn(const PageSwitches &on, int current) {
    return {NeighbourPage(on, current, -1) >= 0,
            NeighbourPage(on, current, 1) >= 0 ? kWizardNextText : kWizardFinishText};
}

WizardPress Press(const PageSwitches &on, int current, int step) {
    if (step > 0) return NeighbourPage(on, current, 1) < 0 ? WizardPress::Finish : WizardPress::Leave;
    return NeighbourPage(on, current, -1) < 0 ? WizardPress::Ignored : WizardPress::Leave;
}

int AfterLeave(const PageSwitches &on, int current, int step, WizardPress press) {
    const int target = NeighbourPage(on, current, step);
    if (target >= 0) return target;
    return press == WizardPress::Finish ? kWizardFinished : kWizardStays;
}

} // namespace korvel
