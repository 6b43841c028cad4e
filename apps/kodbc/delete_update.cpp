// Deleting and updating the records a selection descriptor selects, with
// the delete-records and update-records wizards' work.
#include "commands.h"
#include "descriptor_file.h"
#include "terminal.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace kodbc_cli {
namespace {

constexpr int kWholeClauseSize = 30000;
// The statement keeps this much of its WHERE condition and SET clause; the
// formatter keeps 299 characters of the SET clause.
constexpr int kStatementClauseSize = 500;
constexpr std::size_t kSetClauseChars = 299;

// The wizards shorten a long condition for their statement, which would
// then touch other records than were counted (a lone group that is too
// long vanishes and leaves every record). A script is refused instead.
bool ConditionFits(SQLHDBC hdbc, const std::string &selDesc) {
    std::vector<char> whole(kWholeClauseSize), kept(kStatementClauseSize);
    Kodbc_SelDesc_To_WhereClause(hdbc, selDesc.c_str(), whole.data(), kWholeClauseSize);
    Kodbc_SelDesc_To_WhereClause(hdbc, selDesc.c_str(), kept.data(), kStatementClauseSize);
    if (std::strcmp(whole.data(), kept.data()) == 0) return true;
    Error("Die Bedingung ist für den Befehl zu lang (höchstens 499 Zeichen SQL).");
    return false;
}

// A shortened SET clause may still be valid and change fewer fields.
bool SetClauseFits(SQLHDBC hdbc, const std::string &setDesc) {
    std::vector<char> whole(kWholeClauseSize);
    Kodbc_OpDesc_To_SetClause(hdbc, setDesc.c_str(), whole.data(), kWholeClauseSize);
    if (std::strlen(whole.data()) <= kSetClauseChars) return true;
    Error("Die Zuweisungen sind für den Befehl zu lang (höchstens 299 Zeichen SQL).");
    return false;
}

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
    if (!ConditionFits(hdbc, selDesc)) return kExitFailed;

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
    if (!ConditionFits(hdbc, selDesc) || !SetClauseFits(hdbc, setDesc)) return kExitFailed;

    long count = 0;
    // Refusals (no record matches, nothing to assign) have been shown.
    if (Kodbc_UpdateRecords(hdbc, table.c_str(), selDesc.c_str(), setDesc.c_str(), &count) != KODBC_SUCCESS)
        return kExitFailed;
    std::printf("%ld\n", count);
    return kExitOk;
}

} // namespace kodbc_cli
