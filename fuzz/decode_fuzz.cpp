// Fuzzes the string encoding: the decoder on any text (never longer, never
// past the terminator) and the encoder into a heap buffer of exactly the
// stated size, whose output must decode back to the part of the input it
// took.
//
// Input: byte 0 the encoder's buffer size, the rest (up to a zero byte) the
// text.
#include "fuzz_support.h"

#include <korvel/korvel32.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using fuzz::Check;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1) return 0;
    const int bufferSize = data[0];
    std::string text(reinterpret_cast<const char *>(data + 1), size - 1);
    text.resize(std::strlen(text.c_str()));

    // Decoding in place, in a buffer with no room to spare.
    char *decoded = static_cast<char *>(std::malloc(text.size() + 1));
    std::memcpy(decoded, text.c_str(), text.size() + 1);
    int decodedLength = Korvel_DecodeString(decoded);
    Check(decodedLength >= 0 && static_cast<std::size_t>(decodedLength) <= text.size());
    Check(std::memchr(decoded, 0, text.size() + 1) != nullptr);
    std::free(decoded);

    // Encoding into exactly bufferSize bytes.
    char *encoded = static_cast<char *>(std::malloc(bufferSize > 0 ? bufferSize : 1));
    int encodedLength = Korvel_EncodeString(text.c_str(), encoded, bufferSize, 0);
    if (bufferSize < 1) {
        Check(encodedLength == 0);
        std::free(encoded);
        return 0;
    }
    Check(encodedLength >= 0 && encodedLength < bufferSize);
    Check(std::strlen(encoded) == static_cast<std::size_t>(encodedLength));
    for (int i = 0; i < encodedLength; ++i) {
        unsigned char c = static_cast<unsigned char>(encoded[i]);
        // Nothing that ends a field, a line or a literal survives encoding.
        Check(c >= 32 && c != '\'' && c != '"');
    }
    // The encoded text is the encoding of a prefix of the input: it decodes
    // back to exactly that prefix.
    std::string back(encoded, static_cast<std::size_t>(encodedLength));
    Korvel_DecodeString(back.data());
    back.resize(std::strlen(back.c_str()));
    Check(text.compare(0, back.size(), back) == 0);
    // Characters stop only when fewer than 11 bytes would be left.
    if (back.size() < text.size()) Check(bufferSize - encodedLength < 11);
    std::free(encoded);
    return 0;
}
