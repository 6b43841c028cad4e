// The TableType argument of SQLTables, shared by the catalogue listings and
// the execution family's name lists.
#include "internal/table_types.h"

#include <kodbc/kodbc_types.h>
#include <korvel/bounded_text.h>

namespace kodbc {

void TableTypeList(int typeFlags, char *out, int size) {
    static constexpr struct {
        int bit;
        const char *entry;
    } kOrder[] = {
        {KODBC_OBJECT_TABLE, "'TABLE'"},   {KODBC_OBJECT_ALIAS, "'ALIAS'"},
        {KODBC_OBJECT_VIEW, "'VIEW'"},     {KODBC_OBJECT_SYNONYM, "'SYNONYM'"},
        {KODBC_OBJECT_SYSTEM, "'SYSTEM TABLE'"},
    };
    korvel::BoundedText list(out, size);
    for (const auto &type : kOrder) {
        if (!(typeFlags & type.bit)) continue;
        if (list.length() != 0) list.append(',');
        list.append(type.entry);
    }
}

} // namespace kodbc
