// The trace behind KODBC_SQL: off unless KODBC_ODBC_TRACE names where to go.
#include "internal/odbc_call.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace kodbc::odbc {
namespace {

struct TraceTarget {
    std::FILE *file = nullptr;
    bool owned = false;
    std::mutex lock;

    TraceTarget() {
        const char *where = std::getenv("KODBC_ODBC_TRACE");
        if (!where || !*where || std::strcmp(where, "0") == 0) return;
        if (std::strcmp(where, "1") == 0 || std::strcmp(where, "stderr") == 0) {
            file = stderr;
        } else if ((file = std::fopen(where, "a")) != nullptr) {
            owned = true;
        }
    }
    ~TraceTarget() {
        if (owned) std::fclose(file);
    }
};

TraceTarget &Target() {
    static TraceTarget target;
    return target;
}

const char *Outcome(SQLRETURN rc) {
    switch (rc) {
    case SQL_SUCCESS: return "SQL_SUCCESS";
    case SQL_SUCCESS_WITH_INFO: return "SQL_SUCCESS_WITH_INFO";
    case SQL_NO_DATA: return "SQL_NO_DATA";
    case SQL_ERROR: return "SQL_ERROR";
    case SQL_INVALID_HANDLE: return "SQL_INVALID_HANDLE";
    case SQL_NEED_DATA: return "SQL_NEED_DATA";
    case SQL_STILL_EXECUTING: return "SQL_STILL_EXECUTING";
    default: return "?";
    }
}

} // namespace

bool trace_enabled() noexcept {
    static const bool enabled = Target().file != nullptr;
    return enabled;
}

void trace(const char *function, SQLRETURN rc) noexcept {
    TraceTarget &target = Target();
    std::lock_guard<std::mutex> guard(target.lock);
    std::fprintf(target.file, "kodbc: %s -> %s (%d)\n", function, Outcome(rc), static_cast<int>(rc));
    std::fflush(target.file);
}

} // namespace kodbc::odbc
