#include "transfer/transfer_pages.h"

#include <commdlg.h>

namespace kodbc::transfer {

namespace {
constexpr int kOtherTextLimit = 9;
constexpr int kTextSize = 300;
} // namespace

void LimitTextLayout(HWND page, const TextLayoutControls &ids) {
    for (int id : {ids.delimiterText, ids.decimalText}) SendDlgItemMessageA(page, id, EM_LIMITTEXT, kOtherTextLimit, 0);
    for (int id : {ids.left, ids.right}) SendDlgItemMessageA(page, id, EM_LIMITTEXT, 1, 0);
}

void ChooseTransferFile(HWND page, int fileId, int fileSize, int titleId, bool save, int filterId) {
    // The filter keeps "|" where the dialog wants its zero bytes, so that
    // it can live in the string table.
    char filter[kTextSize] = {}, title[kTextSize] = {};
    LoadLibraryString(LibraryInstance(), filterId, filter, sizeof filter - 1);
    for (char *c = filter; *c; ++c)
        if (*c == '|') *c = '\0';
    LoadLibraryString(LibraryInstance(), titleId, title, sizeof title);
    std::string file(static_cast<std::size_t>(fileSize), '\0');
    GetDlgItemTextA(page, fileId, file.data(), fileSize);
    OPENFILENAMEA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetAncestor(page, GA_ROOT);
    dialog.lpstrFilter = filter;
    dialog.lpstrFile = file.data();
    dialog.nMaxFile = static_cast<DWORD>(fileSize);
    dialog.lpstrTitle = title[0] ? title : nullptr;
    dialog.Flags = OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | (save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    if (save ? GetSaveFileNameA(&dialog) : GetOpenFileNameA(&dialog)) SetDlgItemTextA(page, fileId, file.c_str());
}

} // namespace kodbc::transfer
