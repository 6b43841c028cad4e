// Table operations, selection descriptors and the system table.
#include "commands.h"
#include "descriptor_file.h"
#include "terminal.h"

#include <cstdio>
#include <vector>

namespace kodbc_cli {
namespace {

constexpr int kWhereSize = 30000;

bool WhereFromDescriptor(SQLHDBC hdbc, const std::string &path, std::string &where) {
    std::string descriptor;
    if (!ReadDescriptor(path, descriptor)) return false;
    std::vector<char> out(kWhereSize);
    if (Kodbc_SelDesc_To_WhereClause(hdbc, descriptor.c_str(), out.data(), kWhereSize) != 0) return false;
    where = out.data();
    return true;
}

} // namespace

int CountRecords(const std::string &dsn, const Login &login, const std::string &table, const std::string &whereFile) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    std::string where;
    if (!whereFile.empty() && !WhereFromDescriptor(connection.hdbc(), whereFile, where)) return kExitFailed;
    // 0 is both an empty table and a failure; a failure has been shown.
    long count = Kodbc_GetRecordCountExt(connection.hdbc(), table.c_str(), where.empty() ? nullptr : where.c_str(), 0);
    std::printf("%ld\n", count);
    return kExitOk;
}

int PrintWhere(const std::string &dsn, const Login &login, const std::string &descriptorFile) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    std::string where;
    if (!WhereFromDescriptor(connection.hdbc(), descriptorFile, where)) return kExitFailed;
    std::printf("%s\n", where.c_str());
    return kExitOk;
}

int SystemTable(const std::string &dsn, const Login &login, const SystemTableRequest &request) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    SQLHDBC hdbc = connection.hdbc();
    if (request.action == "get") {
        std::vector<char> value(10000);
        int rc = Kodbc_ReadSysTableString(hdbc, request.object.c_str(), request.type.c_str(), request.item.c_str(), "",
                                          value.data(), static_cast<int>(value.size()));
        if (rc == 0) return kExitFailed;
        std::printf("%s\n", value.data());
        return kExitOk;
    }
    if (request.action == "set")
        return Kodbc_WriteSysTableString(hdbc, request.object.c_str(), request.type.c_str(), request.item.c_str(),
                                         request.value.c_str()) == 1
                   ? kExitOk
                   : kExitFailed;
    if (request.action == "delete")
        return Kodbc_DeleteSysTableItem(hdbc, request.object.c_str(), request.type.c_str(), request.item.c_str()) == 1
                   ? kExitOk
                   : kExitFailed;
    Error("unbekannte Aktion '" + request.action + "' (get, set, delete)");
    return kExitUsage;
}

int DropTable(const std::string &dsn, const Login &login, const std::string &table, bool assumeYes) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    // Without --yes the library asks, on the terminal or (no terminal) with the safe answer No.
    int flags = assumeYes ? KODBC_DROP_NO_QUESTION : 0;
    return Kodbc_DeleteTable(connection.hdbc(), table.c_str(), flags) == 1 ? kExitOk : kExitFailed;
}

int RenameTable(const std::string &dsn, const Login &login, const std::string &oldName, const std::string &newName) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    if (Kodbc_RenameTable(connection.hdbc(), oldName.c_str(), newName.c_str(), 0) != 1) {
        Error("Die Tabelle wurde nicht umbenannt.");
        return kExitFailed;
    }
    return kExitOk;
}

} // namespace kodbc_cli
