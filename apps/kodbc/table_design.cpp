// Table design: the create-table wizard's and the table administration's
// work on the command line.
#include "commands.h"
#include "terminal.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>

namespace kodbc_cli {

int TypeCode(const std::string &name) {
    // The dialogs' names first, then the usual SQL names, each for the
    // library type that holds its values.
    static const struct {
        const char *name;
        int code;
    } kTypes[] = {
        {"FixText", KODBC_TYPE_FIXED_TEXT}, {"VarText", KODBC_TYPE_VAR_TEXT},       {"LangText", KODBC_TYPE_LONG_TEXT},
        {"Datum/Zeit", KODBC_TYPE_DATETIME}, {"Ganzzahl", KODBC_TYPE_INTEGER},      {"Gleitkommazahl", KODBC_TYPE_FLOAT},
        {"Binärdaten", KODBC_TYPE_BINARY},
        {"CHAR", KODBC_TYPE_FIXED_TEXT},     {"VARCHAR", KODBC_TYPE_VAR_TEXT},      {"TEXT", KODBC_TYPE_LONG_TEXT},
        {"INTEGER", KODBC_TYPE_INTEGER},     {"INT", KODBC_TYPE_INTEGER},           {"SMALLINT", KODBC_TYPE_INTEGER},
        {"DOUBLE", KODBC_TYPE_FLOAT},        {"FLOAT", KODBC_TYPE_FLOAT},           {"REAL", KODBC_TYPE_FLOAT},
        {"DECIMAL", KODBC_TYPE_FLOAT},       {"DATE", KODBC_TYPE_DATETIME},         {"TIMESTAMP", KODBC_TYPE_DATETIME},
        {"DATETIME", KODBC_TYPE_DATETIME},   {"BLOB", KODBC_TYPE_BINARY},
    };
    for (const auto &type : kTypes)
        if (strcasecmp(type.name, name.c_str()) == 0 || std::to_string(type.code) == name) return type.code;
    return 0;
}

namespace {

std::string TabJoined(const std::vector<std::string> &names) {
    std::string joined;
    for (const std::string &name : names) joined += (joined.empty() ? "" : "\t") + name;
    return joined;
}

} // namespace

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

namespace kodbc_cli {

int AlterTable(const Login &login, const AlterRequest &request) {
    int typeCode = 0;
    if (request.action == "add-column" && (typeCode = TypeCode(request.type)) == 0) {
        Error("unbekannter Datentyp '" + request.type +
              "' (FixText, VarText, LangText, Datum/Zeit, Ganzzahl, Gleitkommazahl, Binärdaten oder CHAR, VARCHAR, "
              "TEXT, INTEGER, INT, SMALLINT, DOUBLE, FLOAT, REAL, DECIMAL, DATE, TIMESTAMP, DATETIME, BLOB)");
        return kExitUsage;
    }
    Connection connection(request.dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    SQLHDBC hdbc = connection.hdbc();
    const char *table = request.table.c_str();
    // Questions go to the terminal; --yes answers them, no terminal says No.
    int rc = KODBC_FAILURE;
    if (request.action == "add-column") {
        rc = Kodbc_AddColumn(hdbc, table, request.column.c_str(), typeCode, request.length);
    } else if (request.action == "drop-column") {
        int dropped = 0;
        rc = Kodbc_DropColumns(hdbc, table, TabJoined(request.columns).c_str(), 0, &dropped);
        std::printf("%d Spalte(n) entfernt\n", dropped);
    } else if (request.action == "add-autoinc") {
        rc = Kodbc_AddAutoIncrementColumn(hdbc, table, request.column.c_str());
    } else if (request.action == "add-pk") {
        rc = Kodbc_AddPrimaryKey(hdbc, table, TabJoined(request.columns).c_str());
    } else if (request.action == "drop-pk") {
        rc = Kodbc_DropPrimaryKey(hdbc, table, 0);
    }
    return rc == KODBC_SUCCESS ? kExitOk : kExitFailed;
}

} // namespace kodbc_cli
