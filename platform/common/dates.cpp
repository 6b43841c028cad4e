// Dates as users type them (German day.month.year), as ODBC writes them, and
// the formats the library shows them in.
#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cctype>
#include <cstdio>
#include <string_view>

namespace {

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInMonth(int year, int month) {
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : days[month - 1];
}

bool ValidDate(const KorvelDate &d) {
    if (d.year < 1 || d.year > 9999 || d.month < 1 || d.month > 12) return false;
    if (d.day < 1 || d.day > DaysInMonth(d.year, d.month)) return false;
    return d.hour >= 0 && d.hour <= 23 && d.minute >= 0 && d.minute <= 59 && d.second >= 0 && d.second <= 59;
}

// A cursor over the input.
class Scanner {
public:
    explicit Scanner(std::string_view text) : s_(text) {}

    bool done() const { return pos_ == s_.size(); }
    void skip_blanks() {
        while (pos_ < s_.size() && (s_[pos_] == ' ' || s_[pos_] == '\t')) ++pos_;
    }
    bool blank_follows() const { return pos_ < s_.size() && (s_[pos_] == ' ' || s_[pos_] == '\t'); }
    bool literal(char c) {
        if (pos_ < s_.size() && s_[pos_] == c) { ++pos_; return true; }
        return false;
    }
    bool literal_nocase(std::string_view word) {
        if (s_.size() - pos_ < word.size()) return false;
        for (std::size_t i = 0; i < word.size(); ++i)
            if (std::tolower(static_cast<unsigned char>(s_[pos_ + i])) != word[i]) return false;
        pos_ += word.size();
        return true;
    }
    // Reads minDigits..maxDigits decimal digits; `digits` tells how many.
    bool number(int minDigits, int maxDigits, int &value, int *digits = nullptr) {
        std::size_t p = pos_;
        int v = 0, n = 0;
        while (p < s_.size() && n < maxDigits && std::isdigit(static_cast<unsigned char>(s_[p]))) {
            v = v * 10 + (s_[p] - '0');
            ++p;
            ++n;
        }
        // More digits than allowed is a different (invalid) number, not a prefix.
        if (n < minDigits || (p < s_.size() && std::isdigit(static_cast<unsigned char>(s_[p])))) return false;
        pos_ = p;
        value = v;
        if (digits) *digits = n;
        return true;
    }

private:
    std::string_view s_;
    std::size_t pos_ = 0;
};

// "hh:mm[:ss[.fraction]]"
bool ReadTime(Scanner &in, KorvelDate &d) {
    if (!in.number(1, 2, d.hour) || !in.literal(':') || !in.number(2, 2, d.minute)) return false;
    d.second = 0;
    if (in.literal(':')) {
        if (!in.number(2, 2, d.second)) return false;
        if (in.literal('.')) {
            int fraction = 0;
            if (!in.number(1, 9, fraction)) return false;
        }
    }
    d.hasTime = 1;
    return true;
}

// "yyyy-mm-dd[ hh:mm[:ss[.f]]]"
bool ReadOdbcDate(Scanner &in, KorvelDate &d, bool timeRequired) {
    if (!in.number(4, 4, d.year) || !in.literal('-') || !in.number(1, 2, d.month) || !in.literal('-') ||
        !in.number(1, 2, d.day))
        return false;
    if (in.blank_follows()) {
        in.skip_blanks();
        if (!in.done() && !ReadTime(in, d)) return false;
    }
    return !timeRequired || d.hasTime;
}

// "d.m.yy" or "d.m.yyyy", optionally a blank and a time
bool ReadGermanDate(Scanner &in, KorvelDate &d) {
    int yearDigits = 0;
    if (!in.number(1, 2, d.day) || !in.literal('.') || !in.number(1, 2, d.month) || !in.literal('.') ||
        !in.number(2, 4, d.year, &yearDigits))
        return false;
    if (yearDigits == 3) return false;
    if (yearDigits == 2) d.year += d.year < 50 ? 2000 : 1900;
    if (in.blank_follows()) {
        in.skip_blanks();
        if (!in.done() && !ReadTime(in, d)) return false;
    }
    return true;
}

// {d 'yyyy-mm-dd'} and {ts 'yyyy-mm-dd hh:mm:ss[.f]'}
bool ReadEscape(Scanner &in, KorvelDate &d) {
    if (!in.literal('{')) return false;
    in.skip_blanks();
    bool timestamp;
    if (in.literal_nocase("ts")) timestamp = true;
    else if (in.literal_nocase("d")) timestamp = false;
    else return false;
    in.skip_blanks();
    if (!in.literal('\'')) return false;
    if (!ReadOdbcDate(in, d, timestamp)) return false;
    if (!timestamp && d.hasTime) return false;
    if (!in.literal('\'')) return false;
    in.skip_blanks();
    return in.literal('}');
}

// Zero-padded to `width`, never shorter than the number; by hand because an
// export formats a date for every row.
void AppendNumber(korvel::BoundedText &out, int value, int width) {
    char reversed[12];
    int n = 0;
    for (unsigned v = value < 0 ? 0u : static_cast<unsigned>(value); n == 0 || v; v /= 10)
        reversed[n++] = static_cast<char>('0' + v % 10);
    char digits[32];
    int length = 0;
    for (int pad = width - n; pad > 0 && length + n < static_cast<int>(sizeof digits); --pad) digits[length++] = '0';
    while (n) digits[length++] = reversed[--n];
    out.append(std::string_view(digits, static_cast<std::size_t>(length)));
}

} // namespace

int Korvel_StringToDate(const char *text, KorvelDate *date) {
    if (!text || !date) return 0;
    std::string_view s(text);
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);

    KorvelDate d{};
    Scanner in(s);
    bool ok;
    if (!s.empty() && s.front() == '{') {
        ok = ReadEscape(in, d);
    } else if (s.size() > 4 && s[4] == '-') {
        ok = ReadOdbcDate(in, d, false);
    } else {
        ok = ReadGermanDate(in, d);
    }
    if (!ok || !in.done() || !ValidDate(d)) return 0;
    *date = d;
    return 1;
}

int Korvel_FormatDate(const KorvelDate *date, const char *format, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!date) return 0;
    std::string_view f(format ? format : "%D1.%M1.%Y2");
    for (std::size_t i = 0; i < f.size(); ++i) {
        if (f[i] == '%' && i + 2 < f.size() && f[i + 2] >= '1' && f[i + 2] <= '2') {
            std::string_view token = f.substr(i + 1, 2);
            bool known = true;
            if (token == "D1") AppendNumber(out, date->day, 2);
            else if (token == "M1") AppendNumber(out, date->month, 2);
            else if (token == "Y1") AppendNumber(out, date->year % 100, 2);
            else if (token == "Y2") AppendNumber(out, date->year, 4);
            else if (token == "h1") AppendNumber(out, date->hour, 2);
            else if (token == "m1") AppendNumber(out, date->minute, 2);
            else if (token == "s1") AppendNumber(out, date->second, 2);
            else known = false;
            if (known) {
                i += 2;
                continue;
            }
        }
        out.append(f[i]);
    }
    return out.int_length();
}

int Korvel_DateToOdbcDate(const KorvelDate *date, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!date) return 0;
    char text[64];
    std::snprintf(text, sizeof text, "{d '%04d-%02d-%02d'}", date->year, date->month, date->day);
    out.append(text);
    return out.int_length();
}

int Korvel_DateToOdbcTimestamp(const KorvelDate *date, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!date) return 0;
    char text[80];
    std::snprintf(text, sizeof text, "{ts '%04d-%02d-%02d %02d:%02d:%02d'}", date->year, date->month, date->day,
                  date->hour, date->minute, date->second);
    out.append(text);
    return out.int_length();
}

int Korvel_DateToTimestampText(const KorvelDate *date, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!date) return 0;
    char text[64];
    // An import converts a date in every record: the digits of a date in
    // range are written by hand, printf's format parsing cost more than the
    // rest of the conversion. Anything else keeps printf's form.
    const int parts[] = {date->month, date->day, date->hour, date->minute, date->second};
    bool plain = date->year >= 0 && date->year <= 9999;
    for (int part : parts) plain = plain && part >= 0 && part <= 99;
    if (plain) {
        char *p = text;
        const int year = date->year;
        *p++ = static_cast<char>('0' + year / 1000);
        *p++ = static_cast<char>('0' + year / 100 % 10);
        *p++ = static_cast<char>('0' + year / 10 % 10);
        *p++ = static_cast<char>('0' + year % 10);
        for (int i = 0; i < 5; ++i) {
            *p++ = "-- ::"[i];
            *p++ = static_cast<char>('0' + parts[i] / 10);
            *p++ = static_cast<char>('0' + parts[i] % 10);
        }
        *p = '\0';
    } else {
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", date->year, date->month, date->day,
                      date->hour, date->minute, date->second);
    }
    out.append(text);
    return out.int_length();
}
