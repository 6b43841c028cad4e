// Character-set conversion for the POSIX platform: ANSI texts are in the
// locale's charset, string tables in UTF-8, OEM texts in CP850.
#pragma once

#include <korvel/bounded_text.h>

#include <string>
#include <string_view>

namespace korvel::posix {

// The charset the locale's 8-bit texts are in, or "" in the C/POSIX locale
// (plain ASCII, where bytes are passed on as they are).
std::string LocaleCharset();

// Converts text between charsets (iconv names); what `to` lacks, and what
// is not valid in `from`, becomes one '?' per character.
std::string ConvertCharset(std::string_view text, const char *from, const char *to);

// Appends as much of text as fits without splitting a UTF-8 sequence when
// `utf8` is set. Returns the resulting length.
int AppendWhole(BoundedText &out, std::string_view text, bool utf8);

// UTF-8 (string tables, the platform's own texts) into the locale's charset;
// unchanged in the C/POSIX locale so that nothing is lost.
std::string Utf8ToLocale(std::string_view text);

} // namespace korvel::posix
