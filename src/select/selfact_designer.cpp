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

// Every piece of a tab-separated list, empty ones included; a tab at the
// end opens none.
std::vector<std::string> TabPieces(const std::string &list) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (start < list.size()) {
        std::size_t tab = list.find('\t', start);
        if (tab == std::string::npos) tab = list.size();
        pieces.push_back(list.substr(start, tab - start));
        start = tab + 1;
    }
    return pieces;
}

// Replacing needs a selected row of the list; adding goes to its end.
template <class T>
StoredEntry Store(std::vector<T> &entries, bool add, int selectedRow, T entry) {
    if (add) {
        AppendEntry(entries, std::move(entry));
        return {static_cast<int>(entries.size()) - 1, 0};
    }
    if (selectedRow < 0 || static_cast<std::size_t>(selectedRow) >= entries.size()) return {};
    entries[static_cast<std::size_t>(selectedRow)] = std::move(entry);
    return {selectedRow, 0};
}

std::vector<std::string> Names(const std::vector<DesignerField> &fields) {
    std::vector<std::string> names;
    for (const DesignerField &field : fields) names.push_back(field.name);
    return names;
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
    if (!table.name) return msg::SELECT_TABLE;
    if (table.joinType != 1 && (!table.first || !table.second)) return msg::JOIN_OPERANDS_REQUIRED;
    return 0;
}

SelFact::Text OptionalText(const std::string &text) {
    if (text.empty()) return std::nullopt;
    return text;
}

std::string TableQualifier(const SelFact::Table &table) {
    if (table.alias && !table.alias->empty()) return *table.alias;
    return table.name ? *table.name : std::string();
}

std::string QualifyFieldList(const std::string &qualifier, const std::string &fieldList, bool withTypes) {
    std::string out;
    bool name = true;
    for (const std::string &piece : TabPieces(fieldList)) {
        if (!out.empty()) out += '\t';
        out += name && !piece.empty() ? qualifier + "." + piece : piece;
        if (withTypes) name = !name;
    }
    return out;
}

std::string CatalogueTableName(const SelFact &query, const std::string &table) {
    return query.schema.empty() ? table : query.schema + "." + table;
}

std::vector<DesignerField> DesignerFields(const SelFact &query, const SelFact::Table *extra,
                                          const FieldCatalogue &catalogue) {
    std::vector<const SelFact::Table *> tables;
    for (const SelFact::Table &table : query.tables) tables.push_back(&table);
    if (extra) tables.push_back(extra);
    std::vector<DesignerField> fields;
    for (const SelFact::Table *table : tables) {
        if (!table->name) continue;
        const std::vector<std::string> pieces =
            TabPieces(QualifyFieldList(TableQualifier(*table), catalogue(*table->name), true));
        for (std::size_t i = 0; i < pieces.size(); i += 2)
            fields.push_back({pieces[i], i + 1 < pieces.size() ? pieces[i + 1] : std::string()});
    }
    return fields;
}

std::vector<std::string> ColumnChoices(const SelFact &query, const std::vector<DesignerField> &fields) {
    std::vector<std::string> choices;
    for (const SelFact::Table &table : query.tables) choices.push_back(TableQualifier(table) + ".*");
    for (const DesignerField &field : fields) choices.push_back(field.name);
    return choices;
}

std::vector<std::string> SortChoices(const SelFact &query, const std::vector<DesignerField> &fields) {
    std::vector<std::string> choices = Names(fields);
    for (const SelFact::Column &column : query.columns)
        if (column.alias) choices.push_back(*column.alias);
    return choices;
}

std::vector<std::string> OperandChoices(const SelFact &query, const SelFact::Table &edited, int selectedRow,
                                        const FieldCatalogue &catalogue) {
    return Names(DesignerFields(query, selectedRow < 0 ? &edited : nullptr, catalogue));
}

std::string SelectionFieldList(const std::vector<DesignerField> &fields) {
    std::string list;
    for (const DesignerField &field : fields) list += field.name + "\t" + field.type + "\t";
    return list;
}

std::string JoinConditionText(const SelFact::Table &table, const std::string &operatorLabel) {
    if (table.joinType == 1) return {};
    return (table.first ? *table.first : std::string()) + " " + operatorLabel + " " +
           (table.second ? *table.second : std::string());
}

StoredEntry StoreTable(SelFact &query, bool add, int selectedRow, SelFact::Table table) {
    if (!add && (selectedRow < 0 || static_cast<std::size_t>(selectedRow) >= query.tables.size())) return {};
    if (const int refused = CheckTableEntry(table)) return {-1, refused};
    const std::string before = add ? std::string() : TableQualifier(query.tables[static_cast<std::size_t>(selectedRow)]);
    const std::string after = TableQualifier(table);
    const StoredEntry stored = Store(query.tables, add, selectedRow, std::move(table));
    if (!add && strcasecmp(before.c_str(), after.c_str()) != 0) RenameQualifier(query, before, after);
    return stored;
}

StoredEntry StoreColumn(SelFact &query, bool add, int selectedRow, const std::string &expression,
                        const std::string &alias) {
    if (expression.empty()) return {};
    return Store(query.columns, add, selectedRow, SelFact::Column{OptionalText(expression), OptionalText(alias)});
}

StoredEntry StoreSort(SelFact &query, bool add, int selectedRow, const std::string &column,
                      const std::string &direction) {
    if (column.empty()) return {};
    return Store(query.sorts, add, selectedRow, SelFact::Sort{OptionalText(column), OptionalText(direction)});
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
