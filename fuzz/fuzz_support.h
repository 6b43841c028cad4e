// Pieces every fuzz target uses: a check that stops the run, a heap buffer
// of exactly the stated size (so the sanitizer sees one byte too far), and a
// stand-in for the driver's identifier quote query that counts its calls.
#pragma once

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace fuzz {

inline void Check(bool condition) {
    if (!condition) __builtin_trap();
}

struct Buffer {
    explicit Buffer(int size) : size(size), data(static_cast<char *>(std::malloc(size > 0 ? size : 1))) {}
    ~Buffer() { std::free(data); }
    Buffer(const Buffer &) = delete;
    Buffer &operator=(const Buffer &) = delete;
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
    char *data;
};

// The quote text a driver would report; `calls` tells how often it was asked.
struct QuoteQuery {
    const char *text;
    int calls = 0;
    static bool Run(void *self, char *buffer, int size) {
        auto *q = static_cast<QuoteQuery *>(self);
        ++q->calls;
        std::strncpy(buffer, q->text, static_cast<std::size_t>(size));
        return q->text[0] != '\0';
    }
};

} // namespace fuzz
