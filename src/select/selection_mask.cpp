#include "select/selection_mask.h"

#include "internal/library.h"

#include <kodbc/kodbc_seldesc.h>

#include <korvel/bounded_text.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace kodbc::select {
namespace {

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

} // namespace

bool ReadSelectionMask(const char *fileName, std::string &descriptor) {
    std::string bytes;
    if (!ReadWholeFile(fileName, bytes) || !ParseSelectionMask(bytes, descriptor)) {
        LibraryMessage(msg::NOT_A_SELECTION_MASK, fileName ? fileName : "");
        return false;
    }
    return true;
}

bool WriteSelectionMask(const char *fileName, const std::string &descriptor) {
    const std::string text = SelectionMaskText(descriptor);
    File file(fileName ? std::fopen(fileName, "wb") : nullptr);
    if (!file) {
        LibraryMessage(FileOpenErrorMessage(), fileName ? fileName : "");
        return false;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed) {
        LibraryMessage(msg::FILE_WRITE_ERROR, fileName);
        return false;
    }
    return true;
}

} // namespace kodbc::select

using namespace kodbc;

extern "C" KODBC_API int KODBC_CALL Kodbc_LoadSelectionMask(const char *fileName, char *selDesc, int size) {
    korvel::BoundedText out(selDesc, size);
    if (!out.valid()) return KODBC_FAILURE;
    try {
        std::string descriptor;
        if (!select::ReadSelectionMask(fileName, descriptor)) return KODBC_FAILURE;
        out.append(descriptor);
        return KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

extern "C" KODBC_API int KODBC_CALL Kodbc_SaveSelectionMask(const char *fileName, const char *selDesc) {
    try {
        return select::WriteSelectionMask(fileName, selDesc ? selDesc : "") ? KODBC_SUCCESS : KODBC_FAILURE;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}
