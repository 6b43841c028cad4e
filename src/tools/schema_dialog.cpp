// Dialog 10056: the schema picker. The combo box offers the schemata of the
// connection but takes any text, since a user may name a schema that holds
// no table yet.
#include "tools/picker_dialog_ids.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"
#include "internal/modal_dialog.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_tools.h>

#include <cstring>
#include <string>

namespace kodbc::tools {
namespace {

constexpr int kSchemaSize = 100;

class SchemaPicker : public ModalDialog {
public:
    SchemaPicker(SQLHDBC hdbc, const char *schema) : hdbc_(hdbc), schema_(schema, strnlen(schema, kSchemaSize - 1)) {}
    const std::string &schema() const { return schema_; }

private:
    BOOL OnInit() override {
        HWND box = Item(IDC_SCHEMA_PICKER_BOX);
        SendMessageA(box, CB_LIMITTEXT, kSchemaSize - 1, 0);
        Kodbc_FillSchemataBox(hdbc_, box);
        Korvel_SetBoxIndex(box, 0);
        SetWindowTextA(box, schema_.c_str());
        return TRUE;
    }

    bool OnCommand(int controlId, int notification) override {
        if (controlId != IDC_SCHEMA_PICKER_OK) return ModalDialog::OnCommand(controlId, notification);
        schema_ = ItemText(IDC_SCHEMA_PICKER_BOX).substr(0, kSchemaSize - 1);
        End(KODBC_DIALOG_OK);
        return true;
    }

    SQLHDBC hdbc_;
    std::string schema_;
};

} // namespace
} // namespace kodbc::tools

extern "C" KODBC_API int KODBC_CALL Kodbc_SelectDbaseSchema(HWND owner, SQLHDBC hdbc, char *schema, int, int) {
    if (!schema) return KODBC_DIALOG_CANCEL;
    try {
        kodbc::tools::SchemaPicker picker(hdbc, schema);
        if (picker.Run(IDD_SCHEMA_PICKER, owner) != KODBC_DIALOG_OK) return KODBC_DIALOG_CANCEL;
        KorvelCopyString(schema, picker.schema().c_str(), kodbc::tools::kSchemaSize);
        return KODBC_DIALOG_OK;
    } catch (...) {
        return KODBC_DIALOG_CANCEL;
    }
}
