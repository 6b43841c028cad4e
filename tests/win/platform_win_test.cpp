// The Win32 side of the base library, called directly (the test program
// links the platform library too): boxes, registry, code pages, files,
// progress window and temporary notice.
#include "robot.h"
#include "win_support.h"

#include <korvel/korvel32.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

constexpr char kKey[] = "Software\\Korvel Software\\KodbcWinTest";

// A hidden list box and combo box to work on.
class Boxes : public wintest::BoxesTest {
protected:
    static std::string Entry(HWND box, int index) {
        char text[64];
        return Korvel_GetBoxEntry(box, index, text, sizeof text) >= 0 ? text : "<none>";
    }
};

TEST_F(Boxes, TellsListFromComboBox) {
    EXPECT_TRUE(Korvel_IsListBox(list_));
    EXPECT_FALSE(Korvel_IsComboBox(list_));
    EXPECT_TRUE(Korvel_IsComboBox(combo_));
    EXPECT_FALSE(Korvel_IsListBox(combo_));
    HWND button = CreateWindowExA(0, "BUTTON", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(Korvel_AddBoxEntry(button, "x", 0, -1, 0), -1) << "a button is no box";
    DestroyWindow(button);
}

TEST_F(Boxes, FillSplitsAtTheSeparatorAndReplacesTheContent) {
    for (HWND box : {list_, combo_}) {
        Korvel_AddBoxEntry(box, "alt", 0, -1, 0);
        EXPECT_EQ(Korvel_FillBox(box, '\t', "Kunden\tAuftr\xE4ge\t\tPosten\t"), 4);
        ASSERT_EQ(Korvel_GetBoxCount(box), 4);
        EXPECT_EQ(Entry(box, 0), "Kunden");
        EXPECT_EQ(Entry(box, 1), "Auftr\xE4ge");
        EXPECT_EQ(Entry(box, 2), "") << "an empty entry between two separators stays";
        EXPECT_EQ(Entry(box, 3), "Posten");
        EXPECT_EQ(Korvel_FillBox(box, '\t', nullptr), 0);
        EXPECT_EQ(Korvel_GetBoxCount(box), 0);
    }
}

TEST_F(Boxes, ExtendedFillKeepsPositionsAsItemData) {
    EXPECT_EQ(Korvel_FillBoxExtended(combo_, ',', "a,b,c", 1), 3);
    EXPECT_EQ(Korvel_GetItemData(combo_, 2), 2);
    EXPECT_EQ(Korvel_GetBoxIndexByItemData(combo_, 1), 1);
    EXPECT_EQ(Korvel_GetBoxIndexByItemData(combo_, 7), -1);
}

TEST_F(Boxes, EntriesAreCutToTheBuffer) {
    Korvel_AddBoxEntry(list_, "Lieferanten", 42, -1, 0);
    char text[8];
    std::memset(text, '#', sizeof text);
    EXPECT_EQ(Korvel_GetBoxEntry(list_, 0, text, 5), 4);
    EXPECT_STREQ(text, "Lief");
    EXPECT_EQ(text[5], '#');
    EXPECT_EQ(Korvel_GetBoxEntry(list_, 3, text, sizeof text), -1);
}

TEST_F(Boxes, SelectionInsertDeleteAndCopy) {
    Korvel_AddBoxEntry(list_, "b", 20, -1, 0);
    Korvel_AddBoxEntry(list_, "a", 10, 0, 0);  // inserted in front
    EXPECT_EQ(Entry(list_, 0), "a");
    EXPECT_EQ(Korvel_GetBoxIndex(list_), -1);
    Korvel_SetBoxIndex(list_, 1);
    EXPECT_EQ(Korvel_GetBoxIndex(list_), 1);

    Korvel_AddBoxEntry(combo_, "weg", 0, -1, 0);
    EXPECT_EQ(Korvel_CopyBox(list_, combo_), 2);
    ASSERT_EQ(Korvel_GetBoxCount(combo_), 2);
    EXPECT_EQ(Entry(combo_, 1), "b");
    EXPECT_EQ(Korvel_GetItemData(combo_, 1), 20);

    Korvel_DeleteBoxEntry(combo_, 0);
    EXPECT_EQ(Korvel_GetBoxCount(combo_), 1);
    EXPECT_EQ(Entry(combo_, 0), "b");
}

TEST(PlatformRegistry, NumbersStringsAndDeletion) {
    EXPECT_EQ(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Zahlen", "Anzahl", -5), 1);
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Zahlen", "Anzahl", 0), -5);
    // A number kept as text is read as a number too.
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Zahlen", "AlsText", "17");
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Zahlen", "AlsText", 0), 17);
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "Zahlen", "Anzahl"), 1);
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "Zahlen", "Anzahl"), 0);
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Zahlen", "Anzahl", 99), 99);

    char text[6];
    std::memset(text, '#', sizeof text);
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, nullptr, "Name", "Buchhaltung");
    EXPECT_EQ(Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, "", "Name", nullptr, text, 5), 4);
    EXPECT_STREQ(text, "Buch");
    EXPECT_EQ(text[5], '#');
}

TEST(PlatformRegistry, CurrentUserBeforeLocalMachine) {
    Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "Beide", "Wert");  // left by an earlier run in this prefix
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_LOCAL_MACHINE, kKey, 0, "Beide", "Wert", "maschine"), 1);
    char text[32];
    Korvel_ReadStringFromHKCUorHKLM(kKey, "Beide", "Wert", "vorgabe", text, sizeof text);
    EXPECT_STREQ(text, "maschine");
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Beide", "Wert", "benutzer");
    Korvel_ReadStringFromHKCUorHKLM(kKey, "Beide", "Wert", "vorgabe", text, sizeof text);
    EXPECT_STREQ(text, "benutzer");
    Korvel_ReadStringFromHKCUorHKLM(kKey, "Beide", "Fehlt", "vorgabe", text, sizeof text);
    EXPECT_STREQ(text, "vorgabe");
}

TEST(CodePages, UmlautsRoundTripThroughOem) {
    char oem[16];
    char back[16];
    EXPECT_EQ(Korvel_AnsiToOem("\xC4rger", oem, sizeof oem), 5);
    EXPECT_EQ(static_cast<unsigned char>(oem[0]), 0x8E) << "A umlaut in the OEM page";
    EXPECT_EQ(Korvel_OemToAnsi(oem, back, sizeof back), 5);
    EXPECT_STREQ(back, "\xC4rger");
    char small[4];
    std::memset(small, '#', sizeof small);
    EXPECT_EQ(Korvel_AnsiToOem("abcdef", small, 3), 2);
    EXPECT_STREQ(small, "ab");
    EXPECT_EQ(small[3], '#');
}

TEST(Files, TemporaryFileNameIsCreatedAndUnique) {
    char first[MAX_PATH], second[MAX_PATH];
    ASSERT_EQ(CreateTemporaryFileName("kdb", first, sizeof first), 1);
    ASSERT_EQ(CreateTemporaryFileName("kdb", second, sizeof second), 1);
    EXPECT_STRNE(first, second);
    EXPECT_NE(GetFileAttributesA(first), INVALID_FILE_ATTRIBUTES) << "the name must stay taken";
    DeleteFileA(first);
    DeleteFileA(second);
    char tiny[4];
    EXPECT_EQ(CreateTemporaryFileName("kdb", tiny, sizeof tiny), 0);
}

TEST(Identity, ProfileNameIsTheModuleWithIni) {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, sizeof path);
    std::string expected(path);
    expected = expected.substr(0, expected.rfind('.')) + ".ini";
    char profile[MAX_PATH];
    EXPECT_EQ(Korvel_GetProfileName(nullptr, profile, sizeof profile), static_cast<int>(expected.size()));
    EXPECT_EQ(std::string(profile), expected);
}

// A window of the given class on this thread.
HWND FindOwnWindow(const char *cls) {
    std::pair<const char *, HWND> search{cls, nullptr};
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM param) -> BOOL {
            auto *s = reinterpret_cast<std::pair<const char *, HWND> *>(param);
            char name[64];
            if (GetClassNameA(window, name, sizeof name) && lstrcmpA(name, s->first) == 0) {
                s->second = window;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.second;
}

void PumpFor(int milliseconds) {
    DWORD end = GetTickCount() + static_cast<DWORD>(milliseconds);
    while (static_cast<int>(end - GetTickCount()) > 0) {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        Sleep(10);
    }
}

TEST(Progress, AbbrechenCancels) {
    KorvelProgress *progress = Korvel_Progress_Create(nullptr, "Export", 0, 100);
    ASSERT_NE(progress, nullptr);
    HWND window = FindOwnWindow("KorvelProgress");
    ASSERT_NE(window, nullptr);
    HWND button = GetDlgItem(window, IDCANCEL);
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(wintest::WindowText(button), "Abbrechen");
    EXPECT_EQ(Korvel_Progress_Set(progress, 10), 0);
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 0);
    wintest::SaveScreenshot(window, "progress");
    PostMessageA(button, BM_CLICK, 0, 0);
    EXPECT_EQ(Korvel_Progress_Set(progress, 20), 1) << "Set pumps the click through";
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 1);
    Korvel_Progress_Destroy(progress);
    EXPECT_FALSE(IsWindow(window));
}

TEST(TempWind, ShowsWithoutBlockingAndClosesByTimer) {
    HINSTANCE library = GetModuleHandleA("kodbc.dll");
    ASSERT_NE(library, nullptr);
    Korvel_DisplayTempWind(library, 2900, 3, 0x00D2E6FA);  // "Datenbank", 300 ms
    HWND notice = FindOwnWindow("KorvelTempWind");
    ASSERT_NE(notice, nullptr) << "the call returned without a notice";
    EXPECT_EQ(wintest::WindowText(notice), "Datenbank");
    EXPECT_TRUE(IsWindowVisible(notice));
    PumpFor(800);
    EXPECT_FALSE(IsWindow(notice)) << "the timer did not close it";
}

} // namespace
