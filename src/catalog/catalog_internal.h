// Pieces of the catalogue queries shared between the portable listings and
// the box fillers (and reachable by the tests, which have no boxes).
#pragma once

#include "internal/table_types.h"
#include "internal/text.h"

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_types.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kodbc::catalog {

using kodbc::IsBlank;

using kodbc::TableTypeList;

// Whether a listed table is one of the hidden system tables: a name that
// begins with "USys" (with case) or is "KorvelSysTable" (any case).
bool IsHiddenSystemTable(const char *name) noexcept;

// The schemata that hold at least one table, each once, in the driver's
// order. False after an ODBC error (shown) or for a null connection.
bool ListSchemata(SQLHDBC hdbc, std::vector<std::string> &schemata);

// The entries of the column box for one table, built as the
// KODBC_COLUMNS_* flags ask (at most 199 characters each), each handed to
// add. Returns 1 done (also for a blank table), 2 after an ODBC error
// (shown) or for a null connection.
int ForEachColumnEntry(SQLHDBC hdbc, const char *schema, const char *table, int flags,
                       const std::function<void(const char *entry)> &add);

// One column of a table as the catalogue describes it.
struct ColumnDescription {
    const char *name;
    const char *type;          // display name, with the length where there is one
    bool nullable;             // empty values allowed (also when the driver does not know)
    const char *defaultValue;  // as the catalogue writes it; empty when none
    const char *remark;
    int sqlType;               // the catalogue's DATA_TYPE (0 when it gives none)
    int size;                  // COLUMN_SIZE: characters of a text column (0 when it gives none)
};

// Hands every column of table to visit, in catalogue order (the texts live
// only during the call). Returns 1 done (also for a blank table), 2 after an
// ODBC error (shown) or for a null connection.
int ForEachColumnDescription(SQLHDBC hdbc, const char *table,
                             const std::function<void(const ColumnDescription &)> &visit);

// Kodbc_GetColumnProperties for a column the catalogue listed: its name is
// one name, a point in it included.
int CatalogColumnProperties(SQLHDBC hdbc, const char *table, const char *column, ColumnPropertiesRecord *record);

// Box fillers' work buffer.
inline constexpr int kBoxListSize = 30000;

} // namespace kodbc::catalog
