// String tables and identity of modules that have no window-system
// resources: each module registers its table once when it is attached.
#include "charset_posix.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <string>

namespace {

struct Modules {
    std::shared_mutex mutex;
    std::map<HINSTANCE, KorvelModuleResources> byInstance;
};

// Modules register from their constructors, which may run before this
// file's globals exist; and strings may be asked for during exit. So the
// table is made on first use and never destroyed.
Modules &TheModules() {
    static Modules *modules = new Modules;
    return *modules;
}

bool FindModule(HINSTANCE instance, KorvelModuleResources &found) {
    Modules &m = TheModules();
    std::shared_lock lock(m.mutex);
    auto it = m.byInstance.find(instance);
    if (it == m.byInstance.end()) return false;
    found = it->second;
    return true;
}

} // namespace

void Korvel_RegisterModuleResources(HINSTANCE instance, const KorvelModuleResources *resources) {
    Modules &m = TheModules();
    std::unique_lock lock(m.mutex);
    if (resources) m.byInstance[instance] = *resources;
    else m.byInstance.erase(instance);
}

int Korvel_LoadString(HINSTANCE instance, int id, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!out.valid()) return 0;
    KorvelModuleResources module{};
    if (!FindModule(instance, module) || !module.strings || module.count <= 0) return 0;

    const KorvelStringResource *begin = module.strings, *end = module.strings + module.count;
    const KorvelStringResource *entry =
        std::lower_bound(begin, end, id, [](const KorvelStringResource &r, int key) { return r.id < key; });
    if (entry == end || entry->id != id || !entry->utf8) return 0;

    std::string charset = korvel::posix::LocaleCharset();
    std::string text = korvel::posix::Utf8ToLocale(entry->utf8);
    // In the C locale the UTF-8 is passed on: keep its sequences whole too.
    bool utf8 = charset.empty() || charset == "UTF-8" || charset == "utf8";
    return korvel::posix::AppendWhole(out, text, utf8);
}

int Korvel_GetResourceFileVersion(HINSTANCE instance, int which, char *buffer, int size, int flags) {
    korvel::BoundedText out(buffer, size);
    if (!out.valid()) return 0;
    KorvelModuleResources module{};
    if (!FindModule(instance, module) || !module.fileVersion) return 0;
    // File and product version are the same for the family's modules.
    out.append(module.fileVersion);
    return out.int_length();
}

int Korvel_GetProfileName(HINSTANCE instance, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!out.valid()) return 0;
    KorvelModuleResources module{};
    if (!FindModule(instance, module) || !module.profileName) return 0;
    out.append(module.profileName);
    out.append(".ini");
    return out.int_length();
}
