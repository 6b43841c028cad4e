// kodbc selmask: the selection editor's mask files from scripts. What is
// printed is a descriptor file as count --where-file reads it, so a mask
// can be looked at, changed with any editor and written back.
#include "commands.h"
#include "descriptor_file.h"
#include "terminal.h"

#include <cstdio>
#include <filesystem>
#include <vector>

namespace kodbc_cli {

int PrintSelectionMask(const std::string &file) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    // The library reports a file it cannot read with its own message.
    std::vector<char> descriptor(error ? 1 : static_cast<std::size_t>(size) + 1);
    if (Kodbc_LoadSelectionMask(file.c_str(), descriptor.data(), static_cast<int>(descriptor.size())) != 1)
        return kExitFailed;
    // The line end is the printed file's; reading it back drops it.
    std::printf("%s\n", descriptor.data());
    return kExitOk;
}

int WriteSelectionMask(const std::string &file, const std::string &descriptorFile) {
    std::string descriptor;
    if (!ReadDescriptor(descriptorFile, descriptor)) return kExitFailed;
    return Kodbc_SaveSelectionMask(file.c_str(), descriptor.c_str()) == 1 ? kExitOk : kExitFailed;
}

} // namespace kodbc_cli
