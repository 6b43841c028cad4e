// Dates as users type them and as the library writes them.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <string>

namespace {

KorvelDate Parse(const char *text, int expectOk = 1) {
    KorvelDate d{1900, 1, 1, 0, 0, 0, 0};
    EXPECT_EQ(Korvel_StringToDate(text, &d), expectOk) << '"' << text << '"';
    return d;
}

std::string Format(const KorvelDate &d, const char *format) {
    char buf[64];
    Korvel_FormatDate(&d, format, buf, sizeof buf);
    return buf;
}

} // namespace

TEST(PlatformDates, GermanInput) {
    KorvelDate d = Parse("7.3.2024");
    EXPECT_EQ(d.year, 2024);
    EXPECT_EQ(d.month, 3);
    EXPECT_EQ(d.day, 7);
    EXPECT_EQ(d.hasTime, 0);

    EXPECT_EQ(Parse("01.02.49").year, 2049);
    EXPECT_EQ(Parse("01.02.50").year, 1950);
    EXPECT_EQ(Parse("01.02.00").year, 2000);

    d = Parse(" 29.02.2024 13:05:09 ");
    EXPECT_EQ(d.day, 29);
    EXPECT_EQ(d.hour, 13);
    EXPECT_EQ(d.minute, 5);
    EXPECT_EQ(d.second, 9);
    EXPECT_EQ(d.hasTime, 1);
    d = Parse("1.1.2000 8:30");
    EXPECT_EQ(d.hour, 8);
    EXPECT_EQ(d.minute, 30);
    EXPECT_EQ(d.second, 0);
}

TEST(PlatformDates, InvalidInputLeavesRecordAlone) {
    for (const char *bad : {"31.02.2023", "29.02.2023", "29.02.1900", "0.1.2020", "1.13.2020", "32.1.2020", "1.1.202",
                            "1.1.20245", "1.1", "", "abc", "1.1.2020x", "1.1.2020 24:00", "1.1.2020 12:60",
                            "2023-02-30", "{d '2023-01-01 10:00:00'}", "{d '2023-01-01'"}) {
        KorvelDate d = Parse(bad, 0);
        EXPECT_EQ(d.year, 1900) << bad;
        EXPECT_EQ(d.day, 1) << bad;
    }
    KorvelDate d{};
    EXPECT_EQ(Korvel_StringToDate(nullptr, &d), 0);
    EXPECT_EQ(Korvel_StringToDate("1.1.2000", nullptr), 0);
    EXPECT_EQ(Parse("29.02.2000").day, 29) << "2000 is a leap year";
}

TEST(PlatformDates, OdbcForms) {
    KorvelDate d = Parse("2023-11-05 07:08:09.123");
    EXPECT_EQ(d.year, 2023);
    EXPECT_EQ(d.day, 5);
    EXPECT_EQ(d.second, 9);
    EXPECT_EQ(Parse("{d '2023-11-05'}").month, 11);
    d = Parse("{ts '2023-11-05 23:59:58'}");
    EXPECT_EQ(d.hour, 23);
    EXPECT_EQ(d.hasTime, 1);
}

TEST(PlatformDates, Writing) {
    KorvelDate d{2024, 3, 7, 9, 5, 1, 1};
    EXPECT_EQ(Format(d, "%D1.%M1.%Y2"), "07.03.2024");
    EXPECT_EQ(Format(d, "%Y1/%M1 %h1:%m1:%s1 100%"), "24/03 09:05:01 100%");
    char buf[64];
    EXPECT_EQ(Korvel_DateToOdbcDate(&d, buf, sizeof buf), 16);
    EXPECT_STREQ(buf, "{d '2024-03-07'}");
    Korvel_DateToOdbcTimestamp(&d, buf, sizeof buf);
    EXPECT_STREQ(buf, "{ts '2024-03-07 09:05:01'}");
    EXPECT_EQ(Korvel_DateToTimestampText(&d, buf, sizeof buf), 19);
    EXPECT_STREQ(buf, "2024-03-07 09:05:01");

    // What is written can be read back.
    KorvelDate back{};
    ASSERT_EQ(Korvel_StringToDate(buf, &back), 1);
    EXPECT_EQ(back.minute, 5);
    ASSERT_EQ(Korvel_StringToDate(Format(d, "%D1.%M1.%Y1").c_str(), &back), 1);
    EXPECT_EQ(back.year, 2024);

    kodbc::test::GuardedBuffer small(11);
    EXPECT_EQ(Korvel_DateToTimestampText(&d, small.data(), small.size()), 10);
    EXPECT_EQ(small.text(), "2024-03-07");
    EXPECT_TRUE(small.guards_intact());
}
