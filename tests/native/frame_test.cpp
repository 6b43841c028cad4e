// The library frame: its German string table, list header texts, identity,
// messages, file error mappings, connections with their diagnostics and
// driver queries on every data source, data-source records in the registry.
#include "test_support.h"

#include "internal/diagnostics.h"
#include "internal/driver_info.h"
#include "internal/library.h"
#include "internal/list_header.h"
#include "internal/odbc_handles.h"

#include <korvel/korvel32.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

// Exact texts (prefixes, double blanks, line breaks, umlauts, the spellings
// the applications have always shown), written out independently of the
// resource source, byte for byte; texts other tests read whole are left out.
// Numbers the table does not hold, and the join type without a label whose
// text is empty, read as "nothing there"; so does a call without room.
TEST(StringTable, ExactTextsLengthsMissingEntriesAndCuts) {
    ScopedLocale utf8;  // the loader hands out text in the locale's charset
    ASSERT_TRUE(utf8.ok());
    const struct {
        int id;
        const char *text;
    } samples[] = {
        {msg::TABLE_DROPPED, "Die Tabelle wurde gelöscht"},
        {436, "Der SQL-Befehl wurde fehlerfrei ausgeführt"},
        {1600, "s Speichermangel"},
        {1606, "! Eventuell ist die Datenbank schreibgeschützt oder hat keinen Primärindex."},
        {1613, "s Fehler beim ODBC-Datenbankzugriff.\n\nFehlerschlüssel %s\n\n%s\n\n%s"},
        {1616, "s Es existiert bereits eine gleichnamige Tabelle oder Abfrage in dieser Datenquelle. "},
        {1618, "s Es wurde eine unerwartete schließende Klammer gefunden.\n\n%s"},
        {1637, "s Die Datei  %s  befindet sich bereits im Zugriff."},
        {1654, "s Alle Tabellen außer der ersten müssen Verknüfungen mit anderen Tabellen sein."},
        {1703, "?YNC Sie sind im Begriff, ein Feld aus einer Tabelle zu löschen. Dabei geht der dieses "
               "Feldes in allen Datensätzen der Tabelle unwiederbringlich verloren.\n\nWollen Sie das "
               "Feld  '%s'  wirklich löschen?"},
        {1704, "?YN Soll der Primärschlüssel der Tabelle wirklich gelöscht werden?"},
        {1805, "Selektionsmasken (*.sms)|*.sms|"},
        {2163, "Es werden insgesamt  %ld  Datensätze aus der Tabelle gelöscht.\n\nDrücken Sie auf "
               "'Fertigstellen' um die Datensätze endgültig zu löschen."},
        {2910, "Ändern von Datensätzen in einer Tabelle"},
        {3000, "Der Treiber meldet eine ungültige Parameterzahl.\r\n\r\nVermutlich wurden in einer "
               "Tabelle Felder angesprochen, die in dieser Tabelle nicht existieren."},
        {3501, "Tabelle|150\tAlias|120\tVerknüpfungtyp|140\tVerknüpfungsbedingung|300"},
        {3612, ">"},
    };
    for (const auto &sample : samples) {
        char text[2000];
        std::memset(text, 'x', sizeof text);
        EXPECT_EQ(LoadLibraryString(LibraryInstance(), sample.id, text, sizeof text),
                  static_cast<int>(std::strlen(sample.text)))
            << "string " << sample.id;
        EXPECT_STREQ(text, sample.text) << "string " << sample.id;
    }
    for (int id : {0, -1, 1, 1601, 1615, 2901, 3600, 65535, 1000000}) {
        auto load = [&](char *out, int n) { EXPECT_EQ(LoadLibraryString(LibraryInstance(), id, out, n), 0); };
        EXPECT_EQ(Guarded(50, load), "") << id;
    }
    EXPECT_EQ(LoadLibraryString(LibraryInstance(), 2900, nullptr, 100), 0);
    for (int size : {0, -5})
        Guarded(0,
                [&](char *out, int) { EXPECT_EQ(LoadLibraryString(LibraryInstance(), 2900, out, size), 0) << size; });

    // Cut to size - 1, never past it. Where the cut falls inside a multi-byte
    // character the loader may drop the partial character; elsewhere nothing
    // more is lost.
    const std::string full = "s Die Tabelle hat bereits einen Primärschlüssel";  // 1647
    for (int size = 1; size <= static_cast<int>(full.size()) + 2; ++size) {
        int n = -1;
        const std::string text =
            Guarded(size, [&](char *out, int s) { n = LoadLibraryString(LibraryInstance(), 1647, out, s); });
        EXPECT_EQ(n, static_cast<int>(text.size())) << "size " << size;
        const std::string expected = full.substr(0, static_cast<std::size_t>(size - 1));
        const bool splits = expected.size() < full.size() && (full[expected.size()] & 0xC0) == 0x80;
        if (splits)
            EXPECT_EQ(full.compare(0, text.size(), text), 0) << "size " << size << ": " << text;
        else
            EXPECT_EQ(text, expected) << "size " << size;
        EXPECT_LE(text.size(), expected.size()) << "size " << size;
    }
}

// Tab-separated columns (a "C" centres one) and the bar-only run read alike.
TEST(ListHeader, CaptionsWidthsAndCentredColumns) {
    const struct {
        const char *header;
        std::vector<ListHeaderColumn> columns;
    } cases[] = {
        {"Spalte|225\tAlias|120", {{"Spalte", 225}, {"Alias", 120}}},
        {"Datentyp|100\tLeer erlaubt|70|C\tKommentar|300",
         {{"Datentyp", 100}, {"Leer erlaubt", 70, true}, {"Kommentar", 300}}},
        {"Feld|90|Importieren als|90|AutoInc|50", {{"Feld", 90}, {"Importieren als", 90}, {"AutoInc", 50}}},
        {"Spalte\t\tAlias|\t", {{"Spalte", 100}, {"Alias", 0}}},
        {"", {}},
    };
    for (const auto &c : cases) EXPECT_EQ(ParseListHeader(c.header), c.columns) << c.header;
}

TEST(FrameMessages, ErrorCodesFileErrorsAndTheHandlerWithPrefixAndArguments) {
    // 1601 shares 1602's row; 1606 and the end row are no entries.
    const std::pair<int, unsigned> codes[] = {{1600, 0x8004A014u}, {1601, 0x8004A015u}, {1602, 0x8004A015u},
                                              {1607, 0x8004A02Eu}, {1618, 0x8004A031u}, {1614, 0x8004A034u},
                                              {1606, 0x8004A000u}, {0, 0x8004A000u}};
    for (const auto &[message, code] : codes) EXPECT_EQ(MessageErrorCode(message), code) << message;
    const struct {
        int error, errorClass, openMessage;
    } files[] = {{ENOENT, 3, 1638}, {EACCES, 2, 1637}, {EEXIST, 4, 1639}, {EMFILE, 5, 1640}, {ENOSPC, 6, 1638}};
    for (const auto &f : files) {
        EXPECT_EQ(FileErrorClass(f.error), f.errorClass) << f.error;
        EXPECT_EQ(FileOpenErrorMessage(f.error), f.openMessage) << f.error;
    }

    MessageRecorder recorder(KODBC_ANSWER_OK);
    LibraryMessage(msg::NO_DATA_SOURCE);
    LibraryMessage(msg::FILE_NOT_FOUND, "/tmp/x.txt");
    // Without arguments the placeholders are the base library's business:
    // nothing of the message around them may be lost.
    LibraryMessage(msg::FILE_NOT_FOUND);
    ASSERT_EQ(recorder.entries().size(), 3u);
    EXPECT_EQ(recorder.entries()[0].kind, KODBC_MESSAGE_STOP);
    EXPECT_EQ(recorder.entries()[0].caption, "Datenbank");
    EXPECT_EQ(recorder.entries()[0].text, "Es ist keine Datenquelle angegeben");
    EXPECT_EQ(recorder.entries()[1].text, "Die Datei  /tmp/x.txt  existiert nicht.");
    EXPECT_EQ(recorder.entries()[2].text.rfind("Die Datei ", 0), 0u);
    EXPECT_NE(recorder.entries()[2].text.find("existiert nicht."), std::string::npos);

    // Whatever the person answered comes back unchanged.
    for (int answer : {KODBC_ANSWER_YES, KODBC_ANSWER_CANCEL}) {
        recorder.set_answer(answer);
        EXPECT_EQ(LibraryMessage(msg::OUT_OF_MEMORY), answer);
    }
}

// The database type is decided by the whole name, except Oracle's; brackets
// give vendor, component, data source and text; tolerance lists work without
// a handle.
TEST(Diagnostics, DatabaseTypeMessageSplitAndToleranceWithoutAHandle) {
    const std::pair<const char *, int> cases[] = {
        {"Microsoft SQL Server", KODBC_DBTYPE_SQLSERVER}, {"MICROSOFT sql SERVER", KODBC_DBTYPE_SQLSERVER},
        {"ACCESS", KODBC_DBTYPE_ACCESS},                 {"ACCESS 2000", KODBC_DBTYPE_OTHER},
        {"Oracle9", KODBC_DBTYPE_ORACLE},                {"ORACLE 11.2", KODBC_DBTYPE_ORACLE},
        {"Oracl", KODBC_DBTYPE_OTHER},                   {"MySQL", KODBC_DBTYPE_MYSQL},
        {"MySQL 8", KODBC_DBTYPE_OTHER},                 {"progress", KODBC_DBTYPE_PROGRESS},
        {"Excel", KODBC_DBTYPE_EXCEL},                   {"MariaDB", KODBC_DBTYPE_OTHER},
        {"", KODBC_DBTYPE_OTHER},                        {nullptr, KODBC_DBTYPE_OTHER}};
    for (const auto &[name, type] : cases) EXPECT_EQ(DatabaseTypeFromName(name), type) << (name ? name : "(null)");

    const struct {
        std::string message, fields;  // vendor|component|data source|description
    } splits[] = {
        {"[unixODBC][Driver Manager][kodbc_pg]refused", "unixODBC|Driver Manager|kodbc_pg|refused"},
        {"[A][B]text", "A|B||text"},
        {"no such table: x (1)", "no such table: x (1)|||"},
        // Only leading "[" are removed; a "]" inside the description stays.
        {"[[X][Y][Z]see a[1] here", "X|Y|Z|see a[1] here"},
        // Pieces are cut at 299 characters, the "[" among them.
        {"[" + std::string(400, 'v') + "][C]rest", std::string(298, 'v') + "|C||rest"},
    };
    for (const auto &c : splits) {
        DiagnosticFields f;
        SplitDiagnosticMessage(c.message.c_str(), f);
        EXPECT_EQ(f.vendor + "|" + f.component + "|" + f.dataSource + "|" + f.description, c.fields) << c.message;
    }
    const struct {
        const char *list;
        SQLRETURN rc;
        int tolerated;
    } lists[] = {{nullptr, SQL_ERROR, 0}, {"", SQL_ERROR, 0},       {" \t\x01 ", SQL_ERROR, 0},
                 {"*", SQL_ERROR, 1},     {" *", SQL_ERROR, 0},     {"01004,NOINFO", SQL_SUCCESS_WITH_INFO, 1},
                 {"noinfo", SQL_SUCCESS_WITH_INFO, 0},              {"NOINFO", SQL_ERROR, 0}};
    for (const auto &c : lists)
        EXPECT_EQ(Kodbc_IsLastErrorInList(KODBC_HANDLE_STMT, nullptr, c.list, c.rc), c.tolerated)
            << (c.list ? c.list : "(null)") << " rc " << c.rc;
}

TEST(FrameWithoutConnection, IdentityDriverQueriesAndConnectRefusals) {
    EXPECT_NE(Kodbc_GetInstance(), nullptr);
    EXPECT_EQ(Guarded(32, [](char *out, int n) { EXPECT_EQ(Kodbc_GetVersion(out, n), 7); }), "5.2.0.0");
    EXPECT_EQ(Guarded(5, [](char *out, int n) { Kodbc_GetPoloModuleName(out, n); }), "KODB");
    Guarded(0, [](char *out, int n) { EXPECT_EQ(Kodbc_GetPoloModuleName(out, n), 0); });
    EXPECT_EQ(Kodbc_GetPoloModuleName(nullptr, 10), 0);

    EXPECT_EQ(Kodbc_GetDatabaseType(nullptr), KODBC_DBTYPE_OTHER);
    EXPECT_EQ(Kodbc_GetDelimiter(nullptr), 0);
    EXPECT_EQ(Kodbc_GetSchemaUsage(nullptr), 0u);
    EXPECT_EQ(Guarded(8, [](char *out, int n) { Kodbc_GetDatabaseName(nullptr, out, n); }), "");
    char untouched[4] = "xyz";
    Kodbc_GetDataSourceName(nullptr, untouched, 0);
    EXPECT_STREQ(untouched, "xyz");

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
    EXPECT_TRUE(henv == nullptr && hdbc == nullptr);
    ASSERT_EQ(recorder.entries().size(), 1u);
    const auto &shown = recorder.entries()[0];
    EXPECT_EQ(shown.kind, KODBC_MESSAGE_ODBC_ERROR);
    EXPECT_EQ(shown.sqlState, "IM002");
    EXPECT_EQ(shown.caption, "Fehler beim ODBC-Datenbankzugriff");

    // Handles that no driver could accept: touching them would crash or fail.
    recorder.clear();
    henv = reinterpret_cast<SQLHENV>(0x1);
    hdbc = reinterpret_cast<SQLHDBC>(0x2);
    EXPECT_EQ(Kodbc_ConnectDataSource(&source, &henv, &hdbc), 0);
    EXPECT_TRUE(henv == reinterpret_cast<SQLHENV>(0x1) && hdbc == reinterpret_cast<SQLHDBC>(0x2));
    EXPECT_TRUE(recorder.entries().empty());
}

using ConnectionTest = DataSourceTest;

// The fixture connected with empty user and password fields: the server
// data sources carry their login in the data source, which empty strings
// passed to the driver would override.
TEST_P(ConnectionTest, EmptyLoginConnectsAndDriverQueriesMatchTheDbms) {
    const std::string dbms = DbmsName();
    const bool pg = dbms == "PostgreSQL", sqlite = dbms == "SQLite";
    EXPECT_EQ(Kodbc_GetDelimiter(hdbc_), pg || sqlite ? '"' : '`') << dbms;
    EXPECT_EQ(Kodbc_GetDatabaseType(hdbc_), DatabaseTypeFromName(dbms.c_str())) << dbms;
    if (pg || sqlite) {
        EXPECT_EQ(Kodbc_GetSchemaUsage(hdbc_) != 0, pg) << dbms;
    }

    // Short buffers are cut, never overrun.
    for (int size : {100, 4})
        EXPECT_EQ(Guarded(size, [&](char *out, int n) { Kodbc_GetDataSourceName(hdbc_, out, n); }),
                  GetParam().substr(0, static_cast<std::size_t>(size) - 1));
    EXPECT_EQ(Guarded(3, [&](char *out, int n) { Kodbc_GetDriverVersion(hdbc_, out, n); }).size(), 2u);
}

TEST_P(ConnectionTest, ErrorCodeToleranceAndDisplayShowTheFirstRecordWarningsOnlyWithTheDumpBit) {
    const char *const kBadStatement = "SELECT * FROM kodbc_no_such_table";
    const odbc::Statement stmt(hdbc_), clean(hdbc_);
    ASSERT_EQ(SQLExecDirect(stmt, (SQLCHAR *)kBadStatement, SQL_NTS), SQL_ERROR);
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

    // Warnings are shown only with the dump bit, a clean statement shows nothing.
    messages_.clear();
    EXPECT_EQ(Kodbc_DisplayErrorHstmt(clean, "SELECT 1"), 1);
    EXPECT_EQ(Kodbc_DisplayErrorHdbc(nullptr), 1);
    EXPECT_EQ(Guarded(8, [&](char *out, int n) { Kodbc_GetErrorCode(KODBC_HANDLE_STMT, clean, out, n); }), "");

    SetDumpState(0);
    EXPECT_EQ(Kodbc_DisplayErrorOrInfoHstmt(stmt, SQL_SUCCESS_WITH_INFO, "UPDATE x"), 1);
    EXPECT_TRUE(messages_.entries().empty());
    SetDumpState(KORVEL_DUMP_WARNINGS);
    EXPECT_EQ(Kodbc_DisplayErrorOrInfoHstmt(stmt, SQL_SUCCESS_WITH_INFO, "UPDATE x"), 2);
    EXPECT_EQ(messages_.entries().size(), 1u);
}

KODBC_DATA_SOURCE_TEST_SUITE(ConnectionTest);

using RegistryRecords = PrivateRegistryTest;

TEST_F(RegistryRecords, RoundTripDefaultsFieldByFieldAndUserBeforeMachine) {
    DataSourceRecord written{"Lager Süd", "müller", "geheim", {}};
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
    const DataSourceRecord defaults{"Standard", "gast", "", {}};
    for (const DataSourceRecord *def : {&defaults, static_cast<const DataSourceRecord *>(nullptr)}) {
        std::memset(&read, 'x', sizeof read);
        Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Nowhere", def, &read);
        EXPECT_EQ(fields(), def ? "Standard|gast|" : "||");
        std::memset(&read, 'x', sizeof read);
        Kodbc_ReadDataSourceFromHKCUorHKLM(kKey, "Nowhere", def, &read);
        EXPECT_EQ(fields(), def ? "Standard|gast|" : "||");
    }

    DataSourceRecord machine{"Zentrale", "admin", "", {}}, user{"Filiale", "", "", {}};
    Kodbc_WriteDataSourceToRegistry(HKEY_LOCAL_MACHINE, kKey, 0, "DataSourceDialog", &machine);
    Kodbc_ReadDataSourceFromHKCUorHKLM(kKey, "DataSourceDialog", nullptr, &read);
    EXPECT_EQ(fields(), "Zentrale|admin|");
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kKey, 0, "DataSourceDialog", &user);
    Kodbc_ReadDataSourceFromHKCUorHKLM(kKey, "DataSourceDialog", nullptr, &read);
    EXPECT_EQ(fields(), "Filiale||");

    DbObjectRecord object{"Aufträge", KODBC_OBJECT_VIEW}, objectDefaults{"Kunden", KODBC_OBJECT_TABLE}, got{};
    Kodbc_WriteDbObjectToRegistry(HKEY_CURRENT_USER, kKey, 0, "Export", &object);
    auto objectFields = [&got] { return std::string(got.DbObjectName) + "|" + std::to_string(got.DbObjectType); };
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Export", nullptr, &got);
    EXPECT_EQ(objectFields(), "Aufträge|" + std::to_string(KODBC_OBJECT_VIEW));
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Import", &objectDefaults, &got);
    EXPECT_EQ(objectFields(), "Kunden|" + std::to_string(KODBC_OBJECT_TABLE));
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kKey, 0, "Import", nullptr, &got);
    EXPECT_EQ(objectFields(), "|0");
}

} // namespace
} // namespace kodbc::test
