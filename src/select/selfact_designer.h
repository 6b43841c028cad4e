// What the query designer's pages do to the working copy of a query, kept
// apart from the window code so that it can be tested without one: adding,
// changing, moving and removing entries, keeping the other parts in step
// when a table goes or is renamed, what the pages offer to choose from,
// and naming the page a refusal belongs to. The pages only read their
// controls, call these and show the result.
#pragma once

#include "select/selfact.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace kodbc::select {

// The designer's pages in tab order; the sort page is missing for views.
enum class DesignerPage { Tables = 0, Columns = 1, Selection = 2, Sort = 3 };

// The page whose entries a rule's message (CheckSelFact) is about.
DesignerPage PageOfRule(int message);

// The join type a table gets when it is added: none for the first, an
// inner join for every later one, since the designer joins each table to
// what precedes it.
int DefaultJoinType(const SelFact &query);

// 1625 when a table has no name, 1652 when a joined table lacks an
// operand, else 0.
int CheckTableEntry(const SelFact::Table &table);

// What a page's field holds as a part of the query: empty is absent.
SelFact::Text OptionalText(const std::string &text);

// The name a table's fields are qualified with: its alias, else its name.
std::string TableQualifier(const SelFact::Table &table);

// The catalogue's tab-separated field list ("name\ttype\t…" when withTypes,
// else "name\t…") with every name qualified as "qualifier.name".
std::string QualifyFieldList(const std::string &qualifier, const std::string &fieldList, bool withTypes);

// A field of the chosen tables as the pages offer it: "qualifier.field"
// and the catalogue's type code.
struct DesignerField {
    std::string name, type;
    bool operator==(const DesignerField &) const = default;
};

// The catalogue's "name\ttype\t…" list of a table, asked by the name
// CatalogueTableName gives.
using FieldCatalogue = std::function<std::string(const std::string &table)>;

// A table as the catalogue knows it: in the query's schema when it has one.
std::string CatalogueTableName(const SelFact &query, const std::string &table);

// The fields of the listed tables in their order, then those of `extra`
// (a table being edited that is not in the list yet; null for none).
// Tables without a name offer none.
std::vector<DesignerField> DesignerFields(const SelFact &query, const SelFact::Table *extra,
                                          const FieldCatalogue &catalogue);

// What the pages offer. The columns page: every table's "qualifier.*",
// then the fields. The sort page: the fields, then the columns' aliases.
// The join operands: the fields, and while the edited table is a new one
// (no row selected) its own under the qualifier it will have.
std::vector<std::string> ColumnChoices(const SelFact &query, const std::vector<DesignerField> &fields);
std::vector<std::string> SortChoices(const SelFact &query, const std::vector<DesignerField> &fields);
std::vector<std::string> OperandChoices(const SelFact &query, const SelFact::Table &edited, int selectedRow,
                                        const FieldCatalogue &catalogue);

// The field list the selection page's rows take: "name\ttype\t" per field.
std::string SelectionFieldList(const std::vector<DesignerField> &fields);

// The join condition as the tables list shows it: "first label second",
// with the operator's label (not its SQL); empty for a table not joined.
std::string JoinConditionText(const SelFact::Table &table, const std::string &operatorLabel);

// List editing. Moving an entry to another place (the entries between
// close up) or by delta (-1 up, +1 down) returns its new index, or -1 when
// it cannot move; removing returns whether it was there.
template <class T>
int MoveEntryTo(std::vector<T> &entries, std::size_t from, std::size_t to) {
    if (from >= entries.size() || to >= entries.size() || from == to) return -1;
    auto first = entries.begin();
    if (from < to)
        std::rotate(first + static_cast<long>(from), first + static_cast<long>(from) + 1, first + static_cast<long>(to) + 1);
    else
        std::rotate(first + static_cast<long>(to), first + static_cast<long>(from), first + static_cast<long>(from) + 1);
    return static_cast<int>(to);
}
template <class T>
int MoveEntry(std::vector<T> &entries, std::size_t index, int delta) {
    const long target = static_cast<long>(index) + delta;
    if (target < 0) return -1;
    return MoveEntryTo(entries, index, static_cast<std::size_t>(target));
}
template <class T>
bool RemoveEntry(std::vector<T> &entries, std::size_t index) {
    if (index >= entries.size()) return false;
    entries.erase(entries.begin() + static_cast<long>(index));
    return true;
}

// Storing what a page's fields hold: added at the end of its list (add),
// or over the list's selected row (selectedRow, -1 for none), where
// replacing without a selected row stores nothing. The result is the row
// the entry now has (-1: nothing stored) and the message that refused it
// (0: none, or nothing to tell).
struct StoredEntry {
    int row = -1;
    int refused = 0;
};
// A table is stored after CheckTableEntry; a replaced table whose qualifier
// changed has its references renamed (RenameQualifier).
StoredEntry StoreTable(SelFact &query, bool add, int selectedRow, SelFact::Table table);
// A column needs an expression, a sort entry its column; empty texts are
// stored as absent.
StoredEntry StoreColumn(SelFact &query, bool add, int selectedRow, const std::string &expression,
                        const std::string &alias);
StoredEntry StoreSort(SelFact &query, bool add, int selectedRow, const std::string &column,
                      const std::string &direction);

// Removes a table and the columns and sort entries that belong to it, and
// clears the join operands of other tables that referred to it.
bool RemoveTable(SelFact &query, std::size_t index);

// "from.x" becomes "to.x" in columns, sort entries, join operands and in the
// selection's field names (and the values of its field-to-field lines).
void RenameQualifier(SelFact &query, const std::string &from, const std::string &to);

} // namespace kodbc::select
