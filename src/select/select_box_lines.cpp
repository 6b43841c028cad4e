#include "select/select_box_lines.h"

#include <kodbc/kodbc_select.h>

namespace kodbc::select {
namespace {

constexpr std::size_t kNameCut = 99;   // column or alias of a field line
constexpr std::size_t kLineCut = 199;  // a table or sort key

std::string_view Before(std::string_view line) { return line.substr(0, line.find('\t')); }

} // namespace

std::string FieldBoxLine(const FieldItem &field, bool withAlias) {
    std::string line = field.column;
    if (withAlias && !field.alias.empty()) line += "\t" + field.alias;
    return line;
}

std::string SortBoxLine(std::string_view column, const char *label) {
    std::string line(column);
    if (label) line += std::string("\t") + label;
    return line;
}

std::intptr_t SortBoxData(bool descending) { return descending ? KODBC_SORT_DESCENDING : KODBC_SORT_ASCENDING; }

std::string FieldClauseItem(std::string_view line, const NamePreparer &prepare) {
    std::string column(Before(line).substr(0, kNameCut));
    // "*abc" can only have been meant as all columns.
    if (!column.empty() && column[0] == '*') column = "*";
    std::string item = prepare(column);
    std::string alias = prepare(LineAlias(line).substr(0, kNameCut));
    if (!alias.empty()) item += " AS " + alias;
    return item;
}

std::string TableClauseItem(std::string_view line, const NamePreparer &prepare) {
    return prepare(line.substr(0, kLineCut));
}

std::string SortClauseItem(std::string_view line, std::intptr_t data, const NamePreparer &prepare) {
    std::string item = prepare(Before(line).substr(0, kLineCut));
    if (data != 0) item += " DESC";
    return item;
}

int ChosenLine(int index, int selected, int count) {
    if (index < 0) index = selected;
    return index < 0 || index >= count ? -1 : index;
}

KeptAlias AliasCharactersOnly(std::string_view text, std::size_t caret) {
    KeptAlias kept;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kAliasCharacters.find(text[i]) == std::string_view::npos) continue;
        kept.text += text[i];
        if (i < caret) ++kept.caret;
    }
    return kept;
}

std::string LineAlias(std::string_view line) {
    const std::size_t tab = line.find('\t');
    return tab == std::string_view::npos ? std::string() : std::string(line.substr(tab + 1));
}

std::string AliasedLine(std::string_view line, std::string_view alias) {
    std::string result(Before(line));
    if (!alias.empty()) (result += "\t") += alias;
    return result;
}

bool ToggledDescending(std::intptr_t data) { return data != KODBC_SORT_DESCENDING; }

std::string ToggledLine(std::string_view line, std::string_view label) {
    return (std::string(Before(line)) += "\t") += label;
}

} // namespace kodbc::select
