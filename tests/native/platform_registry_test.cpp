// The file-backed registry: values survive, names compare like Windows, the
// user's settings win over the machine's, and parallel writers lose nothing.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class PlatformRegistry : public kodbc::test::PrivateRegistryTest {
protected:
    static std::string Read(HKEY root, const char *section, const char *name, const char *def = "<none>") {
        char buf[512];
        Korvel_ReadRegistryString(root, kKey, 0, section, name, def, buf, sizeof buf);
        return buf;
    }
};

} // namespace

TEST_F(PlatformRegistry, StringsAndNumbersRoundTrip) {
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "LastFile"), "<none>");
    const std::string awkward = "Zeile 1\nZeile 2\tTab \\Pfad\\ =s:x [x]\r";
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile", awkward.c_str()), 1);
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Export", "[odd=name#", "v"), 1);
    ASSERT_EQ(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Export", "Count", -42), 1);
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, nullptr, "Top", "oben"), 1);

    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "LastFile"), awkward);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "[odd=name#"), "v");
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Export", "Count", 7), -42);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "", "Top"), "oben") << "empty section is the key itself";
    EXPECT_EQ(Read(HKEY_LOCAL_MACHINE, "Export", "LastFile"), "<none>") << "roots are separate";

    // Overwrite, delete, and a number read from a missing value.
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile", "b.txt"), 1);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "LastFile"), "b.txt");
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile"), 1);
    EXPECT_EQ(Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, "Export", "LastFile"), 0);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "Export", "LastFile", nullptr), "");
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Export", "Missing", 7), 7);
}

TEST_F(PlatformRegistry, NamesIgnoreCaseAndExtraSeparators) {
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "DataSource", "UserId", "anna"), 1);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "DATASOURCE", "userid"), "anna");
    char buf[64];
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, "software\\korvel software\\KODBC\\", 0, "datasource", "USERID", "",
                              buf, sizeof buf);
    EXPECT_STREQ(buf, "anna");
    // Writing under another spelling replaces the value instead of adding one.
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, "SOFTWARE\\Korvel Software\\Kodbc", 0, "datasource",
                                         "USERID", "bert"),
              1);
    EXPECT_EQ(Read(HKEY_CURRENT_USER, "DataSource", "UserId"), "bert");
}

TEST_F(PlatformRegistry, ReadBoundedWithGuards) {
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "S", "V", "0123456789"), 1);
    kodbc::test::GuardedBuffer buf(6);
    EXPECT_EQ(Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, "S", "V", "", buf.data(), buf.size()), 5);
    EXPECT_EQ(buf.text(), "01234");
    EXPECT_TRUE(buf.guards_intact());
}

TEST_F(PlatformRegistry, UserBeforeMachine) {
    char buf[64];
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_LOCAL_MACHINE, kKey, 0, "DataSource", "DataSourceName", "machine"), 1);
    Korvel_ReadStringFromHKCUorHKLM(kKey, "DataSource", "DataSourceName", "default", buf, sizeof buf);
    EXPECT_STREQ(buf, "machine");
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, "DataSource", "DataSourceName", "user"), 1);
    Korvel_ReadStringFromHKCUorHKLM(kKey, "DataSource", "DataSourceName", "default", buf, sizeof buf);
    EXPECT_STREQ(buf, "user");
    Korvel_ReadStringFromHKCUorHKLM(kKey, "DataSource", "Password", "default", buf, sizeof buf);
    EXPECT_STREQ(buf, "default");
}

TEST_F(PlatformRegistry, ParallelProcessesLoseNothing) {
    constexpr int kProcesses = 6;
    constexpr int kValuesEach = 40;
    // Write and read first, so that what this process keeps of the store must be renewed.
    ASSERT_EQ(Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", "Before", 1), 1);
    ASSERT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", "P0_0", -1), -1);
    pid_t children[kProcesses];
    for (int p = 0; p < kProcesses; ++p) {
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            int failures = 0;
            for (int i = 0; i < kValuesEach; ++i) {
                std::string name = "P" + std::to_string(p) + "_" + std::to_string(i);
                failures += Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", name.c_str(),
                                                       p * 1000 + i) != 1;
            }
            _exit(failures == 0 ? 0 : 1);
        }
        children[p] = pid;
    }
    for (pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a writer failed";
    }
    int missing = 0;
    for (int p = 0; p < kProcesses; ++p)
        for (int i = 0; i < kValuesEach; ++i) {
            std::string name = "P" + std::to_string(p) + "_" + std::to_string(i);
            missing += Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kKey, 0, "Parallel", name.c_str(), -1) !=
                       p * 1000 + i;
        }
    EXPECT_EQ(missing, 0);
}
