// What the query designer's pages do to the working copy of a query, kept
// apart from the window code so that it can be tested without one: adding,
// changing, moving and removing entries, keeping the other parts in step
// when a table goes or is renamed, and naming the page a refusal belongs to.
#pragma once

#include "select/selfact.h"

#include <algorithm>
#include <cstddef>
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

// 1652 when a joined table lacks an operand, else 0.
int CheckTableEntry(const SelFact::Table &table);

// The name a table's fields are qualified with: its alias, else its name.
std::string TableQualifier(const SelFact::Table &table);

// The catalogue's tab-separated field list ("name\ttype\t…" when withTypes,
// else "name\t…") with every name qualified as "qualifier.name".
std::string QualifyFieldList(const std::string &qualifier, const std::string &fieldList, bool withTypes);

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

// Adds (index beyond the end) or replaces a table entry after CheckTableEntry.
// Returns 0, or the message that refused it. A replaced table whose
// qualifier changed has its references renamed (RenameQualifier).
int StoreTable(SelFact &query, std::size_t index, SelFact::Table table);

// Removes a table and the columns and sort entries that belong to it, and
// clears the join operands of other tables that referred to it.
bool RemoveTable(SelFact &query, std::size_t index);

// "from.x" becomes "to.x" in columns, sort entries, join operands and in the
// selection's field names (and the values of its field-to-field lines).
void RenameQualifier(SelFact &query, const std::string &from, const std::string &to);

} // namespace kodbc::select
