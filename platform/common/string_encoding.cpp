// The base library's string encoding; the library's exported escaping
// follows the same table.
#include <korvel/korvel32.h>

#include <cstring>

namespace {

constexpr std::size_t kRoomPerCharacter = 11;

char HexDigit(unsigned value) { return "0123456789ABCDEF"[value & 0xF]; }

// Upper-case only, by design: lower-case digits decode to other bytes.
int DigitValue(char c) {
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return c - '0';
}

} // namespace

int Korvel_EncodeString(const char *text, char *buffer, int size, int) {
    if (!buffer || size < 1) return 0;
    std::size_t capacity = static_cast<std::size_t>(size);
    std::size_t length = 0;
    for (const char *p = text ? text : ""; *p && capacity - length >= kRoomPerCharacter; ++p) {
        unsigned char c = static_cast<unsigned char>(*p);
        char escape = 0;
        switch (c) {
        case '\t': escape = 't'; break;
        case '\n': escape = 'n'; break;
        case '\r': escape = 'r'; break;
        case '"': escape = 'q'; break;
        case '\'': escape = 'Q'; break;
        case '\\': escape = '\\'; break;
        default: break;
        }
        if (escape) {
            buffer[length++] = '\\';
            buffer[length++] = escape;
        } else if (c < 32) {
            buffer[length++] = '\\';
            buffer[length++] = 'x';
            buffer[length++] = HexDigit(c >> 4);
            buffer[length++] = HexDigit(c);
        } else {
            buffer[length++] = static_cast<char>(c);
        }
    }
    if (length < capacity) buffer[length] = '\0';
    else buffer[capacity - 1] = '\0';
    return static_cast<int>(length < capacity ? length : capacity - 1);
}

int Korvel_DecodeString(char *text) {
    if (!text) return 0;
    char *out = text;
    for (const char *p = text; *p;) {
        if (*p != '\\') {
            *out++ = *p++;
            continue;
        }
        char next = p[1];
        if (next == '\0') break;  // a lone backslash at the end is dropped
        switch (next) {
        case 'Q': *out++ = '\''; p += 2; break;
        case 'n': *out++ = '\n'; p += 2; break;
        case 'q': *out++ = '"'; p += 2; break;
        case 'r': *out++ = '\r'; p += 2; break;
        case 't': *out++ = '\t'; p += 2; break;
        case 'x':
            if (p[2] && p[3]) {
                // The high digit is shifted and OR-ed in, not added: with a
                // lower-case low digit ("\x1f") the bits overlap (0x36).
                unsigned high = static_cast<unsigned>(DigitValue(p[2]));
                unsigned low = static_cast<unsigned>(DigitValue(p[3]));
                *out++ = static_cast<char>((high << 4) | low);
                p += 4;
            } else {
                *out++ = '\\';
                p += 2;
            }
            break;
        default:
            *out++ = '\\';
            p += 2;
            break;
        }
    }
    *out = '\0';
    return static_cast<int>(out - text);
}
