#include "transfer/import_selection_files.h"

#include <korvel/korvel32.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace kodbc::transfer {
namespace {

constexpr std::string_view kFormatWord = "FORMAT=";
constexpr std::size_t kFormatWordLength = 9;

bool SameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> Items(std::string_view line, char separator, bool skipEmpty) {
    std::vector<std::string_view> items;
    for (;;) {
        const std::size_t at = line.find(separator);
        const std::string_view item = line.substr(0, at);
        if (!skipEmpty || !item.empty()) items.push_back(item);
        if (at == std::string_view::npos) return items;
        line.remove_prefix(at + 1);
    }
}

// The next header line, cut as the header's short line buffer cuts it.
bool HeaderLine(LineReader &reader, std::string_view &line) {
    if (!reader.Next(line)) return false;
    line = line.substr(0, std::min(line.size(), kSdiHeaderLineSize - 1));
    return true;
}

int SdiType(std::string_view word) {
    switch (word[kFormatWord.size()]) {
    case 'D':
    case 'T': return KODBC_TYPE_DATETIME;
    case 'N': return word[kFormatWord.size() + 1] == 'G' ? KODBC_TYPE_INTEGER : KODBC_TYPE_FLOAT;
    default: return KODBC_TYPE_VAR_TEXT;
    }
}

std::string Unnamed(std::size_t index) { return "Unbenannt_" + std::to_string(index); }

ImportField *FieldNamed(ImportFieldList &fields, std::string_view name) {
    for (ImportField &field : fields)
        if (SameText(field.sourceName, name)) return &field;
    return nullptr;
}

} // namespace

std::string_view OemLineToAnsi(std::string_view line, std::string &buffer) {
    const std::string oem(line);
    // A character may grow on the way.
    buffer.resize(oem.size() * 3 + 1);
    const int length = Korvel_OemToAnsi(oem.c_str(), buffer.data(), static_cast<int>(buffer.size()));
    return std::string_view(buffer.data(), static_cast<std::size_t>(length));
}

bool ReadSdiHeader(LineReader &reader, ImportFieldList &fields) {
    fields.clear();
    ImportFieldAdder adder(fields);
    std::string_view line;
    if (!HeaderLine(reader, line) || !SameText(line, "SDI")) return false;
    for (int skipped = 0; skipped < 3; ++skipped)
        if (!HeaderLine(reader, line)) return false;
    if (!HeaderLine(reader, line)) return false;
    const long count = std::strtol(std::string(line).c_str(), nullptr, 10);
    if (count < 1) return false;
    // The field lines are taken as they stand; only the records are OEM text.
    for (long n = 0; n < count; ++n) {
        if (!HeaderLine(reader, line)) return false;
        const std::vector<std::string_view> words = Items(line, ' ', true);
        int type = KODBC_TYPE_VAR_TEXT;
        for (std::size_t w = 1; w < words.size(); ++w)
            if (words[w].size() >= kFormatWordLength && SameText(words[w].substr(0, kFormatWord.size()), kFormatWord))
                type = SdiType(words[w]);
        std::string_view name = words.empty() ? std::string_view() : words[0];
        const std::size_t point = name.rfind('.');
        if (point != std::string_view::npos) name.remove_prefix(point + 1);
        // A field without a name still needs one the database takes.
        adder.Add(name.empty() ? Unnamed(static_cast<std::size_t>(n)) : std::string(name), type);
    }
    return HeaderLine(reader, line);
}

bool ReadSelHeader(LineReader &reader, ImportFieldList &fields, long &records) {
    fields.clear();
    ImportFieldAdder adder(fields);
    records = 0;
    std::string_view line;
    if (!reader.Next(line) || !reader.Next(line)) return false;
    const std::string counts(line);
    char *end = nullptr;
    const long count = std::strtol(counts.c_str(), &end, 10);
    if (count < 1) return false;
    const std::size_t comma = counts.find(',');
    if (comma != std::string::npos) records = std::strtol(counts.c_str() + comma + 1, nullptr, 10);
    std::string ansi;
    for (long n = 0; n < count; ++n) {
        if (!reader.Next(line)) return false;
        const std::vector<std::string_view> items = Items(OemLineToAnsi(line, ansi), ',', false);
        std::string_view name = items.size() > 2 ? Trimmed(items[2]) : std::string_view();
        name = name.substr(0, kSelNameLength);
        std::string_view format = items.size() > 3 ? items[3] : std::string_view();
        format = format.substr(0, kSelFormatLength);
        const bool number = format.size() >= 3 && (format[1] == 'F' || format[1] == 'G' || format[1] == 'N');
        adder.Add(name.empty() ? Unnamed(static_cast<std::size_t>(n)) : std::string(name),
                  number ? KODBC_TYPE_FLOAT : KODBC_TYPE_VAR_TEXT);
    }
    return true;
}

bool ReadSelRecord(LineReader &reader, std::size_t count, std::vector<std::string> &values) {
    values.resize(count);
    std::string_view line;
    std::string ansi;
    for (std::string &value : values) {
        if (!reader.Next(line)) return false;
        value = OemLineToAnsi(Trimmed(line.substr(0, std::min(line.size(), kSelValueLength))), ansi);
    }
    return true;
}

std::vector<std::string> SplitKeywords(std::string_view text) {
    std::vector<std::string> keywords;
    for (std::string_view item : Items(text, ',', true)) keywords.emplace_back(item);
    return keywords;
}

std::string_view PrefixedNumber(std::string_view name, std::string_view prefix) {
    if (name.size() < prefix.size() || !SameText(name.substr(0, prefix.size()), prefix)) return {};
    const std::string_view digits = name.substr(prefix.size());
    if (digits.empty() || digits.size() > 2) return {};
    for (char c : digits)
        if (c < '0' || c > '9') return {};
    return digits;
}

void AddContactFields(ImportFieldList &fields, ContactConversion &conversion) {
    if (!conversion.on) return;
    const std::size_t fileFields = fields.size();
    ImportFieldAdder adder(fields);
    for (const std::string &keyword : conversion.keywords) adder.Add(keyword);
    bool matched = false;
    for (ImportField &field : fields) {
        if (PrefixedNumber(field.sourceName, conversion.namePrefix).empty() &&
            PrefixedNumber(field.sourceName, conversion.contentsPrefix).empty())
            continue;
        // The pairs reach the new table only through the keyword fields.
        field.imported = false;
        matched = true;
    }
    if (matched) return;
    fields.resize(fileFields);
    conversion.on = false;
}

void ConvertContacts(ImportFieldList &fields, const ContactConversion &conversion) {
    if (!conversion.on) return;
    for (const ImportField &kind : fields) {
        const std::string_view digits = PrefixedNumber(kind.sourceName, conversion.namePrefix);
        if (digits.empty() || !kind.value || kind.value->empty()) continue;
        const auto keyword = std::find_if(conversion.keywords.begin(), conversion.keywords.end(),
                                          [&](const std::string &word) { return SameText(word, *kind.value); });
        if (keyword == conversion.keywords.end()) continue;
        ImportField *target = FieldNamed(fields, *keyword);
        const ImportField *contents = FieldNamed(fields, conversion.contentsPrefix + std::string(digits));
        if (target && contents) target->value = contents->value;
    }
}

} // namespace kodbc::transfer
