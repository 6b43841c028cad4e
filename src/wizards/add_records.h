// The add-records wizard without its windows: the context of one run, the
// decisions of its pages and the texts they show, and building the field
// mapping. The Windows pages only move data between their controls and
// these functions; the command-line tool calls the same ones.
#pragma once

#include "wizards/add_rec_field.h"
#include "wizards/record_wizard_common.h"

#include <kodbc/kodbc_types.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kodbc::wizards {

inline constexpr const char *kAddRecordsSection = "AddRecords";
inline constexpr int kSourceTableSize = 50;
inline constexpr int kAnalysedKeySize = 300;
inline constexpr int kAnalysedKeyLength = 150;   // the key is cut to this many characters
inline constexpr int kIdFieldSize = 100;

// Source-table filter bits of the check boxes "&Tabellen", "Ab&fragen", "A&lle".
inline constexpr int kSourceFilterTables = 1;
inline constexpr int kSourceFilterQueries = 2;
inline constexpr int kSourceFilterAll = 16;

struct AddRecordsContext {
    intptr_t wizard = 0;                         // the frame's handle of the run
    SQLHDBC destination = nullptr;
    TableRecord table{};                         // the caller's record; the chosen table goes into its name
    DataSourceRecord source{};
    char sourceTable[kSourceTableSize] = {};
    SQLHENV sourceEnv = nullptr;
    SQLHDBC sourceDbc = nullptr;
    int32_t sourceFilter = kSourceFilterTables | kSourceFilterQueries;
    AddRecFieldList fields;
    char analysedKey[kAnalysedKeySize] = {};
    int32_t recordMode = kRecordModeAdd;
    char sourceIdField[kIdFieldSize] = {};
    char destIdField[kIdFieldSize] = {};
    bool batch = false;                          // one transaction, all or nothing (RunAddRecords)

    AddRecordsContext() = default;
    AddRecordsContext(const AddRecordsContext &) = delete;
    AddRecordsContext &operator=(const AddRecordsContext &) = delete;
    // Disconnects the source; the list frees its entries.
    ~AddRecordsContext();
};

// A new context for the destination connection and the caller's table
// record (null: an empty one), with the remembered source data source,
// source table and identifying fields read from the registry. Null when
// out of memory (message 1600 shown).
std::unique_ptr<AddRecordsContext> CreateAddRecordsContext(SQLHDBC destination, const TableRecord *table) noexcept;

// Destination table page: table is the selected entry (null or empty: none).
PageDecision LeaveDestinationTablePage(AddRecordsContext &context, const char *table) noexcept;

// Source data-source page. Activating drops any source connection held;
// leaving connects to the data source entered, remembers it under
// "AddRecords" and goes on, or stays (1608 for an empty name; a failed
// connection has shown its error).
void ActivateSourceDataSourcePage(AddRecordsContext &context) noexcept;
PageDecision LeaveSourceDataSourcePage(AddRecordsContext &context, const DataSourceRecord &entered) noexcept;

// Source table page. The filter from the three check boxes; leaving stores
// the table, remembers it, and rebuilds the mapping only when data source
// and table differ (without regard to case) from those it was built for.
int SourceFilterFromChecks(bool tables, bool queries, bool all) noexcept;
PageDecision LeaveSourceTablePage(AddRecordsContext &context, const char *table) noexcept;

// Builds the mapping for the destination table and the source table:
// one entry per destination column, same-named source fields preset. False
// after a message (1617, 1600) or an ODBC error (shown).
bool BuildMapping(AddRecordsContext &context) noexcept;

// Mapping page. Rows are the non-null entries in list order.
int MappingRowCount(const AddRecFieldList &fields) noexcept;
AddRecField *MappingRowEntry(AddRecFieldList &fields, int row) noexcept;
// The four column texts of a row: destination name, destination type,
// source (fixed value in quotes or the source field), source type (the
// caption "Fester Wert" for a fixed value).
struct MappingRowTexts {
    std::string destination, destinationType, source, sourceType;
};
MappingRowTexts MappingRowText(const AddRecField &field);
// "Feld leer lassen" on the selected rows.
void LeaveRowsEmpty(AddRecFieldList &fields, const std::vector<int> &rows) noexcept;
// Leaving forwards: 1633 when no source field is mapped, 1630 and the
// failing row when a mapped type makes no sense. The last entry is never
// checked.
PageDecision LeaveMappingPage(AddRecordsContext &context) noexcept;

// The type text of a column: the type's display name, and its length in
// parentheses when above 0.
std::string TypeText(int type, int length);

// Field properties dialog: which fill choices are enabled, and storing the
// user's choice into the entry (the source field's type and length are
// read from the source table). Nothing changes for a read-only entry.
bool IsFillChoiceEnabled(const AddRecField &field, int checkedMode, int choiceMode) noexcept;
bool ApplyFieldChoice(AddRecField &field, int mode, const char *fixedValue, const char *sourceField) noexcept;

// Identifying fields page: remembers both names and goes on in every case;
// in replace mode an empty name shows 1632 first.
bool IdFieldListsEnabled(int recordMode) noexcept;
PageDecision LeaveIdFieldsPage(AddRecordsContext &context, int recordMode, const char *sourceIdField,
                               const char *destIdField) noexcept;

// Summary page: string 2160 with the source table's record count.
std::string SummaryText(const AddRecordsContext &context);

} // namespace kodbc::wizards
