// One value of comma-separated values as other programs read it, for every
// writer of such files: in quotes when it holds the delimiter, a quote, CR
// or LF, or begins or ends with a blank or a tab, its quotes doubled.
#pragma once

#include <string>
#include <string_view>

namespace kodbc {

inline bool CsvNeedsQuotes(std::string_view value, std::string_view delimiter) noexcept {
    if (value.empty()) return false;
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    if (blank(value.front()) || blank(value.back())) return true;
    if (value.find_first_of("\"\r\n") != std::string_view::npos) return true;
    return !delimiter.empty() && value.find(delimiter) != std::string_view::npos;
}

// Appends value as one field; quoted forces the quotes (a value that reads
// like a NULL text, or the only empty value of a record, which would
// otherwise be an empty line).
inline void AppendCsvField(std::string &out, std::string_view value, std::string_view delimiter, bool quoted = false) {
    if (!quoted && !CsvNeedsQuotes(value, delimiter)) {
        out.append(value);
        return;
    }
    out.push_back('"');
    for (char c : value) {
        if (c == '"') out.push_back('"');
        out.push_back(c);
    }
    out.push_back('"');
}

} // namespace kodbc
