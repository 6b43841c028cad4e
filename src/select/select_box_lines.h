// The lines of the clause boxes: one per column, table or sort key, what a
// tab adds to a line (an alias, a direction label), and a line back as a
// clause item. The window code only moves these lines in and out of boxes.
#pragma once

#include "select/select_scanner.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kodbc::select {

// Makes a name fit for the statement (quoted when it needs it); the
// connection's own rule, given by the caller.
using NamePreparer = std::function<std::string(std::string_view name)>;

// A column's line, with a tab and its alias when wanted and present.
std::string FieldBoxLine(const FieldItem &field, bool withAlias);
// A sort key's line, with a tab and the label when one is given.
std::string SortBoxLine(std::string_view column, const char *label);
// The item data of a sort key's line.
std::intptr_t SortBoxData(bool descending);

// A box line as an item of its clause.
std::string FieldClauseItem(std::string_view line, const NamePreparer &prepare);
std::string TableClauseItem(std::string_view line, const NamePreparer &prepare);
std::string SortClauseItem(std::string_view line, std::intptr_t data, const NamePreparer &prepare);

// The line an alias edit or a toggle works on: index, or the selected line
// for an index below 0; -1 when that is no line of the box.
int ChosenLine(int index, int selected, int count);

// The characters an alias may have. The digit 0 is missing; the set is the
// one the applications have always had, so it stays as it is.
inline constexpr std::string_view kAliasCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ123456789_";
// The alias characters of a typed or pasted text, and where a caret that
// stood before the text's character `caret` stands among them.
struct KeptAlias {
    std::string text;
    std::size_t caret = 0;
};
KeptAlias AliasCharactersOnly(std::string_view text, std::size_t caret);

// The alias behind a column line's tab; empty when there is none.
std::string LineAlias(std::string_view line);
// The column line with a new alias; an empty alias removes it.
std::string AliasedLine(std::string_view line, std::string_view alias);

// The direction a sort key's line gets when toggled, and its new line.
bool ToggledDescending(std::intptr_t data);
std::string ToggledLine(std::string_view line, std::string_view label);

} // namespace kodbc::select
