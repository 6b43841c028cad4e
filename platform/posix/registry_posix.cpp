// A registry for Linux: one text file per root key. Every change rereads the
// store under an exclusive lock and replaces it atomically, so processes
// writing at the same time lose nothing and a reader never sees half a file.
//
// Store format (readable, one item per line):
//   [Software\Korvel Software\Kodbc\Section]
//   Name=s:text        a string value
//   Count=n:42         a number
// Key paths stand as they are (a line break in a key name becomes '?'). In
// names and texts a backslash, newline, carriage return and tab are written
// \\ \n \r \t; in names '=' is written \= as well, and a leading '[' or '#'
// as \[ or \#.
#include "../common/registry_changes.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <strings.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Windows compares key and value names without regard to case.
struct NoCaseLess {
    bool operator()(const std::string &a, const std::string &b) const {
        return strcasecmp(a.c_str(), b.c_str()) < 0;
    }
};

struct Value {
    bool isNumber = false;
    long number = 0;
    std::string text;
};
using Values = std::map<std::string, Value, NoCaseLess>;
using Store = std::map<std::string, Values, NoCaseLess>;

const char *RootName(HKEY root) {
    if (root == HKEY_CURRENT_USER) return "HKCU";
    if (root == HKEY_LOCAL_MACHINE) return "HKLM";
    if (root == HKEY_USERS) return "HKU";
    if (root == HKEY_CLASSES_ROOT) return "HKCR";
    return nullptr;
}

std::string StoreFolder() {
    if (const char *dir = std::getenv("KODBC_REGISTRY_DIR"); dir && *dir) return dir;
    if (const char *config = std::getenv("XDG_CONFIG_HOME"); config && *config) return std::string(config) + "/kodbc";
    const char *home = std::getenv("HOME");
    return std::string(home && *home ? home : ".") + "/.config/kodbc";
}

bool MakeFolders(const std::string &path) {
    for (std::size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        std::string part = path.substr(0, slash);
        if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) return false;
        if (slash == std::string::npos) return true;
    }
}

// keyPath + "\" + section, with empty components dropped: "A\\B\" is "A\B".
std::string FullKey(const char *keyPath, const char *section) {
    std::string joined = keyPath ? keyPath : "";
    if (section && *section) joined += std::string("\\") + section;
    std::string key;
    std::size_t start = 0;
    while (start <= joined.size()) {
        std::size_t end = joined.find('\\', start);
        if (end == std::string::npos) end = joined.size();
        if (end > start) {
            if (!key.empty()) key += '\\';
            key.append(joined, start, end - start);
        }
        for (char &c : key)
            if (c == '\n' || c == '\r') c = '?';
        start = end + 1;
    }
    return key;
}

std::string Escape(std::string_view text, std::string_view extra) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (extra.find(c) != std::string_view::npos) out += '\\';
            out += c;
        }
    }
    return out;
}

// Reads escaped text up to an unescaped `stop` (0: to the end). Returns the
// position after the stop character, or npos when it was not found.
std::size_t Unescape(std::string_view line, std::size_t pos, char stop, std::string &out) {
    while (pos < line.size()) {
        char c = line[pos];
        if (stop && c == stop) return pos + 1;
        if (c == '\\' && pos + 1 < line.size()) {
            char e = line[pos + 1];
            out += e == 'n' ? '\n' : e == 'r' ? '\r' : e == 't' ? '\t' : e;
            pos += 2;
            continue;
        }
        out += c;
        ++pos;
    }
    return stop ? std::string::npos : pos;
}

Store Parse(const std::string &content) {
    Store store;
    Values *current = nullptr;
    std::size_t start = 0;
    while (start < content.size()) {
        std::size_t end = content.find('\n', start);
        if (end == std::string::npos) end = content.size();
        std::string_view line(content.data() + start, end - start);
        start = end + 1;
        if (line.empty() || line[0] == '#') continue;
        if (line[0] == '[') {
            std::size_t closing = line.rfind(']');
            current = closing == std::string_view::npos ? nullptr : &store[std::string(line.substr(1, closing - 1))];
            continue;
        }
        if (!current) continue;
        std::string name;
        std::size_t pos = Unescape(line, 0, '=', name);
        if (pos == std::string::npos || pos + 2 > line.size() || line[pos + 1] != ':') continue;
        Value value;
        if (line[pos] == 'n') {
            value.isNumber = true;
            value.number = std::strtol(std::string(line.substr(pos + 2)).c_str(), nullptr, 10);
        } else if (line[pos] == 's') {
            Unescape(line, pos + 2, 0, value.text);
        } else {
            continue;
        }
        (*current)[name] = std::move(value);
    }
    return store;
}

std::string Serialise(const Store &store) {
    std::string out = "# kodbc registry store; one [key] per section, values as name=s:text or name=n:number\n";
    for (const auto &[key, values] : store) {
        if (values.empty()) continue;
        out += "\n[" + key + "]\n";
        for (const auto &[name, value] : values) {
            std::string escapedName = Escape(name, "=");
            // A name must not look like a key line or a comment.
            if (!escapedName.empty() && (escapedName[0] == '[' || escapedName[0] == '#')) out += '\\';
            out += escapedName;
            out += value.isNumber ? "=n:" + std::to_string(value.number) : "=s:" + Escape(value.text, "");
            out += '\n';
        }
    }
    return out;
}

bool ReadWhole(int fd, std::string &content) {
    content.clear();
    char chunk[8192];
    for (;;) {
        ssize_t n = read(fd, chunk, sizeof chunk);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        if (n == 0) return true;
        content.append(chunk, static_cast<std::size_t>(n));
    }
}

bool WriteWhole(int fd, const std::string &content) {
    std::size_t done = 0;
    while (done < content.size()) {
        ssize_t n = write(fd, content.data() + done, content.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

// The store of one root with its lock held for the object's lifetime: the
// writers' way in, one at a time.
class LockedStore {
public:
    explicit LockedStore(HKEY root) {
        const char *name = RootName(root);
        if (!name) return;
        folder_ = StoreFolder();
        path_ = folder_ + "/" + name + ".reg";
        if (!MakeFolders(folder_)) return;
        std::string lockPath = path_ + ".lock";
        lockFd_ = open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (lockFd_ < 0) return;
        while (flock(lockFd_, LOCK_EX) != 0) {
            if (errno != EINTR) return;
        }
        ok_ = Load();
    }
    ~LockedStore() {
        if (lockFd_ >= 0) close(lockFd_);  // releases the lock
    }
    LockedStore(const LockedStore &) = delete;
    LockedStore &operator=(const LockedStore &) = delete;

    bool ok() const { return ok_; }
    Store &store() { return store_; }

    // Writes the store beside the old one and renames it into place.
    bool Commit() {
        if (!ok_ || lockFd_ < 0) return false;
        std::string temp = path_ + ".tmp." + std::to_string(getpid());
        int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (fd < 0) return false;
        bool written = WriteWhole(fd, Serialise(store_)) && fsync(fd) == 0;
        written = close(fd) == 0 && written;
        if (!written || rename(temp.c_str(), path_.c_str()) != 0) {
            unlink(temp.c_str());
            return false;
        }
        // Makes the rename itself survive a crash.
        if (int dir = open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); dir >= 0) {
            fsync(dir);
            close(dir);
        }
        return true;
    }

private:
    bool Load() {
        int fd = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) return errno == ENOENT;
        std::string content;
        bool read = ReadWhole(fd, content);
        close(fd);
        if (read) store_ = Parse(content);
        return read;
    }

    std::string folder_, path_;
    int lockFd_ = -1;
    bool ok_ = false;
    Store store_;
};

// What identifies one version of a store file: every commit renames a new
// file into place, so a changed file has a new identity.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{}, changed{};
    bool operator==(const FileIdentity &o) const {
        return device == o.device && inode == o.inode && size == o.size && modified.tv_sec == o.modified.tv_sec &&
               modified.tv_nsec == o.modified.tv_nsec && changed.tv_sec == o.changed.tv_sec &&
               changed.tv_nsec == o.changed.tv_nsec;
    }
};

FileIdentity IdentityOf(const struct stat &st) {
    return {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
}

// Reading needs no lock: a commit replaces the file whole by renaming, so a
// reader opens either the old version or the new one. The parsed store is
// kept per path and reused while the file on disk is the same one, which
// makes the reads of every statement (the dump switch) a single stat.
std::shared_ptr<const Store> ReadStore(HKEY root) {
    static std::mutex mutex;
    static std::map<std::string, std::pair<FileIdentity, std::shared_ptr<const Store>>> cache;
    static const auto empty = std::make_shared<const Store>();

    const char *name = RootName(root);
    if (!name) return nullptr;
    const std::string path = StoreFolder() + "/" + name + ".reg";
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) return errno == ENOENT ? empty : nullptr;
    {
        std::lock_guard lock(mutex);
        auto hit = cache.find(path);
        if (hit != cache.end() && hit->second.first == IdentityOf(st)) return hit->second.second;
    }
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno == ENOENT ? empty : nullptr;
    std::string content;
    bool read = fstat(fd, &st) == 0 && ReadWhole(fd, content);
    close(fd);
    if (!read) return nullptr;
    auto store = std::make_shared<const Store>(Parse(content));
    std::lock_guard lock(mutex);
    cache[path] = {IdentityOf(st), store};
    return store;
}

std::optional<Value> ReadValue(HKEY root, const char *keyPath, const char *section, const char *valueName) {
    std::shared_ptr<const Store> store = ReadStore(root);
    if (!store) return std::nullopt;
    auto key = store->find(FullKey(keyPath, section));
    if (key == store->end()) return std::nullopt;
    auto value = key->second.find(valueName ? valueName : "");
    if (value == key->second.end()) return std::nullopt;
    return value->second;
}

int WriteValue(HKEY root, const char *keyPath, const char *section, const char *valueName, Value value) {
    korvel::NoteRegistryChange();
    LockedStore locked(root);
    if (!locked.ok()) return 0;
    locked.store()[FullKey(keyPath, section)][valueName ? valueName : ""] = std::move(value);
    return locked.Commit() ? 1 : 0;
}

int CopyOut(const std::optional<Value> &value, const char *defaultValue, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!value) out.append(defaultValue);
    else if (value->isNumber) out.append(std::to_string(value->number));
    else out.append(value->text);
    return out.int_length();
}

} // namespace

int Korvel_ReadRegistryString(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                              const char *defaultValue, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    return CopyOut(ReadValue(root, keyPath, section, valueName), defaultValue, buffer, size);
}

int Korvel_WriteRegistryString(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                               const char *value) {
    Value v;
    v.text = value ? value : "";
    return WriteValue(root, keyPath, section, valueName, std::move(v));
}

long Korvel_ReadRegistryNumber(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                               long defaultValue) {
    std::optional<Value> value = ReadValue(root, keyPath, section, valueName);
    if (!value) return defaultValue;
    if (value->isNumber) return value->number;
    // A number kept as text (written by hand, say) counts when it is all digits.
    const char *text = value->text.c_str();
    char *end = nullptr;
    errno = 0;
    long number = std::strtol(text, &end, 10);
    return *text && end && *end == '\0' && errno == 0 ? number : defaultValue;
}

int Korvel_WriteRegistryNumber(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                               long value) {
    Value v;
    v.isNumber = true;
    v.number = value;
    return WriteValue(root, keyPath, section, valueName, std::move(v));
}

int Korvel_DeleteRegistryValue(HKEY root, const char *keyPath, int, const char *section, const char *valueName) {
    korvel::NoteRegistryChange();
    LockedStore locked(root);
    if (!locked.ok()) return 0;
    auto key = locked.store().find(FullKey(keyPath, section));
    if (key == locked.store().end() || key->second.erase(valueName ? valueName : "") == 0) return 0;
    return locked.Commit() ? 1 : 0;
}

int Korvel_DeleteRegistryKey(HKEY root, const char *keyPath, int, const char *section) {
    const std::string path = FullKey(keyPath, section);
    if (path.empty()) return 0;
    korvel::NoteRegistryChange();
    LockedStore locked(root);
    if (!locked.ok()) return 0;
    // The key and every key below it; "Recent" must not take "RecentX" along.
    const std::string below = path + "\\";
    std::size_t erased = 0;
    for (auto key = locked.store().begin(); key != locked.store().end();) {
        const bool inside = strcasecmp(key->first.c_str(), path.c_str()) == 0 ||
                            (key->first.size() > below.size() &&
                             strncasecmp(key->first.c_str(), below.c_str(), below.size()) == 0);
        if (inside && !key->second.empty()) ++erased;
        key = inside ? locked.store().erase(key) : std::next(key);
    }
    return erased && locked.Commit() ? 1 : 0;
}

int Korvel_ReadStringFromHKCUorHKLM(const char *keyPath, const char *section, const char *valueName,
                                    const char *defaultValue, char *buffer, int size) {
    if (!buffer || size < 1) return 0;
    std::optional<Value> value = ReadValue(HKEY_CURRENT_USER, keyPath, section, valueName);
    if (!value) value = ReadValue(HKEY_LOCAL_MACHINE, keyPath, section, valueName);
    return CopyOut(value, defaultValue, buffer, size);
}
