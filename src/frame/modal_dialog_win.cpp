#include "internal/modal_dialog.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

namespace kodbc {

INT_PTR ModalDialog::Run(WORD dialogId, HWND owner) {
    return LibraryDialogBox(&ModalDialog::Procedure, dialogId, owner, reinterpret_cast<LPARAM>(this));
}

std::string ModalDialog::ItemText(int controlId) const { return kodbc::ItemText(window_, controlId); }

bool ModalDialog::OnCommand(int controlId, int) {
    if (controlId != IDCANCEL) return false;
    End(2);
    return true;
}

INT_PTR CALLBACK ModalDialog::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto *self = reinterpret_cast<ModalDialog *>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
    try {
        switch (message) {
        case WM_INITDIALOG:
            self = reinterpret_cast<ModalDialog *>(lParam);
            SetWindowLongPtrA(dialog, GWLP_USERDATA, lParam);
            self->window_ = dialog;
            TranslateDialog(dialog);
            return self->OnInit();
        case WM_COMMAND:
            return self && self->OnCommand(LOWORD(wParam), HIWORD(wParam)) ? TRUE : FALSE;
        default:
            return FALSE;
        }
    } catch (...) {
        EndDialog(dialog, self ? self->FailureResult() : 2);
        return FALSE;
    }
}

} // namespace kodbc
