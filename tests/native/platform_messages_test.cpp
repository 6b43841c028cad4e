// Messages through the string table of a registered module: loaded,
// translated, filled, typed by their prefix, answered by the handler.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <clocale>
#include <cstring>
#include <string>

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

class PlatformMessages : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static const KorvelModuleResources resources{kTestStrings, 8, "9.8.7.6", "testprofil"};
        Korvel_RegisterModuleResources(TestInstance(), &resources);
    }

    static int Show(int messageId, const char *a1 = nullptr, const char *a2 = nullptr, const char *a3 = nullptr) {
        KorvelMessageRequest request{};
        request.instance = TestInstance();
        request.captionId = 10;
        request.messageId = messageId;
        request.module = "TESTMOD";
        request.args[0] = a1, request.args[1] = a2, request.args[2] = a3;
        request.loadFromResource = 1;
        return Korvel_Message_Box(&request);
    }
    kodbc::test::ScopedLocale utf8_;
};

} // namespace

TEST_F(PlatformMessages, PrefixKindArgumentsAndAnswer) {
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
        kodbc::test::MessageRecorder messages(answer);
        EXPECT_EQ(Show(c.id, c.a1, nullptr, c.a3), answer);
        ASSERT_EQ(messages.entries().size(), 1u);
        EXPECT_EQ(messages.entries()[0].kind, c.kind);
        EXPECT_EQ(messages.entries()[0].caption, "Testfenster");
        EXPECT_EQ(messages.entries()[0].text, c.text);
    }
}

namespace {
const char *English(const char *module, const char *, const char *text) {
    if (std::strcmp(module, "TESTMOD") != 0) return nullptr;
    if (std::strcmp(text, "Testfenster") == 0) return "Test window";
    if (std::strcmp(text, "! Hinweis") == 0) return "! Note";
    return nullptr;
}
} // namespace

TEST_F(PlatformMessages, TranslatedBeforeShown) {
    kodbc::test::MessageRecorder messages;
    Polo_InstallCatalogue(&English);
    Show(23);
    Polo_InstallCatalogue(nullptr);
    ASSERT_EQ(messages.entries().size(), 1u);
    EXPECT_EQ(messages.entries()[0].caption, "Test window");
    EXPECT_EQ(messages.entries()[0].text, "Note");
}

TEST_F(PlatformMessages, WithoutHandlerStderrAndSafeAnswer) {
    KodbcMessageHandler previous = Korvel_SetMessageHandler(nullptr, nullptr);
    testing::internal::CaptureStderr();
    int yesNo = Show(20, "T");
    int yesNoCancel = Show(21);
    int plain = Show(23);
    std::string err = testing::internal::GetCapturedStderr();
    Korvel_SetMessageHandler(previous, nullptr);
    EXPECT_EQ(yesNo, KODBC_ANSWER_NO);
    EXPECT_EQ(yesNoCancel, KODBC_ANSWER_CANCEL);
    EXPECT_EQ(plain, KODBC_ANSWER_OK);
    EXPECT_NE(err.find("Testfenster: Soll die Tabelle  T  gelöscht werden?"), std::string::npos) << err;
}

TEST_F(PlatformMessages, StringTableAndIdentity) {
    // "Präfix" is cut before the two-byte "ä", never inside it.
    EXPECT_EQ(kodbc::test::Guarded(8, [](char *out, int n) { EXPECT_EQ(Korvel_LoadString(TestInstance(), 24, out, n), 7); }),
              "Ohne Pr");
    char text[64];
    for (int missing : {25, 5, 31}) EXPECT_EQ(Korvel_LoadString(TestInstance(), missing, text, sizeof text), 0);
    EXPECT_EQ(Korvel_LoadString(TestInstance(), 30, text, sizeof text), 11);
    EXPECT_EQ(Korvel_GetResourceFileVersion(TestInstance(), 1, text, sizeof text, 0), 7);
    EXPECT_STREQ(text, "9.8.7.6");
    EXPECT_EQ(Korvel_GetProfileName(TestInstance(), text, sizeof text), 14);
    EXPECT_STREQ(text, "testprofil.ini");
}

TEST_F(PlatformMessages, LatinLocaleGetsLatinText) {
    if (!std::setlocale(LC_CTYPE, "de_DE.ISO-8859-1") && !std::setlocale(LC_CTYPE, "de_DE"))
        GTEST_SKIP() << "no Latin-1 locale installed";
    char text[64];
    ASSERT_GT(Korvel_LoadString(TestInstance(), 24, text, sizeof text), 0);
    EXPECT_STREQ(text, "Ohne Pr\xE4" "fix %d %s");
}

TEST_F(PlatformMessages, FileErrorAndNotice) {
    kodbc::test::MessageRecorder messages;
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
