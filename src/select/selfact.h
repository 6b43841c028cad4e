// The query object behind kodbc_selfact.h: its four parts, their
// descriptor texts, the statement they make, and the test the designer
// runs before it accepts a query.
#pragma once

#include <kodbc/kodbc_selfact.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

struct SelFact {
    using Text = std::optional<std::string>;  // an owned text that may be absent

    struct Column {
        Text expression, alias;
    };
    struct Table {
        Text name, alias;
        int joinType = 1;      // 1 none, 2 left, 3 inner, 4 right
        int joinOperator = 1;  // 1 "=" … 6 "<=" (written mirrored)
        Text first, second;
    };
    struct Sort {
        Text column, direction;
    };

    SQLHDBC hdbc = nullptr;
    std::string schema;  // at most 99 characters
    unsigned flags = 0;
    HWND dialog = nullptr;  // the designer while it is open
    HWND tabs = nullptr;
    std::vector<Column> columns;
    std::vector<Table> tables;
    std::string selection;
    std::vector<Sort> sorts;
};

namespace kodbc::select {

// The parts' lists grow in steps of 100 entries, whoever adds to them: the
// descriptor reader and the designer's pages.
template <class T>
void AppendEntry(std::vector<T> &entries, T entry) {
    if (entries.size() == entries.capacity()) entries.reserve(entries.size() + 100);
    entries.push_back(std::move(entry));
}

// Replaces a part from its descriptor text (throws std::bad_alloc; the part
// then holds what was read).
void SetSelFactDescriptor(SelFact &query, int part, const char *text);
std::string SelFactDescriptor(const SelFact &query, int part);

// The statement as Kodbc_SelFact_CreateSql writes it.
std::string SelFactSql(const SelFact &query);

// The designer's test: without SELFACT_VIEW the statement runs as it is;
// with it a view "__KORVEL_TEST__" is created in the schema from it and
// dropped again (every error of the drop tolerated). 1 passed, 2 failed
// (the error has been shown).
int TestSelFact(const SelFact &query);

// The designer's rules before OK, in order: 0 when they hold, else the
// message: 1625 no table, 1653 the first table joined, 1654 another table
// not joined, 1655 no column, 1652 a joined table without both operands.
int CheckSelFact(const SelFact &query);

} // namespace kodbc::select
