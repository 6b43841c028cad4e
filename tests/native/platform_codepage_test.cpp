// ANSI/OEM conversion of German text, and temporary file names.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

class PlatformCodePages : public ::testing::Test {
protected:
    void SetUp() override {
        const char *current = std::setlocale(LC_CTYPE, nullptr);
        locale_ = current ? current : "C";
    }
    void TearDown() override { std::setlocale(LC_CTYPE, locale_.c_str()); }
    std::string locale_;
};

// "Größe Äpfel Übermaß" in CP850
constexpr const char *kOem = "Gr\x94\xE1" "e \x8E" "pfel \x9A" "berma\xE1";

} // namespace

TEST_F(PlatformCodePages, Utf8LocaleRoundTrip) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    const std::string ansi = "Größe Äpfel Übermaß";
    char oem[64], back[64];
    EXPECT_EQ(Korvel_AnsiToOem(ansi.c_str(), oem, sizeof oem), 19);
    EXPECT_STREQ(oem, kOem);
    EXPECT_EQ(Korvel_OemToAnsi(oem, back, sizeof back), static_cast<int>(ansi.size()));
    EXPECT_EQ(back, ansi);

    // Cut at a character, never inside one: "Gr" + "ö" needs 4 bytes.
    kodbc::test::GuardedBuffer small(4);
    EXPECT_EQ(Korvel_OemToAnsi(kOem, small.data(), small.size()), 2);
    EXPECT_EQ(small.text(), "Gr");
    EXPECT_TRUE(small.guards_intact());

    // The euro sign has no place in CP850; each missing character is one '?'.
    EXPECT_EQ(Korvel_AnsiToOem("5 € 5 €", oem, sizeof oem), 7);
    EXPECT_STREQ(oem, "5 ? 5 ?");
}

TEST_F(PlatformCodePages, CLocaleIsCodePage1252) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C"), nullptr);
    const char *ansi = "Gr\xF6\xDF" "e \xC4" "pfel \xDC" "berma\xDF";
    char oem[64], back[64];
    EXPECT_EQ(Korvel_AnsiToOem(ansi, oem, sizeof oem), 19);
    EXPECT_STREQ(oem, kOem);
    EXPECT_EQ(Korvel_OemToAnsi(oem, back, sizeof back), 19);
    EXPECT_STREQ(back, ansi);

    kodbc::test::GuardedBuffer small(5);
    EXPECT_EQ(Korvel_AnsiToOem(ansi, small.data(), small.size()), 4);
    EXPECT_EQ(small.text(), "Gr\x94\xE1");
    EXPECT_TRUE(small.guards_intact());
    EXPECT_EQ(Korvel_AnsiToOem(ansi, nullptr, 10), 0);
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
