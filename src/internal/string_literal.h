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
    for (char c : text) {
        std::string_view piece(&c, 1);
        if (c == '\'') piece = "''";
        else if (c == '\\' && backslashEscapes) piece = "\\\\";
        if (piece.size() + reserve > out.room()) return false;
        out.append(piece);
    }
    return true;
}

} // namespace kodbc
