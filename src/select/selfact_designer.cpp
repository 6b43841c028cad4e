#include "select/selfact_designer.h"

#include "internal/library.h"

#include <strings.h>

namespace kodbc::select {
namespace {

// Whether name is "qualifier.something" (names compare without case, as
// the databases compare unquoted names).
bool BelongsTo(const SelFact::Text &name, const std::string &qualifier) {
    return name && !qualifier.empty() && name->size() > qualifier.size() && (*name)[qualifier.size()] == '.' &&
           strncasecmp(name->c_str(), qualifier.c_str(), qualifier.size()) == 0;
}

void Rename(std::string &name, const std::string &from, const std::string &to) {
    SelFact::Text text = name;
    if (BelongsTo(text, from)) name = to + name.substr(from.size());
}
void Rename(SelFact::Text &name, const std::string &from, const std::string &to) {
    if (name) Rename(*name, from, to);
}

// One condition line of a selection descriptor: its field and, for the
// field-to-field operators (keywords ending in "F"), its value name a field.
std::string RenameInLine(const std::string &line, const std::string &from, const std::string &to) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab == std::string::npos ? std::string::npos : tab - start));
        if (tab == std::string::npos) break;
        start = tab + 1;
    }
    Rename(fields[0], from, to);
    if (fields.size() > 2 && !fields[1].empty() && fields[1].back() == 'F') Rename(fields[2], from, to);
    std::string out;
    for (std::size_t i = 0; i < fields.size(); ++i) out += (i ? "\t" : "") + fields[i];
    return out;
}

std::string RenameInSelection(const std::string &selection, const std::string &from, const std::string &to) {
    std::string out, line;
    for (char c : selection) {
        if (c == '\n' || c == '\v') {
            out += RenameInLine(line, from, to) + c;
            line.clear();
        } else {
            line += c;
        }
    }
    return out + (line.empty() ? std::string() : RenameInLine(line, from, to));
}

} // namespace

DesignerPage PageOfRule(int message) {
    return message == msg::SELECT_COLUMN ? DesignerPage::Columns : DesignerPage::Tables;
}

int DefaultJoinType(const SelFact &query) { return query.tables.empty() ? 1 : 3; }

int CheckTableEntry(const SelFact::Table &table) {
    if (table.joinType != 1 && (!table.first || !table.second)) return msg::JOIN_OPERANDS_REQUIRED;
    return 0;
}

std::string TableQualifier(const SelFact::Table &table) {
    if (table.alias && !table.alias->empty()) return *table.alias;
    return table.name ? *table.name : std::string();
}

std::string QualifyFieldList(const std::string &qualifier, const std::string &fieldList, bool withTypes) {
    std::string out;
    std::size_t start = 0;
    bool name = true;
    while (start < fieldList.size()) {
        std::size_t tab = fieldList.find('\t', start);
        if (tab == std::string::npos) tab = fieldList.size();
        const std::string piece = fieldList.substr(start, tab - start);
        if (!out.empty()) out += '\t';
        out += name && !piece.empty() ? qualifier + "." + piece : piece;
        if (withTypes) name = !name;
        start = tab + 1;
    }
    return out;
}

std::string JoinConditionText(const SelFact::Table &table, const std::string &operatorLabel) {
    if (table.joinType == 1) return {};
    return (table.first ? *table.first : std::string()) + " " + operatorLabel + " " +
           (table.second ? *table.second : std::string());
}

int StoreTable(SelFact &query, std::size_t index, SelFact::Table table) {
    if (const int refused = CheckTableEntry(table)) return refused;
    if (index >= query.tables.size()) {
        if (query.tables.size() == query.tables.capacity()) query.tables.reserve(query.tables.size() + 100);
        query.tables.push_back(std::move(table));
        return 0;
    }
    const std::string before = TableQualifier(query.tables[index]);
    const std::string after = TableQualifier(table);
    query.tables[index] = std::move(table);
    if (strcasecmp(before.c_str(), after.c_str()) != 0) RenameQualifier(query, before, after);
    return 0;
}

bool RemoveTable(SelFact &query, std::size_t index) {
    if (index >= query.tables.size()) return false;
    const std::string qualifier = TableQualifier(query.tables[index]);
    query.tables.erase(query.tables.begin() + static_cast<long>(index));
    auto &columns = query.columns;
    for (std::size_t i = columns.size(); i-- > 0;)
        if (BelongsTo(columns[i].expression, qualifier)) columns.erase(columns.begin() + static_cast<long>(i));
    auto &sorts = query.sorts;
    for (std::size_t i = sorts.size(); i-- > 0;)
        if (BelongsTo(sorts[i].column, qualifier)) sorts.erase(sorts.begin() + static_cast<long>(i));
    for (SelFact::Table &table : query.tables) {
        if (BelongsTo(table.first, qualifier)) table.first.reset();
        if (BelongsTo(table.second, qualifier)) table.second.reset();
    }
    return true;
}

void RenameQualifier(SelFact &query, const std::string &from, const std::string &to) {
    if (from.empty() || to.empty()) return;
    for (SelFact::Column &column : query.columns) Rename(column.expression, from, to);
    for (SelFact::Sort &sort : query.sorts) Rename(sort.column, from, to);
    for (SelFact::Table &table : query.tables) {
        Rename(table.first, from, to);
        Rename(table.second, from, to);
    }
    query.selection = RenameInSelection(query.selection, from, to);
}

} // namespace kodbc::select
