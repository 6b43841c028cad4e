// What the Win32 implementation of the base library shares between its files.
#pragma once

#include <windows.h>

namespace korvel::win32 {

// The module this code is linked into (the DLL, or a test program): window
// classes of the platform layer are registered for it.
HINSTANCE ThisModule();

// Centres `window` over `owner` (the screen's work area when there is none).
void CentreOver(HWND window, HWND owner);

} // namespace korvel::win32
