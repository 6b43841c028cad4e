// Fuzzes the string encoding: the decoder on any text (never longer, never
// past the terminator) and the encoder into a heap buffer of exactly the
// stated size, whose output must decode back to the part of the input it
// took.
//
// Input: byte 0 the encoder's buffer size, the rest (up to a zero byte) the
// text.
#include "fuzz_support.h"

#include <korvel/korvel32.h>

using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1) return 0;
    const std::string text = fuzz::Pieces(data, size, 1, 1)[0];

    // Decoding in place, in a buffer with no room to spare.
    fuzz::Buffer decoded(static_cast<int>(text.size()) + 1, text);
    int decodedLength = Korvel_DecodeString(decoded.data);
    Check(decodedLength >= 0 && static_cast<std::size_t>(decodedLength) <= text.size());
    Check(decoded.terminated());

    // Encoding into exactly data[0] bytes.
    fuzz::Buffer encoded(data[0]);
    int encodedLength = Korvel_EncodeString(text.c_str(), encoded.data, encoded.size, 0);
    if (encoded.size < 1) {
        Check(encodedLength == 0);
        return 0;
    }
    Check(encodedLength >= 0 && encodedLength < encoded.size);
    Check(std::strlen(encoded.data) == static_cast<std::size_t>(encodedLength));
    for (int i = 0; i < encodedLength; ++i) {
        unsigned char c = static_cast<unsigned char>(encoded.data[i]);
        // Nothing that ends a field, a line or a literal survives encoding.
        Check(c >= 32 && c != '\'' && c != '"');
    }
    // The encoded text is the encoding of a prefix of the input: it decodes
    // back to exactly that prefix.
    std::string back(encoded.data, static_cast<std::size_t>(encodedLength));
    Korvel_DecodeString(back.data());
    back.resize(std::strlen(back.c_str()));
    Check(text.compare(0, back.size(), back) == 0);
    // Characters stop only when fewer than 11 bytes would be left.
    if (back.size() < text.size()) Check(encoded.size - encodedLength < 11);
    return 0;
}
