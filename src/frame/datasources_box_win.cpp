// Filling a list or combo box with the data sources the driver manager knows.
#include "internal/library.h"
#include "internal/odbc_handles.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>

namespace {

constexpr SQLSMALLINT kNameSize = 200;

} // namespace

extern "C" KODBC_API void KODBC_CALL Kodbc_FillDataSourcesBox(HWND box) {
    Korvel_FillBox(box, 9, nullptr);
    kodbc::odbc::Environment environment;
    if (!environment.ok()) {
        kodbc::LibraryMessage(kodbc::msg::OUT_OF_MEMORY);
        return;
    }
    SQLCHAR name[kNameSize];
    SQLCHAR description[kNameSize];
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT descriptionLength = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (KODBC_SQL(SQLDataSources, environment.get(), direction, name, kNameSize, &nameLength, description,
                     kNameSize, &descriptionLength) == SQL_SUCCESS) {
        direction = SQL_FETCH_NEXT;
        if (Korvel_AddBoxEntry(box, reinterpret_cast<const char *>(name), 0, -1, 0) < 0) break;
    }
}
