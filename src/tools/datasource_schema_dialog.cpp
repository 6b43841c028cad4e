// Dialog 10060: data source, user and schema in one place. While it is up
// it holds a connection of its own to the shown data source, because only
// a connection tells whether the database has schemata at all; the schema
// controls are usable only when it does.
#include "tools/datasource_dialog.h"
#include "tools/picker_dialog_ids.h"
#include "tools/remembered_user.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"
#include "internal/modal_dialog.h"
#include "internal/text.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_tools.h>

#include <cstring>
#include <memory>
#include <string>

namespace kodbc::tools {
namespace {

constexpr int kSchemaSize = 100;
constexpr int kStateErrorClass = 1;  // the file error report's class for state that could not be had

class SourceAndSchemaDialog : public ModalDialog {
public:
    SourceAndSchemaDialog(const DataSourceRecord *record, const char *schema, const char *title)
        : title_(title ? title : "") {
        if (record) record_ = *record;
        if (schema) schema_.assign(schema, strnlen(schema, kSchemaSize - 1));
    }
    ~SourceAndSchemaDialog() override { Disconnect(); }

    const DataSourceRecord &record() const { return record_; }
    const std::string &schema() const { return schema_; }

private:
    BOOL OnInit() override {
        if (!IsBlank(title_.c_str())) SetWindowTextA(window(), title_.c_str());
        ShowChoice();
        Connect();
        return TRUE;
    }

    bool OnCommand(int controlId, int notification) override {
        switch (controlId) {
        case IDC_SOURCE_SCHEMA_CHOOSE_DSN:
            if (PickDataSource(window(), record_) == KODBC_DIALOG_OK) {
                schema_.clear();  // a schema of the old data source means nothing to the new one
                ShowChoice();
                Connect();
            }
            return true;
        case IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA:
            ChooseSchema();
            return true;
        case IDC_SOURCE_SCHEMA_OK:
        case IDC_SOURCE_SCHEMA_CANCEL:
            Disconnect();
            End(controlId == IDC_SOURCE_SCHEMA_OK ? KODBC_DIALOG_OK : KODBC_DIALOG_CANCEL);
            return true;
        default:
            return ModalDialog::OnCommand(controlId, notification);
        }
    }

    void ShowChoice() {
        SetItemText(window(), IDC_SOURCE_SCHEMA_DSN, FieldText(record_.DataSourceName).c_str());
        SetItemText(window(), IDC_SOURCE_SCHEMA_USER, FieldText(record_.UserId).c_str());
        SetItemText(window(), IDC_SOURCE_SCHEMA_PASSWORD, FieldText(record_.Password).c_str());
        SetItemText(window(), IDC_SOURCE_SCHEMA_SCHEMA, schema_.c_str());
    }

    // Connects anew to the shown data source (its failure has been shown
    // by the connection) and enables what the connection allows.
    void Connect() {
        Disconnect();
        if (!IsBlank(FieldText(record_.DataSourceName))) Kodbc_ConnectDataSource(&record_, &henv_, &hdbc_);
        EnableSchemaControls();
    }

    void Disconnect() { Kodbc_DisconnectDataSource(&henv_, &hdbc_); }

    void EnableSchemaControls() {
        const bool schemata = Kodbc_GetSchemaUsage(hdbc_) > 0;
        for (int id : {IDC_SOURCE_SCHEMA_SCHEMA_LABEL, IDC_SOURCE_SCHEMA_SCHEMA, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA})
            EnableWindow(Item(id), schemata);
    }

    void ChooseSchema() {
        char schema[kSchemaSize] = {};
        KorvelCopyString(schema, schema_.c_str(), sizeof schema);
        if (Kodbc_SelectDbaseSchema(window(), hdbc_, schema, 0, 0) != KODBC_DIALOG_OK) return;
        schema_ = schema;
        SetItemText(window(), IDC_SOURCE_SCHEMA_SCHEMA, schema_.c_str());
        EnableSchemaControls();
    }

    std::string title_;
    DataSourceRecord record_{};
    std::string schema_;
    SQLHENV henv_ = SQL_NULL_HENV;
    SQLHDBC hdbc_ = SQL_NULL_HDBC;
};

} // namespace
} // namespace kodbc::tools

extern "C" KODBC_API int KODBC_CALL Kodbc_DataSourceAndSchemaDialog(HWND owner, DataSourceRecord *record, char *schema,
                                                                    int schemaSize, const char *title) {
    using kodbc::tools::SourceAndSchemaDialog;
    std::unique_ptr<SourceAndSchemaDialog> dialog;
    try {
        dialog = std::make_unique<SourceAndSchemaDialog>(record, schema, title);
    } catch (...) {
        kodbc::LibraryErrorHandler(owner, kodbc::tools::kStateErrorClass, nullptr);
        return KODBC_DIALOG_CANCEL;
    }
    try {
        if (dialog->Run(IDD_SOURCE_SCHEMA, owner) != KODBC_DIALOG_OK) return KODBC_DIALOG_CANCEL;
        if (record) *record = dialog->record();
        korvel::BoundedText out(schema, schemaSize);
        out.append(dialog->schema());
        return KODBC_DIALOG_OK;
    } catch (...) {
        return KODBC_DIALOG_CANCEL;
    }
}
