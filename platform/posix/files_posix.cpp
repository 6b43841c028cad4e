#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cstdlib>
#include <string>
#include <unistd.h>

int CreateTemporaryFileName(const char *prefix, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!out.valid()) return 0;
    const char *dir = std::getenv("TMPDIR");
    std::string path = dir && *dir ? dir : "/tmp";
    if (path.back() != '/') path += '/';
    path += prefix ? prefix : "";
    path += "XXXXXX";

    int fd = mkstemp(path.data());
    if (fd < 0) return 0;
    close(fd);
    // A cut name would point at another file: give the name back whole or not at all.
    if (!out.append_if_fits(path)) {
        unlink(path.c_str());
        return 0;
    }
    return 1;
}
