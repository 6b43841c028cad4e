// Pieces shared by the execution functions, the row-set fillers and the
// benchmark: the common start of a statement and the result file's writer.
#pragma once

#include "odbc_handles.h"

#include <kodbc/kodbc_types.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>

namespace kodbc {

// Allocates a statement on hdbc (a failure shows the connection's error)
// and offers sql to the dump with the size of its buffer (0: not known).
// False when either fails; the dump's refusal is silent.
bool PrepareStatement(SQLHDBC hdbc, const char *sql, odbc::Statement &statement, int bufferSize = 0) noexcept;

enum class ExecOutcome {
    Executed,   // success, SQL_SUCCESS_WITH_INFO and SQL_NO_DATA included
    Tolerated,  // failed with a tolerated SQLSTATE; nothing shown
    Failed,     // failed; the error has been shown with the statement text
};

// SQLExecDirect; an error is tested against `tolerated` before it is shown.
ExecOutcome ExecuteStatement(odbc::Statement &statement, const char *sql, const char *tolerated) noexcept;

// Shows the statement's error for rc unless `tolerated` holds it.
// True when it was tolerated.
bool ReportStatementError(SQLHSTMT statement, SQLRETURN rc, const char *sql, const char *tolerated) noexcept;

// The value classes the result writers treat differently.
enum class ValueClass { Text, Number, Date, Other };
ValueClass ClassifySqlType(SQLLEN sqlType) noexcept;

// Date and time fields read from the driver's text ("yyyy-mm-dd hh:mm:ss",
// "yyyy-mm-dd" or "hh:mm:ss"); missing fields stay 0.
struct DateTimeFields {
    int day = 0, month = 0, year = 0, hour = 0, minute = 0, second = 0;
};
DateTimeFields ParseOdbcDateTime(const char *text, std::size_t length) noexcept;

// Buffered binary output to one file. Bytes go into a large block that is
// handed to the system only when full, so writing a value costs a copy. The
// first failing write is remembered (with its errno) and every later one is
// dropped: a caller checks ok() after close() and never mistakes a cut file
// for a complete one.
class ResultFile {
public:
    static constexpr std::size_t kBlockSize = 1 << 18;

    ResultFile() = default;
    ~ResultFile() { close(); }
    ResultFile(const ResultFile &) = delete;
    ResultFile &operator=(const ResultFile &) = delete;

    // Creates or truncates the file for writing, locked against other
    // writers. False with errno set when it cannot be opened.
    bool create(const char *fileName) noexcept;

    void write(const char *data, std::size_t n) noexcept {
        if (n <= kBlockSize - used_) {
            std::memcpy(block_.get() + used_, data, n);
            used_ += n;
            return;
        }
        write_slow(data, n);
    }
    void write(char c) noexcept {
        if (used_ == kBlockSize) flush();
        block_[used_++] = c;
    }

    // Flushes and closes; true when every byte reached the file.
    bool close() noexcept;
    bool ok() const noexcept { return error_ == 0; }
    int error() const noexcept { return error_; }

private:
    void write_slow(const char *data, std::size_t n) noexcept;
    void flush() noexcept;

    std::FILE *file_ = nullptr;
    std::unique_ptr<char[]> block_;
    std::size_t used_ = 0;
    int error_ = 0;
};

// Opens fileName for writing with exclusive sharing (the platform's part).
std::FILE *OpenExclusive(const char *fileName) noexcept;

} // namespace kodbc
