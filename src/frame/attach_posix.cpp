// Linux has no library entry with an instance handle: the shared object's
// constructor attaches, with the address of a private anchor standing for
// the instance, and registers the string table and version it would
// otherwise find in its resources.
#include "internal/library.h"

#include <korvel/korvel32.h>

namespace kodbc::resources {
extern const KorvelStringResource kStrings[];
extern const int kStringCount;
}

namespace {

char g_instanceAnchor;

__attribute__((constructor)) void kodbc_attach() {
    static const KorvelModuleResources resources = {
        kodbc::resources::kStrings, kodbc::resources::kStringCount, "5.2.0.0", "kodbc",
    };
    HINSTANCE instance = static_cast<HINSTANCE>(&g_instanceAnchor);
    Korvel_RegisterModuleResources(instance, &resources);
    kodbc::LibraryAttach(instance, 1, nullptr);
}

__attribute__((destructor)) void kodbc_detach() {
    kodbc::LibraryAttach(static_cast<HINSTANCE>(&g_instanceAnchor), 0, nullptr);
}

} // namespace
