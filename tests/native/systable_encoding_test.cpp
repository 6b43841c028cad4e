// The exported escaping: in place, the 11-byte room rule, and the decoder's
// upper-case-only digits.
#include "test_support.h"

#include <kodbc/kodbc_systable.h>

#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

std::string EncodeInPlace(const std::string &text, int size) {
    GuardedBuffer buffer(size);
    std::memcpy(buffer.data(), text.c_str(), std::min<std::size_t>(text.size() + 1, static_cast<std::size_t>(size)));
    int n = Kodbc_EncodeString(buffer.data(), buffer.size());
    EXPECT_TRUE(buffer.guards_intact());
    EXPECT_EQ(static_cast<std::size_t>(n), buffer.text().size());
    return buffer.text();
}

std::string Decode(std::string text) {
    int n = Kodbc_DecodeString(text.data());
    EXPECT_EQ(static_cast<std::size_t>(n), std::strlen(text.c_str()));
    return text.c_str();
}

TEST(SysTableEncoding, EncodesInPlaceByTheTable) {
    EXPECT_EQ(EncodeInPlace("a\tb", 100), "a\\tb");
    EXPECT_EQ(EncodeInPlace(std::string(1, '\x1F'), 100), "\\x1F");
    EXPECT_EQ(EncodeInPlace("'\"\\\r\n\x07\xC4", 100), "\\Q\\q\\\\\\r\\n\\x07\xC4");
    // Growing in place: the output overtakes the input it is read from.
    EXPECT_EQ(EncodeInPlace("\t\t\t\t\t\t", 100), "\\t\\t\\t\\t\\t\\t");
}

TEST(SysTableEncoding, CharactersNeedElevenBytesOfRoom) {
    EXPECT_EQ(EncodeInPlace("abc", 10), "");
    EXPECT_EQ(EncodeInPlace("abc", 11), "a");
    EXPECT_EQ(EncodeInPlace("\t\tx", 12), "\\t");      // 12 - 2 leaves only 10
    EXPECT_EQ(EncodeInPlace("\t\tx", 13), "\\t\\t");  // 13 - 2 leaves 11, 13 - 4 only 9
    // The input is only read up to the buffer's size.
    EXPECT_EQ(EncodeInPlace(std::string(40, 'z'), 20), std::string(10, 'z'));
    EXPECT_EQ(Kodbc_EncodeString(nullptr, 20), 0);
    char one[1] = {'q'};
    EXPECT_EQ(Kodbc_EncodeString(one, 1), 0);
    EXPECT_EQ(one[0], '\0');
}

TEST(SysTableEncoding, DecoderQuirks) {
    EXPECT_EQ(Decode("a\\tb\\n\\r\\q\\Q\\x41"), "a\tb\n\r\"'A");
    // Lower-case digits count from '0': 1 << 4 | 54 ('f') is 0x36.
    EXPECT_EQ(Decode("\\x1f"), "6");
    EXPECT_EQ(Decode("\\x1F"), "\x1F");
    EXPECT_EQ(Decode("a\\x4"), "a\\4");
    EXPECT_EQ(Decode("a\\x"), "a\\");
    EXPECT_EQ(Decode("a\\"), "a");
    EXPECT_EQ(Decode("\\\\\\z"), "\\\\");
    EXPECT_EQ(Kodbc_DecodeString(nullptr), 0);
    const std::string plain = "Grüße\t\"x\"\\y\x01";
    std::string coded = EncodeInPlace(plain, 100);
    EXPECT_EQ(Decode(coded), plain);
}

} // namespace
} // namespace kodbc::test
