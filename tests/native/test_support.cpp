#include "test_support.h"

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <unistd.h>

namespace kodbc::test {
namespace {

// Without the test command's servers the run uses a private SQLite-only
// configuration; the registry always goes to a private folder.
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

} // namespace

const std::vector<std::string> &DataSources() {
    // Parameterised suites are expanded before the environment's SetUp, so
    // the list is read here with the same fallback.
    static const std::vector<std::string> list = [] {
        std::vector<std::string> out;
        const char *dsns = std::getenv("KODBC_TEST_DSNS");
        std::stringstream in(dsns && *dsns ? dsns : "kodbc_sqlite");
        for (std::string item; std::getline(in, item, ',');)
            if (!item.empty()) out.push_back(item);
        return out;
    }();
    return list;
}

MessageRecorder::MessageRecorder(int answer) : answer_(answer) {
    previous_ = Kodbc_SetMessageHandler(&MessageRecorder::Handle, this);
}

MessageRecorder::~MessageRecorder() { Kodbc_SetMessageHandler(previous_, nullptr); }

int MessageRecorder::Handle(const KodbcMessage *message, void *self) {
    auto *recorder = static_cast<MessageRecorder *>(self);
    Entry entry;
    entry.kind = message->kind;
    entry.caption = message->caption ? message->caption : "";
    entry.text = message->text ? message->text : "";
    if (const KodbcOdbcErrorFields *f = message->odbc) {
        entry.statement = f->statement;
        entry.sqlState = f->sqlState;
        entry.vendor = f->vendor;
        entry.component = f->component;
        entry.dataSource = f->dataSource;
        entry.description = f->description;
        entry.hasHint = f->hint != nullptr;
        if (f->hint) entry.hint = f->hint;
    }
    recorder->entries_.push_back(std::move(entry));
    return recorder->answer_;
}

void DataSourceTest::SetUp() {
    DataSourceRecord source{};
    std::strncpy(source.DataSourceName, GetParam().c_str(), sizeof source.DataSourceName - 1);
    ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED)
        << "cannot connect to " << GetParam()
        << (messages_.entries().empty() ? "" : ": " + messages_.entries().back().description);
}

void DataSourceTest::TearDown() { Kodbc_DisconnectDataSource(&henv_, &hdbc_); }

void DataSourceTest::Exec(const std::string &sql) {
    SQLHSTMT stmt = nullptr;
    ASSERT_TRUE(SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, hdbc_, &stmt)));
    SQLRETURN rc = SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS);
    std::string error;
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) {
        SQLCHAR state[6] = {}, text[1000] = {};
        SQLINTEGER native = 0;
        SQLSMALLINT len = 0;
        SQLGetDiagRec(SQL_HANDLE_STMT, stmt, 1, state, &native, text, sizeof text, &len);
        error = std::string(reinterpret_cast<char *>(state)) + " " + reinterpret_cast<char *>(text);
    }
    SQLFreeHandle(SQL_HANDLE_STMT, stmt);
    ASSERT_TRUE(error.empty()) << sql << ": " << error;
}

void DataSourceTest::ExecQuietly(const std::string &sql) {
    SQLHSTMT stmt = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, hdbc_, &stmt))) return;
    SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS);
    SQLFreeHandle(SQL_HANDLE_STMT, stmt);
}

std::string DataSourceTest::DbmsName() const {
    char name[100] = {};
    SQLSMALLINT len = 0;
    SQLGetInfo(hdbc_, SQL_DBMS_NAME, name, sizeof name, &len);
    return name;
}

std::string DataSourceTest::IdentifierQuote() const {
    char q = Kodbc_GetDelimiter(hdbc_);
    return std::string(1, q == ' ' || q == 0 ? '"' : q);
}

GuardedBuffer::GuardedBuffer(int size, char fill) : bytes_(static_cast<std::size_t>(size) + kGuard), size_(size) {
    std::memset(bytes_.data(), fill, static_cast<std::size_t>(size));
    std::memset(bytes_.data() + size, kGuardByte, kGuard);
}

bool GuardedBuffer::guards_intact() const {
    for (int i = 0; i < kGuard; ++i)
        if (bytes_[static_cast<std::size_t>(size_ + i)] != kGuardByte) return false;
    return true;
}

} // namespace kodbc::test
