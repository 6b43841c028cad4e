// The string encoding through both faces, the platform's copy into a buffer
// and the exported one in place: the table, the 11-byte room rule and the
// decoder's quirks must agree.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_systable.h>

#include <cstring>

namespace kodbc::test {
namespace {

// Both encoders into a guarded buffer of `size`; fails when they disagree.
std::string Encode(const std::string &text, int size) {
    int copied = -1, inPlace = -1;
    std::string copy = Guarded(size, [&](char *out, int n) { copied = Korvel_EncodeString(text.c_str(), out, n, 2); });
    std::string place = Guarded(size, [&](char *out, int n) {
        std::memcpy(out, text.c_str(), std::min<std::size_t>(text.size() + 1, static_cast<std::size_t>(n)));
        inPlace = Kodbc_EncodeString(out, n);
    });
    EXPECT_EQ(copy, place) << "size " << size;
    EXPECT_EQ(copied, static_cast<int>(copy.size())) << "size " << size;
    EXPECT_EQ(inPlace, static_cast<int>(place.size())) << "size " << size;
    return place;
}

// Both decoders; fails when they disagree.
std::string Decode(const std::string &text) {
    std::string a = text, b = text;
    int n = Kodbc_DecodeString(a.data());
    Korvel_DecodeString(b.data());
    EXPECT_EQ(n, static_cast<int>(std::strlen(a.c_str()))) << text;
    EXPECT_EQ(std::string(a.c_str()), b.c_str()) << text;
    return a.c_str();
}

TEST(StringEncoding, TableAndRoomRule) {
    const struct {
        std::string plain;
        int size;
        std::string coded;
    } cases[] = {
        {"a\tb\nc\rd\"e'f\\g\x01h\x1Fi\xE4\x80", 1000, "a\\tb\\nc\\rd\\qe\\Qf\\\\g\\x01h\\x1Fi\xE4\x80"},
        // Growing in place: the output overtakes the input it is read from.
        {"\t\t\t\t\t\t", 100, "\\t\\t\\t\\t\\t\\t"},
        // A character is encoded only while 11 bytes remain.
        {"abcdef", 12, "ab"},
        {"abcdef", 11, "a"},
        {"abcdef", 10, ""},
        {"\t\tx", 11, "\\t"},
        {"\t\tx", 12, "\\t"},      // 12 - 2 leaves only 10
        {"\t\tx", 13, "\\t\\t"},  // 13 - 2 leaves 11, 13 - 4 only 9
        {std::string(40, 'z'), 20, std::string(10, 'z')},
        {"q", 1, ""},
    };
    for (const auto &c : cases) EXPECT_EQ(Encode(c.plain, c.size), c.coded) << "size " << c.size;
    EXPECT_EQ(Korvel_EncodeString("x", nullptr, 20, 0), 0);
    EXPECT_EQ(Kodbc_EncodeString(nullptr, 20), 0);
}

TEST(StringEncoding, DecoderQuirks) {
    const struct {
        const char *coded, *plain;
    } cases[] = {
        {"a\\tb\\n\\r\\q\\Q\\x41", "a\tb\n\r\"'A"},
        {"\\x4A", "J"},
        {"\\x1F", "\x1F"},
        // Lower-case digits count as their distance from '0' ('a' is 49), and
        // the digits are OR-ed, not added: 1 << 4 | 54 ('f') is 0x36.
        {"\\x0a", "1"},
        {"\\x1f", "6"},
        // "\x" without two characters stands for a backslash, what follows stays.
        {"ab\\x4", "ab\\4"},
        {"a\\x", "a\\"},
        {"ab\\", "ab"},
        {"\\z\\\\", "\\\\"},
    };
    for (const auto &c : cases) EXPECT_EQ(Decode(c.coded), c.plain) << c.coded;
    EXPECT_EQ(Kodbc_DecodeString(nullptr), 0);
    const std::string plain = "Grüße\t\"x\"\\y\x01";
    EXPECT_EQ(Decode(Encode(plain, 100)), plain);
}

} // namespace
} // namespace kodbc::test
