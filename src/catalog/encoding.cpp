// The exported text escaping: the base library's string encoding, applied
// in place.
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_systable.h>

#include <cstring>
#include <memory>
#include <new>

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_EncodeString(char *text, int size) {
    if (!text || size < 1) return 0;
    // The encoder may not write over its own input.
    std::size_t length = strnlen(text, static_cast<std::size_t>(size) - 1);
    std::unique_ptr<char[]> copy(new (std::nothrow) char[length + 1]);
    if (!copy) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return 0;
    }
    std::memcpy(copy.get(), text, length);
    copy[length] = '\0';
    return Korvel_EncodeString(copy.get(), text, size, 0);
}

KODBC_API int KODBC_CALL Kodbc_DecodeString(char *text) {
    return Korvel_DecodeString(text);
}

} // extern "C"
