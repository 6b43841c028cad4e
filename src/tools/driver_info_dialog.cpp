// Dialog 10061: shows the driver information of a connection. The fields
// are read by the same code as the command-line tool's `info`, so both say
// the same; the dialog only places them.
#include "tools/driver_info.h"
#include "tools/driver_info_dialog_ids.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"
#include "internal/modal_dialog.h"

#include <kodbc/kodbc_tools.h>

#include <new>

namespace kodbc::tools {
namespace {

class DriverInfoDialog : public ModalDialog {
public:
    explicit DriverInfoDialog(SQLHDBC hdbc) : hdbc_(hdbc) {}

private:
    BOOL OnInit() override {
        const auto fields = ReadDriverInformation(hdbc_);
        for (int i = 0; i < kDriverInfoFieldCount; ++i)
            SetItemText(window(), IDC_DRIVER_INFO_FIRST_FIELD + 2 * i, fields[static_cast<std::size_t>(i)].value.c_str());
        // Nothing here is edited: the focus waits on the button, not in a field.
        SetFocus(Item(IDC_DRIVER_INFO_CLOSE));
        return FALSE;
    }

    bool OnCommand(int controlId, int notification) override {
        if (controlId == IDOK) {
            End(1);
            return true;
        }
        return ModalDialog::OnCommand(controlId, notification);
    }

    SQLHDBC hdbc_;
};

} // namespace
} // namespace kodbc::tools

extern "C" KODBC_API int KODBC_CALL Kodbc_DisplayDriverInformation(SQLHDBC hdbc, HWND owner) {
    auto *dialog = new (std::nothrow) kodbc::tools::DriverInfoDialog(hdbc);
    if (!dialog) return 0;
    const INT_PTR result = dialog->Run(IDD_DRIVER_INFO, owner);
    delete dialog;
    return static_cast<int>(result);
}
