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

} // namespace kodbc
