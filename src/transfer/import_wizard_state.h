// The import-table wizard's state and what its pages decide: the kind of
// source, the source itself (another data source's table, a text file or
// a selection file), the fields, the new table's name. The pages only move
// data between their controls and this state; fields are discovered and
// records read by import_run.h after "Fertigstellen", as for the
// command-line tool.
#pragma once

#include "transfer/import_run.h"
#include "wizards/record_wizard_common.h"

#include <kodbc/kodbc_types.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kodbc::transfer {

inline constexpr const char *kImportSection = "Import";
inline constexpr int kImportFileNameSize = 300;
inline constexpr int kImportTableNameSize = 50;

// The kinds in the order of the first page's choices; "Type" keeps the number.
enum class ImportSource { Table = 0, Text = 1, Sdi = 2, Sel = 3 };

// Filter bits of the table page's check boxes "&Tabellen", "Ab&fragen", "A&lle".
inline constexpr int kImportFilterTables = 1;
inline constexpr int kImportFilterQueries = 2;
inline constexpr int kImportFilterAll = 16;

struct ImportWizardState {
    std::intptr_t wizard = 0;    // the frame's handle, stored on every callback
    SQLHDBC hdbc = nullptr;      // where the new table goes
    ImportSource kind = ImportSource::Table;
    DataSourceRecord source{};   // the table source's data source
    std::string sourceTable;     // at most kImportTableNameSize-1 characters
    int sourceFilter = kImportFilterTables | kImportFilterQueries;
    SQLHENV sourceEnv = nullptr;
    SQLHDBC sourceDbc = nullptr;
    std::string textFile, sdiFile, selFile;  // at most kImportFileNameSize-1 characters each
    ImportTextFormat format;
    std::string tableName;       // the new table, at most kImportTableNameSize-1 characters
    ImportFieldList fields;
    ContactConversion conversion;  // the SDI file's, as its discovery left it
    // What the fields were discovered from: the text file's format
    // description, the selection file's name or "<data source>.<table>",
    // and the kind; empty before the first discovery.
    std::string discovered;
    ImportSource discoveredKind = ImportSource::Table;
    int dragRow = -1;            // the field row being dragged on the fields page

    ImportWizardState() = default;
    ImportWizardState(const ImportWizardState &) = delete;
    ImportWizardState &operator=(const ImportWizardState &) = delete;
    ~ImportWizardState();  // disconnects the source
};

// The connection and what the user chose last time (HKEY_CURRENT_USER, the
// library's key, subkey "Import"). Null after 1600.
std::unique_ptr<ImportWizardState> CreateImportWizardState(SQLHDBC hdbc) noexcept;

// The pages the kind shows besides the kind, fields, name and finish pages:
// a table source the data-source and table pages, a text source the text
// page, SDI and SEL the selection-file page.
struct ImportSourcePages {
    bool dataSource, table, text, selection;
};
ImportSourcePages SourcePagesOf(ImportSource kind) noexcept;

// Forwards: the kind is taken and remembered as "Type".
wizards::PageDecision LeaveImportKindPage(ImportWizardState &state, unsigned direction, ImportSource kind) noexcept;

// Activating drops the source connection; leaving forwards connects to the
// data source entered and remembers it (1608 for an empty name; a failed
// connection has shown its error).
void ActivateImportDataSourcePage(ImportWizardState &state) noexcept;
wizards::PageDecision LeaveImportDataSourcePage(ImportWizardState &state, unsigned direction,
                                                const DataSourceRecord &entered) noexcept;

int ImportFilterFromChecks(bool tables, bool queries, bool all) noexcept;

// Forwards: 1625 without a table; else it is remembered as "Table", its
// fields are read when data source or table changed, and the new table's
// name is preset to it when none was given.
wizards::PageDecision LeaveImportTablePage(ImportWizardState &state, unsigned direction,
                                           const std::string &table) noexcept;

// Forwards: 3702 without a file name; else it is remembered ("TextFile",
// "SdiFile" or "SelFile" by the kind), the fields are discovered again
// when the format description (the file's name for a selection file) or
// the kind changed since the last discovery (a failure keeps the page),
// and the new table's name is preset to the file's name without folder and
// extension when none was given.
wizards::PageDecision LeaveImportFilePage(ImportWizardState &state, unsigned direction,
                                          const std::string &fileName) noexcept;

// The file name the file page of the current kind shows.
const std::string &ImportFileName(const ImportWizardState &state) noexcept;
// The string of the open-file dialog's filter for the current kind.
int ImportFileFilter(const ImportWizardState &state) noexcept;

// The texts of a field's row: "Feld", "Importieren als", "Typ",
// "Importieren als Typ", "AutoInc", "Import", "Datei auspacken".
std::vector<std::string> ImportFieldRow(const ImportField &field);

// Moves a field to another place (the fields between close up); its new
// row, or -1 when it cannot move there.
int MoveImportField(ImportFieldList &fields, int from, int to) noexcept;

// Forwards: the field checks; the first refusal is shown with its field's
// row to select (focusRow) and keeps the page.
wizards::PageDecision LeaveImportFieldsPage(const ImportWizardState &state, unsigned direction) noexcept;

// Forwards: the name must be one a new table may have (1625, 1616).
wizards::PageDecision LeaveImportNamePage(ImportWizardState &state, unsigned direction,
                                          const std::string &name) noexcept;

// "OK" in the field dialog: the target's name, type (a code of the
// data-type table), length (text; taken when it is a number above 0) and
// flags. Returns false for a type outside the table (nothing changed).
struct ImportFieldChoice {
    std::string name;
    int type = KODBC_TYPE_VAR_TEXT;
    std::string length;
    bool imported = true, fileContent = false, noFileMessage = true, autoIncrement = false;
};
bool TakeImportFieldChoice(ImportField &field, const ImportFieldChoice &choice) noexcept;

// After "Fertigstellen": creates the table and writes the records of the
// source under progress. True when the table was created and no record
// failed (a cancel keeps what was written and counts as done).
bool RunImportWizard(ImportWizardState &state, wizards::WizardProgress &progress) noexcept;

} // namespace kodbc::transfer
