// The one path every ODBC call of the library takes.
//
// KODBC_SQL(SQLExecDirect, h, text, SQL_NTS) calls the function and, when the
// environment variable KODBC_ODBC_TRACE is set ("1" or "stderr" for stderr,
// anything else a file to append to), writes the call's name and return code
// as one line. The check costs one load of a static after the first call.
#pragma once

#include <kodbc/kodbc_types.h>

namespace kodbc::odbc {

bool trace_enabled() noexcept;
void trace(const char *function, SQLRETURN rc) noexcept;

template <class F, class... Args>
inline SQLRETURN call(const char *name, F function, Args... args) noexcept {
    SQLRETURN rc = function(args...);
    if (trace_enabled()) trace(name, rc);
    return rc;
}

inline bool succeeded(SQLRETURN rc) noexcept {
    return rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO;
}

} // namespace kodbc::odbc

#define KODBC_SQL(function, ...) ::kodbc::odbc::call(#function, function, __VA_ARGS__)
