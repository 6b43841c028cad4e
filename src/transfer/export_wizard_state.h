// The export wizard's state and what its five pages decide: the table,
// the conditions, the fields, the file and its format, the count. The
// pages only move data between their controls and this state; the file is
// written by export_file.h after "Fertigstellen".
#pragma once

#include "transfer/export_file.h"
#include "wizards/record_wizard_common.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kodbc::transfer {

inline constexpr int kExportFileNameSize = 300;

struct ExportWizardState {
    std::intptr_t wizard = 0;     // the frame's handle, stored on every callback
    SQLHDBC hdbc = nullptr;
    TableRecord table{};          // the caller's record; the chosen table
    std::int32_t options = 0;     // the caller's third argument, passed along
    char lastAnalysed[wizards::kAnalysedNameSize] = {};  // the table the conditions and fields belong to
    wizards::OwnedText selDesc;   // the conditions
    wizards::OwnedText fieldList; // "name\ttype\t…" for the condition grid
    std::vector<ExportField> fields;
    std::string fileName;         // at most kExportFileNameSize-1 characters
    ExportFormat format;
    long count = 0;               // the records page 5 announced; bounds the writing
};

// The caller's record and options, the wizard's defaults and the last
// file name (HKEY_CURRENT_USER, the library's key, subkey "Export",
// "FileName"). Null after message 1600.
std::unique_ptr<ExportWizardState> CreateExportWizardState(SQLHDBC hdbc, const TableRecord *table,
                                                           std::int32_t options) noexcept;

void SelectTable(ExportWizardState &state, const char *name) noexcept;
wizards::PageDecision LeaveTablePage(ExportWizardState &state, unsigned direction,
                                           const char *selected) noexcept;

// Another table than the one analysed last: its conditions are emptied and
// its fields read again (export names preset). The grid is then filled
// from selDesc and fieldList.
void ActivateExportConditionPage(ExportWizardState &state) noexcept;

// Forwards: at least one exported field with a name, else 3701.
wizards::PageDecision LeaveExportFieldsPage(const ExportWizardState &state, unsigned direction) noexcept;

// The texts of the fields list: the field's name and its export name, or
// "<wird nicht exportiert>".
std::string ExportNameText(const ExportField &field);

// The field dialog's type display: the library type whose number equals
// the field's ODBC type number (so INTEGER, 4, reads "Datum/Zeit"); empty
// where there is none. The applications' users know the display this way.
std::string ExportFieldTypeText(const ExportField &field);
// "OK" in the field dialog: an empty export name is refused with 3703
// whether or not the field is exported; else both are taken over.
wizards::PageDecision TakeExportFieldChoice(ExportField &field, const std::string &exportName, bool exported);

// Forwards: an empty file name is refused with 3702; else it is kept and
// remembered in the registry.
wizards::PageDecision LeaveExportFilePage(ExportWizardState &state, unsigned direction,
                                          const std::string &fileName) noexcept;

// Page 5: counts the records under the conditions, keeps the count and
// gives the text (string 3704).
std::string ExportFinishText(ExportWizardState &state);

// After "Fertigstellen": the file, bounded by the count of page 5.
bool RunExportWizard(const ExportWizardState &state, wizards::WizardProgress &progress) noexcept;

} // namespace kodbc::transfer
