// Bounded copy and append, lookup tables and translation.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <cstring>

using kodbc::test::Guarded;
using kodbc::test::GuardedBuffer;

TEST(PlatformStrings, CopyCutsToSizeAndKeepsGuards) {
    const struct {
        const char *text;
        int size, length;
        const char *copied;
    } cases[] = {{"KODBCDLL", 5, 4, "KODB"}, {"KODBCDLL", 9, 8, "KODBCDLL"}, {"abc", 1, 0, ""}};
    for (const auto &c : cases) {
        int length = -1;
        EXPECT_EQ(Guarded(c.size, [&](char *out, int n) { length = KorvelCopyString(out, c.text, n); }), c.copied)
            << c.size;
        EXPECT_EQ(length, c.length) << c.size;
    }
    GuardedBuffer none(4);
    EXPECT_EQ(KorvelCopyString(none.data(), "abc", 0), 0);
    EXPECT_EQ(none.data()[0], '\x7f') << "size 0 must not write at all";
    EXPECT_EQ(KorvelCopyString(nullptr, "abc", 10), 0);
    EXPECT_EQ(KorvelCopyString(none.data(), nullptr, none.size()), 0);
    EXPECT_EQ(none.text(), "");
}

TEST(PlatformStrings, AppendCutsAtTotalSize) {
    GuardedBuffer buf(8);
    KorvelCopyString(buf.data(), "abc", buf.size());
    EXPECT_EQ(KorvelAppendString(buf.data(), "defgh", buf.size()), 7);
    EXPECT_EQ(buf.text(), "abcdefg");
    EXPECT_TRUE(buf.guards_intact());
    // Full already: nothing more goes in, the guard stays.
    EXPECT_EQ(KorvelAppendString(buf.data(), "x", buf.size()), 7);
    EXPECT_TRUE(buf.guards_intact());
    EXPECT_EQ(KorvelAppendString(buf.data(), nullptr, buf.size()), 7);

    // A destination without a terminator inside its size is cut, not overrun.
    GuardedBuffer unterminated(4, 'z');
    EXPECT_EQ(KorvelAppendString(unterminated.data(), "q", unterminated.size()), 3);
    EXPECT_EQ(unterminated.text(), "zzz");
    EXPECT_TRUE(unterminated.guards_intact());
}

TEST(PlatformStrings, TranslateTableLookup) {
    const KorvelTranslation table[] = {{1600, 0x8004A014u}, {1602, 0x8004A015u}, {0, 0}, {7, 7}};
    EXPECT_EQ(Korvel_Translate(table, 1602, 99), 0x8004A015u);
    EXPECT_EQ(Korvel_Translate(table, 1601, 99), 99u);
    EXPECT_EQ(Korvel_Translate(table, 7, 99), 99u) << "rows behind the zero row do not count";
    EXPECT_EQ(Korvel_Translate(nullptr, 1600, 5), 5u);
}

namespace {
const char *Shout(const char *module, const char *, const char *text) {
    if (std::strcmp(module, "TESTMOD") != 0) return nullptr;
    if (std::strcmp(text, "Datenbank") == 0) return "DATENBANK-UEBERSETZT";
    return nullptr;
}
} // namespace

TEST(PlatformStrings, CatalogueTranslatesWithinSize) {
    char text[12] = "Datenbank";
    EXPECT_EQ(Polo_TranslateString("TESTMOD", nullptr, text, sizeof text), 9) << "identity without a catalogue";
    Polo_InstallCatalogue(&Shout);
    GuardedBuffer buf(12);
    KorvelCopyString(buf.data(), "Datenbank", buf.size());
    EXPECT_EQ(Polo_TranslateString("TESTMOD", nullptr, buf.data(), buf.size()), 11);
    EXPECT_EQ(buf.text(), "DATENBANK-U");
    EXPECT_TRUE(buf.guards_intact());
    KorvelCopyString(buf.data(), "Datenbank", buf.size());
    EXPECT_EQ(Polo_TranslateString("OTHER", nullptr, buf.data(), buf.size()), 9);
    EXPECT_EQ(buf.text(), "Datenbank");
    Polo_InstallCatalogue(nullptr);
}
