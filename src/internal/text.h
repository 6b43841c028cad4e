// Text predicates every subsystem shares. Characters 1 to 32 count as white
// space wherever the library trims or tests names, statements and values.
#pragma once

#include <string_view>

namespace kodbc {

inline bool IsWhiteSpace(char c) noexcept {
    auto u = static_cast<unsigned char>(c);
    return u >= 1 && u <= 32;
}

// Empty or white space only.
inline bool IsBlank(std::string_view text) noexcept {
    for (char c : text)
        if (!IsWhiteSpace(c)) return false;
    return true;
}

// As above; null counts as blank.
inline bool IsBlank(const char *text) noexcept { return !text || IsBlank(std::string_view(text)); }

} // namespace kodbc
