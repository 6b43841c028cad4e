// The statement dump gate. A user can turn logging or confirmation on while
// a program runs: the switch is read again when this process has written
// the registry and otherwise at most every 200 ms. Read before every
// statement, it cost more than a statement's own work on a local database.
#include "registry_changes.h"

#include <korvel/korvel32.h>

#include <chrono>
#include <cstdio>
#include <mutex>
#include <ctime>
#include <string>

#ifdef _WIN32
#  include <windows.h>
#else
#  include <cstdlib>
#endif

namespace {

constexpr const char *kDumpKey = "Software\\Korvel Software\\Kodbc";
constexpr const char *kDumpStateValue = "SqlDumpState";
constexpr const char *kDumpFileValue = "SqlDumpFile";
constexpr const char *kDefaultDumpFile = "kodbc-sql.log";

std::string TemporaryFolder() {
#ifdef _WIN32
    char path[MAX_PATH + 1] = {};
    DWORD n = GetTempPathA(sizeof path, path);
    if (n == 0 || n > MAX_PATH) return ".\\";
    return path;  // ends with a backslash
#else
    const char *dir = std::getenv("TMPDIR");
    std::string path = dir && *dir ? dir : "/tmp";
    if (path.back() != '/') path += '/';
    return path;
#endif
}

std::string DumpFileName() {
    char name[1024];
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kDumpKey, 0, nullptr, kDumpFileValue, "", name, sizeof name);
    if (name[0]) return name;
    return TemporaryFolder() + kDefaultDumpFile;
}

void AppendToLog(const char *statement) {
    std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &local);
    std::string entry = std::string(stamp) + "  " + statement + "\n";

    // One write per entry in append mode keeps entries of several processes whole.
    if (std::FILE *file = std::fopen(DumpFileName().c_str(), "ab")) {
        std::setvbuf(file, nullptr, _IOFBF, entry.size() + 1);
        std::fwrite(entry.data(), 1, entry.size(), file);
        std::fclose(file);
    }
}

} // namespace

int Korvel_GetDumpState(int) {
    using Clock = std::chrono::steady_clock;
    static std::mutex mutex;
    static bool known = false;
    static unsigned long knownChanges = 0;
    static Clock::time_point readAt;
    static int state = 0;

    const unsigned long changes = korvel::RegistryChanges();
    const Clock::time_point now = Clock::now();
    {
        std::lock_guard lock(mutex);
        if (known && changes == knownChanges && now - readAt < std::chrono::milliseconds(200)) return state;
    }
    const int fresh =
        static_cast<int>(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kDumpKey, 0, nullptr, kDumpStateValue, 0));
    std::lock_guard lock(mutex);
    known = true;
    knownChanges = changes;
    readAt = now;
    state = fresh;
    return fresh;
}

int Korvel_DumpSqlStatement(const char *statement, int) {
    int state = Korvel_GetDumpState(0);
    if (!(state & (KORVEL_DUMP_LOG | KORVEL_DUMP_ASK))) return 1;
    if (!statement) statement = "";

    if (state & KORVEL_DUMP_LOG) AppendToLog(statement);
    if (state & KORVEL_DUMP_ASK) {
        KodbcMessage question{KODBC_MESSAGE_YESNOCANCEL, "SQL-Befehl", statement, nullptr};
        return Korvel_DeliverMessage(&question) == KODBC_ANSWER_YES ? 1 : 0;
    }
    return 1;
}
