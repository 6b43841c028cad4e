// The library frame: its load-time state and the services every part of
// the library uses to talk to the user. Every message box of the library
// goes through LibraryMessage; no other code calls Korvel_Message_Box.
#pragma once

#include <kodbc/kodbc_types.h>
#include <kodbc_internal/message_ids.h>

#include <cstdint>
#include <string>

namespace kodbc {

// Process-wide values, written once at attach and only read afterwards.
inline constexpr const char *kModuleName = "KODBCDLL";
inline constexpr const char *kRegistryKey = "Software\\Korvel Software\\Kodbc";
inline constexpr COLORREF kNoticeColor = 0x00D2E6FA;
inline constexpr int kNoticeTiming = 10;
inline constexpr int kProfileNameSize = 256;

// The attach routine the platform's library entry calls after the runtime's
// own start-up. Reasons: 1 process attach, 0 process detach, 2/3 thread
// attach/detach (answered FALSE, which the platform ignores).
int LibraryAttach(HINSTANCE instance, unsigned long reason, void *reserved);

HINSTANCE LibraryInstance();
const char *LibraryProfileName();

// Error code that goes with a message in the message request.
uint32_t MessageErrorCode(int messageId);

// Shows string-table message `messageId` with up to three %s arguments.
// Returns the base library's answer (for questions, the button chosen).
int LibraryMessage(int messageId, const char *arg1 = nullptr, const char *arg2 = nullptr,
                   const char *arg3 = nullptr);

// Loads string `stringId` and translates it. Returns the translated length;
// 0 (and an empty text where there is a buffer) when missing.
int LoadLibraryString(HINSTANCE instance, int stringId, char *buffer, int size);

// Reports a file error through the base library's error handler.
int LibraryErrorHandler(HWND owner, int errorClass, const char *value1, const char *value2 = nullptr,
                        const char *value3 = nullptr);

// errno → error class: ENOENT 3, EACCES 2, EEXIST 4, EMFILE 5, else 6.
int FileErrorClass(int error);
int FileErrorClass();
// errno → message for a failed open: EACCES 1637, EEXIST 1639, EMFILE 1640, else 1638.
int FileOpenErrorMessage(int error);
int FileOpenErrorMessage();

// A file's bytes as they are. False when it cannot be opened or read.
bool ReadWholeFile(const char *fileName, std::string &bytes);

// Shows a temporary notice (string `stringId`) in the library's colours.
void ShowTempNotice(int stringId);

#ifdef _WIN32
void TranslateDialog(HWND dialog);
// The object an exported dialog procedure works on: the lParam of
// WM_INITDIALOG, kept in the window's user data, with the dialog translated
// there before the procedure fills it. Null when the caller handed none.
template <class T> T *ExportedDialogObject(HWND dialog, UINT message, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, GWLP_USERDATA, lParam);
        TranslateDialog(dialog);
    }
    return reinterpret_cast<T *>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
}
void TranslateTabItems(HWND tabControl);
INT_PTR LibraryDialogBox(DLGPROC procedure, WORD dialogId, HWND owner, LPARAM parameter);
// For a dialog procedure's catch (...): ends the dialog with 2, after
// message 1600 when memory ran out. Returns FALSE for the procedure.
INT_PTR EndDialogAfterFailure(HWND dialog) noexcept;
void SetItemText(HWND dialog, int controlId, const char *text);
// The whole text of a dialog's control; empty for none.
std::string ItemText(HWND dialog, int controlId);
// Where a row dragged over a list view is dropped when the button comes up
// at `at` (client coordinates of window): the row under it, the last row
// below the rows, -1 outside the list.
int ListViewDropRow(HWND window, HWND list, POINT at);
// The base library's open or save dialog (`mode` KORVEL_FILE_OPEN or
// KORVEL_FILE_SAVE), starting at the file remembered under `valueName` of
// `section` in the library's key and remembering the one chosen there.
// False when the user cancelled.
bool AskForRememberedFile(int mode, int titleId, int filterId, const char *section, const char *valueName,
                          std::string &fileName);
// Selects and focuses row alone (below 0: nothing) and scrolls it into view.
void ListViewSelectOnly(HWND list, int row);
#endif

} // namespace kodbc
