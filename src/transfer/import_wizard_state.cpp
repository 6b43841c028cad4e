#include "transfer/import_wizard_state.h"
#include "transfer/import_values.h"

#include "tabledesign/create_table.h"

#include "internal/datatypes.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <strings.h>

namespace kodbc::transfer {
namespace {

using wizards::GoOn;
using wizards::IsLeavingForwards;
using wizards::PageDecision;
using wizards::Stay;

constexpr int kTextSize = 400;

std::string ReadSetting(const char *name) {
    char text[kTextSize] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kImportSection, name, "", text, sizeof text);
    return text;
}

void WriteSetting(const char *name, const std::string &value) {
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kImportSection, name, value.c_str());
}

std::string Cut(const std::string &text, int size) {
    return text.substr(0, static_cast<std::size_t>(size - 1));
}

std::string LibraryText(int id) {
    char text[kTextSize] = {};
    LoadLibraryString(LibraryInstance(), id, text, sizeof text);
    return text;
}

// The type's name, with the length for the types that take one.
std::string TypeText(int type, int length) {
    const DataTypeRow *row = FindDataType(type);
    char text[kTextSize] = {};
    DataTypeText(type, row && row->lengthRequired ? length : 0, text, sizeof text);
    return text;
}

// The file's name without folder and extension.
std::string BaseNameOf(const std::string &fileName) {
    std::string name = fileName.substr(FolderOf(fileName).size());
    const std::size_t dot = name.rfind('.');
    if (dot != std::string::npos && dot > 0) name.resize(dot);
    return name;
}

void PresetTableName(ImportWizardState &state, const std::string &name) {
    if (state.tableName.empty()) state.tableName = Cut(name, kImportTableNameSize);
}

PageDecision StayQuietly() {
    PageDecision decision;
    decision.goOn = false;
    return decision;
}

// The fields of the current kind's source, for the key discovered; kept
// as they are (with the user's edits) when the key and kind are the same
// as at the last discovery.
bool Discover(ImportWizardState &state, const std::string &key) {
    if (!state.discovered.empty() && state.discovered == key && state.discoveredKind == state.kind) return true;
    ImportFieldList fields;
    ContactConversion conversion = state.conversion;
    bool ok = false;
    switch (state.kind) {
    case ImportSource::Table: ok = DiscoverTableFields(state.sourceDbc, state.sourceTable.c_str(), fields); break;
    case ImportSource::Text: ok = DiscoverTextFields(state.textFile.c_str(), state.format, fields); break;
    case ImportSource::Sdi:
        conversion = ReadContactConversion();
        ok = DiscoverSdiFields(state.sdiFile.c_str(), fields, conversion);
        break;
    case ImportSource::Sel: ok = DiscoverSelFields(state.selFile.c_str(), fields); break;
    }
    if (!ok) return false;
    if (fields.empty()) {
        if (state.kind == ImportSource::Table)
            LibraryMessage(msg::TABLE_HAS_NO_FIELDS, state.sourceTable.c_str());
        else
            LibraryMessage(msg::IMPORT_NO_FIELDS, ImportFileName(state).c_str());
        return false;
    }
    state.fields = std::move(fields);
    state.conversion = conversion;
    state.discovered = key;
    state.discoveredKind = state.kind;
    return true;
}

} // namespace

ImportWizardState::~ImportWizardState() { Kodbc_DisconnectDataSource(&sourceEnv, &sourceDbc); }

std::unique_ptr<ImportWizardState> CreateImportWizardState(SQLHDBC hdbc) noexcept {
    try {
        auto state = std::make_unique<ImportWizardState>();
        state->hdbc = hdbc;
        const long type = std::strtol(ReadSetting("Type").c_str(), nullptr, 10);
        if (type >= 0 && type <= static_cast<long>(ImportSource::Sel)) state->kind = static_cast<ImportSource>(type);
        Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kRegistryKey, 0, kImportSection, nullptr, &state->source);
        state->sourceTable = Cut(ReadSetting("Table"), kImportTableNameSize);
        state->textFile = Cut(ReadSetting("TextFile"), kImportFileNameSize);
        state->sdiFile = Cut(ReadSetting("SdiFile"), kImportFileNameSize);
        state->selFile = Cut(ReadSetting("SelFile"), kImportFileNameSize);
        return state;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return nullptr;
    }
}

ImportSourcePages SourcePagesOf(ImportSource kind) noexcept {
    return {kind == ImportSource::Table, kind == ImportSource::Table, kind == ImportSource::Text,
            kind == ImportSource::Sdi || kind == ImportSource::Sel};
}

PageDecision LeaveImportKindPage(ImportWizardState &state, unsigned direction, ImportSource kind) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    state.kind = kind;
    try {
        WriteSetting("Type", std::to_string(static_cast<int>(kind)));
    } catch (...) {
    }
    return GoOn();
}

void ActivateImportDataSourcePage(ImportWizardState &state) noexcept {
    Kodbc_DisconnectDataSource(&state.sourceEnv, &state.sourceDbc);
}

PageDecision LeaveImportDataSourcePage(ImportWizardState &state, unsigned direction,
                                       const DataSourceRecord &entered) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    std::memcpy(&state.source, &entered, sizeof state.source);
    state.source.DataSourceName[sizeof state.source.DataSourceName - 1] = '\0';
    if (state.source.DataSourceName[0] == '\0') return Stay(msg::SELECT_DATA_SOURCE);
    Kodbc_DisconnectDataSource(&state.sourceEnv, &state.sourceDbc);
    if (Kodbc_ConnectDataSource(&state.source, &state.sourceEnv, &state.sourceDbc) != KODBC_CONNECTED)
        return StayQuietly();
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kRegistryKey, 0, kImportSection, &state.source);
    return GoOn();
}

int ImportFilterFromChecks(bool tables, bool queries, bool all) noexcept {
    return (tables ? kImportFilterTables : 0) | (queries ? kImportFilterQueries : 0) | (all ? kImportFilterAll : 0);
}

PageDecision LeaveImportTablePage(ImportWizardState &state, unsigned direction, const std::string &table) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    if (table.empty()) return Stay(msg::SELECT_TABLE, wizards::PageFocus::TableList);
    try {
        state.sourceTable = Cut(table, kImportTableNameSize);
        WriteSetting("Table", state.sourceTable);
        // Data-source names are not case-sensitive, and neither are the
        // catalogue's table names on the databases the wizard serves.
        std::string key = std::string(state.source.DataSourceName) + "." + state.sourceTable;
        std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) { return std::tolower(c); });
        if (!Discover(state, key)) return StayQuietly();
        PresetTableName(state, state.sourceTable);
        return GoOn();
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return StayQuietly();
    }
}

const std::string &ImportFileName(const ImportWizardState &state) noexcept {
    switch (state.kind) {
    case ImportSource::Sdi: return state.sdiFile;
    case ImportSource::Sel: return state.selFile;
    default: return state.textFile;
    }
}

int ImportFileFilter(const ImportWizardState &state) noexcept {
    switch (state.kind) {
    case ImportSource::Sdi: return msg::IMPORT_SDI_FILE_FILTER;
    case ImportSource::Sel: return msg::IMPORT_SEL_FILE_FILTER;
    default: return msg::EXPORT_FILE_FILTER;
    }
}

PageDecision LeaveImportFilePage(ImportWizardState &state, unsigned direction, const std::string &fileName) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    if (fileName.empty()) return Stay(msg::SELECT_FILE);
    try {
        const std::string name = Cut(fileName, kImportFileNameSize);
        const char *setting = "TextFile";
        std::string key = name;
        switch (state.kind) {
        case ImportSource::Sdi:
            state.sdiFile = name;
            setting = "SdiFile";
            break;
        case ImportSource::Sel:
            state.selFile = name;
            setting = "SelFile";
            break;
        default:
            state.textFile = name;
            key = FormatDescription(name.c_str(), state.format);
            break;
        }
        WriteSetting(setting, name);
        if (!Discover(state, key)) return StayQuietly();
        PresetTableName(state, BaseNameOf(name));
        return GoOn();
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return StayQuietly();
    }
}

std::vector<std::string> ImportFieldRow(const ImportField &field) {
    const std::string yes = LibraryText(msg::YES), no = LibraryText(msg::NO);
    return {field.sourceName,
            field.targetName,
            TypeText(field.sourceType, field.sourceLength),
            TypeText(field.targetType, field.targetLength),
            field.autoIncrement ? yes : no,
            field.imported ? yes : no,
            field.fileContent ? yes : no};
}

int MoveImportField(ImportFieldList &fields, int from, int to) noexcept {
    const int count = static_cast<int>(fields.size());
    if (from < 0 || to < 0 || from >= count || to >= count || from == to) return -1;
    auto first = fields.begin();
    if (from < to)
        std::rotate(first + from, first + from + 1, first + to + 1);
    else
        std::rotate(first + to, first + from, first + from + 1);
    return to;
}

PageDecision LeaveImportFieldsPage(const ImportWizardState &state, unsigned direction) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    try {
        const ImportFieldCheck check = CheckImportFields(state.fields);
        if (!check.message) return GoOn();
        LibraryMessage(check.message, check.name.c_str());
        PageDecision decision = StayQuietly();
        decision.messageId = check.message;
        decision.focusRow = static_cast<int>(check.field);
        return decision;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return StayQuietly();
    }
}

PageDecision LeaveImportNamePage(ImportWizardState &state, unsigned direction, const std::string &name) noexcept {
    try {
        state.tableName = Cut(name, kImportTableNameSize);
        if (!IsLeavingForwards(direction)) return GoOn();
        const int refusal = tabledesign::CheckNewTableName(state.hdbc, state.tableName.c_str());
        return refusal ? Stay(refusal) : GoOn();
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return StayQuietly();
    }
}

bool TakeImportFieldChoice(ImportField &field, const ImportFieldChoice &choice) noexcept {
    const DataTypeRow *row = FindDataType(choice.type);
    if (!row) return false;
    try {
        field.targetName = choice.name;
    } catch (...) {
        return false;
    }
    field.targetType = choice.type;
    char *end = nullptr;
    const long length = std::strtol(choice.length.c_str(), &end, 10);
    if (end && *end == '\0' && length > 0 && length <= INT_MAX) field.targetLength = static_cast<int>(length);
    field.imported = choice.imported;
    field.fileContent = choice.fileContent;
    field.noFileMessage = choice.noFileMessage;
    field.autoIncrement = choice.autoIncrement;
    return true;
}

bool RunImportWizard(ImportWizardState &state, wizards::WizardProgress &progress) noexcept {
    try {
        const char *table = state.tableName.c_str();
        const std::string create = CreateImportTableStatement(state.hdbc, table, state.fields, CounterTypeName(state.hdbc));
        // The table is created once the source gave its first record.
        ImportRecordWriter writer(state.hdbc, table, state.fields, false, create);
        ImportCounts counts;
        bool ok = false;
        switch (state.kind) {
        case ImportSource::Table:
            ok = ImportTableRecords(wizards::SourceQueryConnection(state.sourceDbc, state.hdbc),
                                    state.sourceTable.c_str(), state.fields, writer, progress, LONG_MAX, counts);
            break;
        case ImportSource::Text:
            ok = ImportTextRecords(state.textFile.c_str(), state.format, state.fields, writer, progress, LONG_MAX,
                                   counts);
            break;
        case ImportSource::Sdi:
            ok = ImportSdiRecords(state.sdiFile.c_str(), state.fields, state.conversion, writer, progress, LONG_MAX,
                                  counts);
            break;
        case ImportSource::Sel:
            ok = ImportSelRecords(state.selFile.c_str(), state.fields, writer, progress, LONG_MAX, counts);
            break;
        }
        return ok && writer.Start();
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return false;
    }
}

} // namespace kodbc::transfer
