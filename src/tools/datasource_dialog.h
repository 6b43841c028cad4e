// Dialog 103, the data-source picker, for the library's own dialogs that
// run it over themselves rather than over the active window.
#pragma once

#include <kodbc/kodbc_types.h>

#include <cstring>
#include <string>

namespace kodbc::tools {

// Shows the picker over owner on a copy of record. 1 when a data source was
// confirmed and could be connected: the copy (all 220 bytes) then replaces
// record; 2 when cancelled or the dialog could not be shown.
int PickDataSource(HWND owner, DataSourceRecord &record);

// A text field of a record, which a caller may have filled to its last byte.
template <std::size_t N>
std::string FieldText(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

} // namespace kodbc::tools
