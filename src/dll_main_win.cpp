// The DLL entry: after the runtime's own start-up, hand over to the
// library's attach routine.
#include "internal/library.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    return kodbc::LibraryAttach(instance, reason, reserved) ? TRUE : FALSE;
}
