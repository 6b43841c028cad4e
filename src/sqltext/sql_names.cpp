// Identifier quoting and the statement formatter as pure text rules.
//
// Nothing here talks to a driver or shows a message: the quote text comes
// through QuoteText, and a shortage of memory is returned to the exported
// wrapper, which reports it. The formatter and the per-part work use fixed
// buffers, so the common calls allocate nothing.
#include "sqltext/sql_names.h"

#include <korvel/bounded_text.h>

#include <cstdint>
#include <cstring>
#include <new>

namespace kodbc::sqltext {
namespace {

using korvel::BoundedText;

std::string_view Cut(std::string_view text, std::size_t bufferSize) noexcept {
    return text.substr(0, text.size() < bufferSize - 1 ? text.size() : bufferSize - 1);
}

// Whether [a, a+aLength) and [b, b+bLength) share a byte.
bool Overlaps(const void *a, std::size_t aLength, const void *b, std::size_t bLength) noexcept {
    auto x = reinterpret_cast<std::uintptr_t>(a), y = reinterpret_cast<std::uintptr_t>(b);
    return x < y + bLength && y < x + aLength;
}

// Copies text into dst cut to size-1; text may lie inside dst.
void CopyCut(char *dst, int size, std::string_view text) noexcept {
    if (!dst || size < 1) return;
    std::size_t n = text.size() < static_cast<std::size_t>(size) - 1 ? text.size() : static_cast<std::size_t>(size) - 1;
    if (n) std::memmove(dst, text.data(), n);
    dst[n] = '\0';
}

// A private copy of a caller's text, on the stack when it is short. Needed
// only where the output may overwrite the input.
class WorkingCopy {
public:
    WorkingCopy() = default;
    WorkingCopy(const WorkingCopy &) = delete;
    WorkingCopy &operator=(const WorkingCopy &) = delete;
    ~WorkingCopy() { delete[] heap_; }

    bool assign(std::string_view text) noexcept {
        char *p = local_;
        if (text.size() >= sizeof local_) {
            heap_ = new (std::nothrow) char[text.size() + 1];
            if (!heap_) return false;
            p = heap_;
        }
        if (!text.empty()) std::memcpy(p, text.data(), text.size());
        p[text.size()] = '\0';
        view_ = {p, text.size()};
        return true;
    }
    std::string_view view() const noexcept { return view_; }

private:
    char local_[512];
    char *heap_ = nullptr;
    std::string_view view_;
};

// Calls part(text) for every "."-separated (or separator-separated) piece,
// empty pieces included, each cut to bufferSize-1 characters.
template <class F>
void ForEachPiece(std::string_view text, char separator, std::size_t bufferSize, F &&part) {
    for (;;) {
        std::size_t end = text.find(separator);
        part(Cut(text.substr(0, end), bufferSize), end == std::string_view::npos);
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

// One bracket-style part into buffer (kBracketPartSize bytes).
void PrepareBracketPart(std::string_view part, int flags, char *buffer) noexcept {
    BoundedText out(buffer, static_cast<int>(kBracketPartSize));
    if (part == "*" || IsBlank(part) || ((flags & kKeepPlainIdentifiers) && IsPlainSqlIdentifier(part))) {
        out.append(part);
        return;
    }
    out.append('[');
    out.append(part);
    out.append(']');
}

// One SQL-92 part: quote characters and blanks around it go, then it is
// enclosed unless it needs no quoting. An enclosure that is too long is cut
// like any other text, even when that loses the closing quote.
void PrepareSql92Part(QuoteText &quote, std::string_view part, BoundedText &out) noexcept {
    const char q = quote.first();
    while (!part.empty() && IsWhiteSpace(part.front())) part.remove_prefix(1);
    while (!part.empty() && part.front() == q) part.remove_prefix(1);
    while (!part.empty() && IsWhiteSpace(part.back())) part.remove_suffix(1);
    while (!part.empty() && part.back() == q) part.remove_suffix(1);
    if (part == "*" || IsBlank(part) || IsPlainSqlIdentifier(part)) {
        out.append(part);
        return;
    }
    out.append(quote.text());
    out.append(part);
    out.append(quote.text());
}

// Joining rule shared by names and lists: the joiner only while three bytes
// (two characters and the terminator) remain, a piece only when all of it
// fits; a piece that does not fit is skipped, later ones may still fit.
void AppendJoined(BoundedText &out, bool first, char joiner, std::string_view piece) noexcept {
    if (!first && joiner != '\0' && out.room() >= 2) out.append(joiner);
    out.append_if_fits(piece);
}

// SQL-92 preparation of name (not inside out's buffer) into a fresh out.
void PrepareSql92Into(QuoteText &quote, std::string_view name, BoundedText &out) noexcept {
    if (IsBlank(name)) return;
    if (!quote.quotes()) {
        out.append(name);
        return;
    }
    bool first = true;
    ForEachPiece(name, '.', kSql92PartSize, [&](std::string_view raw, bool) {
        char buffer[kSql92PartSize];
        BoundedText part(buffer, static_cast<int>(sizeof buffer));
        PrepareSql92Part(quote, raw, part);
        AppendJoined(out, first, '.', part.view());
        first = false;
    });
}

} // namespace

bool IsPlainSqlIdentifier(std::string_view name) noexcept {
    auto letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (name.empty() || !letter(name.front())) return false;
    for (char c : name.substr(1))
        if (!letter(c) && !(c >= '0' && c <= '9') && c != '_' && c != '$') return false;
    return true;
}

QuoteText QuoteText::Fixed(const char *text) noexcept {
    QuoteText q;
    CopyCut(q.text_, static_cast<int>(sizeof q.text_), text ? std::string_view(text) : std::string_view());
    q.known_ = true;
    return q;
}

QuoteText QuoteText::Lazy(Fetch fetch, void *context) noexcept {
    QuoteText q;
    q.fetch_ = fetch;
    q.context_ = context;
    return q;
}

const char *QuoteText::text() noexcept {
    if (!known_) {
        known_ = true;
        if (!fetch_ || !fetch_(context_, text_, static_cast<int>(sizeof text_))) text_[0] = '\0';
        text_[sizeof text_ - 1] = '\0';
    }
    return text_;
}

void PrepareBracketName(char *name, int size, int flags) noexcept {
    if (!name || size < 1) return;
    std::string_view text(name, strnlen(name, static_cast<std::size_t>(size)));
    if (IsBlank(text)) return;

    std::size_t dot = text.find('.');
    std::string_view first = Cut(text.substr(0, dot), kBracketPartSize), second;
    if (dot != std::string_view::npos) {
        std::string_view rest = text.substr(dot + 1);
        second = Cut(rest.substr(0, rest.find('.')), kBracketPartSize);
    }
    char firstBuffer[kBracketPartSize], secondBuffer[kBracketPartSize];
    PrepareBracketPart(first, flags, firstBuffer);
    PrepareBracketPart(second, flags, secondBuffer);

    BoundedText out(name, size);
    out.append(firstBuffer);
    if (secondBuffer[0] != '\0') {
        out.append('.');
        out.append(secondBuffer);
    }
}

void PrepareBracketNameList(const char *list, char separator, char *out, int size, int flags) noexcept {
    BoundedText result(out, size);
    if (!result.valid() || !list || separator == '\0') return;
    // Lists handed to this function are always tab-separated, whatever the
    // separator says.
    bool first = true;
    ForEachPiece(list, '\t', kBracketPartSize, [&](std::string_view raw, bool) {
        char piece[kBracketPartSize];
        CopyCut(piece, static_cast<int>(sizeof piece), raw);
        PrepareBracketName(piece, static_cast<int>(sizeof piece), flags);
        if (!first) result.append(',');
        result.append(piece);
        first = false;
    });
}

bool PrepareSql92Name(QuoteText &quote, const char *name, char *out, int size) noexcept {
    if (!out || size < 1) return true;
    if (IsBlank(name)) {
        out[0] = '\0';
        return true;
    }
    std::string_view text(name);
    if (!quote.quotes()) {
        CopyCut(out, size, text);
        return true;
    }
    WorkingCopy copy;
    if (Overlaps(text.data(), text.size() + 1, out, static_cast<std::size_t>(size))) {
        if (!copy.assign(text)) {
            out[0] = '\0';
            return false;
        }
        text = copy.view();
    }
    BoundedText result(out, size);
    PrepareSql92Into(quote, text, result);
    return true;
}

bool PrepareSql92NameList(QuoteText &quote, char *list, int size, char separator, char joiner) noexcept {
    if (!list || size < 1) return true;
    WorkingCopy copy;
    if (!copy.assign(std::string_view(list, strnlen(list, static_cast<std::size_t>(size))))) return false;
    BoundedText result(list, size);
    bool first = true;
    auto piece = [&](std::string_view raw, bool) {
        char buffer[kSql92PartSize];
        BoundedText prepared(buffer, static_cast<int>(sizeof buffer));
        PrepareSql92Into(quote, raw, prepared);
        AppendJoined(result, first, joiner, prepared.view());
        first = false;
    };
    if (separator == '\0')
        piece(Cut(copy.view(), kSql92PartSize), true);
    else
        ForEachPiece(copy.view(), separator, kSql92PartSize, piece);
    return true;
}

bool PrepareColumnName(QuoteText &quote, std::string_view name, char *out, int size) noexcept {
    BoundedText result(out, size);
    if (!result.valid() || IsBlank(name)) return false;
    bool whole = true;
    if (IsPlainSqlIdentifier(name) || !quote.quotes()) {
        whole = result.append(name);
    } else {
        const std::string_view q = quote.text();
        whole = result.append(q);
        for (std::size_t at = 0; whole && at < name.size();) {
            const std::size_t next = name.find(q, at);
            const std::size_t end = next == std::string_view::npos ? name.size() : next + q.size();
            whole = result.append(name.substr(at, end - at)) && (next == std::string_view::npos || result.append(q));
            at = end;
        }
        whole = whole && result.append(q);
    }
    if (!whole) out[0] = '\0';
    return whole;
}

void EncloseInPlace(char *name, int size, std::string_view open, std::string_view close) noexcept {
    if (!name || size < 1) return;
    const std::size_t capacity = static_cast<std::size_t>(size) - 1;
    auto fit = [](std::size_t want, std::size_t room) { return want < room ? want : room; };
    std::size_t length = fit(strnlen(name, static_cast<std::size_t>(size)), capacity);
    std::size_t openLength = fit(open.size(), capacity);
    std::size_t kept = fit(length, capacity - openLength);
    std::memmove(name + openLength, name, kept);
    std::memcpy(name, open.data(), openLength);
    std::size_t end = openLength + kept;
    std::size_t closeLength = fit(close.size(), capacity - end);
    std::memcpy(name + end, close.data(), closeLength);
    name[end + closeLength] = '\0';
}

void QuoteIfNotPlain(QuoteText &quote, char *name, int size) noexcept {
    if (!name || size < 1) return;
    if (IsPlainSqlIdentifier(std::string_view(name, strnlen(name, static_cast<std::size_t>(size))))) return;
    const char *q = quote.text();
    EncloseInPlace(name, size, q, q);
}

void StripDelimiters(char *name, char open, char close) noexcept {
    if (!name) return;
    // Parts only get shorter, so each is moved left over text already read.
    char *write = name;
    const char *read = name;
    for (bool first = true;; first = false) {
        const char *dot = std::strchr(read, '.');
        std::string_view part(read, dot ? static_cast<std::size_t>(dot - read) : std::strlen(read));
        part = Cut(part, kSql92PartSize);
        if (!IsBlank(part)) {
            while (!part.empty() && IsWhiteSpace(part.front())) part.remove_prefix(1);
            if (open != '\0' && !part.empty() && part.front() == open) part.remove_prefix(1);
            while (!part.empty() && IsWhiteSpace(part.back())) part.remove_suffix(1);
            if (close != '\0' && !part.empty() && part.back() == close) part.remove_suffix(1);
        }
        if (!first) *write++ = '.';
        std::memmove(write, part.data(), part.size());
        write += part.size();
        if (!dot) break;
        read = dot + 1;
    }
    *write = '\0';
}

void ParseSchemaAndTable(const char *name, bool splitAtDot, char *schema, int schemaSize, char *table,
                         int tableSize) noexcept {
    if (!schema || !table || schemaSize < 2 || tableSize < 2) return;
    std::string_view text = name ? std::string_view(name) : std::string_view();
    std::string_view schemaPart, tablePart = text;
    std::size_t dot = text.find('.');
    if (splitAtDot && dot != std::string_view::npos) {
        schemaPart = text.substr(0, dot);
        std::string_view rest = text.substr(dot + 1);
        tablePart = rest.substr(0, rest.find('.'));
    }
    // When name is one of the output buffers, the other output is written
    // first, while the text it comes from is still intact.
    if (Overlaps(text.data(), text.size() + 1, schema, static_cast<std::size_t>(schemaSize))) {
        CopyCut(table, tableSize, tablePart);
        CopyCut(schema, schemaSize, schemaPart);
    } else {
        CopyCut(schema, schemaSize, schemaPart);
        CopyCut(table, tableSize, tablePart);
    }
}

void FormatStatement(QuoteText &quote, char *out, int size, const char *pattern, const char *const *args) noexcept {
    BoundedText result(out, size);
    if (!result.valid()) return;
    if (!pattern) return;

    int consumed = 0;
    const char *last = nullptr;
    auto next = [&]() {
        last = args ? args[consumed] : nullptr;
        ++consumed;
        return last;
    };

    // The rules count room as bytes left including the terminator's:
    // characters are copied while more than 2 remain, i.e. room() > 1.
    for (const char *p = pattern; *p && result.room() > 1;) {
        if (*p != '%') {
            result.append(*p++);
            continue;
        }
        if (p[1] == '\0') break;
        if (consumed == kFormatterUsableArguments) {
            // An eighth placeholder prints its letter.
            result.append(p[1]);
            p += 2;
            continue;
        }
        char work[kExpansionSize];
        BoundedText expansion(work, static_cast<int>(sizeof work));
        switch (p[1]) {
        case 't':
        case 'f':
            if (const char *arg = next()) PrepareSql92Into(quote, arg, expansion);
            break;
        case 's':
            expansion.append(next());
            break;
        case '.':
            if (consumed > 0 && !IsBlank(last)) expansion.append('.');
            break;
        default:
            break;
        }
        p += 2;
        // An expansion needs its length plus 2 bytes of room, i.e. more
        // characters of room() than it has.
        if (expansion.length() >= result.room()) break;
        result.append(expansion.view());
    }
}

} // namespace kodbc::sqltext
