// The catalogue into the list and combo boxes of the caller's dialogs.
#include "catalog/catalog_internal.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>

#include <memory>
#include <new>

namespace {

constexpr int kTabSeparator = '\t';
constexpr int kSortedBoxOption = 8;
constexpr int kSchemaEntryFlags = 2;

// The box fillers' work buffer; message 1600 when it cannot be had.
std::unique_ptr<char[]> WorkBuffer() {
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[kodbc::catalog::kBoxListSize]);
    if (!buffer) kodbc::LibraryMessage(kodbc::msg::OUT_OF_MEMORY);
    return buffer;
}

} // namespace

using namespace kodbc;
using namespace kodbc::catalog;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_FillTablesBoxExtended(SQLHDBC hdbc, int typeFlags, const char *schema,
                                                     int nameFlags, HWND box) {
    std::unique_ptr<char[]> list = WorkBuffer();
    if (!list) return -1;
    if (Kodbc_GetTablesExtended(hdbc, typeFlags, schema, nameFlags, list.get(), kBoxListSize, "\t") != 0)
        return -1;
    if (nameFlags & KODBC_TABLES_BOX_OPTION8)
        Korvel_FillBoxExtended(box, kTabSeparator, list.get(), kSortedBoxOption);
    else
        Korvel_FillBox(box, kTabSeparator, list.get());
    return 0;
}

KODBC_API int KODBC_CALL Kodbc_FillTablesBox(SQLHDBC hdbc, int typeFlags, HWND box) {
    return Kodbc_FillTablesBoxExtended(hdbc, typeFlags, nullptr, 0, box);
}

KODBC_API int KODBC_CALL Kodbc_FillSchemataBox(SQLHDBC hdbc, HWND box) {
    if (!hdbc || !box) return KODBC_FAILURE;
    Korvel_ResetBox(box);
    try {
        std::vector<std::string> schemata;
        if (!ListSchemata(hdbc, schemata)) return KODBC_FAILURE;
        for (const std::string &schema : schemata) Korvel_AddBoxEntry(box, schema.c_str(), 0, -1, kSchemaEntryFlags);
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
    return KODBC_SUCCESS;
}

KODBC_API int KODBC_CALL Kodbc_FillFieldsBox(SQLHDBC hdbc, const char *tables, int flags, HWND box) {
    Korvel_ResetBox(box);
    std::unique_ptr<char[]> list = WorkBuffer();
    if (!list) return KODBC_FAILURE;
    int result = Kodbc_GetFields(hdbc, tables, flags, "\t", list.get(), kBoxListSize);
    if (result == KODBC_SUCCESS) Korvel_FillBox(box, kTabSeparator, list.get());
    return result;
}

KODBC_API int KODBC_CALL Kodbc_AddColumnsToBox(SQLHDBC hdbc, const char *schema, const char *table, HWND box,
                                               int flags) {
    if (!box) return KODBC_SUCCESS;
    try {
        return ForEachColumnEntry(hdbc, schema, table, flags,
                                  [box](const char *entry) { Korvel_AddBoxEntry(box, entry, 0, -1, 0); });
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

KODBC_API void KODBC_CALL Kodbc_FillFormsBox(SQLHDBC, HWND) {}
KODBC_API void KODBC_CALL Kodbc_FillReportsBox(SQLHDBC, HWND) {}

} // extern "C"
