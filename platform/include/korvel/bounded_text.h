// One writer for every caller buffer that comes with a size.
//
// The rules of the interface are all expressed with it: "cut to size-1"
// (append), "only while n bytes remain" (room), "skip what does not fit"
// (append_if_fits). It never writes past the size, terminator included, and
// keeps the text terminated after every operation.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace korvel {

class BoundedText {
public:
    // A null buffer or a size below 1 makes a writer that holds nothing.
    BoundedText(char *buffer, int size) noexcept
        : buf_(buffer), cap_(buffer && size > 0 ? static_cast<std::size_t>(size) : 0) {
        if (cap_) buf_[0] = '\0';
    }

    // Continues after the text already in the buffer (append semantics).
    static BoundedText continuing(char *buffer, int size) noexcept {
        BoundedText t(nullptr, 0);
        if (buffer && size > 0) {
            t.buf_ = buffer;
            t.cap_ = static_cast<std::size_t>(size);
            t.len_ = strnlen(buffer, t.cap_ - 1);
            buffer[t.len_] = '\0';
        }
        return t;
    }

    bool valid() const noexcept { return cap_ != 0; }
    std::size_t length() const noexcept { return len_; }
    // Characters that can still be added (the terminator's byte excluded).
    std::size_t room() const noexcept { return cap_ ? cap_ - 1 - len_ : 0; }
    bool truncated() const noexcept { return truncated_; }
    const char *c_str() const noexcept { return cap_ ? buf_ : ""; }
    std::string_view view() const noexcept { return {c_str(), len_}; }

    // Adds as much of text as fits. Returns false when something was cut.
    bool append(std::string_view text) noexcept {
        if (!cap_) { truncated_ = truncated_ || !text.empty(); return text.empty(); }
        std::size_t n = text.size() <= room() ? text.size() : room();
        if (n) std::memcpy(buf_ + len_, text.data(), n);  // an empty view may have a null data()
        len_ += n;
        buf_[len_] = '\0';
        if (n < text.size()) { truncated_ = true; return false; }
        return true;
    }
    bool append(const char *text) noexcept { return append(text ? std::string_view(text) : std::string_view()); }
    bool append(char c) noexcept { return append(std::string_view(&c, 1)); }

    // Adds text only when all of it fits; otherwise leaves the buffer as it was.
    bool append_if_fits(std::string_view text) noexcept {
        if (text.size() > room()) { truncated_ = true; return false; }
        return append(text);
    }

    // Shortens the text to n characters (no-op when already shorter).
    void truncate(std::size_t n) noexcept {
        if (cap_ && n < len_) { len_ = n; buf_[len_] = '\0'; }
    }
    void clear() noexcept { truncate(0); truncated_ = false; }

    int int_length() const noexcept { return static_cast<int>(len_); }

private:
    char *buf_ = nullptr;
    std::size_t cap_ = 0;
    std::size_t len_ = 0;
    bool truncated_ = false;
};

} // namespace korvel
