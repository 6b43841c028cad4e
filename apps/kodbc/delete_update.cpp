// Deleting and updating the records a selection descriptor selects, with
// the delete-records and update-records wizards' work.
#include "commands.h"
#include "descriptor_file.h"
#include "terminal.h"

#include <cstdio>

namespace kodbc_cli {
namespace {

bool ReadOptionalDescriptor(const std::string &path, std::string &descriptor) {
    descriptor.clear();
    return path.empty() || ReadDescriptor(path, descriptor);
}

} // namespace

int DeleteRecords(const std::string &dsn, const Login &login, const std::string &table,
                  const std::string &whereFile, bool assumeYes) {
    std::string selDesc;
    if (!ReadOptionalDescriptor(whereFile, selDesc)) return kExitFailed;
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    SQLHDBC hdbc = connection.hdbc();
    // A statement that would reach other records than the count is refused
    // before anything is asked (the refusal has been shown).
    if (Kodbc_CheckRecordStatement(hdbc, table.c_str(), selDesc.c_str(), nullptr) != KODBC_SUCCESS)
        return kExitFailed;

    char summary[KODBC_RECORD_PAGE_TEXT_SIZE];
    Kodbc_DeleteRecordsSummary(hdbc, table.c_str(), selDesc.c_str(), summary, sizeof summary);
    std::printf("%s\n", summary);
    std::fflush(stdout);
    if (!assumeYes && !Confirm("Sollen die Datensätze jetzt gelöscht werden?")) {
        Error("Es wurden keine Datensätze gelöscht.");
        return kExitFailed;
    }
    return Kodbc_DeleteRecords(hdbc, table.c_str(), selDesc.c_str()) == KODBC_SUCCESS ? kExitOk : kExitFailed;
}

int UpdateRecords(const std::string &dsn, const Login &login, const std::string &table, const std::string &setFile,
                  const std::string &whereFile) {
    std::string selDesc, setDesc;
    if (!ReadOptionalDescriptor(whereFile, selDesc) || !ReadDescriptor(setFile, setDesc)) return kExitFailed;
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    SQLHDBC hdbc = connection.hdbc();
    if (Kodbc_CheckRecordStatement(hdbc, table.c_str(), selDesc.c_str(), setDesc.c_str()) != KODBC_SUCCESS)
        return kExitFailed;

    long count = 0;
    // Refusals (no record matches, nothing to assign) have been shown.
    if (Kodbc_UpdateRecords(hdbc, table.c_str(), selDesc.c_str(), setDesc.c_str(), &count) != KODBC_SUCCESS)
        return kExitFailed;
    std::printf("%ld\n", count);
    return kExitOk;
}

} // namespace kodbc_cli
