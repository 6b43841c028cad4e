// The registry helpers on the real registry. The location is the key path,
// and below it the section as a subkey (none when the section is empty).
#include <windows.h>

#include "../common/registry_changes.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string FullKey(const char *keyPath, const char *section) {
    std::string key = keyPath ? keyPath : "";
    if (section && *section) {
        if (!key.empty()) key += '\\';
        key += section;
    }
    return key;
}

class Key {
public:
    Key(HKEY root, const char *keyPath, const char *section, bool create) {
        if (!root) return;
        std::string path = FullKey(keyPath, section);
        LONG rc = create ? RegCreateKeyExA(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_READ | KEY_WRITE, nullptr, &key_, nullptr)
                         : RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key_);
        if (rc != ERROR_SUCCESS) key_ = nullptr;
    }
    Key(const Key &) = delete;
    Key &operator=(const Key &) = delete;
    ~Key() {
        if (key_) RegCloseKey(key_);
    }
    explicit operator bool() const { return key_ != nullptr; }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

// The raw value, or false when there is none.
bool QueryValue(HKEY root, const char *keyPath, const char *section, const char *valueName, DWORD &type,
                std::vector<char> &data) {
    Key key(root, keyPath, section, false);
    if (!key) return false;
    DWORD size = 0;
    if (RegQueryValueExA(key.get(), valueName, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) return false;
    data.assign(size + 1, '\0');  // room for a terminator the value may lack
    if (RegQueryValueExA(key.get(), valueName, nullptr, &type, reinterpret_cast<BYTE *>(data.data()), &size) !=
        ERROR_SUCCESS) {
        return false;
    }
    data.resize(size + 1);
    data[size] = '\0';
    return true;
}

bool QueryString(HKEY root, const char *keyPath, const char *section, const char *valueName, std::string &value) {
    DWORD type = 0;
    std::vector<char> data;
    if (!QueryValue(root, keyPath, section, valueName, type, data)) return false;
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        value = data.data();
    } else if (type == REG_DWORD && data.size() >= sizeof(DWORD)) {
        DWORD number;
        std::memcpy(&number, data.data(), sizeof number);
        value = std::to_string(static_cast<long>(number));
    } else {
        return false;
    }
    return true;
}

int WriteValue(HKEY root, const char *keyPath, const char *section, const char *valueName, DWORD type,
               const void *data, DWORD size) {
    korvel::NoteRegistryChange();
    Key key(root, keyPath, section, true);
    if (!key) return 0;
    return RegSetValueExA(key.get(), valueName, 0, type, static_cast<const BYTE *>(data), size) == ERROR_SUCCESS
               ? 1
               : 0;
}

int CopyOut(const std::string &value, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    out.append(value);
    return out.int_length();
}

} // namespace

int Korvel_ReadRegistryString(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                              const char *defaultValue, char *buffer, int size) {
    std::string value;
    if (!QueryString(root, keyPath, section, valueName, value)) value = defaultValue ? defaultValue : "";
    return CopyOut(value, buffer, size);
}

int Korvel_WriteRegistryString(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                               const char *value) {
    const char *text = value ? value : "";
    return WriteValue(root, keyPath, section, valueName, REG_SZ, text, static_cast<DWORD>(std::strlen(text) + 1));
}

long Korvel_ReadRegistryNumber(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                               long defaultValue) {
    DWORD type = 0;
    std::vector<char> data;
    if (!QueryValue(root, keyPath, section, valueName, type, data)) return defaultValue;
    if (type == REG_DWORD && data.size() >= sizeof(DWORD) + 1) {
        DWORD number;
        std::memcpy(&number, data.data(), sizeof number);
        return static_cast<long>(static_cast<int32_t>(number));
    }
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        char *end = nullptr;
        long number = std::strtol(data.data(), &end, 10);
        if (end != data.data()) return number;
    }
    return defaultValue;
}

int Korvel_WriteRegistryNumber(HKEY root, const char *keyPath, int, const char *section, const char *valueName,
                               long value) {
    DWORD number = static_cast<DWORD>(value);
    return WriteValue(root, keyPath, section, valueName, REG_DWORD, &number, sizeof number);
}

int Korvel_DeleteRegistryValue(HKEY root, const char *keyPath, int, const char *section, const char *valueName) {
    if (!root) return 0;
    korvel::NoteRegistryChange();
    HKEY key = nullptr;
    if (RegOpenKeyExA(root, FullKey(keyPath, section).c_str(), 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS) return 0;
    LONG rc = RegDeleteValueA(key, valueName);
    RegCloseKey(key);
    return rc == ERROR_SUCCESS ? 1 : 0;
}

int Korvel_DeleteRegistryKey(HKEY root, const char *keyPath, int, const char *section) {
    const std::string path = FullKey(keyPath, section);
    if (!root || path.empty()) return 0;
    korvel::NoteRegistryChange();
    return RegDeleteTreeA(root, path.c_str()) == ERROR_SUCCESS ? 1 : 0;
}

int Korvel_ReadStringFromHKCUorHKLM(const char *keyPath, const char *section, const char *valueName,
                                    const char *defaultValue, char *buffer, int size) {
    std::string value;
    if (!QueryString(HKEY_CURRENT_USER, keyPath, section, valueName, value) &&
        !QueryString(HKEY_LOCAL_MACHINE, keyPath, section, valueName, value)) {
        value = defaultValue ? defaultValue : "";
    }
    return CopyOut(value, buffer, size);
}
