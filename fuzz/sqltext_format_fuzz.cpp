// Fuzzes the statement formatter into a heap buffer of exactly the stated size: at most size-2
// characters, at most one quote-text query. Input: bytes 0-1 the buffer size (0 to 1023), byte 2 picks
// the quote text; the rest, split at zero bytes, the template and up to eight arguments (0x01: null).
#include "fuzz_support.h"

#include <algorithm>

using namespace kodbc::sqltext;
using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t length) {
    if (length < 3) return 0;
    fuzz::Buffer out((bytes[0] | (bytes[1] << 8)) & 1023);
    fuzz::QuoteQuery fetch(fuzz::kQuotes[bytes[2] & 3]);
    const std::vector<std::string> pieces = fuzz::Pieces(bytes, length, 3, 1 + kFormatterArguments);
    const char *args[kFormatterArguments] = {};
    for (std::size_t i = 1; i < pieces.size(); ++i) args[i - 1] = pieces[i] == "\x01" ? nullptr : pieces[i].c_str();

    FormatStatement(fetch.quote, out.data, out.size, pieces[0].c_str(), args);
    Check(fetch.calls <= 1);
    // strlen in a heap buffer of exactly that size is also the terminator's check.
    if (out.size >= 1) Check(std::strlen(out.data) + 2 <= static_cast<std::size_t>(std::max(out.size, 2)));
    return 0;
}
