// The table page, counting and the final statement of the record wizards.
#include "wizards/record_wizard_common.h"

#include "internal/driver_info.h"
#include "internal/execution.h"
#include "internal/library.h"
#include "internal/odbc_call.h"

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

namespace {

constexpr char kDeleteTemplate[] = "DELETE from %t";
constexpr char kUpdateTemplate[] = "UPDATE %t SET %s";
constexpr std::size_t kFormattedArgumentChars = 299;  // what the formatter keeps of one argument
// The statement's head (two formatted arguments) and a condition that fits
// its own kStatementSize bytes.
constexpr int kWholeStatementSize = 3 * kStatementSize;

// The statement from its clauses into text; returns the length of the
// formatted head, before the condition.
std::size_t ComposeRecordStatement(SQLHDBC hdbc, const char *table, const char *set, const char *where, char *text,
                                   int size) {
    Kodbc_SprintfSqlStatement(hdbc, text, size, set ? kUpdateTemplate : kDeleteTemplate, table, set, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr);
    const std::size_t head = std::strlen(text);
    if (where[0]) {
        auto statement = korvel::BoundedText::continuing(text, size);
        statement.append(" WHERE (");
        statement.append(where);
        statement.append(')');
    }
    return head;
}

} // namespace

RecordStatement BuildRecordStatement(SQLHDBC hdbc, const char *table, const char *selDesc, const char *setDesc,
                                     char (&statement)[kStatementSize]) noexcept {
    statement[0] = '\0';
    char where[kStatementSize], set[kStatementSize] = "";
    if (Kodbc_SelDesc_To_WhereClause(hdbc, selDesc, where, sizeof where) != 0) return RecordStatement::NotFormed;
    if (setDesc) {
        Kodbc_OpDesc_To_SetClause(hdbc, setDesc, set, sizeof set);
        if (!set[0]) return RecordStatement::NotFormed;
    }
    ComposeRecordStatement(hdbc, table, setDesc ? set : nullptr, where, statement, sizeof statement);

    // The same at the length the records were counted with and the
    // assignments are given in.
    std::unique_ptr<char[]> wholeWhere(new (std::nothrow) char[kCountWhereSize]);
    std::unique_ptr<char[]> wholeSet(new (std::nothrow) char[kCountWhereSize]);
    std::unique_ptr<char[]> whole(new (std::nothrow) char[kWholeStatementSize]);
    if (!wholeWhere || !wholeSet || !whole) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return RecordStatement::NotFormed;
    }
    if (Kodbc_SelDesc_To_WhereClause(hdbc, selDesc, wholeWhere.get(), kCountWhereSize) != 0 ||
        std::strcmp(wholeWhere.get(), where) != 0)
        return RecordStatement::ConditionCut;
    if (setDesc) {
        Kodbc_OpDesc_To_SetClause(hdbc, setDesc, wholeSet.get(), kCountWhereSize);
        if (std::strlen(wholeSet.get()) > kFormattedArgumentChars || std::strcmp(wholeSet.get(), set) != 0)
            return RecordStatement::AssignmentsCut;
    }
    const std::size_t head =
        ComposeRecordStatement(hdbc, table, setDesc ? set : nullptr, where, whole.get(), kWholeStatementSize);
    if (std::strcmp(whole.get(), statement) == 0) return RecordStatement::Whole;
    // The statement's own room ran out: what it lost is at its end.
    return setDesc && std::strlen(statement) < head ? RecordStatement::AssignmentsCut : RecordStatement::ConditionCut;
}

int RecordStatementRefusal(SQLHDBC hdbc, const char *table, const char *selDesc, const char *setDesc) noexcept {
    char statement[kStatementSize];
    switch (BuildRecordStatement(hdbc, table, selDesc, setDesc, statement)) {
    case RecordStatement::ConditionCut: return msg::RECORD_CONDITION_TOO_LONG;
    case RecordStatement::AssignmentsCut: return msg::RECORD_ASSIGNMENTS_TOO_LONG;
    case RecordStatement::Whole:
    case RecordStatement::NotFormed: break;
    }
    return 0;
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

bool SharesSourceConnection(const ConnectionSharing &sharing) noexcept {
    if (!sharing.sameLogin) return false;
    return sharing.activeStatements == 0 || sharing.activeStatements > 1 || sharing.fileDatabase;
}

namespace {

constexpr int kInfoSize = 128;  // data-source, user and DBMS names as the driver reports them

// A numeric SQLGetInfo item; fallback when the driver does not answer.
SQLUSMALLINT InfoNumber(SQLHDBC hdbc, SQLUSMALLINT item, SQLUSMALLINT fallback) {
    SQLUSMALLINT value = 0;
    SQLSMALLINT length = 0;
    if (!odbc::succeeded(KODBC_SQL(SQLGetInfo, hdbc, item, static_cast<SQLPOINTER>(&value),
                                   static_cast<SQLSMALLINT>(sizeof value), &length)))
        return fallback;
    return value;
}

// File drivers say so; SQLite keeps the whole database in one file that a
// writer locks against every other connection, but reports itself as a
// server would.
bool IsFileDatabase(SQLHDBC hdbc) {
    if (InfoNumber(hdbc, SQL_FILE_USAGE, SQL_FILE_NOT_SUPPORTED) != SQL_FILE_NOT_SUPPORTED) return true;
    char name[kInfoSize];
    return GetInfoText(hdbc, SQL_DBMS_NAME, name, kInfoSize) && strcasecmp(name, "SQLite") == 0;
}

} // namespace

ConnectionSharing ReadConnectionSharing(SQLHDBC source, SQLHDBC destination) noexcept {
    ConnectionSharing sharing;
    char sourceName[kInfoSize], destinationName[kInfoSize], sourceUser[kInfoSize], destinationUser[kInfoSize];
    sharing.sameLogin = GetInfoText(source, SQL_DATA_SOURCE_NAME, sourceName, kInfoSize) &&
                        GetInfoText(destination, SQL_DATA_SOURCE_NAME, destinationName, kInfoSize) &&
                        strcasecmp(sourceName, destinationName) == 0 &&
                        GetInfoText(source, SQL_USER_NAME, sourceUser, kInfoSize) &&
                        GetInfoText(destination, SQL_USER_NAME, destinationUser, kInfoSize) &&
                        std::strcmp(sourceUser, destinationUser) == 0;
    if (!sharing.sameLogin) return sharing;
    // A driver that does not answer is taken at its most cautious: one statement.
    sharing.activeStatements = InfoNumber(destination, SQL_MAX_CONCURRENT_ACTIVITIES, 1);
    sharing.fileDatabase = IsFileDatabase(destination);
    return sharing;
}

SQLHDBC SourceQueryConnection(SQLHDBC source, SQLHDBC destination) noexcept {
    if (source == destination) return source;
    return SharesSourceConnection(ReadConnectionSharing(source, destination)) ? destination : source;
}

} // namespace kodbc::wizards
