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
    while (!descriptor.empty() && (descriptor.back() == '\n' || descriptor.back() == '\r')) descriptor.pop_back();
    return true;
}

} // namespace kodbc_cli
