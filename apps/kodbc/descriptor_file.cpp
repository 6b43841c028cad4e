#include "descriptor_file.h"
#include "terminal.h"

#include <fstream>
#include <sstream>

namespace kodbc_cli {

bool ReadDescriptor(const std::string &path, std::string &descriptor) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        Error("Die Datei  " + path + "  kann nicht gelesen werden.");
        return false;
    }
    std::ostringstream text;
    text << in.rdbuf();
    descriptor = text.str();
    // A selection editor's file: the library reads it, magic and all.
    if (descriptor.rfind("KORVEL-SMS", 0) == 0) {
        std::string mask(descriptor.size() + 1, '\0');
        if (Kodbc_LoadSelectionMask(path.c_str(), mask.data(), static_cast<int>(mask.size())) != 1) return false;
        descriptor = mask.c_str();
        return true;
    }
    while (!descriptor.empty() && (descriptor.back() == '\n' || descriptor.back() == '\r')) descriptor.pop_back();
    return true;
}

} // namespace kodbc_cli
