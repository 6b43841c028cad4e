// ANSI is the locale's charset (code page 1252 in the C locale, which is what
// 8-bit texts of the family are written in); OEM is CP850.
#include "charset_posix.h"

#include <korvel/korvel32.h>

#include <strings.h>

namespace {

constexpr const char *kOemCharset = "CP850";

std::string AnsiCharset() {
    std::string charset = korvel::posix::LocaleCharset();
    return charset.empty() ? "CP1252" : charset;
}

int Convert(const char *text, char *buffer, int size, const char *from, const char *to) {
    // Text and buffer may be the same: convert before the buffer is emptied.
    std::string converted = korvel::posix::ConvertCharset(text ? text : "", from, to);
    korvel::BoundedText out(buffer, size);
    bool utf8 = strcasecmp(to, "UTF-8") == 0;
    return korvel::posix::AppendWhole(out, converted, utf8);
}

} // namespace

int Korvel_AnsiToOem(const char *text, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    return Convert(text, buffer, size, AnsiCharset().c_str(), kOemCharset);
}

int Korvel_OemToAnsi(const char *text, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    std::string ansi = AnsiCharset();
    return Convert(text, buffer, size, kOemCharset, ansi.c_str());
}
