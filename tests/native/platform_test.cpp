// The base library behind korvel32.h, one body for both implementations (the Windows test
// program compiles this file too); what has no Win32 twin stands last, POSIX only.
#ifdef _WIN32
#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#else
#include "test_support.h"

#include <chrono>
#include <clocale>
#include <csignal>
#include <regex>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#endif

#include <korvel/korvel32.h>

#include <kodbc/kodbc_systable.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

namespace kodbc::test {
namespace {

#ifdef _WIN32
// The native tests' support is bound to POSIX; of it the shared cases need
// only this: `size` bytes for fill(), a write behind them fails the test.
std::string Guarded(int size, const std::function<void(char *, int)> &fill) {
    std::string bytes(static_cast<std::size_t>(size) + 32, '\xA5');
    fill(bytes.data(), size);
    EXPECT_EQ(bytes.find_first_not_of('\xA5', static_cast<std::size_t>(size)), std::string::npos)
        << "written behind " << size << " bytes";
    return std::string(bytes.c_str(), strnlen(bytes.c_str(), static_cast<std::size_t>(size)));
}
using RegistryStore = ::testing::Test;  // the real registry
#else
using RegistryStore = PrivateRegistryTest;
#endif

// What a call wrote into `buffer`, checked against the length it returned.
std::string Wrote(const char *buffer, int length) {
    EXPECT_EQ(static_cast<int>(std::strlen(buffer)), length) << buffer;
    return buffer;
}

// A key of the tests' own, empty at the start (on Windows, the real registry).
class PlatformRegistry : public RegistryStore {
protected:
    void SetUp() override {
        RegistryStore::SetUp();
        for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) Korvel_DeleteRegistryKey(root, kOwn, 0, nullptr);
    }
    static constexpr const char *kOwn = "Software\\Korvel Software\\KodbcPlatformTest";
    static std::string Read(const char *section, const char *name, const char *def = "<none>",
                            HKEY root = HKEY_CURRENT_USER, const char *key = kOwn) {
        char buf[512];
        Korvel_ReadRegistryString(root, key, 0, section, name, def, buf, sizeof buf);
        return buf;
    }
    static int Write(const char *section, const char *name, const char *value, HKEY root = HKEY_CURRENT_USER,
                     const char *key = kOwn) {
        return Korvel_WriteRegistryString(root, key, 0, section, name, value);
    }
    static long Number(const char *name, long def = 7) {
        return Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kOwn, 0, "Export", name, def);
    }
};

// Values survive, an empty one is no missing one, roots are apart, the user's comes
// before the machine's, a read is cut to the caller's buffer, names ignore case.
TEST_F(PlatformRegistry, ValuesRoundTripPerRootAreCutAndNamesIgnoreCase) {
    EXPECT_EQ(Read("Export", "LastFile"), "<none>");
    const std::pair<const char *, std::string> values[] = {
        {"LastFile", "Zeile 1\nZeile 2\tTab \\Pfad\\ =s:x [x]\r"}, {"[odd=name#", "v"}, {"Leer", ""},
        {"AlsText", "17"}};
    for (const auto &[name, value] : values) ASSERT_EQ(Write("Export", name, value.c_str()), 1) << name;
    for (const auto &[name, value] : values) EXPECT_EQ(Read("Export", name), value) << name;
    ASSERT_EQ(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kOwn, 0, "Export", "Count", -42), 1);
    EXPECT_EQ(Number("Count"), -42);
    EXPECT_EQ(Number("AlsText"), 17) << "a number kept as text";
    EXPECT_EQ(Number("Missing"), 7);
    ASSERT_EQ(Write(nullptr, "Top", "oben"), 1);
    EXPECT_EQ(Read("", "Top"), "oben") << "an empty section is the key itself";
    EXPECT_EQ(Read("Export", "LastFile", "<none>", HKEY_LOCAL_MACHINE), "<none>") << "roots are apart";

    auto either = [](const char *name) {
        char text[32];
        Korvel_ReadStringFromHKCUorHKLM(kOwn, "Beide", name, "vorgabe", text, sizeof text);
        return std::string(text);
    };
    ASSERT_EQ(Write("Beide", "Wert", "maschine", HKEY_LOCAL_MACHINE), 1);
    EXPECT_EQ(either("Wert"), "maschine");
    ASSERT_EQ(Write("Beide", "Wert", "benutzer"), 1);
    EXPECT_EQ(either("Wert"), "benutzer");
    EXPECT_EQ(either("Fehlt"), "vorgabe");

    EXPECT_EQ(Guarded(6,
                      [](char *out, int n) {
                          EXPECT_EQ(Korvel_ReadRegistryString(HKEY_CURRENT_USER, kOwn, 0, "Export", "LastFile", "",
                                                              out, n),
                                    5);
                      }),
              "Zeile");
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kOwn, 0, "Export", "LastFile"), 1);
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kOwn, 0, "Export", "LastFile"), 0);
    EXPECT_EQ(Read("Export", "LastFile", nullptr), "");

    // Names compare like Windows: without case, a trailing separator ignored.
    ASSERT_EQ(Write("DataSource", "UserId", "anna"), 1);
    EXPECT_EQ(Read("datasource", "USERID", "", HKEY_CURRENT_USER, "software\\korvel software\\KODBCPLATFORMTEST\\"),
              "anna");
    // Writing under another spelling replaces the value instead of adding one.
    ASSERT_EQ(Write("datasource", "USERID", "bert", HKEY_CURRENT_USER, "SOFTWARE\\Korvel Software\\KodbcPlatformtest"),
              1);
    EXPECT_EQ(Read("DataSource", "UserId"), "bert");
}

// The exported face works in place on a copy of the input.
TEST(StringEncoding, TableRoomRuleAndDecoderQuirks) {
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
    for (const auto &c : cases)
        EXPECT_EQ(Guarded(c.size,
                          [&](char *out, int n) {
                              std::memcpy(out, c.plain.c_str(), std::min(c.plain.size() + 1, std::size_t(n)));
                              const int length = Kodbc_EncodeString(out, n);
                              EXPECT_EQ(length, static_cast<int>(strnlen(out, std::size_t(n))));
                          }),
                  c.coded)
            << "size " << c.size;
    EXPECT_EQ(Korvel_EncodeString("x", nullptr, 20, 0), 0);
    EXPECT_EQ(Kodbc_EncodeString(nullptr, 20), 0);

    const struct {
        const char *coded, *plain;
    } decoded[] = {
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
    for (const auto &c : decoded) {
        std::string text = c.coded;
        EXPECT_EQ(Wrote(text.data(), Kodbc_DecodeString(text.data())), c.plain) << c.coded;
    }
    EXPECT_EQ(Kodbc_DecodeString(nullptr), 0);
}

// Dates as users type them and as ODBC writes them; what cannot be read
// leaves the record alone.
TEST(PlatformDates, ReadingAndWriting) {
    auto read = [](const char *text, int ok) {
        KorvelDate d{1900, 1, 1, 0, 0, 0, 0};
        EXPECT_EQ(Korvel_StringToDate(text, &d), ok) << '"' << text << '"';
        char fields[40];
        std::snprintf(fields, sizeof fields, "%04d-%02d-%02d %02d:%02d:%02d %s", d.year, d.month, d.day, d.hour,
                      d.minute, d.second, d.hasTime ? "time" : "date");
        return std::string(fields);
    };
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
    for (const auto &[text, fields] : cases) EXPECT_EQ(read(text, 1), fields);
    for (const char *bad : {"31.02.2023", "29.02.2023", "29.02.1900", "0.1.2020", "1.13.2020", "32.1.2020", "1.1.202",
                            "1.1.20245", "1.1", "", "abc", "1.1.2020x", "1.1.2020 24:00", "1.1.2020 12:60",
                            "2023-02-30", "{d '2023-01-01 10:00:00'}", "{d '2023-01-01'"})
        EXPECT_EQ(read(bad, 0), "1900-01-01 00:00:00 date");
    KorvelDate d{};
    EXPECT_EQ(Korvel_StringToDate(nullptr, &d), 0);
    EXPECT_EQ(Korvel_StringToDate("1.1.2000", nullptr), 0);

    d = {2024, 3, 7, 9, 5, 1, 1};
    char buf[64];
    EXPECT_EQ(Wrote(buf, Korvel_FormatDate(&d, "%D1.%M1.%Y2", buf, sizeof buf)), "07.03.2024");
    EXPECT_EQ(Wrote(buf, Korvel_FormatDate(&d, "%Y1/%M1 %h1:%m1:%s1 100%", buf, sizeof buf)), "24/03 09:05:01 100%");
    EXPECT_EQ(Wrote(buf, Korvel_DateToOdbcDate(&d, buf, sizeof buf)), "{d '2024-03-07'}");
    EXPECT_EQ(Wrote(buf, Korvel_DateToOdbcTimestamp(&d, buf, sizeof buf)), "{ts '2024-03-07 09:05:01'}");
    EXPECT_EQ(Wrote(buf, Korvel_DateToTimestampText(&d, buf, sizeof buf)), "2024-03-07 09:05:01");
    EXPECT_EQ(Guarded(11, [&](char *out, int n) { EXPECT_EQ(Korvel_DateToTimestampText(&d, out, n), 10); }),
              "2024-03-07");
}

// Bounded copy and append: cut to the size, never written past it.
TEST(PlatformStrings, CopyAppendAndLookup) {
    const struct {
        bool append;
        const char *before;  // what an append finds; null: no terminator within the size
        const char *text;
        int size, length;
        const char *result;
    } cases[] = {
        {false, nullptr, "KODBCDLL", 5, 4, "KODB"},
        {false, nullptr, "KODBCDLL", 9, 8, "KODBCDLL"},
        {false, nullptr, "abc", 1, 0, ""},
        {false, nullptr, "abc", 0, 0, ""},  // no room: nothing written at all
        {false, nullptr, nullptr, 4, 0, ""},
        {true, "abc", "defgh", 8, 7, "abcdefg"},
        {true, "abcdefg", "x", 8, 7, "abcdefg"},  // full already
        {true, "abc", nullptr, 8, 3, "abc"},
        {true, nullptr, "q", 4, 3, "zzz"},  // cut, not overrun
    };
    for (const auto &c : cases) {
        int length = -1;
        EXPECT_EQ(Guarded(c.size,
                          [&](char *out, int n) {
                              if (c.append && c.before) KorvelCopyString(out, c.before, n);
                              if (c.append && !c.before) std::memset(out, 'z', static_cast<std::size_t>(n));
                              length = c.append ? KorvelAppendString(out, c.text, n) : KorvelCopyString(out, c.text, n);
                          }),
                  c.result)
            << c.append << " " << c.size;
        EXPECT_EQ(length, c.length) << c.append << " " << c.size;
    }
    EXPECT_EQ(KorvelCopyString(nullptr, "abc", 10), 0);

    const KorvelTranslation table[] = {{1600, 0x8004A014u}, {1602, 0x8004A015u}, {0, 0}, {7, 7}};
    EXPECT_EQ(Korvel_Translate(table, 1602, 99), 0x8004A015u);
    EXPECT_EQ(Korvel_Translate(table, 1601, 99), 99u);
    EXPECT_EQ(Korvel_Translate(table, 7, 99), 99u) << "rows behind the zero row do not count";
    EXPECT_EQ(Korvel_Translate(nullptr, 1600, 5), 5u);
}

// ANSI is code page 1252 on Windows and in the C locale, else the locale's
// charset. Both round-trip through CP850, a cut falls between characters,
// and each character CP850 lacks becomes one '?'.
TEST(PlatformCodePages, RoundTripAndCutPerLocale) {
    constexpr const char *kOem = "Gr\x94\xE1" "e \x8E" "pfel \x9A" "berma\xE1";  // "Größe Äpfel Übermaß"
    const struct {
        const char *locale, *ansi;
        int cutSize;
        bool toOem;  // the cut's direction
        const char *cut, *euros;
    } cases[] = {
#ifndef _WIN32
        {"C.UTF-8", "Größe Äpfel Übermaß", 4, false, "Gr", "5 € 5 €"},  // "Gr" + "ö" needs 4 bytes
#endif
        {"C", "Gr\xF6\xDF" "e \xC4" "pfel \xDC" "berma\xDF", 5, true, "Gr\x94\xE1", "5 \x80 5 \x80"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.locale);
#ifndef _WIN32
        ScopedLocale locale(c.locale);
        ASSERT_TRUE(locale.ok());
#endif
        char oem[64], back[64];
        EXPECT_EQ(Wrote(oem, Korvel_AnsiToOem(c.ansi, oem, sizeof oem)), kOem);
        EXPECT_EQ(Wrote(back, Korvel_OemToAnsi(oem, back, sizeof back)), c.ansi);
        int length = -1;
        EXPECT_EQ(Guarded(c.cutSize,
                          [&](char *out, int n) {
                              length = c.toOem ? Korvel_AnsiToOem(c.ansi, out, n) : Korvel_OemToAnsi(kOem, out, n);
                          }),
                  c.cut);
        EXPECT_EQ(length, static_cast<int>(std::strlen(c.cut)));
        EXPECT_EQ(Wrote(oem, Korvel_AnsiToOem(c.euros, oem, sizeof oem)), "5 ? 5 ?");
    }
    char oem[4];
    EXPECT_EQ(Korvel_AnsiToOem("x", nullptr, 10), 0);
    EXPECT_EQ(Korvel_AnsiToOem("x", oem, 0), 0);
}

// A new name each time, its file created empty so that the name stays taken.
TEST(PlatformFiles, TemporaryFileIsCreatedEmpty) {
    char name[260], other[260];
    ASSERT_EQ(CreateTemporaryFileName("kdb", name, sizeof name), 1);
    ASSERT_EQ(CreateTemporaryFileName("kdb", other, sizeof other), 1);
    EXPECT_STRNE(name, other);
    for (const std::filesystem::path path : {name, other}) {
        EXPECT_TRUE(std::filesystem::exists(path) && std::filesystem::file_size(path) == 0) << path;
        EXPECT_EQ(path.filename().string().rfind("kdb", 0), 0u) << path;
        std::filesystem::remove(path);
    }
    // A name that would not fit is not handed out cut.
    Guarded(8, [](char *out, int n) { EXPECT_EQ(CreateTemporaryFileName("kdb", out, n), 0); });
}

#ifndef _WIN32
char g_testModule;
HINSTANCE TestInstance() { return reinterpret_cast<HINSTANCE>(&g_testModule); }

const KorvelStringResource kTestStrings[] = {
    {10, "Testfenster"},
    {20, "?YN Soll die Tabelle  %s  gelöscht werden?"},
    {21, "?YNC %s / %s / %s"},
    {22, "s 100%% von %s"},
    {23, "! Hinweis"},
    {24, "Ohne Präfix %d %s"},
    {26, "%s"},
    {30, "Gespeichert"},
};

// A settings store of its own, the test module's strings and a UTF-8 locale.
class Platform : public PrivateRegistryTest {
protected:
    static void SetUpTestSuite() {
        static const KorvelModuleResources resources{kTestStrings, 8, "9.8.7.6", "testprofil"};
        Korvel_RegisterModuleResources(TestInstance(), &resources);
    }
    // The gate keeps what it read for a while: later tests must not find it asking.
    void TearDown() override {
        SetDumpState(0);
        PrivateRegistryTest::TearDown();
    }

    static int Show(int messageId, const char *a1 = nullptr, const char *a3 = nullptr) {
        KorvelMessageRequest request{TestInstance(), 10, messageId, "TESTMOD", {a1, nullptr, a3}, 0, 0, 1, 0, 0, {}};
        return Korvel_Message_Box(&request);
    }
    ScopedLocale utf8_;
};

TEST_F(Platform, MessagePrefixKindArgumentsAnswerAndFileError) {
    const struct {
        int id;
        const char *a1, *a3;
        int kind;
        const char *text;
    } cases[] = {
        {20, "Kunden", nullptr, KODBC_MESSAGE_YESNO, "Soll die Tabelle  Kunden  gelöscht werden?"},
        {21, "a", "c", KODBC_MESSAGE_YESNOCANCEL, "a /  / c"},
        {22, "s x", nullptr, KODBC_MESSAGE_STOP, "100% von s x"},
        {23, nullptr, nullptr, KODBC_MESSAGE_NOTICE, "Hinweis"},
        {24, "eins", nullptr, KODBC_MESSAGE_PLAIN, "Ohne Präfix %d eins"},
        {26, "s x", nullptr, KODBC_MESSAGE_PLAIN, "s x"},  // an argument never makes a prefix
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.id);
        const int answer = c.id % 2 ? KODBC_ANSWER_CANCEL : KODBC_ANSWER_YES;
        MessageRecorder messages(answer);
        EXPECT_EQ(Show(c.id, c.a1, c.a3), answer);
        ASSERT_EQ(messages.entries().size(), 1u);
        EXPECT_EQ(messages.entries()[0].kind, c.kind);
        EXPECT_EQ(messages.entries()[0].caption, "Testfenster");
        EXPECT_EQ(messages.entries()[0].text, c.text);
    }
    // A file error keeps its caption and names the file (TableOps' copy notice).
    MessageRecorder messages;
    KorvelErrorRequest request{nullptr, 0, nullptr, 3, 0, "Fehler beim ODBC-Datenbankzugriff", 0, 0, {"/tmp/fehlt.txt"},
                               {}};
    EXPECT_EQ(Korvel_ErrorHandler(&request), KODBC_ANSWER_OK);
    ASSERT_EQ(messages.entries().size(), 1u);
    EXPECT_EQ(messages.entries()[0].kind, KODBC_MESSAGE_STOP);
    EXPECT_EQ(messages.entries()[0].caption, "Fehler beim ODBC-Datenbankzugriff");
    EXPECT_NE(messages.entries()[0].text.find("/tmp/fehlt.txt"), std::string::npos);
}

const char *Catalogue(const char *module, const char *, const char *text) {
    if (std::strcmp(module, "TESTMOD") != 0) return nullptr;
    for (const auto &[german, other] : {std::pair{"Testfenster", "Test window"}, {"! Hinweis", "! Note"},
                                        {"Datenbank", "DATENBANK-UEBERSETZT"}})
        if (std::strcmp(text, german) == 0) return other;
    return nullptr;
}

TEST_F(Platform, CatalogueTranslatesBeforeShownAndWithinSize) {
    char text[12] = "Datenbank";
    EXPECT_EQ(Polo_TranslateString("TESTMOD", nullptr, text, sizeof text), 9) << "identity without a catalogue";
    MessageRecorder messages;
    Polo_InstallCatalogue(&Catalogue);
    Show(23);
    EXPECT_EQ(Guarded(12,
                      [](char *out, int n) {
                          KorvelCopyString(out, "Datenbank", n);
                          EXPECT_EQ(Polo_TranslateString("TESTMOD", nullptr, out, n), 11);
                      }),
              "DATENBANK-U");
    EXPECT_EQ(Wrote(text, Polo_TranslateString("OTHER", nullptr, text, sizeof text)), "Datenbank");
    Polo_InstallCatalogue(nullptr);
    ASSERT_EQ(messages.entries().size(), 1u);
    EXPECT_EQ(messages.entries()[0].caption, "Test window");
    EXPECT_EQ(messages.entries()[0].text, "Note");
}

TEST_F(Platform, WithoutHandlerStderrAndSafeAnswer) {
    SetDumpState(KORVEL_DUMP_ASK);
    KodbcMessageHandler previous = Korvel_SetMessageHandler(nullptr, nullptr);
    testing::internal::CaptureStderr();
    const int answers[] = {Show(20, "T"), Show(21), Show(23), Korvel_DumpSqlStatement("DELETE FROM t", 0)};
    std::string err = testing::internal::GetCapturedStderr();
    Korvel_SetMessageHandler(previous, nullptr);
    EXPECT_EQ((std::vector<int>{answers[0], answers[1], answers[2]}),
              (std::vector<int>{KODBC_ANSWER_NO, KODBC_ANSWER_CANCEL, KODBC_ANSWER_OK}));
    EXPECT_NE(answers[3], 1) << "nobody to ask whether the statement runs: it does not";
    EXPECT_NE(err.find("Testfenster: Soll die Tabelle  T  gelöscht werden?"), std::string::npos) << err;
    EXPECT_NE(err.find("DELETE FROM t"), std::string::npos) << err;
}

TEST_F(Platform, StringTableAndIdentity) {
    // "Präfix" is cut before the two-byte "ä", never inside it.
    EXPECT_EQ(Guarded(8, [](char *out, int n) { EXPECT_EQ(Korvel_LoadString(TestInstance(), 24, out, n), 7); }),
              "Ohne Pr");
    char text[64];
    for (int missing : {25, 5, 31}) EXPECT_EQ(Korvel_LoadString(TestInstance(), missing, text, sizeof text), 0);
    EXPECT_EQ(Korvel_LoadString(TestInstance(), 30, text, sizeof text), 11);
    EXPECT_EQ(Wrote(text, Korvel_GetResourceFileVersion(TestInstance(), 1, text, sizeof text, 0)), "9.8.7.6");
    EXPECT_EQ(Wrote(text, Korvel_GetProfileName(TestInstance(), text, sizeof text)), "testprofil.ini");
    ScopedLocale latin("de_DE.ISO-8859-1");  // a Latin-1 locale gets Latin-1 text
    ASSERT_TRUE(latin.ok());
    EXPECT_EQ(Wrote(text, Korvel_LoadString(TestInstance(), 24, text, sizeof text)), "Ohne Pr\xE4" "fix %d %s");
}

// What other processes write counts: six writers at once lose nothing, and
// a change of the dump state is seen within 200 ms (one of this process at
// once). Without bits statements run quietly.
TEST_F(Platform, DumpGateAndOtherProcessesWrites) {
    constexpr int kProcesses = 6, kValuesEach = 40;
    auto name = [](int p, int i) { return "P" + std::to_string(p) + "_" + std::to_string(i); };
    MessageRecorder messages(KODBC_ANSWER_NO);
    EXPECT_EQ(Korvel_GetDumpState(0), 0);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 1", 0), 1);
    SetDumpState(KORVEL_DUMP_WARNINGS);
    EXPECT_EQ(Korvel_GetDumpState(0), KORVEL_DUMP_WARNINGS);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 1", 0), 1);
    EXPECT_TRUE(messages.entries().empty());
    // Written and read first, so that what this process keeps of the store must be renewed.
    ASSERT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", "P0_0", -1), -1);
    pid_t children[kProcesses];
    for (int p = 0; p < kProcesses; ++p) {
        children[p] = fork();
        ASSERT_GE(children[p], 0);
        if (children[p] == 0) {
            int failures = p ? 0 : Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, nullptr, "SqlDumpState",
                                                               KORVEL_DUMP_LOG) != 1;
            for (int i = 0; i < kValuesEach; ++i)
                failures += Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", name(p, i).c_str(),
                                                       p * 1000 + i) != 1;
            _exit(failures == 0 ? 0 : 1);
        }
    }
    for (pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a writer failed";
    }
    int missing = 0;
    for (int p = 0; p < kProcesses; ++p)
        for (int i = 0; i < kValuesEach; ++i)
            missing += Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", name(p, i).c_str(), -1) !=
                       p * 1000 + i;
    EXPECT_EQ(missing, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    EXPECT_EQ(Korvel_GetDumpState(0), KORVEL_DUMP_LOG);
    EXPECT_FALSE(std::filesystem::exists(dir_ + "/kodbc-sql.log"));

    // The log bit appends "yyyy-mm-dd hh:mm:ss  statement"; the ask bit runs a
    // statement only on yes, and logs nothing by itself.
    SetDumpState(KORVEL_DUMP_LOG);
    EXPECT_EQ(Korvel_DumpSqlStatement("DELETE FROM t", 0), 1);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 2", 500), 1);
    const std::string log = ReadFile(dir_ + "/kodbc-sql.log");
    const std::vector<std::string> lines = Split(log, "\n");
    ASSERT_EQ(lines.size(), 3u) << log;  // the last one empty
    const std::string stamp = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  )";
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(stamp + "DELETE FROM t"))) << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(stamp + "SELECT 2"))) << lines[1];
    // A file named in the registry takes the place of the default. Which
    // answer runs the statement: ExecStatementTest, ExecRowset's refusals.
    const std::string named = dir_ + "/named.log";
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, nullptr, "SqlDumpFile", named.c_str()), 1);
    SetDumpState(KORVEL_DUMP_ASK);
    messages.set_answer(KODBC_ANSWER_YES);
    EXPECT_EQ(Korvel_DumpSqlStatement("DROP TABLE x", 0), 1);
    EXPECT_EQ(messages.entries().size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(named)) << "asking alone does not log";
    SetDumpState(KORVEL_DUMP_ASK | KORVEL_DUMP_LOG);
    EXPECT_EQ(Korvel_DumpSqlStatement("UPDATE t SET a=1", 0), 1);
    EXPECT_NE(ReadFile(named).find("UPDATE t SET a=1"), std::string::npos);
}

volatile std::sig_atomic_t g_outerInterrupts = 0;
extern "C" void OuterHandler(int) { g_outerInterrupts = g_outerInterrupts + 1; }

// Ctrl+C cancels the work in progress instead of ending the program, and
// only while a progress exists.
TEST(PlatformProgress, InterruptCancelsAndHandlerIsRestored) {
    struct sigaction outer {}, saved {};
    outer.sa_handler = OuterHandler;
    sigemptyset(&outer.sa_mask);
    ASSERT_EQ(sigaction(SIGINT, &outer, &saved), 0);

    KorvelProgress *progress = Korvel_Progress_Create(nullptr, "Import", 0, 200);
    ASSERT_NE(progress, nullptr);
    EXPECT_EQ(Korvel_Progress_Set(progress, 50), 0);
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 0);
    std::raise(SIGINT);
    EXPECT_EQ(g_outerInterrupts, 0) << "the program's own handler must not see it";
    EXPECT_EQ(Korvel_Progress_Set(progress, 60), 1);
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 1);
    EXPECT_EQ(Korvel_Progress_Set(progress, 70), 1) << "a cancel stays";
    Korvel_Progress_Destroy(progress);

    std::raise(SIGINT);
    EXPECT_EQ(g_outerInterrupts, 1) << "previous handler back after destroy";

    // A later progress starts uncancelled.
    progress = Korvel_Progress_Create(nullptr, "Export", 10, 10);
    ASSERT_NE(progress, nullptr);
    EXPECT_EQ(Korvel_Progress_Set(progress, 10), 0);
    Korvel_Progress_Destroy(progress);
    Korvel_Progress_IsCancelled(nullptr);
    Korvel_Progress_Destroy(nullptr);

    sigaction(SIGINT, &saved, nullptr);
}

#endif

} // namespace
} // namespace kodbc::test
