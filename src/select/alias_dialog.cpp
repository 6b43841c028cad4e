// Dialog 10070: the edit field keeps only the alias characters while the
// user types or pastes; what else arrives is dropped where it landed.
#include "select/alias_dialog.h"

#include "internal/library.h"

#include <string>

namespace kodbc::select {
namespace {

struct AliasState {
    std::string *alias = nullptr;
    bool filtering = false;   // our own SetWindowText raises EN_CHANGE again
};

AliasState *StateOf(HWND dialog) {
    return reinterpret_cast<AliasState *>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
}

std::string ItemText(HWND dialog, int controlId) {
    HWND item = GetDlgItem(dialog, controlId);
    int length = GetWindowTextLengthA(item);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    int got = GetWindowTextA(item, text.data(), length + 1);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return text;
}

void FilterEdit(HWND dialog, AliasState *state) {
    if (!state || state->filtering) return;
    HWND edit = GetDlgItem(dialog, IDC_FIELD_ALIAS_EDIT);
    std::string text = ItemText(dialog, IDC_FIELD_ALIAS_EDIT);
    DWORD caret = 0;
    SendMessageA(edit, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
    std::string kept;
    DWORD keptCaret = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kAliasCharacters.find(text[i]) == std::string_view::npos) continue;
        kept += text[i];
        if (i < caret) ++keptCaret;
    }
    if (kept == text) return;
    state->filtering = true;
    SetWindowTextA(edit, kept.c_str());
    SendMessageA(edit, EM_SETSEL, keptCaret, keptCaret);
    state->filtering = false;
}

void OnInitDialog(HWND dialog, AliasState *state) {
    SetWindowLongPtrA(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(state));
    TranslateDialog(dialog);
    SendDlgItemMessageA(dialog, IDC_FIELD_ALIAS_EDIT, EM_LIMITTEXT, kAliasLimit, 0);
    SetItemText(dialog, IDC_FIELD_ALIAS_EDIT, state && state->alias ? state->alias->c_str() : "");
}

INT_PTR HandleMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        OnInitDialog(dialog, reinterpret_cast<AliasState *>(lParam));
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_FIELD_ALIAS_EDIT:
            if (HIWORD(wParam) == EN_CHANGE) FilterEdit(dialog, StateOf(dialog));
            return TRUE;
        case IDC_FIELD_ALIAS_OK:
            if (AliasState *state = StateOf(dialog); state && state->alias)
                *state->alias = ItemText(dialog, IDC_FIELD_ALIAS_EDIT).substr(0, kAliasLimit);
            EndDialog(dialog, 1);
            return TRUE;
        case IDC_FIELD_ALIAS_CANCEL:
            EndDialog(dialog, 2);
            return TRUE;
        default:
            return FALSE;
        }
    default:
        return FALSE;
    }
}

} // namespace

INT_PTR CALLBACK AliasDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return HandleMessage(dialog, message, wParam, lParam);
    } catch (...) {
        // Nothing may unwind into the window system; a dialog that cannot
        // work is cancelled.
        EndDialog(dialog, 2);
        return FALSE;
    }
}

bool AskForAlias(HWND owner, std::string &alias) {
    AliasState state;
    state.alias = &alias;
    return LibraryDialogBox(AliasDialogProc, IDD_FIELD_ALIAS, owner, reinterpret_cast<LPARAM>(&state)) == 1;
}

} // namespace kodbc::select
