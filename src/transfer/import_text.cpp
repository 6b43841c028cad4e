#include "transfer/import_text.h"

#include <cstring>

namespace kodbc::transfer {
namespace {

constexpr std::size_t kBlockSize = 1 << 16;

} // namespace

char ImportTextFormat::Delimiter() const noexcept {
    switch (delimiter) {
    case DelimiterChoice::Tab: return '\t';
    case DelimiterChoice::Blank: return ' ';
    default: return otherDelimiter.empty() ? '\0' : otherDelimiter[0];
    }
}

char ImportTextFormat::DecimalMark() const noexcept {
    switch (decimal) {
    case DecimalChoice::Comma: return ',';
    case DecimalChoice::Point: return '.';
    default: return otherDecimal.empty() ? '.' : otherDecimal[0];
    }
}

std::string FormatDescription(const char *fileName, const ImportTextFormat &format) {
    char text[kFormatDescriptionSize];
    std::snprintf(text, sizeof text, "%s\\%d\\%d\\%c\\%c\\%c\\%c", fileName ? fileName : "", format.ascii ? 1 : 0,
                  format.namesInFirstLine ? 0 : 1, format.Delimiter(), format.DecimalMark(), format.leftBracket,
                  format.rightBracket);
    return text;
}

LineReader::LineReader(std::FILE *file) : file_(file), block_(new char[kBlockSize]) {
    line_.reserve(kImportLineSize);
}

bool LineReader::Fill() {
    begin_ = 0;
    end_ = file_ ? std::fread(block_.get(), 1, kBlockSize, file_) : 0;
    if (end_ == 0 && file_ && std::ferror(file_)) error_ = true;
    return end_ > 0;
}

bool LineReader::Next(std::string_view &line) {
    line_.clear();
    bool any = false, ended = false, cut = false;
    while (!ended) {
        if (begin_ == end_ && !Fill()) break;
        any = true;
        const char *start = block_.get() + begin_;
        const std::size_t available = end_ - begin_;
        const void *feed = std::memchr(start, '\n', available);
        const std::size_t length = feed ? static_cast<std::size_t>(static_cast<const char *>(feed) - start) : available;
        const std::size_t room = kImportLineSize - 1 - line_.size();
        line_.append(start, length < room ? length : room);
        cut = cut || length > room;
        const std::size_t consumed = feed ? length + 1 : length;
        begin_ += consumed;
        offset_ += static_cast<long>(consumed);
        ended = feed != nullptr;
    }
    if (!any) return false;
    cut_ = cut;
    ++lines_;
    // The CR of a cut line went with the rest; the last byte kept is text.
    if (!cut && !line_.empty() && line_.back() == '\r') line_.pop_back();
    const std::size_t nul = line_.find('\0');
    if (nul != std::string::npos) line_.resize(nul);
    line = line_;
    return true;
}

bool LineReader::Rewind(long offset) {
    if (!file_ || std::fseek(file_, offset, SEEK_SET) != 0) return false;
    begin_ = end_ = 0;
    offset_ = offset;
    error_ = false;
    return true;
}

std::size_t SplitLine(std::string_view line, char delimiter, char leftBracket, char rightBracket,
                      std::vector<std::string> &values, std::size_t *cut) {
    if (cut) *cut = 0;
    if (line.empty()) return 0;
    std::size_t count = 0;
    auto next = [&]() -> std::string & {
        if (count == values.size()) values.emplace_back();
        std::string &value = values[count++];
        value.clear();
        return value;
    };
    std::string *value = &next();
    bool bracketed = false, full = false;
    // Whole runs of ordinary characters are copied at once: a character at
    // a time, splitting was the largest part of an import's own work.
    auto keep = [&](const char *from, const char *to) {
        const std::size_t length = static_cast<std::size_t>(to - from);
        const std::size_t room = kImportValueLength - value->size();
        if (length <= room) {
            value->append(from, length);
        } else {
            value->append(from, room);
            if (!full && cut) ++*cut;
            full = true;
        }
    };
    const char *p = line.data(), *const end = p + line.size();
    while (p < end) {
        const char *run = p;
        if (bracketed) {
            while (p < end && *p != rightBracket) ++p;
            keep(run, p);
            if (p < end) {
                bracketed = false;
                ++p;
            }
            continue;
        }
        if (leftBracket == '\0') {
            p = delimiter == '\0' ? end : static_cast<const char *>(std::memchr(p, delimiter, end - p));
            if (!p) p = end;
        } else {
            while (p < end && !(*p == delimiter && delimiter != '\0') && *p != leftBracket) ++p;
        }
        keep(run, p);
        if (p == end) break;
        if (*p == delimiter && delimiter != '\0') {
            value = &next();
            full = false;
        } else {
            bracketed = true;
        }
        ++p;
    }
    return count;
}

void FieldsFromNameLine(std::string_view line, const ImportTextFormat &format, ImportFieldList &fields) {
    fields.clear();
    std::vector<std::string> names;
    const std::size_t count = SplitLine(line, format.Delimiter(), format.leftBracket, format.rightBracket, names);
    ImportFieldAdder adder(fields);
    for (std::size_t i = 0; i < count; ++i) adder.Add(format.namesInFirstLine ? names[i] : "F" + std::to_string(i));
}

} // namespace kodbc::transfer
