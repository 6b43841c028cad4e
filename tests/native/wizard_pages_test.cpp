// What the import, export and add-records pages show and enable, without a window.
#include "test_support.h"

#include "transfer/export_wizard_state.h"
#include "transfer/import_wizard_state.h"
#include "wizards/add_records.h"

namespace kodbc::test {
namespace {

using namespace wizards;
using Texts = std::vector<std::string>;

TEST(WizardPages, ImportRowsExportTypesAndAddRecordsChoices) {
    transfer::ImportField field;
    field.sourceName = "Nr";
    field.targetName = "Nummer";
    EXPECT_EQ(ImportFieldRow(field), (Texts{"Nr", "Nummer", "VarText (255)", "VarText (255)", "Nein", "Ja", "Nein"}));
    field.targetType = KODBC_TYPE_INTEGER;
    field.targetLength = 0;
    field.autoIncrement = field.fileContent = true;
    field.imported = false;
    EXPECT_EQ(ImportFieldRow(field), (Texts{"Nr", "Nummer", "VarText (255)", "Ganzzahl", "Ja", "Nein", "Ja"}));
    // 12 is ODBC's VARCHAR, which no library type has: no type is shown.
    for (const auto &[sqlType, shown] : {std::pair{KODBC_TYPE_DATETIME, "Datum/Zeit"}, {12, ""}})
        EXPECT_EQ(transfer::ExportFieldTypeText({"f", "f", sqlType, true}), shown) << sqlType;

    EXPECT_TRUE(IdFieldListsEnabled(kRecordModeReplace));
    EXPECT_FALSE(IdFieldListsEnabled(kRecordModeAdd));
    AddRecField fill;
    EXPECT_TRUE(IsFillChoiceEnabled(fill, kFillFixedValue, kFillFixedValue));
    EXPECT_FALSE(IsFillChoiceEnabled(fill, kFillFixedValue, kFillSourceField));
    fill.readOnly = true;
    EXPECT_FALSE(IsFillChoiceEnabled(fill, kFillFixedValue, kFillFixedValue));
}

} // namespace
} // namespace kodbc::test
