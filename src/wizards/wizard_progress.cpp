// The platform's progress indicator behind the wizards' progress interface.
#include "wizards/wizard_progress.h"

#include "internal/library.h"

#include <korvel/korvel32.h>

namespace kodbc::wizards {

void PlatformProgress::Start(long maximum) {
    Finish();
    char caption[200];
    LoadLibraryString(LibraryInstance(), captionId_, caption, sizeof caption);
    progress_ = Korvel_Progress_Create(Korvel_ActiveWindow(), caption, 0, maximum);
}

bool PlatformProgress::Step(long value) { return progress_ && Korvel_Progress_Set(progress_, value) != 0; }

void PlatformProgress::Finish() {
    if (progress_) Korvel_Progress_Destroy(progress_);
    progress_ = nullptr;
}

} // namespace kodbc::wizards
