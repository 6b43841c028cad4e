// Connections, their diagnostics, data-source records and driver queries,
// on every data source.
#include "test_support.h"

#include "internal/diagnostics.h"
#include "internal/driver_info.h"

#include <korvel/korvel32.h>

#include <cstring>

namespace kodbc::test {
namespace {

TEST(DatabaseType, DecidedByTheWholeNameExceptOracle) {
    const std::pair<const char *, int> cases[] = {
        {"Microsoft SQL Server", KODBC_DBTYPE_SQLSERVER}, {"MICROSOFT sql SERVER", KODBC_DBTYPE_SQLSERVER},
        {"ACCESS", KODBC_DBTYPE_ACCESS},                 {"ACCESS 2000", KODBC_DBTYPE_OTHER},
        {"Oracle9", KODBC_DBTYPE_ORACLE},                {"ORACLE 11.2", KODBC_DBTYPE_ORACLE},
        {"Oracl", KODBC_DBTYPE_OTHER},                   {"MySQL", KODBC_DBTYPE_MYSQL},
        {"MySQL 8", KODBC_DBTYPE_OTHER},                 {"progress", KODBC_DBTYPE_PROGRESS},
        {"Excel", KODBC_DBTYPE_EXCEL},                   {"MariaDB", KODBC_DBTYPE_OTHER},
        {"", KODBC_DBTYPE_OTHER},                        {nullptr, KODBC_DBTYPE_OTHER}};
    for (const auto &[name, type] : cases) EXPECT_EQ(DatabaseTypeFromName(name), type) << (name ? name : "(null)");
}

TEST(DiagnosticSplit, BracketsGiveVendorComponentDataSourceAndText) {
    const struct {
        std::string message, fields;  // vendor|component|data source|description
    } cases[] = {
        {"[unixODBC][Driver Manager][kodbc_pg]connection refused", "unixODBC|Driver Manager|kodbc_pg|connection refused"},
        {"[A][B]text", "A|B||text"},
        {"no such table: x (1)", "no such table: x (1)|||"},
        // Only leading "[" are removed; a "]" inside the description stays.
        {"[[X][Y][Z]see a[1] here", "X|Y|Z|see a[1] here"},
        // Pieces are cut at 299 characters, the "[" among them.
        {"[" + std::string(400, 'v') + "][C]rest", std::string(298, 'v') + "|C||rest"},
    };
    for (const auto &c : cases) {
        DiagnosticFields f;
        SplitDiagnosticMessage(c.message.c_str(), f);
        EXPECT_EQ(f.vendor + "|" + f.component + "|" + f.dataSource + "|" + f.description, c.fields) << c.message;
    }
}

TEST(Tolerance, ListsWithoutAHandle) {
    const struct {
        const char *list;
        SQLRETURN rc;
        int tolerated;
    } cases[] = {{nullptr, SQL_ERROR, 0}, {"", SQL_ERROR, 0},       {" \t\x01 ", SQL_ERROR, 0},
                 {"*", SQL_ERROR, 1},     {" *", SQL_ERROR, 0},     {"01004,NOINFO", SQL_SUCCESS_WITH_INFO, 1},
                 {"noinfo", SQL_SUCCESS_WITH_INFO, 0},              {"NOINFO", SQL_ERROR, 0}};
    for (const auto &c : cases)
        EXPECT_EQ(Kodbc_IsLastErrorInList(KODBC_HANDLE_STMT, nullptr, c.list, c.rc), c.tolerated)
            << (c.list ? c.list : "(null)") << " rc " << c.rc;
}

TEST(Connect, RefusesArgumentsAndNamesAndTakesASetPairAsConnected) {
    MessageRecorder recorder;
    DataSourceRecord source{};
    SQLHENV henv = nullptr;
    SQLHDBC hdbc = nullptr;
    EXPECT_EQ(Kodbc_ConnectDataSource(nullptr, &henv, &hdbc), -1);
    EXPECT_EQ(Kodbc_ConnectDataSource(&source, nullptr, &hdbc), -1);
    EXPECT_TRUE(recorder.entries().empty());

    EXPECT_EQ(Kodbc_ConnectDataSource(&source, &henv, &hdbc), -1);
    ASSERT_EQ(recorder.entries().size(), 1u);
    EXPECT_EQ(recorder.entries()[0].text, "Es ist keine Datenquelle angegeben");
    // Disconnecting a pair that never connected, or none, is harmless.
    Kodbc_DisconnectDataSource(nullptr, &hdbc);
    Kodbc_DisconnectDataSource(&henv, nullptr);
    Kodbc_DisconnectDataSource(&henv, &hdbc);

    // An unknown data source: the driver manager's error, the pair left empty.
    recorder.clear();
    std::strcpy(source.DataSourceName, "kodbc_no_such_source");
    EXPECT_EQ(Kodbc_ConnectDataSource(&source, &henv, &hdbc), -1);
    EXPECT_EQ(henv, nullptr);
    EXPECT_EQ(hdbc, nullptr);
    ASSERT_EQ(recorder.entries().size(), 1u);
    const auto &shown = recorder.entries()[0];
    EXPECT_EQ(shown.kind, KODBC_MESSAGE_ODBC_ERROR);
    EXPECT_EQ(shown.sqlState, "IM002");
    EXPECT_EQ(shown.vendor, "unixODBC");
    EXPECT_NE(shown.description.find("not found"), std::string::npos) << shown.description;
    EXPECT_EQ(shown.caption, "Fehler beim ODBC-Datenbankzugriff");

    // Handles that no driver could accept: touching them would crash or fail.
    recorder.clear();
    henv = reinterpret_cast<SQLHENV>(0x1);
    hdbc = reinterpret_cast<SQLHDBC>(0x2);
    EXPECT_EQ(Kodbc_ConnectDataSource(&source, &henv, &hdbc), 0);
    EXPECT_EQ(henv, reinterpret_cast<SQLHENV>(0x1));
    EXPECT_EQ(hdbc, reinterpret_cast<SQLHDBC>(0x2));
    EXPECT_TRUE(recorder.entries().empty());
}

TEST(DriverQueries, NullConnection) {
    EXPECT_EQ(Kodbc_GetDatabaseType(nullptr), KODBC_DBTYPE_OTHER);
    EXPECT_EQ(Kodbc_GetDelimiter(nullptr), 0);
    EXPECT_EQ(Kodbc_GetSchemaUsage(nullptr), 0u);
    GuardedBuffer name(8, 'x');
    Kodbc_GetDatabaseName(nullptr, name.data(), name.size());
    EXPECT_EQ(name.text(), "");
    GuardedBuffer untouched(8, 'x');
    Kodbc_GetDataSourceName(nullptr, untouched.data(), 0);
    EXPECT_EQ(untouched.data()[0], 'x');
}

class ConnectionTest : public DataSourceTest {
protected:
    // A statement; with `failed`, one with a real error on it.
    SQLHSTMT Statement(bool failed) {
        SQLHSTMT stmt = nullptr;
        EXPECT_TRUE(SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, hdbc_, &stmt)));
        statements_.push_back(stmt);
        if (failed) EXPECT_EQ(SQLExecDirect(stmt, (SQLCHAR *)kBadStatement, SQL_NTS), SQL_ERROR);
        return stmt;
    }
    void TearDown() override {
        for (SQLHSTMT stmt : statements_) SQLFreeHandle(SQL_HANDLE_STMT, stmt);
        DataSourceTest::TearDown();
    }
    static constexpr const char *kBadStatement = "SELECT * FROM kodbc_no_such_table";
    std::vector<SQLHSTMT> statements_;
};

// The fixture connected with empty user and password fields: the server
// data sources carry their login in the data source, which empty strings
// passed to the driver would override.
TEST_P(ConnectionTest, EmptyLoginConnectsAndDriverQueriesMatchTheDbms) {
    std::string dbms = DbmsName();
    char quote = Kodbc_GetDelimiter(hdbc_);
    if (dbms == "SQLite") {
        EXPECT_EQ(quote, '"');
        EXPECT_EQ(Kodbc_GetSchemaUsage(hdbc_), 0u);
        EXPECT_EQ(Kodbc_GetDatabaseType(hdbc_), KODBC_DBTYPE_OTHER);
    } else if (dbms == "PostgreSQL") {
        EXPECT_EQ(quote, '"');
        EXPECT_NE(Kodbc_GetSchemaUsage(hdbc_), 0u);
        EXPECT_EQ(Kodbc_GetDatabaseType(hdbc_), KODBC_DBTYPE_OTHER);
    } else {
        EXPECT_EQ(quote, '`') << dbms;
        EXPECT_EQ(Kodbc_GetDatabaseType(hdbc_), DatabaseTypeFromName(dbms.c_str()));
    }

    // Short buffers are cut, never overrun.
    for (int size : {100, 4})
        EXPECT_EQ(Guarded(size, [&](char *out, int n) { Kodbc_GetDataSourceName(hdbc_, out, n); }),
                  GetParam().substr(0, static_cast<std::size_t>(size) - 1));
    EXPECT_EQ(Guarded(3, [&](char *out, int n) { Kodbc_GetDriverVersion(hdbc_, out, n); }).size(), 2u);
}

TEST_P(ConnectionTest, ErrorCodeToleranceAndDisplayShowTheFirstRecord) {
    SQLHSTMT stmt = Statement(true);
    GuardedBuffer state(16);
    EXPECT_EQ(Kodbc_GetErrorCode(KODBC_HANDLE_STMT, stmt, state.data(), state.size()), 5);
    const std::string code = state.text();
    EXPECT_EQ(Guarded(3, [&](char *out, int n) { Kodbc_GetErrorCode(KODBC_HANDLE_STMT, stmt, out, n); }),
              code.substr(0, 2));

    // The list's tokens keep their blanks; the state compares without case.
    std::string lower = code;
    for (char &c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const std::pair<std::string, int> lists[] = {{code, 1},           {"22001," + lower, 1}, {"22001, " + code, 0},
                                                 {" " + code, 0},     {"22001,01004", 0},    {"NOINFO", 0}};
    for (const auto &[list, tolerated] : lists)
        EXPECT_EQ(Kodbc_IsLastErrorInList(KODBC_HANDLE_STMT, stmt, list.c_str(), SQL_ERROR), tolerated) << list;

    // Reading the state must not consume the record: the display still finds it.
    EXPECT_EQ(Kodbc_DisplayErrorHstmt(stmt, kBadStatement), 1);
    ASSERT_EQ(messages_.entries().size(), 1u);
    const auto &shown = messages_.entries()[0];
    EXPECT_EQ(shown.sqlState, code);
    EXPECT_EQ(shown.statement, kBadStatement);
    EXPECT_FALSE(shown.hasHint);
    std::string all = shown.vendor + shown.component + shown.dataSource + shown.description;
    EXPECT_NE(all.find("kodbc_no_such_table"), std::string::npos) << all;

    messages_.set_answer(KODBC_ANSWER_CANCEL);
    EXPECT_EQ(OdbcEh_HandleErrorHstmt(nullptr, stmt, nullptr), 2);
    EXPECT_EQ(messages_.entries().back().statement, "");
}

TEST_P(ConnectionTest, WarningsAreShownOnlyWithTheDumpBitAndNothingShowsNothing) {
    SQLHSTMT clean = Statement(false);
    EXPECT_EQ(Kodbc_DisplayErrorHstmt(clean, "SELECT 1"), 1);
    EXPECT_EQ(Kodbc_DisplayErrorHdbc(nullptr), 1);
    char state[8] = "xxxxxxx";
    Kodbc_GetErrorCode(KODBC_HANDLE_STMT, clean, state, sizeof state);
    EXPECT_STREQ(state, "");

    SQLHSTMT stmt = Statement(true);
    SetDumpState(0);
    EXPECT_EQ(Kodbc_DisplayErrorOrInfoHstmt(stmt, SQL_SUCCESS_WITH_INFO, "UPDATE x"), 1);
    EXPECT_TRUE(messages_.entries().empty());
    SetDumpState(KORVEL_DUMP_WARNINGS);
    messages_.set_answer(KODBC_ANSWER_CANCEL);
    EXPECT_EQ(Kodbc_DisplayErrorOrInfoHstmt(stmt, SQL_SUCCESS_WITH_INFO, "UPDATE x"), 2);
    EXPECT_EQ(messages_.entries().size(), 1u);
}

KODBC_DATA_SOURCE_TEST_SUITE(ConnectionTest);

// Registry records round-trip and take defaults field by field.
using RegistryRecords = PrivateRegistryTest;

DataSourceRecord Source(const char *name, const char *user = "", const char *password = "") {
    DataSourceRecord record{};
    std::strcpy(record.DataSourceName, name);
    std::strcpy(record.UserId, user);
    std::strcpy(record.Password, password);
    return record;
}

TEST_F(RegistryRecords, DataSourceRoundTripDefaultsAndUserBeforeMachine) {
    DataSourceRecord written = Source("Lager Süd", "müller", "geheim");
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kKey, 0, "AddRecords", &written);
    DataSourceRecord read;
    std::memset(&read, 0x5A, sizeof read);
    Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kKey, 0, "AddRecords", nullptr, &read);
    auto fields = [&read] { return std::string(read.DataSourceName) + "|" + read.UserId + "|" + read.Password; };
    EXPECT_EQ(fields(), "Lager Süd|müller|geheim");
    for (unsigned char byte : read.Reserved) ASSERT_EQ(byte, 0x5A);  // the reserved tail is kept
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kKey, 0, "AddRecords", nullptr);  // no-op
    Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kKey, 0, "AddRecords", nullptr, nullptr);

    // Missing values take the defaults field by field, else an empty text,
    // from one root as from the user's and the machine's.
    const DataSourceRecord defaults = Source("Standard", "gast");
    for (const DataSourceRecord *def : {&defaults, static_cast<const DataSourceRecord *>(nullptr)}) {
        std::memset(&read, 'x', sizeof read);
        Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Nowhere", def, &read);
        EXPECT_EQ(fields(), def ? "Standard|gast|" : "||");
        std::memset(&read, 'x', sizeof read);
        Kodbc_ReadDataSourceFromHKCUorHKLM(kKey, "Nowhere", def, &read);
        EXPECT_EQ(fields(), def ? "Standard|gast|" : "||");
    }

    DataSourceRecord machine = Source("Zentrale", "admin"), user = Source("Filiale");
    Kodbc_WriteDataSourceToRegistry(HKEY_LOCAL_MACHINE, kKey, 0, "DataSourceDialog", &machine);
    Kodbc_ReadDataSourceFromHKCUorHKLM(kKey, "DataSourceDialog", nullptr, &read);
    EXPECT_EQ(fields(), "Zentrale|admin|");
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kKey, 0, "DataSourceDialog", &user);
    Kodbc_ReadDataSourceFromHKCUorHKLM(kKey, "DataSourceDialog", nullptr, &read);
    EXPECT_EQ(fields(), "Filiale||");
}

TEST_F(RegistryRecords, DbObjectRoundTripAndDefaults) {
    DbObjectRecord written{"Aufträge", KODBC_OBJECT_VIEW}, defaults{"Kunden", KODBC_OBJECT_TABLE}, read{};
    Kodbc_WriteDbObjectToRegistry(HKEY_CURRENT_USER, kKey, 0, "Export", &written);
    auto fields = [&read] { return std::string(read.DbObjectName) + "|" + std::to_string(read.DbObjectType); };
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Export", nullptr, &read);
    EXPECT_EQ(fields(), "Aufträge|" + std::to_string(KODBC_OBJECT_VIEW));
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Import", &defaults, &read);
    EXPECT_EQ(fields(), "Kunden|" + std::to_string(KODBC_OBJECT_TABLE));
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Import", nullptr, &read);
    EXPECT_EQ(fields(), "|0");
}

} // namespace
} // namespace kodbc::test
