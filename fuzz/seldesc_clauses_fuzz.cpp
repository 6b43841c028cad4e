// Fuzzes the WHERE and SET generators over arbitrary descriptor text into
// heap buffers of exactly the stated size, and checks what holds for every
// descriptor: nothing past the size, a terminated text, at most one quote
// text query per call, and a WHERE clause that is empty or opens a group.
//
// Input: bytes 0-1 the WHERE size (0 to 4095), bytes 2-3 the SET size,
// byte 4 picks the quote text, bytes 5-8 the pattern characters (0xff: the
// default set); the rest is the descriptor.
#include "fuzz_support.h"

#include "select/seldesc.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using namespace kodbc;

namespace {

const char *const kQuotes[] = {"\"", "`", " ", ""};

using Fetch = fuzz::QuoteQuery;

using fuzz::Check;

// A heap buffer of exactly size bytes (at least one, so ASan sees the end).
void RunInto(int size, const auto &generate) {
    std::vector<char> buffer(static_cast<std::size_t>(size > 0 ? size : 1), '\x7f');
    Fetch fetch{kQuotes[0]};
    generate(buffer.data(), size, fetch);
    Check(fetch.calls <= 1);
    if (size > 0) {
        std::size_t length = strnlen(buffer.data(), static_cast<std::size_t>(size));
        Check(length < static_cast<std::size_t>(size));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t length) {
    if (length < 9) return 0;
    const int whereSize = (bytes[0] | (bytes[1] << 8)) & 0xfff;
    const int setSize = (bytes[2] | (bytes[3] << 8)) & 0xfff;
    const char *quoteText = kQuotes[bytes[4] % 4];
    char pattern[4];
    if (bytes[5] == 0xff) seldesc::ReadPatternChars(nullptr, pattern);
    else std::memcpy(pattern, bytes + 5, 4);
    const std::string descriptor(reinterpret_cast<const char *>(bytes + 9), length - 9);

    RunInto(whereSize, [&](char *out, int size, Fetch &fetch) {
        fetch.text = quoteText;
        sqltext::QuoteText quote = sqltext::QuoteText::Lazy(&Fetch::Run, &fetch);
        if (size < 1) return;
        seldesc::BuildWhereClause(quote, descriptor.c_str(), out, size, pattern);
        Check(out[0] == '\0' || out[0] == '(');
    });
    RunInto(setSize, [&](char *out, int size, Fetch &fetch) {
        fetch.text = quoteText;
        sqltext::QuoteText quote = sqltext::QuoteText::Lazy(&Fetch::Run, &fetch);
        if (size < 1) return;
        seldesc::BuildSetClause(quote, descriptor.c_str(), out, size);
    });
    return 0;
}
