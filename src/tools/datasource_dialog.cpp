// Dialog 103: the data-source picker. It edits a copy of the caller's
// record and gives the copy back only once a connection with it worked, so
// a cancelled or failed choice leaves the caller's record as it was, and
// the bytes behind the three texts, which belong to the caller, go back
// unchanged.
#include "tools/datasource_dialog.h"
#include "tools/picker_dialog_ids.h"
#include "tools/remembered_user.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"
#include "internal/modal_dialog.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_tools.h>

#include <string>
#include <vector>

namespace kodbc::tools {
namespace {

constexpr int kNameSize = sizeof DataSourceRecord::DataSourceName;
constexpr int kPasswordLimit = sizeof DataSourceRecord::Password - 1;

class DataSourcePicker : public ModalDialog {
public:
    explicit DataSourcePicker(const DataSourceRecord &record) : record_(record) {}
    const DataSourceRecord &record() const { return record_; }

private:
    BOOL OnInit() override {
        SendDlgItemMessageA(window(), IDC_DATASOURCE_PICKER_USER, EM_LIMITTEXT, kUserLimit, 0);
        SendDlgItemMessageA(window(), IDC_DATASOURCE_PICKER_PASSWORD, EM_LIMITTEXT, kPasswordLimit, 0);
        HWND list = Item(IDC_DATASOURCE_PICKER_LIST);
        Kodbc_FillDataSourcesBox(list);
        const std::vector<std::string> entries = Entries(list);
        const PickerOpening opening = OpeningFor(entries, record_);
        Korvel_SetBoxIndex(list, opening.index);
        if (opening.index < static_cast<int>(entries.size())) shownFor_ = entries[opening.index];
        SetItemText(window(), IDC_DATASOURCE_PICKER_USER, opening.user.c_str());
        SetItemText(window(), IDC_DATASOURCE_PICKER_PASSWORD, opening.password.c_str());
        return TRUE;
    }

    bool OnCommand(int controlId, int notification) override {
        switch (controlId) {
        case IDC_DATASOURCE_PICKER_LIST:
            if (notification == LBN_SELCHANGE) ShowRememberedUser();
            if (notification == LBN_DBLCLK) Confirm();
            return true;
        case IDC_DATASOURCE_PICKER_OK:
            Confirm();
            return true;
        default:
            return ModalDialog::OnCommand(controlId, notification);
        }
    }

    static std::vector<std::string> Entries(HWND list) {
        std::vector<std::string> entries;
        const int count = Korvel_GetBoxCount(list);
        for (int i = 0; i < count; ++i) {
            char name[kNameSize] = {};
            Korvel_GetBoxEntry(list, i, name, sizeof name);
            entries.emplace_back(name);
        }
        return entries;
    }

    // The selected data source, up to 99 characters; empty for none.
    std::string SelectedName() const {
        HWND list = Item(IDC_DATASOURCE_PICKER_LIST);
        char name[kNameSize] = {};
        const int index = Korvel_GetBoxIndex(list);
        if (index >= 0) Korvel_GetBoxEntry(list, index, name, sizeof name);
        return name;
    }

    // A click on the entry already shown keeps what the user typed for it.
    void ShowRememberedUser() {
        std::string name = SelectedName();
        if (!shownFor_.empty() && name == shownFor_) return;
        SetItemText(window(), IDC_DATASOURCE_PICKER_USER, RememberedUser(name.c_str()).c_str());
        SetItemText(window(), IDC_DATASOURCE_PICKER_PASSWORD, "");
        shownFor_ = std::move(name);
    }

    void Confirm() {
        const std::string name = SelectedName();
        if (name.empty()) {
            LibraryMessage(msg::SELECT_DATA_SOURCE);
            SendMessageA(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(IDC_DATASOURCE_PICKER_LIST)), TRUE);
            return;
        }
        DataSourceRecord chosen = record_;
        KorvelCopyString(chosen.DataSourceName, name.c_str(), sizeof chosen.DataSourceName);
        GetDlgItemTextA(window(), IDC_DATASOURCE_PICKER_USER, chosen.UserId, sizeof chosen.UserId);
        GetDlgItemTextA(window(), IDC_DATASOURCE_PICKER_PASSWORD, chosen.Password, sizeof chosen.Password);
        RememberChoice(chosen);

        SQLHENV henv = SQL_NULL_HENV;
        SQLHDBC hdbc = SQL_NULL_HDBC;
        const bool connected = Kodbc_ConnectDataSource(&chosen, &henv, &hdbc) == KODBC_CONNECTED;
        Kodbc_DisconnectDataSource(&henv, &hdbc);
        if (!connected) return;  // the connection has shown why; the user may correct the choice
        record_ = chosen;
        End(KODBC_DIALOG_OK);
    }

    DataSourceRecord record_;
    std::string shownFor_;  // the data source whose user the fields show
};

} // namespace

int PickDataSource(HWND owner, DataSourceRecord &record) {
    DataSourcePicker picker(record);
    if (picker.Run(IDD_DATASOURCE_PICKER, owner) != KODBC_DIALOG_OK) return KODBC_DIALOG_CANCEL;
    record = picker.record();
    return KODBC_DIALOG_OK;
}

} // namespace kodbc::tools

extern "C" KODBC_API int KODBC_CALL Kodbc_DataSourceDialog(DataSourceRecord *record) {
    if (!record) return KODBC_DIALOG_CANCEL;
    try {
        return kodbc::tools::PickDataSource(Korvel_ActiveWindow(), *record);
    } catch (...) {
        return KODBC_DIALOG_CANCEL;
    }
}
