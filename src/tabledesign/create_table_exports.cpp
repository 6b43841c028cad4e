#include "tabledesign/create_table.h"

#include "internal/library.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_tabledesign.h>

using namespace kodbc;
using namespace kodbc::tabledesign;

extern "C" KODBC_API int KODBC_CALL Kodbc_CreateTable(SQLHDBC hdbc, int kind, const char *name, const char *source,
                                                      char *created, int size) {
    try {
        if (!hdbc || kind < kAutoIncrementTable || kind > kAddressTable) return KODBC_FAILURE;
        const std::string table = name && *name ? std::string(name) : ProposeNewTableName(hdbc);
        if (const int refusal = CheckNewTableName(hdbc, table.c_str())) {
            LibraryMessage(refusal);
            return KODBC_FAILURE;
        }
        if (kind == kCopiedStructure && (!source || !*source)) {
            LibraryMessage(msg::SELECT_TABLE);
            return KODBC_FAILURE;
        }
        if (!RunCreateTable(hdbc, PlanCreateTable(hdbc, kind, table.c_str(), source))) return KODBC_FAILURE;
        korvel::BoundedText out(created, size);
        out.append(table);
        return KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}
