// Object types as the catalogue function SQLTables names them.
#pragma once

namespace kodbc {

// The TableType argument of SQLTables for typeFlags, in the fixed order
// TABLE, ALIAS, VIEW, SYNONYM, SYSTEM TABLE ("'TABLE','VIEW'"), into out
// (64 bytes hold all five). An empty text when no listed bit is set.
// Callers pass no list at all for 0x10.
void TableTypeList(int typeFlags, char *out, int size);

} // namespace kodbc
