// The text rules of the SELECT scanner, free of any connection.
//
// The exported functions only add what the driver would be asked (its
// identifier quote character) and the message for a stray ")"; everything
// else is here, so the table operations, the fuzzer and the tests can use
// the rules on plain text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kodbc::select {

// Limits of the working buffers the rules were made with; longer texts are
// cut silently.
inline constexpr std::size_t kItemLimit = 199;       // one item of a clause
inline constexpr std::size_t kWordLimit = 99;        // one word of an item
inline constexpr std::size_t kDirectionLimit = 19;   // the direction word of a sort key
inline constexpr std::size_t kKeywordCompareLimit = 99;

inline constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

// Flags of the scans and the boxes (the numbers of the exported interface).
inline constexpr int kScanDescSuffix = 0x02;
inline constexpr int kScanDirectionTab = 0x04;
inline constexpr int kBoxSortLabel = 0x08;
inline constexpr int kBoxFieldAlias = 0x10;

// What one exported call knows: the identifier quote character of the
// connection (0 for none) and whether a stray ")" has been met. The
// message for it is shown once per call, by whoever owns the context.
struct ScanContext {
    char quote = 0;
    bool bracketError = false;
    std::string bracketRest;   // the statement from the first stray ")" on
};

// The number of a clause keyword (SELECT 1 ... TEMP 9), 0 for any other word.
int ClauseKeywordNumber(std::string_view word) noexcept;

// Where the clause named by keyword (and secondKeyword, when not empty)
// starts: the first letter of its keyword. With an empty keyword, the next
// word of the keyword table. The scan starts at `from` with depth 0 and
// always runs to the end, so a stray ")" anywhere behind `from` makes the
// clause absent (kNotFound) and is noted in the context.
std::size_t FindClause(ScanContext &context, std::string_view statement, std::string_view keyword,
                       std::string_view secondKeyword, std::size_t from = 0);

// A clause located in a statement: its keyword, the start of its text and
// the start of whatever follows it (the next clause keyword, or the end).
struct ClauseSpan {
    std::size_t keyword = kNotFound;
    std::size_t textBegin = 0;
    std::size_t textEnd = 0;     // trailing white space excluded
    std::size_t rest = 0;        // next clause keyword, or statement.size()
    bool present() const noexcept { return keyword != kNotFound; }
};
ClauseSpan LocateClause(ScanContext &context, std::string_view statement, std::string_view keyword,
                        std::string_view secondKeyword);

// The clause's text; empty when absent.
std::string ClauseText(ScanContext &context, std::string_view statement, std::string_view keyword,
                       std::string_view secondKeyword);

// Splits at separator, a separator between two quote characters being
// text; each piece cut at limit. An empty text gives no piece; a trailing
// separator gives no empty piece behind it.
std::vector<std::string> SplitItems(std::string_view text, char separator, char quote, std::size_t limit);
// The words of one item: leading blanks skipped, white space made blanks,
// then split at blanks as above; empty words are dropped, each cut at limit.
std::vector<std::string> SplitWords(std::string_view item, char quote, std::size_t limit = kWordLimit);

// Delimiters of the quote character (and surrounding white space) removed
// from every "." part.
std::string StripName(std::string_view name, char quote);

// One item of each clause, read as the boxes and scans read it.
struct FieldItem {
    std::string column;
    std::string alias;
    std::string resultName;    // the last word: the alias when given, else the column
};
struct SortItem {
    std::string column;
    bool descending = false;
};
std::vector<FieldItem> ReadFieldItems(std::string_view clause, char quote);
std::vector<std::string> ReadTableItems(std::string_view clause, char quote);
std::vector<SortItem> ReadSortItems(std::string_view clause, char quote);

// The three scans into a caller buffer. Results as the exported scans:
// -1 for a bad buffer or a missing clause (columns, tables), else 0.
int ScanFields(ScanContext &context, const char *statement, const char *separator, char *out, int outSize);
int ScanTables(ScanContext &context, const char *statement, const char *separator, char *out, int outSize);
int ScanOrderBy(ScanContext &context, const char *statement, const char *separator, int flags, char *out,
                int outSize);

// The clause of keyword/secondKeyword into out, cut to outSize-1.
int GetClause(ScanContext &context, const char *statement, const char *keyword, const char *secondKeyword,
              char *out, int outSize);

// Replaces (inserts, removes) one clause in place, bounded by size.
// Returns false only for a null statement or a size below 1.
bool ReplaceClause(ScanContext &context, char *statement, int size, std::string_view keyword,
                   std::string_view secondKeyword, const char *newText);

// The four replacements with their preconditions and the WHERE rule.
// 0 done, -1 bad arguments.
int ReplaceFieldsClause(ScanContext &context, char *statement, int size, const char *newClause);
int ReplaceTablesClause(ScanContext &context, char *statement, int size, const char *newClause);
int ReplaceOrderByClause(ScanContext &context, char *statement, int size, const char *newClause);
int ReplaceWhereClause(ScanContext &context, char *statement, int size, const char *newClause);

} // namespace kodbc::select
