#include "transfer/csv_format.h"

#include <korvel/korvel32.h>

#include <cstring>

namespace kodbc::transfer {
namespace {

constexpr std::size_t kBlockSize = 1 << 16;

} // namespace

void ToIsoDate(char *text, int size) {
    if (!text || size < 1) return;
    const std::size_t length = strnlen(text, static_cast<std::size_t>(size));
    char value[64];
    if (length >= sizeof value) return;
    std::memcpy(value, text, length);
    value[length] = '\0';
    KorvelDate date{};
    if (!Korvel_StringToDate(value, &date)) return;
    Korvel_FormatDate(&date, date.hasTime ? "%Y2-%M1-%D1 %h1:%m1:%s1" : "%Y2-%M1-%D1", text, size);
}

CsvReader::CsvReader(std::FILE *file, char delimiter)
    : file_(file), delimiter_(delimiter), block_(new char[kBlockSize]) {}

int CsvReader::Get() {
    if (begin_ == end_) {
        begin_ = 0;
        end_ = file_ ? std::fread(block_.get(), 1, kBlockSize, file_) : 0;
        if (end_ == 0) {
            if (file_ && std::ferror(file_)) error_ = true;
            return EOF;
        }
    }
    ++offset_;
    return static_cast<unsigned char>(block_[begin_++]);
}

void CsvReader::Mark() noexcept {
    markOffset_ = offset_;
    markLine_ = line_;
}

bool CsvReader::Rewind() {
    if (!file_ || std::fseek(file_, markOffset_, SEEK_SET) != 0) return false;
    begin_ = end_ = 0;
    offset_ = markOffset_;
    line_ = markLine_;
    error_ = false;
    return true;
}

bool CsvReader::Next(std::vector<std::string> &values, std::vector<bool> &quoted, std::size_t &count) {
    enum class State { Start, Plain, Quoted, QuoteInQuoted, AfterQuoted };
    for (;;) {
        count = 0;
        auto next = [&]() -> std::string & {
            if (count == values.size()) values.emplace_back();
            if (count == quoted.size()) quoted.push_back(false);
            quoted[count] = false;
            std::string &value = values[count++];
            value.clear();
            return value;
        };
        recordLine_ = line_;
        std::string *value = &next();
        State state = State::Start;
        bool any = false, cr = false;  // cr: a CR outside quotes, kept unless a LF follows
        int c;
        while ((c = Get()) != EOF) {
            any = true;
            const char ch = static_cast<char>(c);
            if (ch == '\n') ++line_;
            if (state == State::Quoted) {
                if (ch == '"') state = State::QuoteInQuoted;
                else value->push_back(ch);
                continue;
            }
            if (state == State::QuoteInQuoted) {
                if (ch == '"') {
                    value->push_back('"');
                    state = State::Quoted;
                    continue;
                }
                state = State::AfterQuoted;
            }
            if (cr && ch != '\n') {
                value->push_back('\r');
                if (state == State::Start) state = State::Plain;
            }
            cr = ch == '\r';
            if (cr) continue;
            if (ch == '\n') break;
            if (ch == delimiter_) {
                value = &next();
                state = State::Start;
            } else if (state == State::Start && ch == '"') {
                quoted[count - 1] = true;
                state = State::Quoted;
            } else {
                value->push_back(ch);
                if (state == State::Start) state = State::Plain;
            }
        }
        if (!any) return false;
        if (count == 1 && values[0].empty() && !quoted[0]) {
            if (c == EOF) return false;
            continue;  // an empty line
        }
        return true;
    }
}

} // namespace kodbc::transfer
