// The rows a SELECT statement would return, counted by the data source:
// the statement's column list becomes Count(*) and its sort order goes.
#include "catalog/catalog_internal.h"
#include "catalog/table_ops_internal.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_select.h>
#include <kodbc/kodbc_tableops.h>

#include <cctype>
#include <cstring>
#include <memory>
#include <new>

namespace kodbc::tableops {
namespace {

constexpr int kCountStatementSize = 30000;

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// A union cannot be counted by rewriting its column list; only the first
// "UNION" is looked at, and only as a word of its own.
bool IsUnion(const char *statement) {
    const char *u = std::strstr(statement, "UNION");
    return u && u > statement && IsSpace(u[-1]) && IsSpace(u[5]);
}

} // namespace
} // namespace kodbc::tableops

using namespace kodbc;
using namespace kodbc::tableops;
using kodbc::catalog::IsBlank;

extern "C" {

KODBC_API long KODBC_CALL Kodbc_GetRowSetCount(SQLHDBC hdbc, const char *statement) {
    if (IsBlank(statement)) return 0;
    if (IsUnion(statement)) return KODBC_ROWSET_COUNT_UNION;
    if (!hdbc) return 0;

    std::unique_ptr<char[]> sql(new (std::nothrow) char[kCountStatementSize]);
    if (!sql) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return 0;
    }
    korvel::BoundedText(sql.get(), kCountStatementSize).append(statement);
    if (Kodbc_Select_Replace_FieldsClause(sql.get(), kCountStatementSize, "Count(*)", 0) != 0) return 0;
    if (Kodbc_Select_Replace_OrderByClause(sql.get(), kCountStatementSize, "", 0) != 0) return 0;
    char value[kValueSize];
    if (!FetchFirstValue(hdbc, sql.get(), value)) return 0;
    return TextToLong(value);
}

} // extern "C"
