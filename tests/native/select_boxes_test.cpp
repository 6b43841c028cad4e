// The clause boxes' lines: a clause item's line, a line's clause item, the alias edit's and the toggle's.
#include "select/select_box_lines.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace kodbc::select {
namespace {

// Stands in for the connection's rule: a name with a blank is quoted.
std::string Quoted(std::string_view name) {
    return name.find(' ') == std::string_view::npos ? std::string(name) : "\"" + std::string(name) + "\"";
}

TEST(SelectBoxLines, LinesBecomeClauseItems) {
    const std::string n120(120, 'n'), n250(250, 'n');
    const struct {
        std::string line;
        std::intptr_t data;
        std::string field, table, sort;
    } rows[] = {
        {"a", 0, "a", "a", "a"},
        {"a b\tal ias", 1, "\"a b\" AS \"al ias\"", "\"a b\tal ias\"", "\"a b\" DESC"},
        {"*abc\tx", 5, "* AS x", "*abc\tx", "*abc DESC"},
        {"c\taufsteigend", 0, "c AS aufsteigend", "c\taufsteigend", "c"},
        {n120 + "\t" + n120, 0, n120.substr(0, 99) + " AS " + n120.substr(0, 99), n120 + "\t" + n120.substr(0, 78),
         n120},
        {n250, 1, n250.substr(0, 99), n250.substr(0, 199), n250.substr(0, 199) + " DESC"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_EQ(FieldClauseItem(row.line, Quoted), row.field);
        EXPECT_EQ(TableClauseItem(row.line, Quoted), row.table);
        EXPECT_EQ(SortClauseItem(row.line, row.data, Quoted), row.sort);
    }
}

TEST(SelectBoxLines, ItemsBecomeLinesAndEditsMakeNewOnes) {
    EXPECT_EQ(FieldBoxLine({"b c", "x", "x"}, true), "b c\tx");
    EXPECT_EQ(FieldBoxLine({"b c", "x", "x"}, false), "b c");
    EXPECT_EQ(FieldBoxLine({"a", "", "a"}, true), "a");
    EXPECT_EQ(SortBoxLine("a", "absteigend"), "a\tabsteigend");
    EXPECT_EQ(SortBoxLine("a", nullptr), "a");
    EXPECT_EQ(SortBoxData(true), 1);
    EXPECT_EQ(SortBoxData(false), 0);
    // The line worked on: the index, else the selected one, while it is a line of the box.
    for (const auto &[index, selected, chosen] : {std::array{1, 0, 1}, {-1, 1, 1}, {-1, -1, -1}, {2, 0, -1}})
        EXPECT_EQ(ChosenLine(index, selected, 2), chosen) << index << " " << selected;
    EXPECT_EQ(LineAlias("col\told"), "old");
    EXPECT_EQ(LineAlias("col"), "");
    EXPECT_EQ(AliasedLine("col\told", "neu"), "col\tneu");
    EXPECT_EQ(AliasedLine("col", "neu"), "col\tneu");
    EXPECT_EQ(AliasedLine("col\told", ""), "col");
    // No 0, no blank, nothing beyond ASCII; the caret keeps its place among what stays.
    const KeptAlias kept = AliasCharactersOnly("x0 y-z\xE4_9Z", 3);
    EXPECT_EQ(kept.text, "xyz_9Z");
    EXPECT_EQ(kept.caret, 1u);
    EXPECT_TRUE(ToggledDescending(0));
    EXPECT_FALSE(ToggledDescending(1));
    EXPECT_TRUE(ToggledDescending(5));
    EXPECT_EQ(ToggledLine("c\tirgendwas", "absteigend"), "c\tabsteigend");
    EXPECT_EQ(ToggledLine("b", "aufsteigend"), "b\taufsteigend");
}

} // namespace
} // namespace kodbc::select
