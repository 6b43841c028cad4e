#include "test_support.h"

#include "internal/odbc_handles.h"

#include <korvel/korvel32.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace kodbc::test {
namespace {

// Without the test command's servers: a private SQLite-only configuration.
struct PrivateEnvironment : ::testing::Environment {
    void SetUp() override {
        const char *dsns = std::getenv("KODBC_TEST_DSNS");
        if (!dsns || !*dsns) {
            setenv("ODBCSYSINI", KODBC_TEST_ODBC_DIR, 1);
            setenv("ODBCINI", KODBC_TEST_ODBC_DIR "/odbc.ini", 1);
            setenv("KODBC_TEST_DSNS", "kodbc_sqlite", 1);
        }
        if (!std::getenv("KODBC_REGISTRY_DIR")) {
            char dir[] = "/tmp/kodbc-registry-XXXXXX";
            if (mkdtemp(dir)) setenv("KODBC_REGISTRY_DIR", dir, 1);
        }
    }
};
const auto *const g_environment = ::testing::AddGlobalTestEnvironment(new PrivateEnvironment);

constexpr char kGuardByte = static_cast<char>(0xA5);

SQLCHAR *Sql(const std::string &sql) { return reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())); }

std::string DropStatement(const std::string &table) {
    return table.rfind("VIEW ", 0) == 0 ? "DROP " + table : "DROP TABLE " + table;
}

} // namespace

const std::vector<std::string> &DataSources() {
    // Suites are expanded before the environment's SetUp: the same fallback here.
    static const char *const dsns = std::getenv("KODBC_TEST_DSNS");
    static const std::vector<std::string> list = Split(dsns && *dsns ? dsns : "kodbc_sqlite", ",");
    return list;
}

MessageRecorder::MessageRecorder(int answer) : answer_(answer) {
    previous_ = Kodbc_SetMessageHandler(&MessageRecorder::Handle, this);
}

MessageRecorder::~MessageRecorder() { Kodbc_SetMessageHandler(previous_, nullptr); }

int MessageRecorder::Handle(const KodbcMessage *message, void *self) {
    auto *recorder = static_cast<MessageRecorder *>(self);
    Entry entry{message->kind, message->caption ? message->caption : "", message->text ? message->text : ""};
    if (const KodbcOdbcErrorFields *f = message->odbc)
        entry = {entry.kind,   entry.caption,   entry.text,       f->statement,   f->sqlState,
                 f->vendor,    f->component,    f->dataSource,    f->description, f->hint != nullptr};
    recorder->entries_.push_back(std::move(entry));
    return recorder->answer_;
}

std::size_t MessageRecorder::count(int kind) const {
    return std::count_if(entries_.begin(), entries_.end(), [kind](const Entry &e) { return e.kind == kind; });
}

bool RunStatement(SQLHDBC hdbc, const std::string &sql, std::string *error) {
    odbc::Statement stmt(hdbc);
    const SQLRETURN rc = stmt.ok() ? SQLExecDirect(stmt, Sql(sql), SQL_NTS) : SQL_ERROR;
    if (SQL_SUCCEEDED(rc) || rc == SQL_NO_DATA) return true;
    if (error) {
        SQLCHAR state[6] = {}, text[1000] = {};
        SQLINTEGER native = 0;
        SQLSMALLINT len = 0;
        SQLGetDiagRec(SQL_HANDLE_STMT, stmt, 1, state, &native, text, sizeof text, &len);
        *error = std::string(reinterpret_cast<char *>(state)) + " " + reinterpret_cast<char *>(text);
    }
    return false;
}

std::vector<std::string> QueryColumn(SQLHDBC hdbc, const std::string &sql, bool *ran) {
    std::vector<std::string> values;
    odbc::Statement stmt(hdbc);
    const bool executed = stmt.ok() && SQL_SUCCEEDED(SQLExecDirect(stmt, Sql(sql), SQL_NTS));
    for (char buffer[4000]; executed && SQL_SUCCEEDED(SQLFetch(stmt));) {
        SQLLEN length = 0;
        if (!SQL_SUCCEEDED(SQLGetData(stmt, 1, SQL_C_CHAR, buffer, sizeof buffer, &length))) buffer[0] = '\0';
        values.emplace_back(length == SQL_NULL_DATA ? "" : buffer);
    }
    if (ran) *ran = executed;
    return values;
}

void DataSourceTest::SetUp() {
    DataSourceRecord source{};
    std::strncpy(source.DataSourceName, GetParam().c_str(), sizeof source.DataSourceName - 1);
    ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED)
        << "cannot connect to " << GetParam()
        << (messages_.entries().empty() ? "" : ": " + messages_.entries().back().description);
}

void DataSourceTest::TearDown() {
    SetDumpState(0);  // also after a test that ended early
    if (hdbc_)
        for (const std::string &table : owned_) ExecQuietly(DropStatement(table));
    Kodbc_DisconnectDataSource(&henv_, &hdbc_);
}

void DataSourceTest::Exec(const std::string &sql) {
    std::string error;
    ASSERT_TRUE(RunStatement(hdbc_, sql, &error)) << sql << ": " << error;
}

void DataSourceTest::DropTables(std::initializer_list<std::string> tables) {
    for (const std::string &table : tables) ExecQuietly(DropStatement(table));
}

void DataSourceTest::OwnTables(std::initializer_list<std::string> tables) {
    DropTables(tables);
    owned_.insert(owned_.end(), tables);
}

std::vector<std::string> DataSourceTest::Column(const std::string &sql) {
    bool ran = false;
    std::vector<std::string> values = QueryColumn(hdbc_, sql, &ran);
    if (!ran) ADD_FAILURE() << "query failed: " << sql;
    return values;
}

std::string DataSourceTest::DbmsName() const {
    char name[100] = {};
    SQLGetInfo(hdbc_, SQL_DBMS_NAME, name, sizeof name, nullptr);
    return name;
}

std::string DataSourceTest::IdentifierQuote() const {
    char q = Kodbc_GetDelimiter(hdbc_);
    return std::string(1, q == ' ' || q == 0 ? '"' : q);
}

std::string DataSourceTest::AutoIncrementKey() const {
    const std::string dbms = DbmsName();
    if (dbms == "SQLite") return "INTEGER PRIMARY KEY AUTOINCREMENT";
    return dbms == "PostgreSQL" ? "SERIAL PRIMARY KEY" : "INTEGER AUTO_INCREMENT PRIMARY KEY";
}

void DataSourceTest::ProvideBlobType() {
    if (DbmsName() != "PostgreSQL") return;
    ExecQuietly("DROP DOMAIN blob");
    Exec("CREATE DOMAIN blob AS text");
}

void DataSourceTest::DropSystemTable() {
    ExecQuietly("DROP TABLE KorvelSysTable");
    if (DbmsName() == "PostgreSQL") ExecQuietly("DROP DOMAIN blob");
}

GuardedBuffer::GuardedBuffer(int size, char fill) : bytes_(static_cast<std::size_t>(size) + kGuard), size_(size) {
    std::memset(bytes_.data(), fill, static_cast<std::size_t>(size));
    std::memset(bytes_.data() + size, kGuardByte, kGuard);
}

bool GuardedBuffer::guards_intact() const {
    return std::all_of(bytes_.begin() + size_, bytes_.end(), [](char byte) { return byte == kGuardByte; });
}

std::string Guarded(int size, const std::function<void(char *, int)> &fill) {
    GuardedBuffer buffer(size);
    fill(buffer.data(), buffer.size());
    EXPECT_TRUE(buffer.guards_intact()) << "written behind " << size << " bytes";
    return buffer.text();
}

std::string GuardedInPlace(const std::string &text, int size, const std::function<void(char *, int)> &work) {
    return Guarded(size, [&](char *buffer, int n) {
        std::snprintf(buffer, static_cast<std::size_t>(n), "%s", text.c_str());
        work(buffer, n);
    });
}

ScopedLocale::ScopedLocale(const char *name) {
    const char *current = std::setlocale(LC_CTYPE, nullptr);
    old_ = current ? current : "C";
    ok_ = std::setlocale(LC_CTYPE, name) != nullptr;
}

ScopedLocale::~ScopedLocale() { std::setlocale(LC_CTYPE, old_.c_str()); }

void SetDumpState(long state) {
    Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, "Software\\Korvel Software\\Kodbc", 0, nullptr, "SqlDumpState",
                               state);
}

std::string ReadFile(const std::string &name) {
    std::ifstream in(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> Split(const std::string &text, const std::string &separator) {
    std::vector<std::string> items;
    for (std::size_t start = 0; !text.empty();) {
        std::size_t at = text.find(separator, start);
        items.push_back(text.substr(start, at - start));
        if (at == std::string::npos) break;
        start = at + separator.size();
    }
    return items;
}

void PrivateRegistryTest::SetUp() {
    char dir[] = "/tmp/kodbc-private-XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    dir_ = dir;
    for (const char *name : {"KODBC_REGISTRY_DIR", "TMPDIR"}) {
        const char *old = std::getenv(name);
        saved_.emplace_back(name, old ? old : "");
        setenv(name, dir, 1);
    }
}

void PrivateRegistryTest::TearDown() {
    for (const auto &[name, value] : saved_) {
        if (value.empty()) unsetenv(name.c_str());
        else setenv(name.c_str(), value.c_str(), 1);
    }
    std::filesystem::remove_all(dir_);
}

} // namespace kodbc::test
