// String resources, identity of a module, dialog translation, code pages and
// temporary files on Windows.
#include "module_win32.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int kControlTextSize = 1024;

void TranslateWindowText(HWND window, const char *module, const char *section) {
    char text[kControlTextSize];
    if (GetWindowTextA(window, text, sizeof text) <= 0) return;
    char translated[kControlTextSize];
    std::memcpy(translated, text, sizeof text);
    Polo_TranslateString(module, section, translated, sizeof translated);
    if (std::strcmp(text, translated) != 0) SetWindowTextA(window, translated);
}

struct TranslateTarget {
    const char *module;
    const char *section;
};

BOOL CALLBACK TranslateChild(HWND child, LPARAM param) {
    const auto *target = reinterpret_cast<const TranslateTarget *>(param);
    char cls[32];
    // What a user typed is not a text of the dialog.
    if (GetClassNameA(child, cls, sizeof cls) && lstrcmpiA(cls, "Edit") == 0) return TRUE;
    TranslateWindowText(child, target->module, target->section);
    return TRUE;
}

// Converts between ANSI and OEM through one of the window system's calls.
template <BOOL(WINAPI *Convert)(LPCSTR, LPSTR, DWORD)>
int ConvertCodePage(const char *text, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    if (!text) {
        buffer[0] = '\0';
        return 0;
    }
    std::size_t length = strnlen(text, static_cast<std::size_t>(size - 1));
    Convert(text, buffer, static_cast<DWORD>(length));
    buffer[length] = '\0';
    return static_cast<int>(length);
}

int ModuleFileName(HINSTANCE instance, std::vector<char> &path) {
    path.assign(MAX_PATH, '\0');
    for (;;) {
        DWORD length = GetModuleFileNameA(instance, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return 0;
        if (length < path.size()) return static_cast<int>(length);
        path.resize(path.size() * 2);
    }
}

} // namespace

int Korvel_LoadString(HINSTANCE instance, int id, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    buffer[0] = '\0';
    if (size < 2) return 0;  // LoadStringA cannot store anything but the terminator
    int length = LoadStringA(instance, static_cast<UINT>(id), buffer, size);
    if (length <= 0) {
        buffer[0] = '\0';
        return 0;
    }
    return length;
}

void Korvel_RegisterModuleResources(HINSTANCE, const KorvelModuleResources *) {
    // Windows modules carry their strings and version in their resources.
}

int Korvel_GetResourceFileVersion(HINSTANCE instance, int which, char *buffer, int size, int) {
    korvel::BoundedText out(buffer, size);
    if (!out.valid()) return 0;
    std::vector<char> path;
    if (!ModuleFileName(instance, path)) return 0;
    DWORD ignored = 0;
    DWORD infoSize = GetFileVersionInfoSizeA(path.data(), &ignored);
    if (infoSize == 0) return 0;
    std::vector<char> info(infoSize);
    if (!GetFileVersionInfoA(path.data(), 0, infoSize, info.data())) return 0;
    VS_FIXEDFILEINFO *fixed = nullptr;
    UINT fixedSize = 0;
    if (!VerQueryValueA(info.data(), "\\", reinterpret_cast<void **>(&fixed), &fixedSize) || !fixed ||
        fixedSize < sizeof(VS_FIXEDFILEINFO)) {
        return 0;
    }
    DWORD ms = which == 1 ? fixed->dwFileVersionMS : fixed->dwProductVersionMS;
    DWORD ls = which == 1 ? fixed->dwFileVersionLS : fixed->dwProductVersionLS;
    char text[64];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", static_cast<unsigned>(HIWORD(ms)),
                  static_cast<unsigned>(LOWORD(ms)), static_cast<unsigned>(HIWORD(ls)),
                  static_cast<unsigned>(LOWORD(ls)));
    out.append(text);
    return out.int_length();
}

int Korvel_GetProfileName(HINSTANCE instance, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!out.valid()) return 0;
    std::vector<char> path;
    int length = ModuleFileName(instance, path);
    if (!length) return 0;
    std::string_view name(path.data(), static_cast<std::size_t>(length));
    std::size_t dot = name.rfind('.');
    std::size_t slash = name.find_last_of("\\/");
    if (dot != std::string_view::npos && (slash == std::string_view::npos || dot > slash)) name = name.substr(0, dot);
    out.append(name);
    out.append(".ini");
    return out.int_length();
}

void Polo_TranslateDialog(HWND dialog, const char *module, const char *section) {
    if (!dialog) return;
    TranslateWindowText(dialog, module, section);
    TranslateTarget target{module, section};
    EnumChildWindows(dialog, TranslateChild, reinterpret_cast<LPARAM>(&target));
}

int Korvel_AnsiToOem(const char *text, char *buffer, int size) {
    return ConvertCodePage<CharToOemBuffA>(text, buffer, size);
}

int Korvel_OemToAnsi(const char *text, char *buffer, int size) {
    return ConvertCodePage<OemToCharBuffA>(text, buffer, size);
}

int CreateTemporaryFileName(const char *prefix, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    buffer[0] = '\0';
    char folder[MAX_PATH + 1];
    DWORD length = GetTempPathA(sizeof folder, folder);
    if (length == 0 || length > MAX_PATH) return 0;
    char name[MAX_PATH + 1];
    if (!GetTempFileNameA(folder, prefix ? prefix : "", 0, name)) return 0;
    korvel::BoundedText out(buffer, size);
    if (!out.append_if_fits(name)) {
        // A cut name would point at another file: give the created one back.
        DeleteFileA(name);
        return 0;
    }
    return 1;
}
