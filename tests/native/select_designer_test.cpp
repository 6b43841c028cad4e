// The query designer's editing of a working copy: storing, moving and
// removing entries, and keeping the other parts in step with the tables.
#include "select/selfact_designer.h"

#include <kodbc/kodbc_selfact.h>

#include <gtest/gtest.h>

#include <string>

namespace kodbc::select {
namespace {

// A query from its descriptor texts, without a connection.
SelFact Query(const std::string &tables, const std::string &columns, const std::string &sort = {},
              const std::string &selection = {}) {
    SelFact query;
    SetSelFactDescriptor(query, SELFACT_TABLES, tables.c_str());
    SetSelFactDescriptor(query, SELFACT_COLUMNS, columns.c_str());
    SetSelFactDescriptor(query, SELFACT_SORT, sort.c_str());
    SetSelFactDescriptor(query, SELFACT_SELECTION, selection.c_str());
    return query;
}

std::string Part(const SelFact &query, int part) { return SelFactDescriptor(query, part); }

SelFact::Table Table(const char *name, const char *alias, int join, const char *first, const char *second) {
    SelFact::Table table;
    if (name) table.name = name;
    if (alias) table.alias = alias;
    table.joinType = join;
    if (first) table.first = first;
    if (second) table.second = second;
    return table;
}

const std::string kTwoTables = "Kunden\tk\t\tEQ\t\t\nAuftraege\ta\tLJ\tEQ\tk.Nr\ta.KdNr";
const std::string kColumns = "k.Name\tKunde\na.*\t\nk.Ort\t";

TEST(SelFactDesigner, StoringATableChecksItsOperandsAndAddsOrReplaces) {
    struct Case {
        const char *what;
        std::size_t index;
        SelFact::Table table;
        int refused;
        std::string tables;
    } cases[] = {
        {"a joined table without its second operand", 2, Table("Orte", nullptr, 3, "k.Ort", nullptr), 1652,
         kTwoTables},
        {"a joined table without its first operand", 2, Table("Orte", nullptr, 2, nullptr, "o.Ort"), 1652,
         kTwoTables},
        {"a table not joined needs no operands", 2, Table("Orte", nullptr, 1, nullptr, nullptr), 0,
         kTwoTables + "\nOrte\t\t\tEQ\t\t"},
        {"added at the end", 9, Table("Orte", "o", 3, "k.Ort", "o.Name"), 0,
         kTwoTables + "\nOrte\to\tIJ\tEQ\tk.Ort\to.Name"},
        {"replaced in place", 0, Table("Kunden", "k", 1, nullptr, nullptr), 0, kTwoTables},
    };
    for (const Case &c : cases) {
        SelFact query = Query(kTwoTables, kColumns);
        EXPECT_EQ(StoreTable(query, c.index, c.table), c.refused) << c.what;
        EXPECT_EQ(Part(query, SELFACT_TABLES), c.tables) << c.what;
    }
}

TEST(SelFactDesigner, RenamingATableCarriesItsReferencesAlong) {
    // The alias "k" becomes "kd": columns, sort, the other table's operand
    // and the selection's fields (and the value of a field-to-field line)
    // follow; names that merely begin alike ("kx.Name") do not.
    SelFact query = Query(kTwoTables, "k.Name\tKunde\nkx.Name\t\nK.Ort\t", "k.Name\tDESC",
                          "k.Ort\tBW\tBer\t12\nk.Plz\tEQF\tk.Ort\t12\n\va.Nr\tEQ\tk.Nr\t4\n\v");
    ASSERT_EQ(StoreTable(query, 0, Table("Kunden", "kd", 1, nullptr, nullptr)), 0);
    EXPECT_EQ(Part(query, SELFACT_COLUMNS), "kd.Name\tKunde\nkx.Name\t\nkd.Ort\t");
    EXPECT_EQ(Part(query, SELFACT_SORT), "kd.Name\tDESC");
    EXPECT_EQ(Part(query, SELFACT_TABLES), "Kunden\tkd\t\tEQ\t\t\nAuftraege\ta\tLJ\tEQ\tkd.Nr\ta.KdNr");
    EXPECT_EQ(Part(query, SELFACT_SELECTION), "kd.Ort\tBW\tBer\t12\nkd.Plz\tEQF\tkd.Ort\t12\n\va.Nr\tEQ\tk.Nr\t4\n\v");

    // Without an alias the table's name qualifies its fields.
    SelFact plain = Query("Kunden\t\t\t\t\t", "Kunden.Name\t");
    ASSERT_EQ(StoreTable(plain, 0, Table("Kunden", "k", 1, nullptr, nullptr)), 0);
    EXPECT_EQ(Part(plain, SELFACT_COLUMNS), "k.Name\t");
}

TEST(SelFactDesigner, RemovingATableTakesWhatBelongsToIt) {
    SelFact query = Query(kTwoTables + "\nOrte\to\tIJ\tEQ\ta.Ort\to.Name", kColumns, "a.Datum\tDESC\nk.Name\t");
    ASSERT_TRUE(RemoveTable(query, 1));
    EXPECT_EQ(Part(query, SELFACT_TABLES), "Kunden\tk\t\tEQ\t\t\nOrte\to\tIJ\tEQ\t\to.Name");
    EXPECT_EQ(Part(query, SELFACT_COLUMNS), "k.Name\tKunde\nk.Ort\t");
    EXPECT_EQ(Part(query, SELFACT_SORT), "k.Name\t");
    EXPECT_FALSE(RemoveTable(query, 2));
}

TEST(SelFactDesigner, EntriesMoveWithinTheListOnly) {
    struct Case {
        std::size_t index;
        int delta;
        int moved;
        std::string columns;
    } cases[] = {
        {1, -1, 0, "a.*\t\nk.Name\tKunde\nk.Ort\t"},
        {1, +1, 2, "k.Name\tKunde\nk.Ort\t\na.*\t"},
        {0, -1, -1, kColumns},
        {2, +1, -1, kColumns},
        {3, -1, -1, kColumns},
    };
    for (const Case &c : cases) {
        SelFact query = Query(kTwoTables, kColumns);
        EXPECT_EQ(MoveEntry(query.columns, c.index, c.delta), c.moved) << c.index << " by " << c.delta;
        EXPECT_EQ(Part(query, SELFACT_COLUMNS), c.columns) << c.index << " by " << c.delta;
    }
    // Dragged to another place, the entries between close up.
    const struct {
        std::size_t from, to;
        int moved;
        std::string columns;
    } drags[] = {
        {0, 2, 2, "a.*\t\nk.Ort\t\nk.Name\tKunde"},
        {2, 0, 0, "k.Ort\t\nk.Name\tKunde\na.*\t"},
        {1, 1, -1, kColumns},
        {1, 3, -1, kColumns},
    };
    for (const auto &d : drags) {
        SelFact query = Query(kTwoTables, kColumns);
        EXPECT_EQ(MoveEntryTo(query.columns, d.from, d.to), d.moved) << d.from << " to " << d.to;
        EXPECT_EQ(Part(query, SELFACT_COLUMNS), d.columns) << d.from << " to " << d.to;
    }
    SelFact query = Query(kTwoTables, kColumns);
    EXPECT_TRUE(RemoveEntry(query.columns, 0));
    EXPECT_FALSE(RemoveEntry(query.columns, 2));
    EXPECT_EQ(Part(query, SELFACT_COLUMNS), "a.*\t\nk.Ort\t");
}

TEST(SelFactDesigner, FieldsAreOfferedUnderTheTablesQualifier) {
    EXPECT_EQ(QualifyFieldList("k", "Nr\t4\tName\t12", true), "k.Nr\t4\tk.Name\t12");
    EXPECT_EQ(QualifyFieldList("Kunden", "Nr\tName", false), "Kunden.Nr\tKunden.Name");
    EXPECT_EQ(QualifyFieldList("k", "", true), "");
    EXPECT_EQ(TableQualifier(Table("Kunden", "k", 1, nullptr, nullptr)), "k");
    EXPECT_EQ(TableQualifier(Table("Kunden", nullptr, 1, nullptr, nullptr)), "Kunden");
    EXPECT_EQ(JoinConditionText(Table("A", "a", 2, "k.Nr", "a.KdNr"), ">"), "k.Nr > a.KdNr");
    EXPECT_EQ(JoinConditionText(Table("A", "a", 1, "k.Nr", "a.KdNr"), ">"), "");
}

TEST(SelFactDesigner, NewTablesAreJoinedAndRefusalsNameTheirPage) {
    SelFact query;
    EXPECT_EQ(DefaultJoinType(query), 1);
    query = Query(kTwoTables, "");
    EXPECT_EQ(DefaultJoinType(query), 3);
    EXPECT_EQ(CheckSelFact(query), 1655);
    EXPECT_EQ(PageOfRule(CheckSelFact(query)), DesignerPage::Columns);
    for (int rule : {1625, 1652, 1653, 1654}) EXPECT_EQ(PageOfRule(rule), DesignerPage::Tables) << rule;
}

} // namespace
} // namespace kodbc::select
