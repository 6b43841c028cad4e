// The file-name dialog that remembers its last file in the registry, and
// the help file of a module.
#include <windows.h>

#include <commdlg.h>

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cstring>
#include <string>

namespace {

bool Remembers(const KorvelFileDialogRecord &record) {
    return record.root && record.keyPath && record.valueName && *record.valueName;
}

// The filter string keeps "|" where the dialog wants its zero bytes, so
// that it can live in a string table. Two zero bytes end it.
std::string LoadFilter(const KorvelFileDialogRecord &record) {
    char text[512] = {};
    Korvel_LoadString(record.instance, record.filterId, text, sizeof text);
    std::string filter(text);
    for (char &c : filter)
        if (c == '|') c = '\0';
    filter.append(2, '\0');
    return filter;
}

// "sms" from the first pattern "*.sms"; empty when the pattern names none.
std::string FirstExtension(const std::string &filter) {
    const char *pattern = filter.c_str() + std::strlen(filter.c_str()) + 1;
    const char *dot = std::strrchr(pattern, '.');
    if (!dot || std::strpbrk(dot + 1, "*?;") || !dot[1]) return {};
    return dot + 1;
}

} // namespace

int Korvel_ExtendedFileNameDialog(const KorvelFileDialogRecord *record, char *fileName) {
    if (!record || !fileName || record->recordSize != KORVEL_FILE_DIALOG_RECORD_SIZE) return 0;
    if (record->mode != KORVEL_FILE_OPEN && record->mode != KORVEL_FILE_SAVE) return 0;
    try {
        char name[KORVEL_FILE_NAME_SIZE] = {};
        korvel::BoundedText(name, sizeof name).append(fileName);
        if (Remembers(*record)) {
            char remembered[KORVEL_FILE_NAME_SIZE] = {};
            if (Korvel_ReadRegistryString(record->root, record->keyPath, 0, record->section, record->valueName,
                                          nullptr, remembered, sizeof remembered) > 0)
                std::strcpy(name, remembered);
        }
        char title[256] = {};
        Korvel_LoadString(record->instance, record->titleId, title, sizeof title);
        const std::string filter = LoadFilter(*record);
        const std::string extension = FirstExtension(filter);

        OPENFILENAMEA dialog = {};
        dialog.lStructSize = sizeof dialog;
        dialog.hwndOwner = Korvel_ActiveWindow();
        dialog.lpstrFilter = filter.c_str();
        dialog.nFilterIndex = 1;
        dialog.lpstrFile = name;
        dialog.nMaxFile = sizeof name;
        dialog.lpstrTitle = title[0] ? title : nullptr;
        dialog.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
        dialog.Flags = OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
        BOOL chosen;
        if (record->mode == KORVEL_FILE_OPEN) {
            dialog.Flags |= OFN_FILEMUSTEXIST;
            chosen = GetOpenFileNameA(&dialog);
        } else {
            dialog.Flags |= OFN_OVERWRITEPROMPT;
            chosen = GetSaveFileNameA(&dialog);
        }
        if (!chosen) return 0;
        korvel::BoundedText(fileName, KORVEL_FILE_NAME_SIZE).append(name);
        if (Remembers(*record))
            Korvel_WriteRegistryString(record->root, record->keyPath, 0, record->section, record->valueName, name);
        return 1;
    } catch (...) {
        return 0;
    }
}

int Korvel_PerformHelp(HWND owner, HINSTANCE instance, int context) {
    char path[MAX_PATH] = {};
    DWORD length = GetModuleFileNameA(instance, path, sizeof path);
    if (length == 0 || length >= sizeof path) return 0;
    char *dot = std::strrchr(path, '.');
    char *slash = std::strrchr(path, '\\');
    if (!dot || (slash && dot < slash)) dot = path + length;
    if (static_cast<std::size_t>(dot - path) + 5 > sizeof path) return 0;
    std::strcpy(dot, ".hlp");
    return WinHelpA(owner, path, HELP_CONTEXT, static_cast<ULONG_PTR>(context)) ? 1 : 0;
}
