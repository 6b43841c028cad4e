// Dialog 10070: the edit field keeps only the alias characters while the
// user types or pastes; what else arrives is dropped where it landed.
#include "select/alias_dialog.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"
#include "internal/modal_dialog.h"

#include <string>

namespace kodbc::select {
namespace {

class AliasDialog : public ModalDialog {
public:
    explicit AliasDialog(std::string &alias) : alias_(alias) {}

private:
    BOOL OnInit() override {
        SendDlgItemMessageA(window(), IDC_FIELD_ALIAS_EDIT, EM_LIMITTEXT, kAliasLimit, 0);
        SetItemText(window(), IDC_FIELD_ALIAS_EDIT, alias_.c_str());
        return TRUE;
    }

    bool OnCommand(int controlId, int notification) override {
        switch (controlId) {
        case IDC_FIELD_ALIAS_EDIT:
            if (notification == EN_CHANGE) FilterEdit();
            return true;
        case IDC_FIELD_ALIAS_OK:
            alias_ = ItemText(IDC_FIELD_ALIAS_EDIT).substr(0, kAliasLimit);
            End(1);
            return true;
        case IDC_FIELD_ALIAS_CANCEL:
            End(2);
            return true;
        default:
            return ModalDialog::OnCommand(controlId, notification);
        }
    }

    // Keeps only the alias characters, wherever the others were typed or pasted.
    void FilterEdit() {
        if (filtering_) return;
        HWND edit = Item(IDC_FIELD_ALIAS_EDIT);
        std::string text = ItemText(IDC_FIELD_ALIAS_EDIT);
        DWORD caret = 0;
        SendMessageA(edit, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
        const KeptAlias kept = AliasCharactersOnly(text, caret);
        if (kept.text == text) return;
        filtering_ = true;  // our own SetWindowText raises EN_CHANGE again
        SetWindowTextA(edit, kept.text.c_str());
        SendMessageA(edit, EM_SETSEL, static_cast<WPARAM>(kept.caret), static_cast<LPARAM>(kept.caret));
        filtering_ = false;
    }

    std::string &alias_;
    bool filtering_ = false;
};

} // namespace

bool AskForAlias(HWND owner, std::string &alias) {
    std::string edited = alias;
    AliasDialog dialog(edited);
    if (dialog.Run(IDD_FIELD_ALIAS, owner) != 1) return false;
    alias = edited;
    return true;
}

} // namespace kodbc::select
