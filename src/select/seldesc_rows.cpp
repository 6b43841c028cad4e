// Condition rows as texts, for the pages that show descriptors.
#include "select/seldesc_rows.h"

#include "internal/library.h"

#include <cstdio>

namespace kodbc::seldesc {
namespace {

bool IsDecimal(std::string_view text) {
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
    if (text.empty()) return false;
    for (char c : text)
        if (c < '0' || c > '9') return false;
    return true;
}

void AppendRow(const OpDescOperator *table, const RowTexts &row, korvel::BoundedText &out) {
    // Nothing when the operator is none or the blank entry, or when field
    // and value are both empty.
    const OpDescOperator *op = FindByCode(table, row.code);
    if (!op) return;
    std::string_view value = std::string_view(row.value).substr(0, kDialogValueChars);
    if (row.field.empty() && value.empty()) return;
    char typeText[24];
    std::snprintf(typeText, sizeof typeText, "%ld", row.type);
    out.append(row.field);
    out.append(kFieldSeparator);
    out.append(op->keyword);
    out.append(kFieldSeparator);
    out.append(value);
    out.append(kFieldSeparator);
    out.append(typeText);
    out.append(kLineEnd);
}

} // namespace

std::vector<BoxEntry> FieldBoxEntries(std::string_view rest) {
    std::vector<BoxEntry> entries;
    while (!rest.empty()) {
        std::size_t cut = rest.find(kFieldSeparator);
        std::string_view name = rest.substr(0, cut);
        rest = cut == std::string_view::npos ? std::string_view() : rest.substr(cut + 1);
        if (name.empty()) continue;
        long type = 0;
        std::string_view next = rest.substr(0, rest.find(kFieldSeparator));
        if (IsDecimal(next)) {
            type = ParseDataType(next);
            rest.remove_prefix(next.size() < rest.size() ? next.size() + 1 : rest.size());
        }
        entries.push_back({std::string(name.substr(0, kValueChars)), type});
    }
    return entries;
}

std::vector<BoxEntry> OperatorBoxEntries(const OpDescOperator *table) {
    std::vector<BoxEntry> entries;
    char label[kLabelChars + 1];
    for (const OpDescOperator *op = table; op && op->code != 0; ++op) {
        LoadLibraryString(LibraryInstance(), static_cast<int>(op->label), label, sizeof label);
        entries.push_back({label, static_cast<long>(op->code)});
    }
    entries.push_back({" ", 0});
    return entries;
}

int FindExactEntry(const std::vector<std::string> &entries, std::string_view text) {
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (entries[i] == text) return static_cast<int>(i);
    return -1;
}

std::vector<ShownLine> LinesForRows(const OpDescOperator *table, std::string_view descriptor,
                                    const OpDescDialogItem *items) {
    std::vector<ShownLine> shown;
    std::size_t group = 0;
    ForEachGroup(descriptor, [&](std::string_view groupText) {
        if (IsTableEnd(items[group])) return false;
        std::size_t row = group;
        ForEachLine(groupText, [&](std::string_view text) {
            if (IsTableEnd(items[row]) || IsGroupEnd(items[row])) return false;
            Line line = SplitLine(text);
            const OpDescOperator *op = FindByKeyword(table, line.keyword);
            shown.push_back({row++, line.field, op ? op->code : 0, line.value});
            return true;
        });
        while (!IsTableEnd(items[group]) && !IsGroupEnd(items[group])) ++group;
        if (IsGroupEnd(items[group])) ++group;
        return !IsTableEnd(items[group]);
    });
    return shown;
}

int FirstEmptyControl(const OpDescDialogItem *items, const std::function<bool(int id)> &hasText) {
    for (const OpDescDialogItem *row = items; !IsTableEnd(*row); ++row) {
        if (IsGroupEnd(*row)) continue;
        for (int id : {row->FieldId, row->OperatorId, row->ValueId})
            if (!hasText(id)) return id;
    }
    return 0;
}

void WriteDescriptor(const OpDescOperator *table, const std::vector<RowTexts> &rows, char *descriptor,
                     int size) noexcept {
    korvel::BoundedText out(descriptor, size);
    if (!table) return;
    int limit = size;
    for (const RowTexts &row : rows) {
        if (!row.groupEnd) {
            AppendRow(table, row, out);
            continue;
        }
        out.append(kGroupSeparator);
        // Every group separator costs one more byte of room than it takes;
        // descriptors near the size limit depend on it.
        --limit;
        if (limit < 1 || out.length() + 1 >= static_cast<std::size_t>(limit)) return;
        out = korvel::BoundedText::continuing(descriptor, limit);
    }
}

} // namespace kodbc::seldesc
