// Owners for the ODBC handles the library allocates itself. Handles that
// belong to the caller (the connection pair) are never wrapped.
#pragma once

#include "odbc_call.h"

#include <utility>

namespace kodbc::odbc {

// A statement on the caller's connection, dropped on every path.
class Statement {
public:
    Statement() = default;
    // Allocates on hdbc; check ok() — on failure the connection's diagnostic
    // is still on hdbc for the caller to show.
    explicit Statement(SQLHDBC hdbc) noexcept {
        if (!hdbc || !succeeded(KODBC_SQL(SQLAllocStmt, hdbc, &h_))) h_ = SQL_NULL_HSTMT;
    }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
    Statement(Statement &&o) noexcept : h_(std::exchange(o.h_, SQLHSTMT{})) {}
    Statement &operator=(Statement &&o) noexcept {
        if (this != &o) { reset(); h_ = std::exchange(o.h_, SQLHSTMT{}); }
        return *this;
    }
    ~Statement() { reset(); }

    bool ok() const noexcept { return h_ != SQL_NULL_HSTMT; }
    SQLHSTMT get() const noexcept { return h_; }
    operator SQLHSTMT() const noexcept { return h_; }

    // Closes an open cursor so the statement can run again.
    void close_cursor() noexcept {
        if (h_) KODBC_SQL(SQLFreeStmt, h_, static_cast<SQLUSMALLINT>(SQL_CLOSE));
    }
    void reset() noexcept {
        if (h_) KODBC_SQL(SQLFreeStmt, h_, static_cast<SQLUSMALLINT>(SQL_DROP));
        h_ = SQL_NULL_HSTMT;
    }

private:
    SQLHSTMT h_ = SQL_NULL_HSTMT;
};

// A private environment (for listing data sources), freed on every path.
class Environment {
public:
    Environment() noexcept {
        if (!succeeded(KODBC_SQL(SQLAllocEnv, &h_))) h_ = SQL_NULL_HENV;
    }
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;
    ~Environment() {
        if (h_) KODBC_SQL(SQLFreeEnv, h_);
    }
    bool ok() const noexcept { return h_ != SQL_NULL_HENV; }
    SQLHENV get() const noexcept { return h_; }

private:
    SQLHENV h_ = SQL_NULL_HENV;
};

} // namespace kodbc::odbc
