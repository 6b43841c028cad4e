// What the data-source picker keeps between runs: the user last confirmed
// for each data source, under HKEY_CURRENT_USER, the library's key, section
// "DataSourceDialog", one string value named after the data source. The
// password has no place here: it is typed anew every time.
#pragma once

#include <kodbc/kodbc_types.h>

#include <cstring>
#include <string>
#include <vector>

namespace kodbc::tools {

inline constexpr const char *kDataSourceDialogSection = "DataSourceDialog";
inline constexpr int kUserLimit = 49;  // the record's 50 bytes less the terminator

// The user remembered for dataSource, cut to kUserLimit characters; empty
// when there is none (or dataSource is null or empty).
std::string RememberedUser(const char *dataSource);

// Remembers user (null: empty) for dataSource. False when dataSource is null
// or empty or the store refused the value.
bool RememberUser(const char *dataSource, const char *user);

// What the picker keeps of a confirmed choice: the user, under the name of
// the chosen data source. The password stays in the caller's record only.
bool RememberChoice(const DataSourceRecord &chosen);

// The entry that is exactly name, case included: the picker shows the
// record's own user and password only for the very data source it names.
// -1 when name is null or no entry matches.
int FindExactEntry(const std::vector<std::string> &entries, const char *name);

// A text field of a record, which a caller may have filled to its last byte.
template <std::size_t N>
std::string FieldText(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

// What the picker opens on: the record's own entry with the record's user and
// password; failing that, the first entry with the user remembered for it and
// no password (with no entries at all, nothing selectable and empty fields).
struct PickerOpening {
    int index;
    std::string user, password;
};
PickerOpening OpeningFor(const std::vector<std::string> &entries, const DataSourceRecord &record,
                         std::string (*remembered)(const char *) = RememberedUser);

} // namespace kodbc::tools
