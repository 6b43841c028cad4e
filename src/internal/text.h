// Text predicates every subsystem shares. Characters 1 to 32 count as white
// space wherever the library trims or tests names, statements and values.
#pragma once

#include <string>
#include <string_view>
#include <vector>

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

// The non-empty pieces of a tab-separated list, as callers hand lists of
// names to the exported functions (null: none).
inline std::vector<std::string> SplitAtTabs(const char *list) {
    std::vector<std::string> pieces;
    const std::string_view text = list ? list : "";
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\t', start);
        if (end == std::string_view::npos) end = text.size();
        if (end > start) pieces.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

} // namespace kodbc
