#include "transfer/import_values.h"

#include "internal/library.h"
#include "wizards/record_statements.h"

#include <korvel/korvel32.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>

namespace kodbc::transfer {
namespace {

constexpr int kTimestampSize = 100;
// More than this cannot travel inside one INSERT anyway.
constexpr std::size_t kContentLimit = wizards::kRecordStatementSize;

bool HasFolder(const std::string &name) {
#ifdef _WIN32
    return name.find_first_of("\\/:") != std::string::npos;
#else
    return name.find('/') != std::string::npos;
#endif
}

void ReadContent(ImportField &field, const std::string &name, const std::string &folder) {
    const std::string path = HasFolder(name) ? name : folder + name;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) {
        if (!field.noFileMessage) LibraryMessage(msg::IMPORT_CONTENT_FILE_ERROR, path.c_str(), field.targetName.c_str());
        return;
    }
    std::string content(kContentLimit, '\0');
    content.resize(std::fread(content.data(), 1, content.size(), file.get()));
    const std::size_t nul = content.find('\0');
    if (nul != std::string::npos) content.resize(nul);
    if (!content.empty()) field.value = std::move(content);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The German number rule over text: digits and signs kept, each decimal mark
// a point, everything else dropped. Whether something besides blanks went
// is added to dropped.
void KeepNumber(std::string_view text, char decimalMark, std::string &out, bool &dropped) {
    for (char c : text) {
        if (c == decimalMark) out.push_back('.');
        else if (IsDigit(c) || c == '+' || c == '-') out.push_back(c);
        else if (c != ' ' && c != '\t') dropped = true;
    }
}

// "[+-]digits" with blanks around, the exponent of a number.
bool IsExponent(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t");
    if (first == std::string_view::npos) return false;
    text = text.substr(first, last - first + 1);
    if (text[0] == '+' || text[0] == '-') text.remove_prefix(1);
    return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

// "[+-]digits[.digits][e[+-]digits]" with at least one digit before the
// exponent: what a database reads as one number.
bool IsOneNumber(std::string_view text) {
    std::size_t at = 0, digits = 0;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    for (; at < text.size() && IsDigit(text[at]); ++at) ++digits;
    if (at < text.size() && text[at] == '.')
        for (++at; at < text.size() && IsDigit(text[at]); ++at) ++digits;
    if (digits == 0) return false;
    if (at < text.size() && text[at] == 'e') return IsExponent(text.substr(at + 1));
    return at == text.size();
}

} // namespace

NumberText ToNumberText(std::string_view text, char decimalMark, std::string &out, bool &dropped) {
    dropped = false;
    // Most numbers in a file are plain digits: they need none of the rules.
    if (!text.empty() && std::all_of(text.begin(), text.end(), IsDigit)) {
        out.assign(text);
        return NumberText::Number;
    }
    out.clear();
    // An exponent would lose its letter to the rule and turn the number
    // into a sum: it is taken apart from the rule.
    const std::size_t e = text.find_last_of("eE");
    if (e != std::string_view::npos && IsExponent(text.substr(e + 1))) {
        KeepNumber(text.substr(0, e), decimalMark, out, dropped);
        if (std::any_of(out.begin(), out.end(), IsDigit)) {
            out.push_back('e');
            KeepNumber(text.substr(e + 1), decimalMark, out, dropped);
        } else {
            out.clear();
            dropped = false;
        }
    }
    if (out.empty()) KeepNumber(text, decimalMark, out, dropped);
    if (out.empty()) return NumberText::Empty;
    return IsOneNumber(out) ? NumberText::Number : NumberText::NotANumber;
}

ValueResult SetImportValue(ImportField &field, std::string_view text, char decimalMark, const std::string &folder,
                           bool *numberChanged) noexcept {
    field.value.reset();
    if (numberChanged) *numberChanged = false;
    if (text.empty()) return ValueResult::Taken;
    try {
        switch (field.targetType) {
        case KODBC_TYPE_FIXED_TEXT:
        case KODBC_TYPE_LONG_TEXT:
        case KODBC_TYPE_VAR_TEXT:
            if (field.fileContent) ReadContent(field, std::string(text), folder);
            else field.value.emplace(text);
            break;
        case KODBC_TYPE_INTEGER:
        case KODBC_TYPE_FLOAT: {
            std::string &number = field.value.emplace();
            bool dropped = false;
            const NumberText kind = ToNumberText(text, decimalMark, number, dropped);
            if (numberChanged) *numberChanged = dropped;
            if (kind == NumberText::NotANumber) {
                field.value.reset();
                return ValueResult::NotANumber;
            }
            break;
        }
        case KODBC_TYPE_DATETIME: {
            KorvelDate date{};
            if (Korvel_StringToDate(std::string(text).c_str(), &date) != 1) break;
            char timestamp[kTimestampSize];
            const int length = Korvel_DateToTimestampText(&date, timestamp, sizeof timestamp);
            field.value.emplace(timestamp, static_cast<std::size_t>(length));
            break;
        }
        default:
            break;
        }
        return ValueResult::Taken;
    } catch (const std::bad_alloc &) {
        field.value.reset();
        return ValueResult::OutOfMemory;
    }
}

std::string FolderOf(const std::string &fileName) {
#ifdef _WIN32
    const std::size_t at = fileName.find_last_of("\\/:");
#else
    const std::size_t at = fileName.rfind('/');
#endif
    return at == std::string::npos ? std::string() : fileName.substr(0, at + 1);
}

} // namespace kodbc::transfer
