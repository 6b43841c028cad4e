// Fuzzes the string encoding: the decoder on any text (never longer, never past the terminator) and the
// encoder into a heap buffer of exactly the stated size, whose output decodes back to the part it took.
// Input: byte 0 the encoder's buffer size, the rest (up to a zero byte) the text.
#include "fuzz_support.h"

#include <korvel/korvel32.h>

using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1) return 0;
    const std::string text = fuzz::Pieces(data, size, 1, 1)[0];

    // Decoding in place, in a buffer with no room to spare.
    fuzz::Buffer decoded(static_cast<int>(text.size()) + 1, text);
    const int decodedLength = Korvel_DecodeString(decoded.data);
    Check(decodedLength >= 0 && static_cast<std::size_t>(decodedLength) <= text.size() && decoded.terminated());

    fuzz::Buffer encoded(data[0]);
    const int encodedLength = Korvel_EncodeString(text.c_str(), encoded.data, encoded.size, 0);
    Check(encoded.size < 1 ? encodedLength == 0 : std::strlen(encoded.data) == static_cast<std::size_t>(encodedLength));
    if (encoded.size < 1) return 0;
    // Nothing that ends a field, a line or a literal survives encoding.
    for (int i = 0; i < encodedLength; ++i)
        Check(static_cast<unsigned char>(encoded.data[i]) >= 32 && encoded.data[i] != '\'' && encoded.data[i] != '"');
    // The encoded text decodes back to exactly the prefix of the input it
    // took; characters stop only when fewer than 11 bytes would be left.
    std::string back(encoded.data);
    back.resize(static_cast<std::size_t>(Korvel_DecodeString(back.data())));
    Check(text.compare(0, back.size(), back) == 0);
    if (back.size() < text.size()) Check(encoded.size - encodedLength < 11);
    return 0;
}
