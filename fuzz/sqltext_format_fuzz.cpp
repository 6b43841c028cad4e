// Fuzzes the statement formatter into a heap buffer of exactly the stated
// size, and checks the rules that hold for every template: nothing past the
// size, at most size-2 characters, at most one quote-text query.
//
// Input: bytes 0-1 the buffer size (0 to 1023), byte 2 picks the quote
// text; the rest, split at zero bytes, is the template and up to eight
// arguments (a lone 0x01 byte stands for a null argument).
#include "fuzz_support.h"

#include "sqltext/sql_names.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using namespace kodbc::sqltext;

namespace {

const char *const kQuotes[] = {"\"", "`", " ", ""};

using Fetch = fuzz::QuoteQuery;

using fuzz::Check;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t length) {
    if (length < 3) return 0;
    const int size = (bytes[0] | (bytes[1] << 8)) & 1023;
    Fetch fetch{kQuotes[bytes[2] & 3]};

    std::vector<std::string> pieces;
    const char *p = reinterpret_cast<const char *>(bytes + 3), *end = reinterpret_cast<const char *>(bytes + length);
    while (p < end && pieces.size() < 1 + kFormatterArguments) {
        std::size_t n = strnlen(p, static_cast<std::size_t>(end - p));
        pieces.emplace_back(p, n);
        p += n + 1;
    }
    if (pieces.empty()) return 0;
    const char *args[kFormatterArguments] = {};
    for (std::size_t i = 1; i < pieces.size(); ++i) args[i - 1] = pieces[i] == "\x01" ? nullptr : pieces[i].c_str();

    char *out = static_cast<char *>(std::malloc(size > 0 ? size : 1));
    QuoteText quote = QuoteText::Lazy(&Fetch::Run, &fetch);
    FormatStatement(quote, out, size, pieces[0].c_str(), args);
    if (size >= 1) {
        Check(std::memchr(out, 0, static_cast<std::size_t>(size)) != nullptr);
        std::size_t written = std::strlen(out);
        Check(size < 2 ? written == 0 : written <= static_cast<std::size_t>(size - 2));
    }
    Check(fetch.calls <= 1);
    std::free(out);
    return 0;
}
