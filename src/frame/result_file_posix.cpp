// Opening the result file on Linux: the lock stands in for the exclusive
// sharing of the Windows build, and the file is truncated only once the
// lock is held so that another writer's file is never cut.
#include "internal/execution.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kodbc {

std::FILE *OpenExclusive(const char *fileName) noexcept {
    int fd = ::open(fileName, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        errno = EACCES;
        return nullptr;
    }
    struct stat info {};
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && ::ftruncate(fd, 0) != 0) {
        int error = errno;
        ::close(fd);
        errno = error;
        return nullptr;
    }
    std::FILE *file = ::fdopen(fd, "wb");
    if (!file) {
        int error = errno;
        ::close(fd);
        errno = error;
    }
    return file;
}

} // namespace kodbc
