// Shared pieces of the native tests: data sources, fixtures, a message recorder, guarded buffers.
#pragma once

#include <kodbc/kodbc.h>

#include "wizards/wizard_progress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace kodbc::test {

// The data sources of this run (KODBC_TEST_DSNS, comma-separated).
const std::vector<std::string> &DataSources();

// Collects every message the library shows instead of asking a person.
class MessageRecorder {
public:
    explicit MessageRecorder(int answer = KODBC_ANSWER_OK);
    ~MessageRecorder();
    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;

    struct Entry {
        int kind;
        std::string caption, text;
        std::string statement, sqlState, vendor, component, dataSource, description;  // ODBC errors only
        bool hasHint = false;
    };
    const std::vector<Entry> &entries() const { return entries_; }
    std::size_t count(int kind) const;
    std::string last_text() const { return entries_.empty() ? "" : entries_.back().text; }
    void clear() { entries_.clear(); }
    void set_answer(int answer) { answer_ = answer; }

private:
    static int Handle(const KodbcMessage *message, void *self);
    std::vector<Entry> entries_;
    int answer_;
    KodbcMessageHandler previous_;
};

// False (with the driver's state and text in *error) when the statement fails.
bool RunStatement(SQLHDBC hdbc, const std::string &sql, std::string *error = nullptr);
// The first column of every row of a query, as text; *ran tells whether it ran.
std::vector<std::string> QueryColumn(SQLHDBC hdbc, const std::string &sql, bool *ran = nullptr);

// A test connected to one data source of the run (parameter: its name).
class DataSourceTest : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override;
    void TearDown() override;
    void Exec(const std::string &sql);  // an error fails the test
    void ExecQuietly(const std::string &sql) { RunStatement(hdbc_, sql); }
    void DropTables(std::initializer_list<std::string> tables);  // errors ignored
    // Drops these tables (views: "VIEW name") now and when the test ends.
    void OwnTables(std::initializer_list<std::string> tables);
    std::vector<std::string> Column(const std::string &sql);
    std::string DbmsName() const;
    std::string IdentifierQuote() const;  // '"' where the driver does not quote
    std::string AutoIncrementKey() const;
    // PostgreSQL has no BLOB for the library's system table: its users give it one.
    void ProvideBlobType();
    void DropSystemTable();
    std::size_t OdbcErrors() const { return messages_.count(KODBC_MESSAGE_ODBC_ERROR); }

    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
    MessageRecorder messages_;

private:
    std::vector<std::string> owned_;
};

#define KODBC_DATA_SOURCE_TEST_SUITE(Suite)                                                     \
    INSTANTIATE_TEST_SUITE_P(Dsn, Suite, ::testing::ValuesIn(::kodbc::test::DataSources()),     \
                             [](const ::testing::TestParamInfo<std::string> &info) { return info.param; })

// A caller buffer with guard bytes behind its stated size.
class GuardedBuffer {
public:
    explicit GuardedBuffer(int size, char fill = '\x7f');
    char *data() { return bytes_.data(); }
    int size() const { return size_; }
    std::string text() const { return {bytes_.data(), strnlen(bytes_.data(), static_cast<std::size_t>(size_))}; }
    bool guards_intact() const;  // nothing written behind the stated size

private:
    static constexpr int kGuard = 32;
    std::vector<char> bytes_;
    int size_;
};

// Calls fill(buffer, size) on a guarded buffer and returns the text; a write
// behind the size fails the test. InPlace puts `text` into the buffer first.
std::string Guarded(int size, const std::function<void(char *, int)> &fill);
std::string GuardedInPlace(const std::string &text, int size, const std::function<void(char *, int)> &work);

// Sets the character type locale for its lifetime and restores the old one.
class ScopedLocale {
public:
    explicit ScopedLocale(const char *name = "C.UTF-8");
    ~ScopedLocale();
    ScopedLocale(const ScopedLocale &) = delete;
    ScopedLocale &operator=(const ScopedLocale &) = delete;
    bool ok() const { return ok_; }

private:
    std::string old_;
    bool ok_;
};

inline std::string DescriptorLine(const std::string &field, const std::string &keyword, const std::string &value,
                                  int type) {
    return field + "\t" + keyword + "\t" + value + "\t" + std::to_string(type) + "\n";
}

void SetDumpState(long state);  // 0: off
std::string ReadFile(const std::string &name);  // empty when unreadable

std::vector<std::string> Split(const std::string &text, const std::string &separator);
inline bool Contains(const std::vector<std::string> &items, const std::string &item) {
    return std::find(items.begin(), items.end(), item) != items.end();
}

// A test with an empty settings store and temporary folder of its own (`dir_`).
class PrivateRegistryTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    static constexpr const char *kKey = "Software\\Korvel Software\\Kodbc";
    std::string dir_;

private:
    std::vector<std::pair<std::string, std::string>> saved_;
};

// Auto-commit off for a scope, as the command-line tool runs a batch.
struct AutoCommitOff {
    explicit AutoCommitOff(SQLHDBC hdbc) : hdbc(hdbc) { Set(SQL_AUTOCOMMIT_OFF); }
    ~AutoCommitOff() { Set(SQL_AUTOCOMMIT_ON); }
    void Set(SQLULEN on) { SQLSetConnectAttr(hdbc, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(on), 0); }
    SQLHDBC hdbc;
};

// Records a work loop's progress and stops it at a chosen step.
class RecordingProgress : public wizards::WizardProgress {
public:
    explicit RecordingProgress(long cancelAt = 0) : cancelAt_(cancelAt) {}
    void Start(long maximum) override { maximum_ = maximum; }
    bool Step(long value) override {
        steps_.push_back(value);
        return value == cancelAt_;
    }
    void Finish() override { finished_ = true; }
    long maximum_ = -1;
    std::vector<long> steps_;
    bool finished_ = false;

private:
    long cancelAt_;
};

} // namespace kodbc::test
