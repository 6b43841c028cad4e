#include "tabledesign/table_admin.h"

#include "internal/library.h"
#include "internal/text.h"

#include <kodbc/kodbc_tabledesign.h>

#include <string>
#include <vector>

using namespace kodbc;
using namespace kodbc::tabledesign;

namespace {

template <class Work>
int Guarded(SQLHDBC hdbc, const char *table, Work &&work) noexcept {
    if (!hdbc || !table || !*table) return KODBC_FAILURE;
    try {
        return work() ? KODBC_SUCCESS : KODBC_FAILURE;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // namespace

extern "C" {

KODBC_API int KODBC_CALL Kodbc_AddColumn(SQLHDBC hdbc, const char *table, const char *column, int typeCode,
                                         int length) {
    return Guarded(hdbc, table, [&] { return column && *column && AddColumn(hdbc, table, column, typeCode, length); });
}

KODBC_API int KODBC_CALL Kodbc_DropColumns(SQLHDBC hdbc, const char *table, const char *columns, int flags,
                                           int *dropped) {
    if (dropped) *dropped = 0;
    return Guarded(hdbc, table, [&] {
        bool cancelled = false;
        const int count =
            DropColumns(hdbc, table, SplitAtTabs(columns), (flags & KODBC_ALTER_NO_QUESTION) == 0, &cancelled);
        if (dropped) *dropped = count;
        return !cancelled;
    });
}

KODBC_API int KODBC_CALL Kodbc_AddAutoIncrementColumn(SQLHDBC hdbc, const char *table, const char *column) {
    return Guarded(hdbc, table, [&] {
        return column && *column && MayAddAutoIncrement(hdbc, table) && AddAutoIncrementColumn(hdbc, table, column);
    });
}

KODBC_API int KODBC_CALL Kodbc_AddPrimaryKey(SQLHDBC hdbc, const char *table, const char *columns) {
    return Guarded(hdbc, table, [&] {
        const std::vector<std::string> names = SplitAtTabs(columns);
        return !names.empty() && MayAddPrimaryKey(hdbc, table) && AddPrimaryKey(hdbc, table, names);
    });
}

KODBC_API int KODBC_CALL Kodbc_DropPrimaryKey(SQLHDBC hdbc, const char *table, int flags) {
    return Guarded(hdbc, table,
                   [&] { return DropPrimaryKey(hdbc, table, (flags & KODBC_ALTER_NO_QUESTION) == 0); });
}

} // extern "C"
