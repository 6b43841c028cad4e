#include "transfer/export_wizard_state.h"

#include "internal/datatypes.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_seldesc.h>
#include <kodbc/kodbc_tableops.h>

#include <memory>
#include <new>
#include <strings.h>

namespace kodbc::transfer {
namespace {

constexpr char kSettings[] = "Export";
constexpr int kWhereSize = 10000;
constexpr int kTextSize = 400;

std::string LibraryText(int id) {
    char text[kTextSize] = {};
    LoadLibraryString(LibraryInstance(), id, text, sizeof text);
    return text;
}

// The WHERE clause of the conditions; false when it cannot be formed.
bool WhereOf(const ExportWizardState &state, std::string &where) {
    auto text = std::make_unique<char[]>(kWhereSize);
    if (Kodbc_SelDesc_To_WhereClause(state.hdbc, state.selDesc.get() ? state.selDesc.get() : "", text.get(),
                                     kWhereSize) != 0)
        return false;
    where = text.get();
    return true;
}

} // namespace

std::unique_ptr<ExportWizardState> CreateExportWizardState(SQLHDBC hdbc, const TableRecord *table,
                                                           std::int32_t options) noexcept {
    try {
        auto state = std::make_unique<ExportWizardState>();
        if (!state->selDesc.allocate(wizards::kDescriptorCapacity) ||
            !state->fieldList.allocate(wizards::kFieldListCapacity))
            throw std::bad_alloc();
        state->hdbc = hdbc;
        wizards::CopyTableRecord(state->table, table);
        state->options = options;
        char fileName[kExportFileNameSize] = {};
        Korvel_ReadRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kSettings, "FileName", "", fileName,
                                  sizeof fileName);
        state->fileName = fileName;
        return state;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return nullptr;
    }
}

void SelectTable(ExportWizardState &state, const char *name) noexcept {
    wizards::StoreTableName(state.table, name);
}

wizards::PageDecision LeaveTablePage(ExportWizardState &state, unsigned direction,
                                           const char *selected) noexcept {
    return wizards::CheckTableChoice(state.table, direction, selected);
}

void ActivateExportConditionPage(ExportWizardState &state) noexcept {
    const char *table = state.table.Object.DbObjectName;
    if (strncasecmp(table, state.lastAnalysed, sizeof state.lastAnalysed) == 0) return;
    state.selDesc.clear();
    wizards::ReadFieldList(state.hdbc, table, state.fieldList);
    try {
        ReadExportFields(state.hdbc, table, state.fields);
    } catch (...) {
        state.fields.clear();
    }
    korvel::BoundedText(state.lastAnalysed, sizeof state.lastAnalysed).append(table);
}

wizards::PageDecision LeaveExportFieldsPage(const ExportWizardState &state, unsigned direction) noexcept {
    if (!wizards::IsLeavingForwards(direction) || HasNamedExportField(state.fields)) return wizards::GoOn();
    return wizards::Stay(msg::EXPORT_NAMED_FIELD_REQUIRED);
}

std::string ExportNameText(const ExportField &field) {
    return field.exported ? field.exportName : LibraryText(msg::EXPORT_NOT_EXPORTED);
}

std::string ExportFieldTypeText(const ExportField &field) {
    if (!FindDataType(field.sqlType)) return {};
    char name[kTextSize] = {};
    DataTypeDisplayName(field.sqlType, name, sizeof name);
    return name;
}

wizards::PageDecision TakeExportFieldChoice(ExportField &field, const std::string &exportName, bool exported) {
    if (exportName.empty()) return wizards::Stay(msg::EXPORT_NAME_REQUIRED);
    field.exportName = exportName;
    field.exported = exported;
    return wizards::GoOn();
}

wizards::PageDecision LeaveExportFilePage(ExportWizardState &state, unsigned direction,
                                          const std::string &fileName) noexcept {
    if (!wizards::IsLeavingForwards(direction)) return wizards::GoOn();
    if (fileName.empty()) return wizards::Stay(msg::SELECT_FILE);
    try {
        state.fileName = fileName.substr(0, kExportFileNameSize - 1);
    } catch (...) {
        return wizards::Stay(msg::OUT_OF_MEMORY);
    }
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kSettings, "FileName", state.fileName.c_str());
    return wizards::GoOn();
}

std::string ExportFinishText(ExportWizardState &state) {
    std::string where;
    state.count = WhereOf(state, where)
                      ? Kodbc_GetRecordCountExt(state.hdbc, state.table.Object.DbObjectName,
                                                where.empty() ? nullptr : where.c_str(), 0)
                      : 0;
    char text[kTextSize] = {};
    wizards::FormatCountText(msg::EXPORT_COUNT_TEXT, state.count, text, sizeof text);
    return text;
}

bool RunExportWizard(const ExportWizardState &state, wizards::WizardProgress &progress) noexcept {
    try {
        std::string where;
        if (!WhereOf(state, where)) return false;
        return WriteExportFile(state.hdbc, ExportStatement(state.hdbc, state.table.Object.DbObjectName, state.fields, where),
                               state.fields, state.format, state.fileName.c_str(), state.count, progress);
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return false;
    }
}

} // namespace kodbc::transfer
