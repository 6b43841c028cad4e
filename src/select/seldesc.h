// Operation descriptors: the operator tables and the text rules that turn a
// descriptor into a WHERE or SET clause.
//
// Everything here is a pure function of its arguments. The only thing a
// driver would be asked, its identifier quote text, comes in as a
// sqltext::QuoteText, and the field's data type is part of the descriptor,
// so the generators run without a connection in tests and fuzzers.
#pragma once

#include "sqltext/sql_names.h"

#include <korvel/bounded_text.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kodbc::seldesc {

inline constexpr char kGroupSeparator = '\v';  // code 11
inline constexpr char kLineEnd = '\n';          // code 10
inline constexpr char kFieldSeparator = '\t';   // code 9

// Readers keep this much of a line's field and value; the dialog controls
// hold less (99 and 199).
inline constexpr std::size_t kFieldChars = 99;
inline constexpr std::size_t kValueChars = 299;
inline constexpr std::size_t kDialogValueChars = 199;
inline constexpr std::size_t kListItemChars = 499;
inline constexpr int kConditionSize = 300;      // one condition, terminator included
inline constexpr int kGroupSize = 30000;        // one group's working buffer
inline constexpr int kLabelChars = 99;          // operator box labels

inline constexpr char kDefaultPatternChars[4] = {'%', '_', '\'', '\''};

// One entry of an operator table: four 32-bit values in the layout callers
// of the dialog functions know. A table ends with an entry whose code is 0.
struct OpDescOperator {
    std::uint32_t code;
    const char *keyword;
    std::uint32_t flags;
    std::uint32_t label;  // string-table id of the operator box text
};

// The table of a descriptor kind (1 selection, 2 assignment); null for any
// other kind.
const OpDescOperator *OperatorTable(int kind) noexcept;
// First entry with the keyword (case-sensitive, exact) or the code; null
// when there is none. A code of 0 is never found.
const OpDescOperator *FindByKeyword(const OpDescOperator *table, std::string_view keyword) noexcept;
const OpDescOperator *FindByCode(const OpDescOperator *table, std::uint32_t code) noexcept;

// One descriptor line split into its four fields, field and value kept to
// their reader limits. A missing or unreadable type is 0.
struct Line {
    std::string_view field;
    std::string_view keyword;
    std::string_view value;
    int dataType = 0;
};
Line SplitLine(std::string_view line) noexcept;

// Signed decimal at the start of text; what follows the digits is ignored.
// Saturates instead of overflowing: no real type code comes near.
int ParseDataType(std::string_view text) noexcept;

// Calls visit(groupText) for every group: split at code 11, the text after
// the last separator only when it is not empty.
template <typename Visit>
void ForEachGroup(std::string_view descriptor, Visit &&visit) {
    while (!descriptor.empty()) {
        std::size_t cut = descriptor.find(kGroupSeparator);
        if (cut == std::string_view::npos) {
            visit(descriptor);
            return;
        }
        if (!visit(descriptor.substr(0, cut))) return;
        descriptor.remove_prefix(cut + 1);
    }
}

// Calls visit(lineText) for every line of a group: ended by code 10, the
// text after the last line end only when it is not empty.
template <typename Visit>
void ForEachLine(std::string_view group, Visit &&visit) {
    while (!group.empty()) {
        std::size_t cut = group.find(kLineEnd);
        if (cut == std::string_view::npos) {
            visit(group);
            return;
        }
        if (!visit(group.substr(0, cut))) return;
        group.remove_prefix(cut + 1);
    }
}

// The constant value as SQL for an ODBC SQL type, appended to out: numeric
// types keep digits and signs with "," as the decimal mark, dates become an
// ODBC date constant, everything else goes into single quotes as it is.
void AppendTypedValue(std::string_view value, int sqlType, korvel::BoundedText &out) noexcept;
// A ";"-separated list of constants, each converted as above, joined by ",".
void AppendListValue(std::string_view value, int sqlType, korvel::BoundedText &out) noexcept;

// The condition of one selection line into out (cut to size-1); empty when
// the line gives none. pattern holds four characters, '\0' for a missing one.
void BuildCondition(sqltext::QuoteText &quote, std::string_view line, const char pattern[4], char *out,
                    int size) noexcept;

// The whole WHERE text; the caller has checked where and whereSize.
void BuildWhereClause(sqltext::QuoteText &quote, const char *selDesc, char *where, int whereSize,
                      const char pattern[4]) noexcept;

// The SET list of the descriptor's first group; the caller has checked set
// and setSize.
void BuildSetClause(sqltext::QuoteText &quote, const char *setDesc, char *set, int setSize) noexcept;

// Pattern characters as given by a caller: null gives the default set; a
// shorter text leaves the rest '\0'.
void ReadPatternChars(const char *given, char pattern[4]) noexcept;

} // namespace kodbc::seldesc
