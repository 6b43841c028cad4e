// A modal dialog from the library's resources (Windows). Every dialog runs
// through one procedure: the object lives in the window's user data, the
// dialog is translated before it is filled, and nothing a handler throws
// reaches the window system.
#pragma once

#ifdef _WIN32

#include <windows.h>

#include <string>

namespace kodbc {

class ModalDialog {
public:
    virtual ~ModalDialog() = default;

    // Runs dialog template `dialogId` modally over owner. Returns what the
    // dialog ended with; -1 when it could not be created.
    INT_PTR Run(WORD dialogId, HWND owner);

protected:
    HWND window() const { return window_; }
    void End(INT_PTR result) { EndDialog(window_, result); }
    HWND Item(int controlId) const { return GetDlgItem(window_, controlId); }
    std::string ItemText(int controlId) const;

    // After the dialog has been translated. TRUE lets the system set the focus.
    virtual BOOL OnInit() { return TRUE; }
    // WM_COMMAND. True when handled; the default ends the dialog with 2 on IDCANCEL.
    virtual bool OnCommand(int controlId, int notification);
    // The result a dialog ends with when one of its handlers throws.
    virtual INT_PTR FailureResult() const { return 2; }

private:
    static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    HWND window_ = nullptr;
};

} // namespace kodbc

#endif
