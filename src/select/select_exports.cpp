// Exported face of the SELECT scanner: the connection is only asked for its
// identifier quote character, and a stray ")" is reported once per call.
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_select.h>

#include "internal/library.h"
#include "select/select_exports.h"
#include "select/select_scanner.h"

#include <new>

namespace kodbc::select {

char IdentifierQuote(SQLHDBC hdbc) {
    if (!hdbc) return 0;
    char quote = Kodbc_GetDelimiter(hdbc);
    // A driver that does not quote answers a blank; taking that as a quote
    // would glue every word of an item together.
    return quote == ' ' ? '\0' : quote;
}

void ReportScanProblems(const ScanContext &context) {
    if (context.bracketError) LibraryMessage(msg::UNEXPECTED_CLOSING_BRACKET, context.bracketRest.c_str());
}

} // namespace kodbc::select

namespace {

using kodbc::select::ScanContext;

// Runs one exported operation: no exception leaves the library, and the
// bracket message is shown once, after the work, whatever the operation
// looked at.
template <typename Operation>
int RunScan(SQLHDBC hdbc, Operation operation) noexcept {
    try {
        ScanContext context;
        context.quote = kodbc::select::IdentifierQuote(hdbc);
        int result = operation(context);
        kodbc::select::ReportScanProblems(context);
        return result;
    } catch (const std::bad_alloc &) {
        kodbc::LibraryMessage(kodbc::msg::OUT_OF_MEMORY);
    } catch (...) {
    }
    return -1;
}

} // namespace

extern "C" {

KODBC_API int KODBC_CALL Kodbc_SelectScanFieldsClause(SQLHDBC hdbc, const char *statement, const char *separator,
                                                      int /*flags*/, char *out, int outSize) {
    return RunScan(hdbc, [&](ScanContext &c) {
        return kodbc::select::ScanFields(c, statement, separator, out, outSize);
    });
}

KODBC_API int KODBC_CALL Kodbc_SelectScanTablesClause(SQLHDBC hdbc, const char *statement, const char *separator,
                                                      int /*flags*/, char *out, int outSize) {
    return RunScan(hdbc, [&](ScanContext &c) {
        return kodbc::select::ScanTables(c, statement, separator, out, outSize);
    });
}

KODBC_API int KODBC_CALL Kodbc_SelectScanOrderByClause(SQLHDBC hdbc, const char *statement, const char *separator,
                                                       int flags, char *out, int outSize) {
    return RunScan(hdbc, [&](ScanContext &c) {
        return kodbc::select::ScanOrderBy(c, statement, separator, flags, out, outSize);
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_Scan_FieldsClause(const char *statement, const char *separator,
                                                        int /*reserved*/, char *out, int outSize) {
    return Kodbc_SelectScanFieldsClause(nullptr, statement, separator, 0, out, outSize);
}

KODBC_API int KODBC_CALL Kodbc_Select_Scan_TablesClause(const char *statement, const char *separator,
                                                        int /*reserved*/, char *out, int outSize) {
    return Kodbc_SelectScanTablesClause(nullptr, statement, separator, 0, out, outSize);
}

KODBC_API int KODBC_CALL Kodbc_Select_Scan_OrderByClause(const char *statement, const char *separator,
                                                         int /*reserved*/, char *out, int outSize) {
    return Kodbc_SelectScanOrderByClause(nullptr, statement, separator, 0, out, outSize);
}

KODBC_API int KODBC_CALL Kodbc_Select_Get_Clause(const char *statement, const char *keyword,
                                                 const char *secondKeyword, char *out, int outSize) {
    return RunScan(nullptr, [&](ScanContext &c) {
        return kodbc::select::GetClause(c, statement, keyword, secondKeyword, out, outSize);
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_Replace_FieldsClause(char *statement, int statementSize,
                                                           const char *newClause, int /*reserved*/) {
    return RunScan(nullptr, [&](ScanContext &c) {
        return kodbc::select::ReplaceFieldsClause(c, statement, statementSize, newClause);
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_Replace_TablesClause(char *statement, int statementSize,
                                                           const char *newClause, int /*reserved*/) {
    return RunScan(nullptr, [&](ScanContext &c) {
        return kodbc::select::ReplaceTablesClause(c, statement, statementSize, newClause);
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_Replace_OrderByClause(char *statement, int statementSize,
                                                            const char *newClause, int /*reserved*/) {
    return RunScan(nullptr, [&](ScanContext &c) {
        return kodbc::select::ReplaceOrderByClause(c, statement, statementSize, newClause);
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_Replace_WhereClause(char *statement, int statementSize,
                                                          const char *newClause) {
    return RunScan(nullptr, [&](ScanContext &c) {
        return kodbc::select::ReplaceWhereClause(c, statement, statementSize, newClause);
    });
}

} // extern "C"
