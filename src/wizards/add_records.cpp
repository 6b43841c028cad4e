// The add-records wizard's context, page decisions, row texts and the
// building of its field mapping.
#include "wizards/add_records.h"
#include "wizards/value_conversion.h"

#include "catalog/catalog_internal.h"
#include "internal/datatypes.h"
#include "internal/library.h"
#include "internal/odbc_handles.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_tableops.h>

#include <cstdio>
#include <cstring>
#include <new>
#include <strings.h>

namespace kodbc::wizards {
namespace {

constexpr int kCatalogNameSize = 200;
constexpr int kTypeTextSize = 100;
constexpr int kSummarySize = 300;

void CopyName(char *to, int size, const char *from) noexcept { KorvelCopyString(to, from, size); }

void WriteSetting(const char *name, const char *value) noexcept {
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kAddRecordsSection, name, value);
}

void ReadSetting(const char *name, char *buffer, int size) noexcept {
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kAddRecordsSection, name, nullptr, buffer, size);
}

PageDecision StayOnPage(int messageId = 0, int focusRow = -1) noexcept {
    PageDecision decision;
    decision.goOn = false;
    decision.messageId = messageId;
    decision.focusRow = focusRow;
    return decision;
}

bool IsEmpty(const char *text) noexcept { return !text || !*text; }

// The destination's columns in catalogue order: name, SQL type and size
// (in characters, where the column properties would give bytes).
struct CatalogColumn {
    std::string name;
    int sqlType = 0;
    int size = 0;
};

bool ReadCatalogColumns(SQLHDBC hdbc, const char *table, std::vector<CatalogColumn> &columns) {
    odbc::Statement statement(hdbc);
    if (!statement.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return false;
    }
    SQLRETURN rc = KODBC_SQL(SQLColumns, statement.get(), static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0),
                             static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0),
                             reinterpret_cast<SQLCHAR *>(const_cast<char *>(table)), static_cast<SQLSMALLINT>(SQL_NTS),
                             static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0));
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement.get(), nullptr);
        return false;
    }
    while (odbc::succeeded(rc = KODBC_SQL(SQLFetch, statement.get()))) {
        CatalogColumn column;
        char name[kCatalogNameSize] = {};
        SQLLEN indicator = 0;
        SQLSMALLINT sqlType = 0;
        SQLINTEGER size = 0;
        KODBC_SQL(SQLGetData, statement.get(), static_cast<SQLUSMALLINT>(4), static_cast<SQLSMALLINT>(SQL_C_CHAR),
                  static_cast<SQLPOINTER>(name), static_cast<SQLLEN>(sizeof name), &indicator);
        KODBC_SQL(SQLGetData, statement.get(), static_cast<SQLUSMALLINT>(5), static_cast<SQLSMALLINT>(SQL_C_SSHORT),
                  static_cast<SQLPOINTER>(&sqlType), static_cast<SQLLEN>(sizeof sqlType), &indicator);
        KODBC_SQL(SQLGetData, statement.get(), static_cast<SQLUSMALLINT>(7), static_cast<SQLSMALLINT>(SQL_C_SLONG),
                  static_cast<SQLPOINTER>(&size), static_cast<SQLLEN>(sizeof size), &indicator);
        column.name = name;
        column.sqlType = sqlType;
        column.size = indicator == SQL_NULL_DATA ? 0 : size;
        columns.push_back(std::move(column));
    }
    if (rc != SQL_NO_DATA) {
        Kodbc_DisplayErrorHstmt(statement.get(), nullptr);
        return false;
    }
    return true;
}

// Presets the entry to a same-named source field when there is a usable one.
void PresetSameNamedSource(AddRecField &field, SQLHDBC source, const char *sourceTable) {
    if (field.readOnly || !source || IsEmpty(sourceTable)) return;
    if (Kodbc_DoesFieldExist(source, sourceTable, field.destinationName.c_str()) != 1) return;
    ColumnPropertiesRecord properties{};
    if (catalog::CatalogColumnProperties(source, sourceTable, field.destinationName.c_str(), &properties) !=
        KODBC_SUCCESS)
        return;
    if (properties.SqlDataType == 0 || properties.Length < 0) return;
    field.mode = kFillSourceField;
    field.sourceField = field.destinationName;
    field.sourceType = Kodbc_SqlDataTypeToKodbcDataType(properties.SqlDataType);
    field.sourceLength = properties.Length;
}

} // namespace

AddRecordsContext::~AddRecordsContext() {
    if (sourceEnv || sourceDbc) Kodbc_DisconnectDataSource(&sourceEnv, &sourceDbc);
}

std::unique_ptr<AddRecordsContext> CreateAddRecordsContext(SQLHDBC destination, const TableRecord *table) noexcept {
    std::unique_ptr<AddRecordsContext> context(new (std::nothrow) AddRecordsContext);
    if (!context) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return nullptr;
    }
    context->destination = destination;
    if (table) std::memcpy(&context->table, table, sizeof context->table);
    Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kRegistryKey, 0, kAddRecordsSection, nullptr,
                                     &context->source);
    ReadSetting("Table", context->sourceTable, sizeof context->sourceTable);
    ReadSetting("SourceIdField", context->sourceIdField, sizeof context->sourceIdField);
    ReadSetting("DestIdField", context->destIdField, sizeof context->destIdField);
    return context;
}

PageDecision LeaveDestinationTablePage(AddRecordsContext &context, const char *table) noexcept {
    if (IsEmpty(table)) {
        LibraryMessage(msg::SELECT_TABLE);
        return StayOnPage(msg::SELECT_TABLE);
    }
    CopyName(context.table.Object.DbObjectName, sizeof context.table.Object.DbObjectName, table);
    return {};
}

void ActivateSourceDataSourcePage(AddRecordsContext &context) noexcept {
    Kodbc_DisconnectDataSource(&context.sourceEnv, &context.sourceDbc);
}

PageDecision LeaveSourceDataSourcePage(AddRecordsContext &context, const DataSourceRecord &entered) noexcept {
    std::memcpy(&context.source, &entered, sizeof context.source);
    context.source.DataSourceName[sizeof context.source.DataSourceName - 1] = '\0';
    if (context.source.DataSourceName[0] == '\0') {
        LibraryMessage(msg::SELECT_DATA_SOURCE);
        return StayOnPage(msg::SELECT_DATA_SOURCE);
    }
    Kodbc_DisconnectDataSource(&context.sourceEnv, &context.sourceDbc);
    if (Kodbc_ConnectDataSource(&context.source, &context.sourceEnv, &context.sourceDbc) != KODBC_CONNECTED)
        return StayOnPage();
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kRegistryKey, 0, kAddRecordsSection, &context.source);
    return {};
}

int SourceFilterFromChecks(bool tables, bool queries, bool all) noexcept {
    return (tables ? kSourceFilterTables : 0) | (queries ? kSourceFilterQueries : 0) | (all ? kSourceFilterAll : 0);
}

PageDecision LeaveSourceTablePage(AddRecordsContext &context, const char *table) noexcept {
    if (IsEmpty(table)) {
        LibraryMessage(msg::SELECT_TABLE);
        return StayOnPage(msg::SELECT_TABLE);
    }
    CopyName(context.sourceTable, sizeof context.sourceTable, table);
    WriteSetting("Table", context.sourceTable);

    char key[kAnalysedKeyLength + 1];
    korvel::BoundedText text(key, sizeof key);
    text.append(context.source.DataSourceName);
    text.append('.');
    text.append(context.sourceTable);
    // Coming back with the same source keeps the user's choices; the
    // connection may have been made anew on the data-source page meanwhile.
    if (strcasecmp(key, context.analysedKey) == 0) {
        for (const auto &field : context.fields)
            if (field) field->sourceConnection = context.sourceDbc;
        return {};
    }
    if (!BuildMapping(context)) return StayOnPage();
    CopyName(context.analysedKey, sizeof context.analysedKey, key);
    return {};
}

bool BuildMapping(AddRecordsContext &context) noexcept {
    char table[sizeof context.table.Object.DbObjectName + 1];
    CopyName(table, sizeof table, context.table.Object.DbObjectName);
    table[sizeof table - 1] = '\0';
    const int count = Kodbc_GetFieldCount(context.destination, table);
    if (count <= 0) {
        LibraryMessage(msg::TABLE_HAS_NO_FIELDS, table);
        return false;
    }
    try {
        context.fields.clear();
        context.fields.resize(static_cast<std::size_t>(count));
        std::vector<CatalogColumn> columns;
        if (!ReadCatalogColumns(context.destination, table, columns)) return false;
        std::size_t slot = 0;
        for (const CatalogColumn &column : columns) {
            if (slot == context.fields.size()) break;
            auto field = std::make_unique<AddRecField>();
            ColumnPropertiesRecord properties{};
            const bool readable = catalog::CatalogColumnProperties(context.destination, table, column.name.c_str(),
                                                                   &properties) == KODBC_SUCCESS;
            field->destinationName = column.name;
            field->destinationType = Kodbc_SqlDataTypeToKodbcDataType(column.sqlType);
            field->destinationLength = column.size;
            field->readOnly = !readable || properties.AutoIncrement || !properties.Updatable;
            field->sourceConnection = context.sourceDbc;
            field->sourceTable = context.sourceTable;
            PresetSameNamedSource(*field, context.sourceDbc, context.sourceTable);
            context.fields[slot++] = std::move(field);
        }
        return true;
    } catch (const std::bad_alloc &) {
        context.fields.clear();
        LibraryMessage(msg::OUT_OF_MEMORY);
        return false;
    }
}

int MappingRowCount(const AddRecFieldList &fields) noexcept {
    int rows = 0;
    for (const auto &field : fields) rows += field ? 1 : 0;
    return rows;
}

AddRecField *MappingRowEntry(AddRecFieldList &fields, int row) noexcept {
    if (row < 0) return nullptr;
    for (const auto &field : fields) {
        if (!field) continue;
        if (row-- == 0) return field.get();
    }
    return nullptr;
}

std::string TypeText(int type, int length) {
    char text[kTypeTextSize];
    DataTypeText(type, length, text, sizeof text);
    return text;
}

MappingRowTexts MappingRowText(const AddRecField &field) {
    MappingRowTexts row;
    row.destination = field.destinationName;
    row.destinationType = TypeText(field.destinationType, field.destinationLength);
    if (field.readOnly) return row;
    if (field.mode == kFillFixedValue) {
        row.source = "'" + field.fixedValue + "'";
        char caption[kTypeTextSize];
        LoadLibraryString(LibraryInstance(), msg::FILL_FIXED_VALUE, caption, sizeof caption);
        row.sourceType = caption;
    } else if (field.mode == kFillSourceField) {
        row.source = field.sourceField;
        row.sourceType = TypeText(field.sourceType, field.sourceLength);
    }
    return row;
}

void LeaveRowsEmpty(AddRecFieldList &fields, const std::vector<int> &rows) noexcept {
    for (int row : rows)
        if (AddRecField *field = MappingRowEntry(fields, row)) field->mode = kFillLeaveEmpty;
}

PageDecision LeaveMappingPage(AddRecordsContext &context) noexcept {
    int mapped = 0;
    if (!IsEmpty(context.sourceTable))
        for (const auto &field : context.fields) mapped += field && field->readsSource() ? 1 : 0;
    if (mapped < 1) {
        LibraryMessage(msg::NO_FIELD_MAPPED);
        return StayOnPage(msg::NO_FIELD_MAPPED);
    }
    // The last destination field is left out of the check on purpose:
    // applications rely on being able to map anything into it.
    int row = 0;
    for (std::size_t i = 0; i + 1 < context.fields.size(); ++i) {
        const AddRecField *field = context.fields[i].get();
        if (!field) continue;
        if (!IsTypeCompatible(field->sourceType, field->destinationType)) {
            LibraryMessage(msg::TYPE_CONVERSION_SENSELESS, field->sourceField.c_str());
            return StayOnPage(msg::TYPE_CONVERSION_SENSELESS, row);
        }
        ++row;
    }
    return {};
}

bool IsFillChoiceEnabled(const AddRecField &field, int checkedMode, int choiceMode) noexcept {
    return !field.readOnly && checkedMode == choiceMode;
}

bool ApplyFieldChoice(AddRecField &field, int mode, const char *fixedValue, const char *sourceField) noexcept {
    if (field.readOnly) return false;
    try {
        switch (mode) {
        case kFillLeaveEmpty:
            break;
        case kFillFixedValue:
            field.fixedValue = fixedValue ? fixedValue : "";
            break;
        case kFillSourceField: {
            if (IsEmpty(sourceField)) return false;
            ColumnPropertiesRecord properties{};
            if (catalog::CatalogColumnProperties(field.sourceConnection, field.sourceTable.c_str(), sourceField,
                                                 &properties) != KODBC_SUCCESS)
                return false;
            field.sourceField = sourceField;
            field.sourceType = Kodbc_SqlDataTypeToKodbcDataType(properties.SqlDataType);
            field.sourceLength = properties.Length;
            break;
        }
        default:
            return false;
        }
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return false;
    }
    field.mode = mode;
    return true;
}

bool IdFieldListsEnabled(int recordMode) noexcept { return recordMode == kRecordModeReplace; }

PageDecision LeaveIdFieldsPage(AddRecordsContext &context, int recordMode, const char *sourceIdField,
                               const char *destIdField) noexcept {
    context.recordMode = recordMode;
    CopyName(context.sourceIdField, sizeof context.sourceIdField, sourceIdField);
    CopyName(context.destIdField, sizeof context.destIdField, destIdField);
    WriteSetting("SourceIdField", context.sourceIdField);
    WriteSetting("DestIdField", context.destIdField);
    PageDecision decision;
    // The user may go on all the same; the run then works with the empty name.
    if (recordMode == kRecordModeReplace && (!context.sourceIdField[0] || !context.destIdField[0])) {
        LibraryMessage(msg::SELECT_ID_FIELDS);
        decision.messageId = msg::SELECT_ID_FIELDS;
    }
    return decision;
}

std::string SummaryText(const AddRecordsContext &context) {
    const long count = Kodbc_GetRecordCount(context.sourceDbc, context.sourceTable, 0);
    char pattern[kSummarySize];
    LoadLibraryString(LibraryInstance(), msg::IMPORT_RECORD_COUNT, pattern, sizeof pattern);
    char text[kSummarySize];
    // The pattern is the library's own string 2160 with its one %ld.
    std::snprintf(text, sizeof text, pattern, count);
    return text;
}

} // namespace kodbc::wizards
