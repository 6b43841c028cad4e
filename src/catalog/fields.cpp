// Field listings: the fields of one or several tables as a flat list, the
// column entries of the column box, field counts and the column names of a
// result set.
#include "catalog/catalog_internal.h"
#include "internal/library.h"
#include "internal/odbc_handles.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_sqltext.h>

#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace kodbc::catalog {
namespace {

constexpr std::size_t kTableEntryLength = 199;   // one entry of the tables list
constexpr int kNamePartSize = 100;                // schema and table of an entry
constexpr int kColumnNameSize = 100;              // column box and result-set names
constexpr int kColumnEntrySize = 200;             // one column-box entry

// One field of Kodbc_GetFields' work array.
struct FieldEntry {
    char name[50];
    char table[50];
    char type[10];         // ODBC data type as decimal text
    SQLSMALLINT nullable;  // 0 no nulls, 1 nullable, 2 unknown
};

SQLCHAR *Text(const char *text) { return reinterpret_cast<SQLCHAR *>(const_cast<char *>(text)); }

// SQLColumns for one table with no catalogue; a blank schema is passed as null.
SQLRETURN OpenColumns(SQLHSTMT stmt, const char *schema, const char *table) {
    SQLCHAR *schemaArg = IsBlank(schema) ? nullptr : Text(schema);
    return KODBC_SQL(SQLColumns, stmt, static_cast<SQLCHAR *>(nullptr), static_cast<SQLSMALLINT>(0), schemaArg,
                     static_cast<SQLSMALLINT>(schemaArg ? SQL_NTS : 0), Text(table),
                     static_cast<SQLSMALLINT>(SQL_NTS), static_cast<SQLCHAR *>(nullptr),
                     static_cast<SQLSMALLINT>(0));
}

// Calls visit(schema, table) for every tab-separated entry of the tables
// list, each split into schema and table. Stops early when visit says so.
template <class Visit>
bool ForEachTable(SQLHDBC hdbc, const char *tables, Visit visit) {
    std::string_view rest(tables);
    while (true) {
        std::size_t tab = rest.find('\t');
        char entry[kTableEntryLength + 1];
        korvel::BoundedText entryText(entry, sizeof entry);
        entryText.append(rest.substr(0, tab));
        char schema[kNamePartSize], table[kNamePartSize];
        schema[0] = table[0] = '\0';
        Kodbc_ParseSchemaAndTable(hdbc, entry, schema, sizeof schema, table, sizeof table);
        if (!visit(schema, table)) return false;
        if (tab == std::string_view::npos) return true;
        rest.remove_prefix(tab + 1);
    }
}

// Closes the cursor and drops the bindings so the statement can list the
// next table.
void ResetStatement(odbc::Statement &stmt) {
    stmt.close_cursor();
    KODBC_SQL(SQLFreeStmt, stmt.get(), static_cast<SQLUSMALLINT>(SQL_UNBIND));
}

// "%s.%s" of table and field into the entry's name (cut to its size).
void QualifyName(FieldEntry &entry) {
    char qualified[sizeof entry.name];
    korvel::BoundedText text(qualified, sizeof qualified);
    text.append(entry.table);
    text.append('.');
    text.append(entry.name);
    std::memcpy(entry.name, qualified, sizeof qualified);
}

// The first pass: how many columns all listed tables have together.
bool CountFields(odbc::Statement &stmt, SQLHDBC hdbc, const char *tables, std::size_t &count) {
    count = 0;
    return ForEachTable(hdbc, tables, [&](const char *schema, const char *table) {
        SQLRETURN rc = OpenColumns(stmt.get(), schema, table);
        if (!odbc::succeeded(rc)) {
            Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
            return false;
        }
        while ((rc = KODBC_SQL(SQLFetch, stmt.get())) == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO) ++count;
        if (rc != SQL_NO_DATA) {
            Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
            return false;
        }
        ResetStatement(stmt);
        return true;
    });
}

// The second pass: the fields into the work array, never more than it holds.
bool CollectFields(odbc::Statement &stmt, SQLHDBC hdbc, const char *tables, FieldEntry *entries,
                   std::size_t capacity, std::size_t &filled) {
    filled = 0;
    return ForEachTable(hdbc, tables, [&](const char *schema, const char *table) {
        FieldEntry row{};
        SQLLEN tableIndicator = 0, nameIndicator = 0, typeIndicator = 0, nullableIndicator = 0;
        SQLRETURN rc = OpenColumns(stmt.get(), schema, table);
        if (odbc::succeeded(rc))
            rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(3), static_cast<SQLSMALLINT>(SQL_C_CHAR),
                           static_cast<SQLPOINTER>(row.table), static_cast<SQLLEN>(sizeof row.table),
                           &tableIndicator);
        if (odbc::succeeded(rc))
            rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(4), static_cast<SQLSMALLINT>(SQL_C_CHAR),
                           static_cast<SQLPOINTER>(row.name), static_cast<SQLLEN>(sizeof row.name), &nameIndicator);
        if (odbc::succeeded(rc))
            rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(5), static_cast<SQLSMALLINT>(SQL_C_CHAR),
                           static_cast<SQLPOINTER>(row.type), static_cast<SQLLEN>(sizeof row.type), &typeIndicator);
        if (odbc::succeeded(rc))
            rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(11),
                           static_cast<SQLSMALLINT>(SQL_C_SSHORT), static_cast<SQLPOINTER>(&row.nullable),
                           static_cast<SQLLEN>(0), &nullableIndicator);
        if (!odbc::succeeded(rc)) {
            Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
            return false;
        }
        while (true) {
            row = FieldEntry{};
            rc = KODBC_SQL(SQLFetch, stmt.get());
            if (!odbc::succeeded(rc)) break;
            // A table that gained columns since the count is cut off here.
            if (filled < capacity) {
                if (nullableIndicator == SQL_NULL_DATA) row.nullable = SQL_NULLABLE_UNKNOWN;
                entries[filled++] = row;
            }
        }
        if (rc != SQL_NO_DATA) {
            Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
            return false;
        }
        ResetStatement(stmt);
        return true;
    });
}

} // namespace

int ForEachColumnEntry(SQLHDBC hdbc, const char *schema, const char *table, int flags,
                       const std::function<void(const char *entry)> &add) {
    if (IsBlank(table)) return KODBC_SUCCESS;
    if (!hdbc) return KODBC_FAILURE;
    odbc::Statement stmt(hdbc);
    if (!stmt.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_FAILURE;
    }
    char name[kColumnNameSize] = {};
    SQLSMALLINT nullable = 0;
    SQLLEN nameIndicator = 0, nullableIndicator = 0;
    SQLRETURN rc = OpenColumns(stmt.get(), schema, table);
    if (odbc::succeeded(rc))
        rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(4), static_cast<SQLSMALLINT>(SQL_C_CHAR),
                       static_cast<SQLPOINTER>(name), static_cast<SQLLEN>(sizeof name), &nameIndicator);
    if (odbc::succeeded(rc))
        rc = KODBC_SQL(SQLBindCol, stmt.get(), static_cast<SQLUSMALLINT>(11), static_cast<SQLSMALLINT>(SQL_C_SSHORT),
                       static_cast<SQLPOINTER>(&nullable), static_cast<SQLLEN>(0), &nullableIndicator);
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
        return KODBC_FAILURE;
    }
    const bool withSchema = (flags & KODBC_COLUMNS_SCHEMA_PREFIX) && !IsBlank(schema);
    while (odbc::succeeded(KODBC_SQL(SQLFetch, stmt.get()))) {
        if (nameIndicator == SQL_NULL_DATA) name[0] = '\0';
        if (nullableIndicator == SQL_NULL_DATA) nullable = SQL_NULLABLE_UNKNOWN;
        if ((flags & KODBC_COLUMNS_NOT_NULL) && nullable != SQL_NO_NULLS) continue;
        char entry[kColumnEntrySize];
        korvel::BoundedText text(entry, sizeof entry);
        if (withSchema) {
            text.append(schema);
            text.append('.');
        }
        if (flags & KODBC_COLUMNS_TABLE_PREFIX) {
            text.append(table);
            text.append('.');
        }
        text.append(name);
        add(entry);
    }
    return KODBC_SUCCESS;
}

} // namespace kodbc::catalog

using namespace kodbc;
using namespace kodbc::catalog;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_GetFields(SQLHDBC hdbc, const char *tables, int flags, const char *separator,
                                         char *out, int outSize) {
    if (!out || outSize < 1) return KODBC_FAILURE;
    korvel::BoundedText list(out, outSize);
    if (!tables || !*tables) return KODBC_SUCCESS;
    if (!hdbc) return KODBC_FAILURE;
    if (!separator) separator = "\t";
    if (flags & KODBC_FIELDS_QUOTE_ALSO) flags |= KODBC_FIELDS_QUOTE;

    odbc::Statement stmt(hdbc);
    if (!stmt.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_FAILURE;
    }
    std::size_t count = 0;
    if (!CountFields(stmt, hdbc, tables, count)) return KODBC_FAILURE;
    std::unique_ptr<FieldEntry[]> entries(new (std::nothrow) FieldEntry[count ? count : 1]);
    if (!entries) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
    std::size_t filled = 0;
    if (!CollectFields(stmt, hdbc, tables, entries.get(), count, filled)) return KODBC_FAILURE;

    if (flags & KODBC_FIELDS_QUALIFY) {
        for (std::size_t i = 0; i < filled; ++i) QualifyName(entries[i]);
    }
    if (flags & KODBC_FIELDS_DISAMBIGUATE) {
        // Collisions are decided on the names as they stand before any is
        // rewritten, so a name shared by three tables is qualified in all three.
        std::unique_ptr<bool[]> collides(new (std::nothrow) bool[filled ? filled : 1]());
        if (!collides) {
            LibraryMessage(msg::OUT_OF_MEMORY);
            return KODBC_FAILURE;
        }
        for (std::size_t i = 0; i < filled; ++i)
            for (std::size_t j = i + 1; j < filled; ++j)
                if (std::strcmp(entries[i].name, entries[j].name) == 0) collides[i] = collides[j] = true;
        for (std::size_t i = 0; i < filled; ++i)
            if (collides[i]) QualifyName(entries[i]);
    }
    if (flags & KODBC_FIELDS_QUOTE) {
        for (std::size_t i = 0; i < filled; ++i) {
            char prepared[sizeof entries[i].name];
            prepared[0] = '\0';
            Kodbc_PrepareNameForSql92(hdbc, entries[i].name, prepared, sizeof prepared);
            std::memcpy(entries[i].name, prepared, sizeof prepared);
        }
    }

    const std::size_t separatorLength = std::strlen(separator);
    bool first = true;
    for (std::size_t i = 0; i < filled; ++i) {
        const FieldEntry &entry = entries[i];
        if ((flags & KODBC_FIELDS_NOT_NULL) && entry.nullable != SQL_NO_NULLS) continue;
        std::size_t needed = std::strlen(entry.name) + 2 * separatorLength + std::strlen(entry.type);
        // An entry that does not fit is skipped; a later, shorter one may.
        if (needed >= list.room() + 1) continue;
        if (!first) list.append(separator);
        list.append(entry.name);
        if (flags & KODBC_FIELDS_WITH_TYPE) {
            list.append(separator);
            list.append(entry.type);
        }
        first = false;
    }
    return KODBC_SUCCESS;
}

KODBC_API int KODBC_CALL Kodbc_GetFieldCount(SQLHDBC hdbc, const char *table) {
    if (!hdbc || !table) return KODBC_FAILURE;
    odbc::Statement stmt(hdbc);
    if (!stmt.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_FAILURE;
    }
    SQLRETURN rc = OpenColumns(stmt.get(), nullptr, table);
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
        return KODBC_FAILURE;
    }
    int count = 0;
    while ((rc = KODBC_SQL(SQLFetch, stmt.get())) == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO) ++count;
    if (rc != SQL_NO_DATA) {
        Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
        return KODBC_FAILURE;
    }
    return count;
}

KODBC_API int KODBC_CALL Kodbc_GetColumnNamesFromRowSet(SQLHSTMT hstmt, char separator, char *out, int size) {
    if (!hstmt || !out || size < 1) return KODBC_FAILURE;
    korvel::BoundedText names(out, size);
    if (separator == 0) separator = '\t';
    SQLLEN count = 0;
    SQLRETURN rc = KODBC_SQL(SQLColAttributes, hstmt, static_cast<SQLUSMALLINT>(1),
                             static_cast<SQLUSMALLINT>(SQL_COLUMN_COUNT), static_cast<SQLPOINTER>(nullptr),
                             static_cast<SQLSMALLINT>(0), static_cast<SQLSMALLINT *>(nullptr), &count);
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(hstmt, nullptr);
        return KODBC_FAILURE;
    }
    for (SQLUSMALLINT c = 1; c <= count; ++c) {
        char name[kColumnNameSize] = {};
        SQLSMALLINT length = 0;
        SQLLEN unused = 0;
        rc = KODBC_SQL(SQLColAttributes, hstmt, c, static_cast<SQLUSMALLINT>(SQL_COLUMN_NAME),
                       static_cast<SQLPOINTER>(name), static_cast<SQLSMALLINT>(sizeof name), &length, &unused);
        if (!odbc::succeeded(rc)) {
            Kodbc_DisplayErrorHstmt(hstmt, nullptr);
            return KODBC_FAILURE;
        }
        std::string_view n(name, strnlen(name, sizeof name - 1));
        // The name and its separator (or, for the first, the terminator's
        // companion byte) must fit.
        if (n.size() + 1 > names.room()) break;
        if (c > 1) names.append(separator);
        names.append(n);
    }
    return KODBC_SUCCESS;
}

} // extern "C"
