// The string encoding: its table, the room rule and the decoder's quirks.
#include "test_support.h"

#include <korvel/korvel32.h>

namespace kodbc::test {
namespace {

std::string Encode(const std::string &text, int size = 1000) {
    std::vector<char> out(static_cast<std::size_t>(size));
    Korvel_EncodeString(text.c_str(), out.data(), size, 2);
    return out.data();
}

std::string Decode(std::string text) {
    Korvel_DecodeString(text.data());
    return text.c_str();
}

TEST(PlatformEncoding, EveryEscapeAndItsReverse) {
    const std::string plain = "a\tb\nc\rd\"e'f\\g\x01h\x1Fi\xE4\x80";
    const std::string coded = Encode(plain);
    EXPECT_EQ(coded, "a\\tb\\nc\\rd\\qe\\Qf\\\\g\\x01h\\x1Fi\xE4\x80");
    EXPECT_EQ(Decode(coded), plain);
}

TEST(PlatformEncoding, CharactersAreEncodedOnlyWhileElevenBytesRemain) {
    // 12 bytes: room for one character (12 - 0 >= 11, then 12 - 1 = 11, then 10).
    EXPECT_EQ(Encode("abcdef", 12), "ab");
    EXPECT_EQ(Encode("abcdef", 11), "a");
    EXPECT_EQ(Encode("abcdef", 10), "");
    GuardedBuffer out(11);
    EXPECT_EQ(Korvel_EncodeString("\t\t", out.data(), out.size(), 0), 2);
    EXPECT_EQ(out.text(), "\\t");
    EXPECT_TRUE(out.guards_intact());
    EXPECT_EQ(Korvel_EncodeString("x", nullptr, 20, 0), 0);
}

TEST(PlatformEncoding, DecoderReadsHexUpperCaseOnlyAndToleratesBrokenEscapes) {
    EXPECT_EQ(Decode("\\x41"), "A");
    EXPECT_EQ(Decode("\\x4A"), "J");
    // Lower-case digits count as their distance from '0': 'a' is 49.
    EXPECT_EQ(Decode("\\x0a"), std::string(1, static_cast<char>(49)));
    // The digits are OR-ed, not added: 1 << 4 | 54 is 0x36, where a sum would give 0x46.
    EXPECT_EQ(Decode("\\x1f"), std::string(1, '\x36'));
    EXPECT_EQ(Decode("ab\\x4"), "ab\\4");  // "\\x" stands for a backslash, what follows stays
    EXPECT_EQ(Decode("ab\\"), "ab");
    EXPECT_EQ(Decode("\\z\\\\"), "\\\\");
}

} // namespace
} // namespace kodbc::test
