// The table page, counting and the final statement of the record wizards.
#include "wizards/record_wizard_common.h"

#include "internal/driver_info.h"
#include "internal/execution.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_seldesc.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_tableops.h>

#include <cstdio>
#include <cstring>
#include <new>
#include <strings.h>

namespace kodbc::wizards {

PageDecision GoOn() noexcept { return PageDecision{}; }

PageDecision Stay(int messageId, PageFocus focus) noexcept {
    LibraryMessage(messageId);
    return PageDecision{false, messageId, focus};
}

bool OwnedText::allocate(int size) noexcept {
    text.reset(new (std::nothrow) char[static_cast<std::size_t>(size)]);
    capacity = text ? size : 0;
    clear();
    return text != nullptr;
}

void CopyTableRecord(TableRecord &to, const TableRecord *from) noexcept {
    if (from) std::memcpy(&to, from, sizeof to);
    else std::memset(&to, 0, sizeof to);
    to.Object.DbObjectName[sizeof to.Object.DbObjectName - 1] = '\0';
}

void StoreTableName(TableRecord &table, const char *name) noexcept {
    korvel::BoundedText(table.Object.DbObjectName, sizeof table.Object.DbObjectName).append(name);
}

PageDecision CheckTableChoice(TableRecord &table, unsigned direction, const char *selected) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    if (!selected || !*selected) return Stay(msg::SELECT_TABLE, PageFocus::TableList);
    StoreTableName(table, selected);
    return GoOn();
}

bool ReadFieldList(SQLHDBC hdbc, const char *table, OwnedText &list) noexcept {
    if (!list.get()) return false;
    list.clear();
    // The types go with the names: the descriptor lines carry them, and the
    // constants of a condition are converted by them.
    if (Kodbc_GetFields(hdbc, table, KODBC_FIELDS_WITH_TYPE, "\t", list.get(), list.capacity) == KODBC_SUCCESS)
        return true;
    list.clear();
    return false;
}

long CountSelectedRecords(SQLHDBC hdbc, const char *table, const char *selDesc) noexcept {
    std::unique_ptr<char[]> where(new (std::nothrow) char[kCountWhereSize]);
    if (!where) return -1;
    if (Kodbc_SelDesc_To_WhereClause(hdbc, selDesc, where.get(), kCountWhereSize) != 0) return -1;
    return Kodbc_GetRecordCountExt(hdbc, table, where.get(), 0);
}

bool BuildRecordStatement(SQLHDBC hdbc, const char *sqlTemplate, const char *table, const char *setClause,
                          const char *selDesc, char (&statement)[kStatementSize]) noexcept {
    statement[0] = '\0';
    char where[kStatementSize];
    if (Kodbc_SelDesc_To_WhereClause(hdbc, selDesc, where, sizeof where) != 0) return false;
    Kodbc_SprintfSqlStatement(hdbc, statement, sizeof statement, sqlTemplate, table, setClause, nullptr, nullptr,
                              nullptr, nullptr, nullptr, nullptr);
    if (where[0]) {
        auto text = korvel::BoundedText::continuing(statement, sizeof statement);
        text.append(" WHERE (");
        text.append(where);
        text.append(')');
    }
    return true;
}

bool RunRecordStatement(SQLHDBC hdbc, const char *statement) noexcept {
    if (!hdbc || !statement) return false;
    odbc::Statement handle(hdbc);
    if (!handle.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return false;
    }
    if (Korvel_DumpSqlStatement(statement, kStatementSize) != 1) return false;
    return ExecuteStatement(handle, statement, nullptr) == ExecOutcome::Executed;
}

void FormatCountText(int stringId, long count, char *text, int size) noexcept {
    if (!text || size < 1) return;
    char format[2 * kPageTextSize];
    LoadLibraryString(LibraryInstance(), stringId, format, sizeof format);
    std::snprintf(text, static_cast<std::size_t>(size), format, count);
}

SQLHDBC SourceQueryConnection(SQLHDBC source, SQLHDBC destination) noexcept {
    if (source == destination) return source;
    constexpr int kInfoSize = 128;  // data-source and user names as the driver reports them
    char sourceName[kInfoSize], destinationName[kInfoSize], sourceUser[kInfoSize], destinationUser[kInfoSize];
    const bool same = GetInfoText(source, SQL_DATA_SOURCE_NAME, sourceName, kInfoSize) &&
                      GetInfoText(destination, SQL_DATA_SOURCE_NAME, destinationName, kInfoSize) &&
                      strcasecmp(sourceName, destinationName) == 0 &&
                      GetInfoText(source, SQL_USER_NAME, sourceUser, kInfoSize) &&
                      GetInfoText(destination, SQL_USER_NAME, destinationUser, kInfoSize) &&
                      std::strcmp(sourceUser, destinationUser) == 0;
    return same ? destination : source;
}

} // namespace kodbc::wizards
