// The base library behind korvel32.h: messages through a registered
// module's string table, the file-backed registry and the statement dump
// gate it switches, the string encoding, dates, bounded strings, code
// pages, temporary files and the interrupt of a progress.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_systable.h>

#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <regex>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace kodbc::test {
namespace {

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
        KorvelMessageRequest request{};
        request.instance = TestInstance();
        request.captionId = 10;
        request.messageId = messageId;
        request.module = "TESTMOD";
        request.args[0] = a1, request.args[2] = a3;
        request.loadFromResource = 1;
        return Korvel_Message_Box(&request);
    }
    static std::string Read(HKEY root, const char *section, const char *name, const char *def = "<none>") {
        char buf[512];
        Korvel_ReadRegistryString(root, kKey, 0, section, name, def, buf, sizeof buf);
        return buf;
    }
    ScopedLocale utf8_;
};

TEST_F(Platform, MessagePrefixKindArgumentsAndAnswer) {
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
    EXPECT_EQ(Polo_TranslateString("OTHER", nullptr, text, sizeof text), 9);
    EXPECT_STREQ(text, "Datenbank");
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
    EXPECT_EQ(answers[0], KODBC_ANSWER_NO);
    EXPECT_EQ(answers[1], KODBC_ANSWER_CANCEL);
    EXPECT_EQ(answers[2], KODBC_ANSWER_OK);
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
    EXPECT_EQ(Korvel_GetResourceFileVersion(TestInstance(), 1, text, sizeof text, 0), 7);
    EXPECT_STREQ(text, "9.8.7.6");
    EXPECT_EQ(Korvel_GetProfileName(TestInstance(), text, sizeof text), 14);
    EXPECT_STREQ(text, "testprofil.ini");
}

TEST_F(Platform, LatinLocaleGetsLatinText) {
    if (!std::setlocale(LC_CTYPE, "de_DE.ISO-8859-1") && !std::setlocale(LC_CTYPE, "de_DE"))
        GTEST_SKIP() << "no Latin-1 locale installed";
    char text[64];
    ASSERT_GT(Korvel_LoadString(TestInstance(), 24, text, sizeof text), 0);
    EXPECT_STREQ(text, "Ohne Pr\xE4" "fix %d %s");
}

TEST_F(Platform, FileErrorAndNotice) {
    MessageRecorder messages;
    KorvelErrorRequest request{};
    request.errorClass = 3;
    request.caption = "Fehler beim ODBC-Datenbankzugriff";
    request.style = 16;
    request.values[0] = "/tmp/fehlt.txt";
    EXPECT_EQ(Korvel_ErrorHandler(&request), KODBC_ANSWER_OK);
    Korvel_DisplayTempWind(TestInstance(), 30, 10, 0x00D2E6FA);
    ASSERT_EQ(messages.entries().size(), 2u);
    EXPECT_EQ(messages.entries()[0].kind, KODBC_MESSAGE_STOP);
    EXPECT_EQ(messages.entries()[0].caption, "Fehler beim ODBC-Datenbankzugriff");
    EXPECT_NE(messages.entries()[0].text.find("/tmp/fehlt.txt"), std::string::npos);
    EXPECT_EQ(messages.entries()[1].kind, KODBC_MESSAGE_TEMPORARY);
    EXPECT_EQ(messages.entries()[1].text, "Gespeichert");
}

// Values survive, roots are apart, and a read is cut to the caller's buffer.
TEST_F(Platform, RegistryStringsAndNumbersRoundTrip) {
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "LastFile"), "<none>");
    const std::string awkward = "Zeile 1\nZeile 2\tTab \\Pfad\\ =s:x [x]\r";
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile", awkward.c_str()), 1);
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Export", "[odd=name#", "v"), 1);
    ASSERT_EQ(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Export", "Count", -42), 1);
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, nullptr, "Top", "oben"), 1);

    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "LastFile"), awkward);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "[odd=name#"), "v");
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Export", "Count", 7), -42);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "", "Top"), "oben") << "empty section is the key itself";
    EXPECT_EQ(Read(HKEY_LOCAL_MACHINE, "Export", "LastFile"), "<none>") << "roots are separate";

    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile", "0123456789"), 1);
    EXPECT_EQ(Guarded(6,
                      [](char *out, int n) {
                          EXPECT_EQ(Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile", "",
                                                              out, n),
                                    5);
                      }),
              "01234");
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile"), 1);
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile"), 0);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "LastFile", nullptr), "");
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Export", "Missing", 7), 7);
}

// Names compare like Windows: without case, extra separators ignored.
TEST_F(Platform, RegistryNamesIgnoreCaseAndExtraSeparators) {
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "DataSource", "UserId", "anna"), 1);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "DATASOURCE", "userid"), "anna");
    char buf[64];
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, "software\\korvel software\\KODBC\\", 0, "datasource", "USERID", "",
                              buf, sizeof buf);
    EXPECT_STREQ(buf, "anna");
    // Writing under another spelling replaces the value instead of adding one.
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, "SOFTWARE\\Korvel Software\\Kodbc", 0, "datasource",
                                         "USERID", "bert"),
              1);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "DataSource", "UserId"), "bert");
}

TEST_F(Platform, RegistryParallelProcessesLoseNothing) {
    constexpr int kProcesses = 6, kValuesEach = 40;
    auto name = [](int p, int i) { return "P" + std::to_string(p) + "_" + std::to_string(i); };
    // Write and read first, so that what this process keeps of the store must be renewed.
    ASSERT_EQ(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", "Before", 1), 1);
    ASSERT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", "P0_0", -1), -1);
    pid_t children[kProcesses];
    for (int p = 0; p < kProcesses; ++p) {
        children[p] = fork();
        ASSERT_GE(children[p], 0);
        if (children[p] == 0) {
            int failures = 0;
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
}

// The dump gate: without bits statements run quietly; a change counts at
// once in this process and within 200 ms from another one.
TEST_F(Platform, DumpGateWithoutBitsRunsQuietly) {
    MessageRecorder messages(KODBC_ANSWER_NO);
    EXPECT_EQ(Korvel_GetDumpState(0), 0);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 1", 0), 1);
    SetDumpState(KORVEL_DUMP_WARNINGS);
    EXPECT_EQ(Korvel_GetDumpState(0), KORVEL_DUMP_WARNINGS);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 1", 0), 1);
    EXPECT_TRUE(messages.entries().empty());
    const pid_t child = fork();
    if (child == 0) _exit(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, nullptr, "SqlDumpState",
                                                     KORVEL_DUMP_LOG) == 1 ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    EXPECT_EQ(Korvel_GetDumpState(0), KORVEL_DUMP_LOG);
    EXPECT_FALSE(std::filesystem::exists(dir_ + "/kodbc-sql.log"));
}

// The log bit appends "yyyy-mm-dd hh:mm:ss  statement"; the ask bit runs a
// statement only on yes, and logs nothing by itself.
TEST_F(Platform, DumpGateLogsAndAsks) {
    SetDumpState(KORVEL_DUMP_LOG);
    EXPECT_EQ(Korvel_DumpSqlStatement("DELETE FROM t", 0), 1);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 2", 500), 1);
    const std::string log = ReadFile(dir_ + "/kodbc-sql.log");
    const std::vector<std::string> lines = Split(log, "\n");
    ASSERT_EQ(lines.size(), 3u) << log;  // the last one empty
    const std::string stamp = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  )";
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(stamp + "DELETE FROM t"))) << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(stamp + "SELECT 2"))) << lines[1];
    // A file named in the registry takes the place of the default.
    const std::string named = dir_ + "/named.log";
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, nullptr, "SqlDumpFile", named.c_str()), 1);
    SetDumpState(KORVEL_DUMP_ASK);
    MessageRecorder messages(KODBC_ANSWER_YES);
    EXPECT_EQ(Korvel_DumpSqlStatement("DROP TABLE x", 0), 1);
    ASSERT_EQ(messages.entries().size(), 1u);
    EXPECT_EQ(messages.entries()[0].kind, KODBC_MESSAGE_YESNOCANCEL);
    EXPECT_EQ(messages.entries()[0].text, "DROP TABLE x");
    for (int refusal : {KODBC_ANSWER_NO, KODBC_ANSWER_CANCEL}) {
        messages.set_answer(refusal);
        EXPECT_NE(Korvel_DumpSqlStatement("DROP TABLE x", 0), 1) << refusal;
    }
    EXPECT_FALSE(std::filesystem::exists(named)) << "asking alone does not log";
    SetDumpState(KORVEL_DUMP_ASK | KORVEL_DUMP_LOG);
    messages.set_answer(KODBC_ANSWER_YES);
    EXPECT_EQ(Korvel_DumpSqlStatement("UPDATE t SET a=1", 0), 1);
    EXPECT_NE(ReadFile(named).find("UPDATE t SET a=1"), std::string::npos);
}

// The string encoding through both faces, the platform's copy into a buffer
// and the exported one in place: the table, the 11-byte room rule and the
// decoder's quirks must agree.
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
}

// Dates as users type them and as ODBC writes them; what cannot be read
// leaves the record alone.
TEST(PlatformDates, Reading) {
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
}

TEST(PlatformDates, Writing) {
    KorvelDate d{2024, 3, 7, 9, 5, 1, 1};
    char buf[64];
    Korvel_FormatDate(&d, "%D1.%M1.%Y2", buf, sizeof buf);
    EXPECT_STREQ(buf, "07.03.2024");
    Korvel_FormatDate(&d, "%Y1/%M1 %h1:%m1:%s1 100%", buf, sizeof buf);
    EXPECT_STREQ(buf, "24/03 09:05:01 100%");
    EXPECT_EQ(Korvel_DateToOdbcDate(&d, buf, sizeof buf), 16);
    EXPECT_STREQ(buf, "{d '2024-03-07'}");
    Korvel_DateToOdbcTimestamp(&d, buf, sizeof buf);
    EXPECT_STREQ(buf, "{ts '2024-03-07 09:05:01'}");
    EXPECT_EQ(Korvel_DateToTimestampText(&d, buf, sizeof buf), 19);
    EXPECT_STREQ(buf, "2024-03-07 09:05:01");
    EXPECT_EQ(Guarded(11, [&](char *out, int n) { EXPECT_EQ(Korvel_DateToTimestampText(&d, out, n), 10); }),
              "2024-03-07");
}

// Bounded copy and append, and the lookup table.
TEST(PlatformStrings, CopyAppendAndLookup) {
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

    GuardedBuffer buf(8);
    KorvelCopyString(buf.data(), "abc", buf.size());
    EXPECT_EQ(KorvelAppendString(buf.data(), "defgh", buf.size()), 7);
    EXPECT_EQ(buf.text(), "abcdefg");
    // Full already: nothing more goes in, the guard stays.
    EXPECT_EQ(KorvelAppendString(buf.data(), "x", buf.size()), 7);
    EXPECT_TRUE(buf.guards_intact());
    EXPECT_EQ(KorvelAppendString(buf.data(), nullptr, buf.size()), 7);

    // A destination without a terminator inside its size is cut, not overrun.
    GuardedBuffer unterminated(4, 'z');
    EXPECT_EQ(KorvelAppendString(unterminated.data(), "q", unterminated.size()), 3);
    EXPECT_EQ(unterminated.text(), "zzz");
    EXPECT_TRUE(unterminated.guards_intact());

    const KorvelTranslation table[] = {{1600, 0x8004A014u}, {1602, 0x8004A015u}, {0, 0}, {7, 7}};
    EXPECT_EQ(Korvel_Translate(table, 1602, 99), 0x8004A015u);
    EXPECT_EQ(Korvel_Translate(table, 1601, 99), 99u);
    EXPECT_EQ(Korvel_Translate(table, 7, 99), 99u) << "rows behind the zero row do not count";
    EXPECT_EQ(Korvel_Translate(nullptr, 1600, 5), 5u);
}

// ANSI is the locale's charset: UTF-8, or code page 1252 in the C locale.
// Both round-trip through CP850, and a cut falls between characters.
TEST(PlatformCodePages, RoundTripAndCutPerLocale) {
    constexpr const char *kOem = "Gr\x94\xE1" "e \x8E" "pfel \x9A" "berma\xE1";  // "Größe Äpfel Übermaß"
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
        SCOPED_TRACE(c.locale);
        ScopedLocale locale(c.locale);
        ASSERT_TRUE(locale.ok());
        char oem[64], back[64];
        EXPECT_EQ(Korvel_AnsiToOem(c.ansi, oem, sizeof oem), 19);
        EXPECT_STREQ(oem, kOem);
        EXPECT_EQ(Korvel_OemToAnsi(oem, back, sizeof back), static_cast<int>(std::strlen(c.ansi)));
        EXPECT_STREQ(back, c.ansi);
        int length = -1;
        EXPECT_EQ(Guarded(c.cutSize,
                          [&](char *out, int n) {
                              length = c.toOem ? Korvel_AnsiToOem(c.ansi, out, n) : Korvel_OemToAnsi(kOem, out, n);
                          }),
                  c.cut);
        EXPECT_EQ(length, static_cast<int>(std::strlen(c.cut)));
    }
    ScopedLocale utf8;
    char oem[64];
    // The euro sign has no place in CP850; each missing character is one '?'.
    EXPECT_EQ(Korvel_AnsiToOem("5 € 5 €", oem, sizeof oem), 7);
    EXPECT_STREQ(oem, "5 ? 5 ?");
    EXPECT_EQ(Korvel_AnsiToOem("x", nullptr, 10), 0);
}

TEST(PlatformFiles, TemporaryFileIsCreatedEmpty) {
    char name[256], other[256];
    ASSERT_EQ(CreateTemporaryFileName("kodbc-t", name, sizeof name), 1);
    ASSERT_EQ(CreateTemporaryFileName("kodbc-t", other, sizeof other), 1);
    EXPECT_STRNE(name, other);
    const std::filesystem::path path(name);
    EXPECT_EQ(std::filesystem::file_size(path), 0u);
    EXPECT_EQ(path.filename().string().rfind("kodbc-t", 0), 0u);
    std::filesystem::remove(path);
    std::filesystem::remove(other);
    // A name that would not fit is not handed out cut.
    GuardedBuffer tiny(8);
    EXPECT_EQ(CreateTemporaryFileName("kodbc-t", tiny.data(), tiny.size()), 0);
    EXPECT_TRUE(tiny.guards_intact());
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

} // namespace
} // namespace kodbc::test
