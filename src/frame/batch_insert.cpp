#include "internal/batch_insert.h"

#include "internal/db_capabilities.h"
#include "internal/diagnostics.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_diag.h>

namespace kodbc {
namespace {

// A batch INSERT stays within this many bytes and records: large enough
// that the statements' own cost disappears, small enough that memory stays
// flat and a refused batch is quickly retried record by record.
constexpr std::size_t kBatchBytes = 256 * 1024;
constexpr std::size_t kBatchRecords = 500;

// The driver's first diagnostic of a handle, for a message: its state and
// its text.
std::string DiagnosticOf(SQLSMALLINT handleType, SQLHANDLE handle) {
    DiagnosticFields fields;
    if (!ReadDiagnostic({handleType, handle, nullptr, 1, 0}, fields)) return {};
    return fields.sqlState + ": " + (fields.description.empty() ? fields.vendor : fields.description);
}

bool EndTransaction(SQLHDBC hdbc, SQLSMALLINT how) {
    return odbc::succeeded(KODBC_SQL(SQLEndTran, SQLSMALLINT{SQL_HANDLE_DBC}, hdbc, how));
}

void Say(int message, const char *arg1 = nullptr, const char *arg2 = nullptr) {
    if (message) LibraryMessage(message, arg1, arg2);
}

} // namespace

BatchInsert::BatchInsert(SQLHDBC hdbc, std::string head, const BatchMessages &messages)
    : hdbc_(hdbc), messages_(messages), headSize_(head.size()), pending_(std::move(head)) {
    pending_.reserve(kBatchBytes);
    perStatement_ = tabledesign::CapabilitiesOf(hdbc).multiRowValues ? kBatchRecords : 1;
    SQLUSMALLINT capable = SQL_TC_NONE;
    KODBC_SQL(SQLGetInfo, hdbc, SQLUSMALLINT{SQL_TXN_CAPABLE}, &capable, SQLSMALLINT{sizeof capable}, nullptr);
    ddlInTransaction_ = capable == SQL_TC_ALL;
}

void BatchInsert::TableCreated(std::string table, std::string create, std::string drop) {
    table_ = std::move(table);
    create_ = std::move(create);
    drop_ = std::move(drop);
}

bool BatchInsert::Add(std::string_view values, long at, bool byLine) {
    if (!starts_.empty() && (starts_.size() >= perStatement_ || pending_.size() + 1 + values.size() > kBatchBytes) &&
        !Flush())
        return false;
    if (!starts_.empty()) pending_ += ',';
    starts_.push_back(pending_.size());
    places_.push_back(at);
    byLine_ = byLine;
    pending_.append(values);
    return true;
}

bool BatchInsert::Run(const char *sql, long at) {
    if (!Flush()) return false;
    if (Korvel_DumpSqlStatement(sql, 0) != 1) {
        Undo();
        Say(messages_.rolledBack);
        return false;
    }
    std::string why;
    if (RunQuietly(sql, &why)) return true;
    Failed(std::to_string(at), why, false);
    return false;
}

bool BatchInsert::RunQuietly(const char *sql, std::string *why) {
    if (!statement_.ok()) statement_ = odbc::Statement(hdbc_);
    if (!statement_.ok()) {
        if (why) *why = DiagnosticOf(SQL_HANDLE_DBC, hdbc_);
        return false;
    }
    const SQLRETURN rc = KODBC_SQL(SQLExecDirect, statement_.get(), reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql)),
                                   static_cast<SQLINTEGER>(SQL_NTS));
    if (rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO || rc == SQL_NO_DATA) return true;
    if (why) *why = DiagnosticOf(SQL_HANDLE_STMT, statement_.get());
    return false;
}

void BatchInsert::Failed(const std::string &where, const std::string &why, bool byLine) {
    Say(byLine ? messages_.failedLine : messages_.failedRecord, where.c_str(), why.c_str());
    Undo();
    Say(messages_.rolledBack);
}

bool BatchInsert::Flush() {
    if (starts_.empty()) return true;
    if (Korvel_DumpSqlStatement(pending_.c_str(), static_cast<int>(kBatchBytes)) != 1) {
        Undo();
        Say(messages_.rolledBack);
        return false;
    }
    std::string why;
    if (RunQuietly(pending_.c_str(), &why)) {
        pending_.resize(headSize_);
        starts_.clear();
        places_.clear();
        return true;
    }
    // Which record the database refused: the batch again, one record at a
    // time, in the transaction begun anew (with the table again where the
    // rollback took it). A rollback that fails means the connection is
    // gone; the batch's reason is all there is to tell then.
    std::string where = std::to_string(places_.front());
    if (starts_.size() > 1) {
        where += "-" + std::to_string(places_.back());
        if (EndTransaction(hdbc_, SQL_ROLLBACK) &&
            (!ddlInTransaction_ || create_.empty() || RunQuietly(create_.c_str(), nullptr))) {
            std::string one, reason;
            for (std::size_t i = 0; i < starts_.size(); ++i) {
                const std::size_t end = i + 1 < starts_.size() ? starts_[i + 1] - 1 : pending_.size();
                one.assign(pending_, 0, headSize_).append(pending_, starts_[i], end - starts_[i]);
                if (RunQuietly(one.c_str(), &reason)) continue;
                where = std::to_string(places_[i]);
                why = reason;
                break;
            }
        }
    }
    Failed(where, why, byLine_);
    return false;
}

bool BatchInsert::Undo() {
    pending_.resize(headSize_);
    starts_.clear();
    places_.clear();
    const bool rolledBack = EndTransaction(hdbc_, SQL_ROLLBACK);
    if (create_.empty()) return rolledBack;
    const std::string drop = std::move(drop_);
    create_.clear();
    drop_.clear();
    // Where the database keeps DDL in the transaction, a table of a run not
    // committed is gone, whether the rollback reached the server or not.
    if (ddlInTransaction_) return true;
    if (RunQuietly(drop.c_str(), nullptr) && EndTransaction(hdbc_, SQL_COMMIT)) return rolledBack;
    Say(messages_.tableLeft, table_.c_str());
    return false;
}

bool BatchInsert::Finish() {
    if (!Flush()) return false;
    if (EndTransaction(hdbc_, SQL_COMMIT)) {
        create_.clear();
        drop_.clear();
        return true;
    }
    Kodbc_DisplayErrorHdbc(hdbc_);
    Undo();
    Say(messages_.rolledBack);
    return false;
}

void BatchInsert::Abandon(bool cancelled) {
    Undo();
    Say(cancelled ? messages_.cancelledRolledBack : messages_.rolledBack);
}

} // namespace kodbc
