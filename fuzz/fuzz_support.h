// Pieces every fuzz target uses.
#pragma once

#include "sqltext/sql_names.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

inline void Check(bool condition) {
    if (!condition) __builtin_trap();
}

// Every field of a list has a name of its own.
template <class Fields> void CheckUniqueNames(const Fields &fields) {
    std::set<std::string> names;
    for (const auto &field : fields) Check(names.insert(field.targetName).second);
}

// Quote texts a driver may report: the first four are the usual answers.
inline const char *const kQuotes[] = {"\"", "`", " ", "", "[", "\"\"", "'", "\t"};

// The bytes from `from` on, split at zero bytes into at most `most` pieces;
// there is always a first one.
inline std::vector<std::string> Pieces(const uint8_t *data, std::size_t size, std::size_t from, std::size_t most) {
    std::string_view rest(reinterpret_cast<const char *>(data) + from, size - from);
    std::vector<std::string> pieces;
    do {
        std::size_t zero = rest.find('\0');
        pieces.emplace_back(rest.substr(0, zero));
        rest.remove_prefix(zero == std::string_view::npos ? rest.size() : zero + 1);
    } while (!rest.empty() && pieces.size() < most);
    return pieces;
}

// A heap buffer of exactly the stated size: the sanitizer sees one byte too far.
struct Buffer {
    explicit Buffer(int size) : size(size), owner(new char[size > 0 ? size : 1]), data(owner.get()) {}
    Buffer(int size, std::string_view text) : Buffer(size) { load(text); }
    // The text ends inside the buffer.
    bool terminated() const { return size < 1 || std::memchr(data, 0, static_cast<std::size_t>(size)); }
    // Fills the buffer with text, cut to size-1 and terminated.
    void load(std::string_view text) {
        if (size < 1) return;
        std::size_t n = text.size() < static_cast<std::size_t>(size) - 1 ? text.size() : size - 1;
        std::memcpy(data, text.data(), n);
        data[n] = '\0';
    }
    int size;
    std::unique_ptr<char[]> owner;
    char *data;
};

// The bytes from `from` on as a file to read; `file` is null when there is none.
struct MemoryFile {
    MemoryFile(const uint8_t *data, std::size_t size, std::size_t from)
        : bytes(reinterpret_cast<const char *>(data) + from, size - from),
          file(fmemopen(bytes.data(), bytes.size(), "rb")) {}
    ~MemoryFile() {
        if (file) std::fclose(file);
    }
    std::string bytes;
    std::FILE *file;
};

// The quote text a driver would report, asked for lazily through `quote`;
// `calls` tells how often it was asked.
struct QuoteQuery {
    explicit QuoteQuery(const char *text) : text(text), quote(kodbc::sqltext::QuoteText::Lazy(&Run, this)) {}
    QuoteQuery(const QuoteQuery &) = delete;
    static bool Run(void *self, char *buffer, int size) {
        auto *q = static_cast<QuoteQuery *>(self);
        ++q->calls;
        std::strncpy(buffer, q->text, static_cast<std::size_t>(size));
        return q->text[0] != '\0';
    }
    const char *text;
    int calls = 0;
    kodbc::sqltext::QuoteText quote;
};

} // namespace fuzz
