// The embedded default: a small SQLite database with German sample data and
// a user data source for it, created when missing, then shown.
#include "commands.h"
#include "terminal.h"

#include <odbcinst.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace kodbc_cli {
namespace {

constexpr const char *kDemoDsn = "kodbc_demo";
constexpr const char *kDemoDriver = "SQLite3";

std::filesystem::path DemoDatabasePath() {
    const char *data = std::getenv("XDG_DATA_HOME");
    const char *home = std::getenv("HOME");
    std::filesystem::path base = data && *data ? data : std::filesystem::path(home ? home : "/tmp") / ".local/share";
    return base / "kodbc" / "demo.db";
}

bool DataSourceExists(const std::string &wanted) {
    SQLHENV henv = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocEnv(&henv))) return false;
    SQLCHAR name[200], description[200];
    SQLSMALLINT nameLength = 0, descriptionLength = 0;
    bool found = false;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (!found && SQL_SUCCEEDED(SQLDataSources(henv, direction, name, sizeof name, &nameLength, description,
                                                  sizeof description, &descriptionLength))) {
        found = wanted == reinterpret_cast<char *>(name);
        direction = SQL_FETCH_NEXT;
    }
    SQLFreeEnv(henv);
    return found;
}

void ReportInstallerError() {
    DWORD code = 0;
    char text[512] = {};
    WORD length = 0;
    SQLInstallerError(1, &code, text, sizeof text, &length);
    Error(std::string("Datenquelle ") + kDemoDsn + " konnte nicht angelegt werden: " + text);
}

// The driver steps through a result row by row instead of reading all of it
// into memory first: exports of large tables stay small. Also set on a data
// source an earlier version of the demo wrote without it.
bool EnsureStreaming() {
    char value[16] = {};
    SQLGetPrivateProfileString(kDemoDsn, "StepAPI", "", value, sizeof value, "odbc.ini");
    if (std::string(value) == "1") return true;
    if (SQLWritePrivateProfileString(kDemoDsn, "StepAPI", "1", "odbc.ini")) return true;
    ReportInstallerError();
    return false;
}

// Written straight into the user's data sources: the driver's own setup
// routine needs a window system that a terminal does not have.
bool CreateDataSource(const std::filesystem::path &database) {
    bool ok = SQLWriteDSNToIni(kDemoDsn, kDemoDriver) &&
              SQLWritePrivateProfileString(kDemoDsn, "Description", "kodbc Beispieldaten", "odbc.ini") &&
              SQLWritePrivateProfileString(kDemoDsn, "Database", database.string().c_str(), "odbc.ini");
    if (!ok) ReportInstallerError();
    return ok && EnsureStreaming();
}

bool Execute(SQLHDBC hdbc, const std::string &sql) {
    SQLHSTMT stmt = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc, &stmt))) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return false;
    }
    SQLRETURN rc = SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS);
    bool ok = SQL_SUCCEEDED(rc) || rc == SQL_NO_DATA;
    if (!ok) Kodbc_DisplayErrorHstmt(stmt, sql.c_str());
    SQLFreeStmt(stmt, SQL_DROP);
    return ok;
}

bool HasSampleData(SQLHDBC hdbc) {
    SQLHSTMT stmt = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc, &stmt))) return false;
    bool found = false;
    if (SQL_SUCCEEDED(SQLTables(stmt, nullptr, 0, nullptr, 0, (SQLCHAR *)"Kunden", SQL_NTS, nullptr, 0)))
        found = SQL_SUCCEEDED(SQLFetch(stmt));
    SQLFreeStmt(stmt, SQL_DROP);
    return found;
}

// Names with blanks and umlauts on purpose: they are what quoting is for.
const std::vector<std::string> kSampleData = {
    R"(CREATE TABLE "Kunden" ("Kunden-Nr" INTEGER PRIMARY KEY, "Firma" VARCHAR(60) NOT NULL,
        "Straße" VARCHAR(60), "PLZ" CHAR(5), "Ort" VARCHAR(40), "Kunde seit" DATE))",
    R"(CREATE TABLE "Artikel" ("Artikel-Nr" INTEGER PRIMARY KEY, "Bezeichnung" VARCHAR(60) NOT NULL,
        "Stückpreis" DECIMAL(10,2), "Lagerbestand" INTEGER))",
    R"(CREATE TABLE "Aufträge" ("Auftrags-Nr" INTEGER PRIMARY KEY, "Kunden-Nr" INTEGER NOT NULL,
        "Artikel-Nr" INTEGER NOT NULL, "Menge" INTEGER, "Bestellt am" TIMESTAMP, "Bemerkung" VARCHAR(200)))",
    R"(INSERT INTO "Kunden" VALUES (1, 'Müller & Söhne GmbH', 'Hauptstraße 12', '80331', 'München', '1998-03-15'))",
    R"(INSERT INTO "Kunden" VALUES (2, 'Bäckerei Größl', 'Am Mühlbach 3', '93047', 'Regensburg', '2004-11-02'))",
    R"(INSERT INTO "Kunden" VALUES (3, 'Weiß Büroausstattung KG', 'Königsallee 88', '40212', 'Düsseldorf', '2011-06-30'))",
    R"(INSERT INTO "Kunden" VALUES (4, 'Schäfer Elektro', 'Lindenweg 5', '01067', 'Dresden', '2019-01-21'))",
    R"(INSERT INTO "Artikel" VALUES (100, 'Bürostuhl „Komfort“', 249.90, 12))",
    R"(INSERT INTO "Artikel" VALUES (101, 'Schreibtisch Eiche, 160 cm', 589.00, 4))",
    R"(INSERT INTO "Artikel" VALUES (102, 'Aktenordner, 10 Stück', 19.95, 230))",
    R"(INSERT INTO "Artikel" VALUES (103, 'Kühlschrank für Teeküche', 329.00, 2))",
    R"(INSERT INTO "Aufträge" VALUES (5001, 1, 100, 6, '2024-02-01 09:30:00', 'Lieferung bis Monatsende'))",
    R"(INSERT INTO "Aufträge" VALUES (5002, 2, 103, 1, '2024-02-03 14:05:00', NULL))",
    R"(INSERT INTO "Aufträge" VALUES (5003, 3, 101, 2, '2024-02-10 11:00:00', 'Aufbau gewünscht'))",
    R"(INSERT INTO "Aufträge" VALUES (5004, 1, 102, 40, '2024-03-01 08:15:00', NULL))",
    R"(INSERT INTO "Aufträge" VALUES (5005, 4, 100, 2, '2024-03-12 16:45:00', 'Rückruf vor Lieferung'))",
};

} // namespace

int RunDemo() {
    std::filesystem::path database = DemoDatabasePath();
    std::error_code error;
    std::filesystem::create_directories(database.parent_path(), error);

    if (!DataSourceExists(kDemoDsn)) {
        std::printf("Lege die Datenquelle %s an (%s) …\n", kDemoDsn, database.string().c_str());
        if (!CreateDataSource(database)) return kExitFailed;
    } else if (!EnsureStreaming()) {
        return kExitFailed;
    }
    {
        Connection connection(kDemoDsn, "", "");
        if (!connection.ok()) return kExitFailed;
        if (!HasSampleData(connection.hdbc())) {
            std::printf("Fülle die Beispieldatenbank …\n");
            for (const std::string &sql : kSampleData)
                if (!Execute(connection.hdbc(), sql)) return kExitFailed;
        }
    }

    std::printf("\n== Treiberinformationen ==\n");
    if (int rc = ShowInfo(kDemoDsn, {}); rc != kExitOk) return rc;
    std::printf("\n== Tabellen ==\n");
    if (int rc = ListTables(kDemoDsn, {}); rc != kExitOk) return rc;
    std::printf("\n== Aufträge mit Kunden und Artikeln ==\n");
    return RunSql(kDemoDsn, {},
                  R"(SELECT a."Auftrags-Nr", k."Firma", k."Ort", r."Bezeichnung", a."Menge", a."Bestellt am" )"
                  R"(FROM "Aufträge" a JOIN "Kunden" k ON k."Kunden-Nr" = a."Kunden-Nr" )"
                  R"(JOIN "Artikel" r ON r."Artikel-Nr" = a."Artikel-Nr" ORDER BY a."Auftrags-Nr")");
}

} // namespace kodbc_cli
