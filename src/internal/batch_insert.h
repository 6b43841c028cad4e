// Records written as multi-row INSERTs within one transaction, all or
// nothing: the import's and the add-records run's way for the command-line
// tool. The connection's owner has switched auto-commit off; Finish()
// commits, a failure or Abandon() rolls everything back.
#pragma once

#include "odbc_handles.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kodbc {

// The messages a run shows: the refused record by its line or number with
// the database's reason (two %s: where, why), the end of a run taken back
// after a failure and after a cancel, and a created table left behind (%s).
// 0: the run has no such message.
struct BatchMessages {
    int failedLine = 0;
    int failedRecord = 0;
    int rolledBack = 0;
    int cancelledRolledBack = 0;
    int tableLeft = 0;
};

class BatchInsert {
public:
    // head opens every statement: "INSERT INTO t (a,b) VALUES ". A batch
    // holds at most 500 records and 256 KiB, one record only where the
    // database takes one row per VALUES.
    BatchInsert(SQLHDBC hdbc, std::string head, const BatchMessages &messages);

    // The run created table with create: run again after the rollback that
    // precedes the record-by-record retry where the database keeps DDL in
    // the transaction, else removed with drop when the run is undone.
    void TableCreated(std::string table, std::string create, std::string drop);

    // One record's values, "(...)", standing at `at` in the source (its
    // line when byLine, else its number). False after a failure (shown;
    // nothing is left).
    bool Add(std::string_view values, long at, bool byLine = false);
    // A statement of its own for the record at `at` (an UPDATE, or an
    // INSERT that a later record's question must see), run after what
    // waits. False after a failure (shown; nothing is left).
    bool Run(const char *sql, long at);
    // Writes what waits and commits. False after a failure (shown; nothing
    // is left).
    bool Finish();
    // Undoes the run after its reading failed or the user cancelled, and
    // says so.
    void Abandon(bool cancelled);
    // Drops what waits, rolls back and removes the created table, saying
    // nothing unless the table stays behind (tableLeft). False when the
    // rollback or the removal failed.
    bool Undo();

private:
    bool Flush();
    bool RunQuietly(const char *sql, std::string *why);
    void Failed(const std::string &where, const std::string &why, bool byLine);

    SQLHDBC hdbc_;
    BatchMessages messages_;
    std::size_t headSize_;
    std::size_t perStatement_ = 1;
    bool ddlInTransaction_ = false;
    std::string table_, create_, drop_;  // a table the run created, until committed or removed
    std::string pending_;
    std::vector<std::size_t> starts_;  // where each record's values start in pending_
    std::vector<long> places_;         // where each record stands in the source
    bool byLine_ = false;
    odbc::Statement statement_;
};

} // namespace kodbc
