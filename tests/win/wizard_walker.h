// Walking a wizard of the library as a user would: a robot on its own
// thread presses the frame's buttons, fills pages and notes what it finds,
// while the wizard runs modally on the test thread.
#pragma once

#include <korvel/korvel32.h>

#include <commctrl.h>

#include "robot.h"
#include "win_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace wintest {

// The caption of the library's message boxes.
inline constexpr char kLibraryMessageCaption[] = "Datenbank";

// The rows of a query, columns joined by "|", NULL as "-".
inline std::vector<std::string> QueryRows(SQLHDBC hdbc, const std::string &sql) {
    std::vector<std::string> rows;
    SQLHSTMT stmt = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc, &stmt))) return rows;
    SQLSMALLINT columns = 0;
    if (SQL_SUCCEEDED(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS)) &&
        SQL_SUCCEEDED(SQLNumResultCols(stmt, &columns))) {
        while (SQL_SUCCEEDED(SQLFetch(stmt))) {
            std::string row;
            for (SQLUSMALLINT column = 1; column <= columns; ++column) {
                char text[100] = {};
                SQLLEN indicator = 0;
                SQLGetData(stmt, column, SQL_C_CHAR, text, sizeof text, &indicator);
                row += (column > 1 ? "|" : "") + std::string(indicator == SQL_NULL_DATA ? "-" : text);
            }
            rows.push_back(row);
        }
    }
    SQLFreeStmt(stmt, SQL_DROP);
    return rows;
}

// A visible window of class cls (and text, unless null) on thread.
struct VisibleSearch {
    const char *cls;
    const char *text;
    HWND window = nullptr;
};
inline BOOL CALLBACK FindVisible(HWND window, LPARAM param) {
    auto *found = reinterpret_cast<VisibleSearch *>(param);
    char cls[64] = {};
    GetClassNameA(window, cls, sizeof cls);
    if (!IsWindowVisible(window) || lstrcmpA(cls, found->cls) != 0) return TRUE;
    if (found->text && WindowText(window) != found->text) return TRUE;
    found->window = window;
    return FALSE;
}
inline HWND Visible(DWORD thread, const char *cls, const char *text = nullptr) {
    VisibleSearch found{cls, text};
    EnumThreadWindows(thread, FindVisible, reinterpret_cast<LPARAM>(&found));
    return found.window;
}

// The text of a report list view's cell.
inline std::string ListViewCell(HWND list, int row, int column) {
    char text[200] = {};
    LVITEMA item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = sizeof text;
    SendMessageA(list, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

// What every wizard walk does with the frame; a wizard's test adds its own.
struct WizardWalker {
    HWND frame;
    std::string shotPrefix;  // "<wizard>-": pictures are named after the page
    std::vector<std::string> failures;

    HWND Page(int id) const { return GetDlgItem(frame, id); }
    HWND Control(int page, int id) const { return GetDlgItem(Page(page), id); }
    bool Showing(int page) const { return ControlVisible(frame, page); }
    void Expect(bool condition, const std::string &what) {
        if (!condition) failures.push_back(what);
    }
    void Shot(int page) {
        Sleep(300);  // what was just typed is painted
        SaveScreenshot(frame, shotPrefix + std::to_string(page));
    }
    // Presses a frame button and waits for page `then` (0: the frame closes).
    void Press(int button, int then) {
        Click(frame, button);
        bool ok = WaitFor([&] { return then ? Showing(then) : !IsWindow(frame); }, 10000);
        Expect(ok, "page " + std::to_string(then) + " after button " + std::to_string(button));
        Sleep(200);
    }
    // "Weiter" refused with a message box (clicked away by the answerer).
    void Refused(int page) {
        Click(frame, KORVEL_WIZARD_NEXT);
        auto box = [] { return FindWindowA("#32770", kLibraryMessageCaption); };
        bool shown = WaitFor([&] { return box() != nullptr; });
        Expect(shown && WaitFor([&] { return box() == nullptr; }), "no message box on page " + std::to_string(page));
        Expect(Showing(page), "left page " + std::to_string(page) + " despite the refusal");
    }
    // Selects the list or combo box entry `text` (empty: no entry).
    void Choose(int page, int id, const std::string &text) {
        HWND box = Control(page, id);
        const bool combo = IsCombo(box);
        LRESULT index = -1;
        if (!text.empty())
            index = SendMessageA(box, combo ? CB_FINDSTRINGEXACT : LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                 reinterpret_cast<LPARAM>(text.c_str()));
        Expect(text.empty() || index >= 0, "no entry " + text);
        SendMessageA(box, combo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
};

// Runs `wizard` on this thread while a robot walks its frame (titled
// `title`) with `walk`; answers the library's message boxes with OK and
// hands back their texts. The first page is photographed as `firstShot`.
template <class Walker>
int RunWizard(const char *title, const std::string &firstShot, const std::string &shotPrefix,
              const std::function<int()> &wizard, const std::function<void(Walker &)> &walk,
              std::vector<std::string> &messages, int timeoutMs = 60000) {
    MessageBoxAnswerer answerer(kLibraryMessageCaption, IDOK);
    std::vector<std::string> failures;
    DialogRobot robot(title, firstShot, [&](HWND frame) {
        Walker walker{{frame, shotPrefix, {}}};
        walk(walker);
        failures = walker.failures;
    }, timeoutMs);
    const int result = wizard();
    robot.Join();
    EXPECT_TRUE(robot.Found()) << "the wizard never appeared: " << title;
    for (const std::string &failure : failures) ADD_FAILURE() << failure;
    for (const MessageBoxSeen &seen : answerer.Seen()) messages.push_back(seen.text);
    return result;
}

} // namespace wintest
