// The tool's commands. Each returns an exit code (kExitOk, kExitFailed).
#pragma once

#include <string>

namespace kodbc_cli {

struct Login {
    std::string user;
    std::string password;
};

int ListDataSources();
int ShowInfo(const std::string &dsn, const Login &login);
int ListTables(const std::string &dsn, const Login &login);
int RunSql(const std::string &dsn, const Login &login, const std::string &statement);
int RunDemo();

} // namespace kodbc_cli
