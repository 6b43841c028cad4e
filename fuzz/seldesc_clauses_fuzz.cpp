// Fuzzes the WHERE and SET generators over any descriptor text, each into a heap buffer of exactly
// the stated size. Input: bytes 0-1 the WHERE size (0 to 4095), bytes 2-3 the SET size, byte 4 picks
// the quote text, bytes 5-8 the pattern characters (0xff: the default set); the rest the descriptor.
#include "fuzz_support.h"

#include "select/seldesc.h"

using namespace kodbc;
using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t length) {
    if (length < 9) return 0;
    char pattern[4];
    if (bytes[5] == 0xff) seldesc::ReadPatternChars(nullptr, pattern);
    else std::memcpy(pattern, bytes + 5, 4);
    const std::string descriptor(reinterpret_cast<const char *>(bytes + 9), length - 9);

    for (const bool where : {true, false}) {
        fuzz::Buffer out((bytes[where ? 0 : 2] | (bytes[where ? 1 : 3] << 8)) & 0xfff);
        if (out.size < 1) continue;
        fuzz::QuoteQuery fetch(fuzz::kQuotes[bytes[4] % 4]);
        if (where) seldesc::BuildWhereClause(fetch.quote, descriptor.c_str(), out.data, out.size, pattern);
        else seldesc::BuildSetClause(fetch.quote, descriptor.c_str(), out.data, out.size);
        Check(fetch.calls <= 1 && out.terminated());
        Check(!where || out.data[0] == '\0' || out.data[0] == '(');
    }
    return 0;
}
