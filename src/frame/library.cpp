// Load-time state, messages, string loading and file error reports.
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_frame.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace kodbc {
namespace {

constexpr int kCaptionDatabase = msg::CAPTION_DATABASE;          // 2900 "Datenbank"
constexpr int kCaptionOdbcError = msg::CAPTION_ODBC_ERROR;       // 2903
constexpr uint32_t kDefaultErrorCode = 0x8004A000u;

// Message → error code the base library files it under.
constexpr KorvelTranslation kErrorCodes[] = {
    {1600, 0x8004A014u}, {1601, 0x8004A015u}, {1602, 0x8004A015u}, {1607, 0x8004A02Eu},
    {1615, 0x8004A01Fu}, {1618, 0x8004A031u}, {1613, 0x8004A033u}, {1614, 0x8004A034u},
    {0, 0},
};

struct LibraryState {
    HINSTANCE instance = nullptr;
    char profileName[kProfileNameSize] = {};
};
LibraryState g_state;

} // namespace

int LibraryAttach(HINSTANCE instance, unsigned long reason, void *) {
    switch (reason) {
    case 1:
        g_state.instance = instance;
        Korvel_GetProfileName(instance, g_state.profileName, sizeof g_state.profileName);
        return 1;
    case 0:
        return 1;
    default:
        return 0;
    }
}

HINSTANCE LibraryInstance() { return g_state.instance; }
const char *LibraryProfileName() { return g_state.profileName; }

uint32_t MessageErrorCode(int messageId) {
    return Korvel_Translate(kErrorCodes, static_cast<uint32_t>(messageId), kDefaultErrorCode);
}

int LibraryMessage(int messageId, const char *arg1, const char *arg2, const char *arg3) {
    KorvelMessageRequest request;
    std::memset(&request, 0, sizeof request);
    request.instance = g_state.instance;
    request.captionId = kCaptionDatabase;
    request.messageId = messageId;
    request.module = kModuleName;
    request.args[0] = arg1;
    request.args[1] = arg2;
    request.args[2] = arg3;
    request.loadFromResource = 1;
    request.errorCode = MessageErrorCode(messageId);
    return Korvel_Message_Box(&request);
}

int LoadLibraryString(HINSTANCE instance, int stringId, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    if (Korvel_LoadString(instance, stringId, buffer, size) <= 0) {
        buffer[0] = '\0';
        return 0;
    }
    return Polo_TranslateString(kModuleName, nullptr, buffer, size);
}

int LibraryErrorHandler(HWND owner, int errorClass, const char *value1, const char *value2,
                        const char *value3) {
    char caption[100];
    LoadLibraryString(g_state.instance, kCaptionOdbcError, caption, sizeof caption);

    KorvelErrorRequest request;
    std::memset(&request, 0, sizeof request);
    request.window = owner;
    request.kind = owner ? 2 : 1;
    request.owner = Korvel_ActiveWindow();
    request.errorClass = errorClass;
    request.caption = caption;
    request.style = 16;
    request.values[0] = value1;
    request.values[1] = value2;
    request.values[2] = value3;
    return Korvel_ErrorHandler(&request);
}

int FileErrorClass(int error) {
    switch (error) {
    case ENOENT: return 3;
    case EACCES: return 2;
    case EEXIST: return 4;
    case EMFILE: return 5;
    default: return 6;
    }
}
int FileErrorClass() { return FileErrorClass(errno); }

int FileOpenErrorMessage(int error) {
    switch (error) {
    case EACCES: return msg::FILE_IN_USE;          // 1637
    case EEXIST: return msg::FILE_EXISTS;          // 1639
    case EMFILE: return msg::TOO_MANY_OPEN_FILES;  // 1640
    default: return msg::FILE_NOT_FOUND;           // 1638
    }
}
int FileOpenErrorMessage() { return FileOpenErrorMessage(errno); }

bool ReadWholeFile(const char *fileName, std::string &bytes) {
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(fileName ? std::fopen(fileName, "rb") : nullptr,
                                                          std::fclose);
    if (!file) return false;
    bytes.clear();
    char block[4096];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, file.get())) > 0;) bytes.append(block, got);
    return !std::ferror(file.get());
}

void ShowTempNotice(int stringId) {
    Korvel_DisplayTempWind(g_state.instance, stringId, kNoticeTiming, kNoticeColor);
}

} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API HINSTANCE KODBC_CALL Kodbc_GetInstance(void) { return LibraryInstance(); }

KODBC_API int KODBC_CALL Kodbc_GetVersion(char *buffer, int size) {
    return Korvel_GetResourceFileVersion(LibraryInstance(), 1, buffer, size, 0);
}

KODBC_API int KODBC_CALL Kodbc_GetPoloModuleName(char *buffer, int size) {
    return KorvelCopyString(buffer, kModuleName, size);
}

} // extern "C"
