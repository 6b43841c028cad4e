// The columns of a report list view as the string table describes them. Two
// forms are in use: columns separated by tabs, each "caption|width" with an
// optional "|C" for a centred column ("Spalte|225\tAlias|120"), and one run
// of bars ("Feld|90|Typ|110"). Both read alike: caption, width, and a "C"
// right after a width marks that column centred. A column without a width
// is 100 wide; empty pieces between tabs are no columns.
#pragma once

#include "internal/text.h"

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace kodbc {

struct ListHeaderColumn {
    std::string caption;
    int width = 100;
    bool centred = false;

    bool operator==(const ListHeaderColumn &) const = default;
};

inline std::vector<ListHeaderColumn> ParseListHeader(const std::string &header) {
    std::vector<ListHeaderColumn> columns;
    for (const std::string &piece : SplitAtTabs(header.c_str())) {
        std::vector<std::string> tokens;
        for (std::size_t at = 0; at <= piece.size();) {
            std::size_t bar = piece.find('|', at);
            if (bar == std::string::npos) bar = piece.size();
            tokens.push_back(piece.substr(at, bar - at));
            at = bar + 1;
        }
        for (std::size_t i = 0; i < tokens.size();) {
            ListHeaderColumn column;
            column.caption = tokens[i++];
            if (i < tokens.size()) column.width = std::atoi(tokens[i++].c_str());
            if (i < tokens.size() && tokens[i] == "C") {
                column.centred = true;
                ++i;
            }
            columns.push_back(std::move(column));
        }
    }
    return columns;
}

} // namespace kodbc
