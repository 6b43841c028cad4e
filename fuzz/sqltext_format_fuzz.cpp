// Fuzzes the statement formatter into a heap buffer of exactly the stated
// size, and checks the rules that hold for every template: nothing past the
// size, at most size-2 characters, at most one quote-text query.
//
// Input: bytes 0-1 the buffer size (0 to 1023), byte 2 picks the quote
// text; the rest, split at zero bytes, is the template and up to eight
// arguments (a lone 0x01 byte stands for a null argument).
#include "fuzz_support.h"

#include "sqltext/sql_names.h"

using namespace kodbc::sqltext;
using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t length) {
    if (length < 3) return 0;
    fuzz::Buffer out((bytes[0] | (bytes[1] << 8)) & 1023);
    fuzz::QuoteQuery fetch{fuzz::kQuotes[bytes[2] & 3]};
    const std::vector<std::string> pieces = fuzz::Pieces(bytes, length, 3, 1 + kFormatterArguments);
    const char *args[kFormatterArguments] = {};
    for (std::size_t i = 1; i < pieces.size(); ++i) args[i - 1] = pieces[i] == "\x01" ? nullptr : pieces[i].c_str();

    QuoteText quote = QuoteText::Lazy(&fuzz::QuoteQuery::Run, &fetch);
    FormatStatement(quote, out.data, out.size, pieces[0].c_str(), args);
    if (out.size >= 1) {
        Check(out.terminated());
        std::size_t written = std::strlen(out.data);
        Check(out.size < 2 ? written == 0 : written <= static_cast<std::size_t>(out.size - 2));
    }
    Check(fetch.calls <= 1);
    return 0;
}
