// kodbc — the library's services for scripts and the terminal.
#include "commands.h"
#include "terminal.h"

#include <CLI/CLI.hpp>

#include <clocale>

int main(int argc, char **argv) {
    std::setlocale(LC_ALL, "");
    CLI::App app{"kodbc — Datenbankzugriff über ODBC"};
    app.require_subcommand(1);

    kodbc_cli::Login login;
    bool assumeYes = false;
    app.add_option("-u,--user", login.user, "Benutzer für die Verbindung");
    app.add_option("-p,--password", login.password, "Kennwort für die Verbindung");
    app.add_flag("-y,--yes", assumeYes, "Rückfragen mit Ja beantworten");

    std::string dsn, statement;
    int result = kodbc_cli::kExitUsage;

    auto *datasources = app.add_subcommand("datasources", "Datenquellen des Treibermanagers auflisten");

    auto *info = app.add_subcommand("info", "Treiber- und Datenbankinformationen einer Datenquelle");
    info->add_option("DSN", dsn, "Datenquelle")->required();

    auto *tables = app.add_subcommand("tables", "Tabellen und Sichten einer Datenquelle");
    tables->add_option("DSN", dsn, "Datenquelle")->required();

    auto *sql = app.add_subcommand("sql", "eine SQL-Anweisung ausführen (SELECT: Ergebnis ausgeben)");
    sql->add_option("DSN", dsn, "Datenquelle")->required();
    sql->add_option("STATEMENT", statement, "SQL-Anweisung")->required();

    auto *demo = app.add_subcommand("demo", "Beispieldatenbank anlegen (falls nötig) und vorführen");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &e) {
        int code = app.exit(e);
        return code == 0 ? kodbc_cli::kExitOk : kodbc_cli::kExitUsage;
    }

#ifndef _WIN32
    kodbc_cli::InstallMessageHandler(assumeYes);
#endif
    if (*datasources) result = kodbc_cli::ListDataSources();
    else if (*info) result = kodbc_cli::ShowInfo(dsn, login);
    else if (*tables) result = kodbc_cli::ListTables(dsn, login);
    else if (*sql) result = kodbc_cli::RunSql(dsn, login, statement);
    else if (*demo) result = kodbc_cli::RunDemo();
    return result;
}
