// ANSI/OEM conversion of German text, and temporary file names.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <cstring>
#include <filesystem>
#include <string>

namespace {

using kodbc::test::Guarded;

// "Größe Äpfel Übermaß" in CP850
constexpr const char *kOem = "Gr\x94\xE1" "e \x8E" "pfel \x9A" "berma\xE1";

} // namespace

// ANSI is the locale's charset: UTF-8, or code page 1252 in the C locale.
// Both round-trip, and a cut falls between characters, never inside one.
TEST(PlatformCodePages, RoundTripAndCutPerLocale) {
    const struct {
        const char *locale, *ansi;
        int cutSize;
        bool toOem;  // the cut's direction
        const char *cut;
    } cases[] = {
        {"C.UTF-8", "Größe Äpfel Übermaß", 4, false, "Gr"},  // "Gr" + "ö" needs 4 bytes
        {"C", "Gr\xF6\xDF" "e \xC4" "pfel \xDC" "berma\xDF", 5, true, "Gr\x94\xE1"},
    };
    for (const auto &c : cases) {
        kodbc::test::ScopedLocale locale(c.locale);
        ASSERT_TRUE(locale.ok()) << c.locale;
        char oem[64], back[64];
        EXPECT_EQ(Korvel_AnsiToOem(c.ansi, oem, sizeof oem), 19) << c.locale;
        EXPECT_STREQ(oem, kOem) << c.locale;
        EXPECT_EQ(Korvel_OemToAnsi(oem, back, sizeof back), static_cast<int>(std::strlen(c.ansi))) << c.locale;
        EXPECT_STREQ(back, c.ansi) << c.locale;
        int length = -1;
        EXPECT_EQ(Guarded(c.cutSize,
                          [&](char *out, int n) {
                              length = c.toOem ? Korvel_AnsiToOem(c.ansi, out, n) : Korvel_OemToAnsi(kOem, out, n);
                          }),
                  c.cut)
            << c.locale;
        EXPECT_EQ(length, static_cast<int>(std::strlen(c.cut))) << c.locale;
    }
    kodbc::test::ScopedLocale utf8;
    char oem[64];
    // The euro sign has no place in CP850; each missing character is one '?'.
    EXPECT_EQ(Korvel_AnsiToOem("5 € 5 €", oem, sizeof oem), 7);
    EXPECT_STREQ(oem, "5 ? 5 ?");
    EXPECT_EQ(Korvel_AnsiToOem("x", nullptr, 10), 0);
}

TEST(PlatformFiles, TemporaryFileIsCreatedEmpty) {
    char name[256];
    ASSERT_EQ(CreateTemporaryFileName("kodbc-t", name, sizeof name), 1);
    std::filesystem::path path(name);
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(std::filesystem::file_size(path), 0u);
    EXPECT_EQ(path.filename().string().rfind("kodbc-t", 0), 0u);
    char other[256];
    ASSERT_EQ(CreateTemporaryFileName("kodbc-t", other, sizeof other), 1);
    EXPECT_STRNE(name, other);
    std::filesystem::remove(path);
    std::filesystem::remove(other);

    // A name that would not fit is not handed out cut, and no file is left.
    kodbc::test::GuardedBuffer tiny(8);
    EXPECT_EQ(CreateTemporaryFileName("kodbc-t", tiny.data(), tiny.size()), 0);
    EXPECT_TRUE(tiny.guards_intact());
}
