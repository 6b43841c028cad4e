// The inside of an SQL string literal, as every statement the library
// builds writes it: quotes doubled, and backslashes doubled too where the
// database reads them as escapes of its own.
#pragma once

#include <korvel/bounded_text.h>

#include <string_view>

namespace kodbc {

// Appends text escaped, leaving `reserve` characters of room for what closes
// the literal (and the statement). A doubled character goes in whole or not
// at all. False when something was cut.
inline bool AppendLiteralBody(korvel::BoundedText &out, std::string_view text, std::size_t reserve,
                              bool backslashEscapes) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        // The characters up to the next doubled one go in at once: a value
        // of many records' statements is mostly plain text.
        std::size_t end = at;
        while (end < text.size() && text[end] != '\'' && (text[end] != '\\' || !backslashEscapes)) ++end;
        if (end > at) {
            const std::size_t room = out.room() > reserve ? out.room() - reserve : 0;
            if (end - at > room) {
                out.append(text.substr(at, room));
                return false;
            }
            out.append(text.substr(at, end - at));
            at = end;
            continue;
        }
        const std::string_view piece = text[at] == '\'' ? "''" : "\\\\";
        if (piece.size() + reserve > out.room()) return false;
        out.append(piece);
        ++at;
    }
    return true;
}

} // namespace kodbc
