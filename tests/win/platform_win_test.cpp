// What only the Win32 side of the base library has: boxes, the progress window and the notice.
// The rest is tests/native/platform_test.cpp's, compiled into this program too.
#include "robot.h"

#include <korvel/korvel32.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace wintest;
using Boxes = BoxesTest;

TEST_F(Boxes, KindsAndFillingSplitAtTheSeparator) {
    EXPECT_TRUE(Korvel_IsListBox(list_) && Korvel_IsComboBox(combo_));
    EXPECT_FALSE(Korvel_IsComboBox(list_) || Korvel_IsListBox(combo_));
    HWND button = CreateWindowExA(0, "BUTTON", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(Korvel_AddBoxEntry(button, "x", 0, -1, 0), -1) << "a button is no box";
    DestroyWindow(button);
    for (HWND box : {list_, combo_}) {
        Korvel_AddBoxEntry(box, "alt", 0, -1, 0);
        EXPECT_EQ(Korvel_FillBox(box, '\t', "Kunden\tAuftr\xE4ge\t\tPosten\t"), 4);
        // An empty entry between two separators stays; one at the end opens none.
        EXPECT_EQ(BoxTexts(box), (std::vector<std::string>{"Kunden", "Auftr\xE4ge", "", "Posten"}));
        EXPECT_EQ(Korvel_FillBox(box, '\t', nullptr), 0);
        EXPECT_EQ(Korvel_GetBoxCount(box), 0);
    }
    // The extended fill keeps each entry's position as its item data.
    EXPECT_EQ(Korvel_FillBoxExtended(combo_, ',', "a,b,c", 1), 3);
    EXPECT_EQ(BoxLines(combo_), (std::vector<BoxLine>{{"a", 0}, {"b", 1}, {"c", 2}}));
    EXPECT_EQ(Korvel_GetBoxIndexByItemData(combo_, 1), 1);
    EXPECT_EQ(Korvel_GetBoxIndexByItemData(combo_, 7), -1);
}

// The cut of an entry to the buffer is the core's bounded text (natively tested).
TEST_F(Boxes, EntriesSelectionInsertDeleteAndCopy) {
    Korvel_AddBoxEntry(list_, "b", 20, -1, 0);
    Korvel_AddBoxEntry(list_, "Lieferanten", 10, 0, 0);  // inserted in front
    char text[8];
    EXPECT_EQ(Korvel_GetBoxEntry(list_, 0, text, 5), 4);
    EXPECT_STREQ(text, "Lief");
    EXPECT_EQ(Korvel_GetBoxEntry(list_, 3, text, sizeof text), -1);
    EXPECT_EQ(Korvel_GetBoxIndex(list_), -1);
    Korvel_SetBoxIndex(list_, 1);
    EXPECT_EQ(Korvel_GetBoxIndex(list_), 1);

    Korvel_AddBoxEntry(combo_, "weg", 0, -1, 0);
    EXPECT_EQ(Korvel_CopyBox(list_, combo_), 2);
    EXPECT_EQ(BoxLines(combo_), (std::vector<BoxLine>{{"Lieferanten", 10}, {"b", 20}}));
    Korvel_DeleteBoxEntry(combo_, 0);
    EXPECT_EQ(BoxLines(combo_), (std::vector<BoxLine>{{"b", 20}}));
}

TEST(Progress, AbbrechenCancels) {
    KorvelProgress *progress = Korvel_Progress_Create(nullptr, "Export", 0, 100);
    ASSERT_NE(progress, nullptr);
    HWND window = Visible("KorvelProgress");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(ControlText(window, IDCANCEL), "Abbrechen");
    EXPECT_EQ(Korvel_Progress_Set(progress, 10), 0);
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 0);
    SaveScreenshot(window, "progress");
    Click(window, IDCANCEL);
    EXPECT_EQ(Korvel_Progress_Set(progress, 20), 1) << "Set pumps the click through";
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 1);
    Korvel_Progress_Destroy(progress);
    EXPECT_FALSE(IsWindow(window));
}

TEST(TempWind, ShowsWithoutBlockingAndClosesByTimer) {
    Korvel_DisplayTempWind(GetModuleHandleA("kodbc.dll"), 2900, 3, 0x00D2E6FA);  // "Datenbank", 300 ms
    HWND notice = Visible("KorvelTempWind");
    ASSERT_NE(notice, nullptr) << "the call returned without a visible notice";
    EXPECT_EQ(WindowText(notice), "Datenbank");
    EXPECT_TRUE(WaitFor(
        [&] {
            for (MSG msg; PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE);) DispatchMessageA(&msg);
            return !IsWindow(notice);
        },
        800))
        << "the timer did not close it";
}

} // namespace
