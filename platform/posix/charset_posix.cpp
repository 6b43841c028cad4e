#include "charset_posix.h"

#include <cerrno>
#include <cstring>
#include <iconv.h>
#include <langinfo.h>
#include <strings.h>

namespace korvel::posix {
namespace {

bool IsUtf8Name(const char *name) { return strcasecmp(name, "UTF-8") == 0 || strcasecmp(name, "UTF8") == 0; }

// Bytes of the character starting at p when the text is UTF-8 (1 for a
// stray byte), so a bad character costs one '?' and not several.
std::size_t Utf8SequenceLength(const char *p, std::size_t left) {
    unsigned char c = static_cast<unsigned char>(*p);
    std::size_t n = c < 0xC0 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    if (n > left) return left;
    for (std::size_t i = 1; i < n; ++i)
        if ((static_cast<unsigned char>(p[i]) & 0xC0) != 0x80) return i;
    return n;
}

} // namespace

std::string LocaleCharset() {
    const char *codeset = nl_langinfo(CODESET);
    if (!codeset || !*codeset || strcasecmp(codeset, "ANSI_X3.4-1968") == 0 || strcasecmp(codeset, "ASCII") == 0 ||
        strcasecmp(codeset, "US-ASCII") == 0)
        return {};
    return codeset;
}

std::string ConvertCharset(std::string_view text, const char *from, const char *to) {
    if (strcasecmp(from, to) == 0) return std::string(text);
    iconv_t cd = iconv_open(to, from);
    if (cd == reinterpret_cast<iconv_t>(-1)) return std::string(text);

    const bool fromUtf8 = IsUtf8Name(from);
    std::string out;
    out.reserve(text.size() * 2 + 4);
    char chunk[256];
    char *in = const_cast<char *>(text.data());
    std::size_t inLeft = text.size();
    while (inLeft > 0) {
        char *dst = chunk;
        std::size_t dstLeft = sizeof chunk;
        std::size_t rc = iconv(cd, &in, &inLeft, &dst, &dstLeft);
        int error = errno;
        out.append(chunk, static_cast<std::size_t>(dst - chunk));
        if (rc != static_cast<std::size_t>(-1)) break;
        if (error == E2BIG) continue;
        // EILSEQ (not in the target, or invalid) or EINVAL (cut at the end).
        std::size_t skip = fromUtf8 ? Utf8SequenceLength(in, inLeft) : 1;
        out += '?';
        in += skip;
        inLeft -= skip;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
    // Flush any shift state (none for the charsets used here, but cheap).
    char *dst = chunk;
    std::size_t dstLeft = sizeof chunk;
    iconv(cd, nullptr, nullptr, &dst, &dstLeft);
    out.append(chunk, static_cast<std::size_t>(dst - chunk));
    iconv_close(cd);
    return out;
}

int AppendWhole(BoundedText &out, std::string_view text, bool utf8) {
    std::size_t n = text.size();
    if (n > out.room()) {
        n = out.room();
        if (utf8)
            while (n > 0 && (static_cast<unsigned char>(text[n]) & 0xC0) == 0x80) --n;
    }
    out.append(text.substr(0, n));
    return out.int_length();
}

std::string Utf8ToLocale(std::string_view text) {
    std::string charset = LocaleCharset();
    if (charset.empty()) return std::string(text);
    return ConvertCharset(text, "UTF-8", charset.c_str());
}

} // namespace korvel::posix
