#include "tools/remembered_user.h"

#include "internal/library.h"

#include <korvel/korvel32.h>

namespace kodbc::tools {

std::string RememberedUser(const char *dataSource) {
    if (!dataSource || !*dataSource) return {};
    char user[kUserLimit + 1] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kDataSourceDialogSection, dataSource, "", user,
                              sizeof user);
    return user;
}

bool RememberUser(const char *dataSource, const char *user) {
    if (!dataSource || !*dataSource) return false;
    return Korvel_WriteRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kDataSourceDialogSection, dataSource,
                                      user ? user : "") == 1;
}

bool RememberChoice(const DataSourceRecord &chosen) { return RememberUser(chosen.DataSourceName, chosen.UserId); }

int FindExactEntry(const std::vector<std::string> &entries, const char *name) {
    if (!name) return -1;
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (entries[i] == name) return static_cast<int>(i);
    return -1;
}

PickerOpening OpeningFor(const std::vector<std::string> &entries, const DataSourceRecord &record,
                         std::string (*remembered)(const char *)) {
    const int found = FindExactEntry(entries, FieldText(record.DataSourceName).c_str());
    if (found >= 0) return {found, FieldText(record.UserId), FieldText(record.Password)};
    return {0, remembered(entries.empty() ? "" : entries[0].c_str()), ""};
}

} // namespace kodbc::tools
