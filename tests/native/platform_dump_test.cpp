// The statement dump gate: the registry switch decides whether statements
// are logged and whether the user is asked before each one.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using kodbc::test::ReadFile;

class PlatformDumpGate : public kodbc::test::PrivateRegistryTest {
protected:
    static void SetState(long state) {
        ASSERT_EQ(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, nullptr, "SqlDumpState", state), 1);
    }
};

} // namespace

TEST_F(PlatformDumpGate, NoBitsLetsEverythingRunQuietly) {
    kodbc::test::MessageRecorder messages(KODBC_ANSWER_NO);
    EXPECT_EQ(Korvel_GetDumpState(0), 0);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 1", 0), 1);
    SetState(KORVEL_DUMP_WARNINGS);
    EXPECT_EQ(Korvel_GetDumpState(0), KORVEL_DUMP_WARNINGS) << "this process's own change counts at once";
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 1", 0), 1);
    EXPECT_TRUE(messages.entries().empty());
    // Another program's change counts within 200 ms.
    const pid_t child = fork();
    if (child == 0) {
        const long written =
            Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, nullptr, "SqlDumpState", KORVEL_DUMP_LOG);
        _exit(written == 1 ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    EXPECT_EQ(Korvel_GetDumpState(0), KORVEL_DUMP_LOG);
    SetState(0);
    EXPECT_FALSE(std::filesystem::exists(dir_ + "/kodbc-sql.log"));
}

TEST_F(PlatformDumpGate, LogBitAppendsWithTimestamp) {
    SetState(KORVEL_DUMP_LOG);
    EXPECT_EQ(Korvel_DumpSqlStatement("DELETE FROM t", 0), 1);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 2", 500), 1);
    const std::string log = ReadFile(dir_ + "/kodbc-sql.log");
    const std::vector<std::string> lines = kodbc::test::Split(log, "\n");
    // "yyyy-mm-dd hh:mm:ss  statement"
    ASSERT_GE(lines.size(), 2u) << log;
    const std::string &first = lines[0], &second = lines[1];
    ASSERT_GE(first.size(), 21u) << log;
    EXPECT_EQ(first[4], '-');
    EXPECT_EQ(first[13], ':');
    EXPECT_EQ(first.substr(first.size() - 13), "DELETE FROM t");
    EXPECT_EQ(second.substr(second.size() - 8), "SELECT 2");

    // A file named in the registry takes the place of the default.
    const std::string named = dir_ + "/named.log";
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, nullptr, "SqlDumpFile", named.c_str()), 1);
    EXPECT_EQ(Korvel_DumpSqlStatement("UPDATE t SET a=1", 0), 1);
    EXPECT_NE(ReadFile(named).find("UPDATE t SET a=1"), std::string::npos);
}

TEST_F(PlatformDumpGate, AskBitOnlyYesRuns) {
    SetState(KORVEL_DUMP_ASK);
    kodbc::test::MessageRecorder messages(KODBC_ANSWER_YES);
    EXPECT_EQ(Korvel_DumpSqlStatement("DROP TABLE x", 0), 1);
    ASSERT_EQ(messages.entries().size(), 1u);
    EXPECT_EQ(messages.entries()[0].kind, KODBC_MESSAGE_YESNOCANCEL);
    EXPECT_EQ(messages.entries()[0].text, "DROP TABLE x");
    messages.set_answer(KODBC_ANSWER_NO);
    EXPECT_NE(Korvel_DumpSqlStatement("DROP TABLE x", 0), 1);
    messages.set_answer(KODBC_ANSWER_CANCEL);
    EXPECT_NE(Korvel_DumpSqlStatement("DROP TABLE x", 0), 1);
    EXPECT_FALSE(std::filesystem::exists(dir_ + "/kodbc-sql.log")) << "asking alone does not log";

    SetState(KORVEL_DUMP_ASK | KORVEL_DUMP_LOG);
    messages.set_answer(KODBC_ANSWER_YES);
    EXPECT_EQ(Korvel_DumpSqlStatement("SELECT 3", 0), 1);
    EXPECT_NE(ReadFile(dir_ + "/kodbc-sql.log").find("SELECT 3"), std::string::npos);
}

TEST_F(PlatformDumpGate, AskWithoutHandlerRefuses) {
    SetState(KORVEL_DUMP_ASK);
    KodbcMessageHandler previous = Korvel_SetMessageHandler(nullptr, nullptr);
    testing::internal::CaptureStderr();
    int answer = Korvel_DumpSqlStatement("DELETE FROM t", 0);
    std::string err = testing::internal::GetCapturedStderr();
    Korvel_SetMessageHandler(previous, nullptr);
    EXPECT_NE(answer, 1) << "nobody to ask: the safe answer refuses";
    EXPECT_NE(err.find("DELETE FROM t"), std::string::npos);
}
