// The library's wizards in the platform's frame: the arguments every one
// of them passes, and the part of the step protocol every callback shares.
// Windows only.
#pragma once

#ifdef _WIN32

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <windows.h>

namespace kodbc::wizards {

// The page-activate and page-leave messages of every wizard.
inline constexpr UINT kPageActivate = WM_USER + 1;
inline constexpr UINT kPageLeaveMessage = WM_USER + 2;

// Runs the frame with the library's pages, bitmap and title string; 1 when
// the user finished with "Fertigstellen". enableFlag is 1 for wizards that
// switch pages on and off.
inline int PerformWizard(const KorvelWizardPage *pages, KorvelWizardCallback callback, void *context, int bitmapId,
                         int titleId, int enableFlag = 0) {
    constexpr int kFrameReserved = 15;  // the frame's own; always 15
    return Wizzard_Perform(pages, callback, kPageActivate, kPageLeaveMessage, context, bitmapId, titleId,
                           LibraryInstance(), kModuleName, kFrameReserved, enableFlag);
}

// What every step callback does before its pages: the context from the
// frame (none: 0), the frame's handle kept in it, a page translated when it
// is created; then dispatch(context). A page-leave message without its
// answer reaches no page: nobody would learn what a page decided, and the
// confirmation page of the update would run the update for nobody. No
// exception reaches the frame.
template <class Context, class Dispatch>
int WizardStep(LONG_PTR wizard, HWND window, UINT message, LPARAM lParam, Dispatch &&dispatch) noexcept {
    try {
        auto *context = static_cast<Context *>(Wizzard_GetParam(wizard));
        if (!context) return 0;
        context->wizard = wizard;
        if (message == kPageLeaveMessage && !lParam) return 0;
        if (message == WM_INITDIALOG) TranslateDialog(window);
        return dispatch(*context);
    } catch (...) {
        return 0;
    }
}

} // namespace kodbc::wizards

#endif
