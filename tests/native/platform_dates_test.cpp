// Dates as users type them and as the library writes them.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <cstdio>
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

// The fields of a read date as "yyyy-mm-dd hh:mm:ss" and whether a time was given.
std::string Fields(const KorvelDate &d) {
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d %s", d.year, d.month, d.day, d.hour, d.minute,
                  d.second, d.hasTime ? "time" : "date");
    return text;
}

} // namespace

TEST(PlatformDates, GermanAndOdbcInput) {
    const std::pair<const char *, const char *> cases[] = {
        {"7.3.2024", "2024-03-07 00:00:00 date"},
        // Two-digit years up to 49 are this century.
        {"01.02.49", "2049-02-01 00:00:00 date"},
        {"01.02.50", "1950-02-01 00:00:00 date"},
        {"01.02.00", "2000-02-01 00:00:00 date"},
        {"29.02.2000", "2000-02-29 00:00:00 date"},  // 2000 is a leap year
        {" 29.02.2024 13:05:09 ", "2024-02-29 13:05:09 time"},
        {"1.1.2000 8:30", "2000-01-01 08:30:00 time"},
        {"2023-11-05 07:08:09.123", "2023-11-05 07:08:09 time"},
        {"{d '2023-11-05'}", "2023-11-05 00:00:00 date"},
        {"{ts '2023-11-05 23:59:58'}", "2023-11-05 23:59:58 time"},
    };
    for (const auto &[text, fields] : cases) EXPECT_EQ(Fields(Parse(text)), fields) << text;
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

    EXPECT_EQ(kodbc::test::Guarded(11, [&](char *out, int n) { EXPECT_EQ(Korvel_DateToTimestampText(&d, out, n), 10); }),
              "2024-03-07");
}
