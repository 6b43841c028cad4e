// Table design: the create-table wizard's work on the command line.
#include "commands.h"
#include "terminal.h"

#include <cstdio>

namespace kodbc_cli {

int CreateTable(const std::string &dsn, const Login &login, const std::string &name, const std::string &kind,
                const std::string &from) {
    const int structure = kind == "autoinc" ? KODBC_CREATE_AUTOINC
                          : kind == "copy"  ? KODBC_CREATE_COPY
                                            : KODBC_CREATE_ADDRESS;
    if (structure == KODBC_CREATE_COPY && from.empty()) {
        Error("--kind copy braucht --from TABELLE");
        return kExitUsage;
    }
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    char created[300] = {};
    if (Kodbc_CreateTable(connection.hdbc(), structure, name.c_str(), from.c_str(), created, sizeof created) != 1)
        return kExitFailed;
    std::printf("Tabelle %s angelegt\n", created);
    return kExitOk;
}

} // namespace kodbc_cli
