// The SELECT scanner's text rules. Deliberately no SQL parser: a clause is
// found by its keyword at parenthesis depth 0 outside quotes, and items are
// cut at "," and blanks. Callers rely on the exact (and sometimes naive)
// cuts, e.g. that "f(a,b)" gives two items, so do not make this smarter.
#include "select/select_scanner.h"

#include "sqltext/sql_names.h"

#include <korvel/bounded_text.h>

#include <array>
#include <cstring>

namespace kodbc::select {
namespace {

using sqltext::IsWhiteSpace;

// Letters of the C locale only: an umlaut in a name ends a word.
bool IsLetter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

char Upper(char c) noexcept { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

bool EqualsNoCase(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (Upper(a[i]) != Upper(b[i])) return false;
    return true;
}

constexpr std::array<std::string_view, 9> kClauseKeywords = {"SELECT", "FROM",  "ORDER", "BY",  "HAVING",
                                                             "INTO",   "WHERE", "GROUP", "TEMP"};

std::size_t WordEnd(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && IsLetter(text[at])) ++at;
    return at;
}

std::size_t SkipWhiteSpace(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && IsWhiteSpace(text[at])) ++at;
    return at;
}

std::string_view CompareCut(std::string_view word) noexcept {
    return word.substr(0, kKeywordCompareLimit);
}

std::string_view StatementView(const char *statement) noexcept {
    return statement ? std::string_view(statement) : std::string_view();
}

std::string_view Separator(const char *separator) noexcept {
    return separator ? std::string_view(separator) : std::string_view(",");
}

bool IsSelectOrFrom(std::string_view keyword) noexcept {
    return EqualsNoCase(keyword, "SELECT") || EqualsNoCase(keyword, "FROM");
}

} // namespace

int ClauseKeywordNumber(std::string_view word) noexcept {
    for (std::size_t i = 0; i < kClauseKeywords.size(); ++i)
        if (EqualsNoCase(word, kClauseKeywords[i])) return static_cast<int>(i) + 1;
    return 0;
}

std::size_t FindClause(ScanContext &context, std::string_view statement, std::string_view keyword,
                       std::string_view secondKeyword, std::size_t from) {
    std::size_t match = kNotFound;
    int depth = 0;
    std::size_t at = from;
    const std::size_t end = statement.size();
    // The scan goes on past a match: a stray ")" anywhere behind makes the
    // statement's structure unknown, and nothing is cut from it then.
    while (at < end) {
        const char c = statement[at];
        if (c == '"' || c == '\'') {
            std::size_t close = statement.find(c, at + 1);
            at = close == std::string_view::npos ? end : close + 1;
            continue;
        }
        if (c == '(') {
            ++depth;
            ++at;
            continue;
        }
        if (c == ')') {
            if (depth == 0) {
                if (!context.bracketError) {
                    context.bracketError = true;
                    context.bracketRest.assign(statement.substr(at));
                }
                return kNotFound;
            }
            --depth;
            ++at;
            continue;
        }
        if (!IsLetter(c)) {
            ++at;
            continue;
        }
        const std::size_t wordEnd = WordEnd(statement, at);
        if (depth == 0 && match == kNotFound) {
            std::string_view word = CompareCut(statement.substr(at, wordEnd - at));
            if (keyword.empty()) {
                if (ClauseKeywordNumber(word) != 0) match = at;
            } else if (EqualsNoCase(word, keyword)) {
                if (secondKeyword.empty()) {
                    match = at;
                } else {
                    std::size_t next = SkipWhiteSpace(statement, wordEnd);
                    std::string_view second = CompareCut(statement.substr(next, WordEnd(statement, next) - next));
                    if (EqualsNoCase(second, secondKeyword)) match = at;
                }
            }
        }
        at = wordEnd;
    }
    return match;
}

ClauseSpan LocateClause(ScanContext &context, std::string_view statement, std::string_view keyword,
                        std::string_view secondKeyword) {
    ClauseSpan span;
    if (keyword.empty()) return span;
    std::size_t at = FindClause(context, statement, keyword, secondKeyword);
    if (at == kNotFound) return span;
    span.keyword = at;
    at = SkipWhiteSpace(statement, at + keyword.size());
    if (!secondKeyword.empty()) at = SkipWhiteSpace(statement, at + secondKeyword.size());
    span.textBegin = at;
    std::size_t next = FindClause(context, statement, {}, {}, at);
    span.rest = next == kNotFound ? statement.size() : next;
    std::size_t textEnd = span.rest;
    while (textEnd > span.textBegin && IsWhiteSpace(statement[textEnd - 1])) --textEnd;
    span.textEnd = textEnd;
    return span;
}

std::string ClauseText(ScanContext &context, std::string_view statement, std::string_view keyword,
                       std::string_view secondKeyword) {
    ClauseSpan span = LocateClause(context, statement, keyword, secondKeyword);
    if (!span.present()) return {};
    return std::string(statement.substr(span.textBegin, span.textEnd - span.textBegin));
}

std::vector<std::string> SplitItems(std::string_view text, char separator, char quote, std::size_t limit) {
    std::vector<std::string> pieces;
    std::size_t at = 0;
    while (at < text.size()) {
        std::string piece;
        bool quoted = false;
        for (; at < text.size(); ++at) {
            const char c = text[at];
            if (quote != '\0' && c == quote) quoted = !quoted;
            else if (c == separator && !quoted) break;
            if (piece.size() < limit) piece.push_back(c);
        }
        pieces.push_back(std::move(piece));
        if (at < text.size()) ++at;  // the separator
    }
    return pieces;
}

std::vector<std::string> SplitWords(std::string_view item, char quote, std::size_t limit) {
    std::string blanked(item.substr(SkipWhiteSpace(item, 0)));
    for (char &c : blanked)
        if (IsWhiteSpace(c)) c = ' ';
    std::vector<std::string> words = SplitItems(blanked, ' ', quote, limit);
    std::erase_if(words, [](const std::string &w) { return w.empty(); });
    return words;
}

std::string StripName(std::string_view name, char quote) {
    std::string buffer(name);
    sqltext::StripDelimiters(buffer.data(), quote, quote);
    buffer.resize(std::strlen(buffer.c_str()));
    return buffer;
}

std::vector<FieldItem> ReadFieldItems(std::string_view clause, char quote) {
    std::vector<FieldItem> fields;
    for (const std::string &item : SplitItems(clause, ',', quote, kItemLimit)) {
        std::vector<std::string> words = SplitWords(item, quote);
        if (words.empty()) continue;
        FieldItem field;
        field.column = StripName(words[0], quote);
        std::size_t aliasWord = words.size() > 1 && EqualsNoCase(words[1], "AS") ? 2 : 1;
        if (aliasWord < words.size()) field.alias = StripName(words[aliasWord], quote);
        field.resultName = StripName(words.back(), quote);
        fields.push_back(std::move(field));
    }
    return fields;
}

std::vector<std::string> ReadTableItems(std::string_view clause, char quote) {
    std::vector<std::string> tables;
    for (const std::string &item : SplitItems(clause, ',', quote, kItemLimit)) {
        std::vector<std::string> words = SplitWords(item, quote);
        std::size_t nameWord = !words.empty() && EqualsNoCase(words[0], "OUTER") ? 1 : 0;
        if (nameWord >= words.size()) continue;
        std::string name = StripName(words[nameWord], quote);
        if (!name.empty()) tables.push_back(std::move(name));
    }
    return tables;
}

std::vector<SortItem> ReadSortItems(std::string_view clause, char quote) {
    std::vector<SortItem> keys;
    for (const std::string &item : SplitItems(clause, ',', quote, kItemLimit)) {
        std::vector<std::string> words = SplitWords(item, quote);
        if (words.empty()) continue;
        SortItem key;
        key.column = StripName(words[0], quote);
        if (key.column.empty()) continue;
        key.descending = words.size() > 1 && EqualsNoCase(std::string_view(words[1]).substr(0, kDirectionLimit), "DESC");
        keys.push_back(std::move(key));
    }
    return keys;
}

int ScanFields(ScanContext &context, const char *statement, const char *separator, char *out, int outSize) {
    if (!out || outSize < 1) return -1;
    korvel::BoundedText list(out, outSize);
    std::string_view text = StatementView(statement);
    if (text.empty()) return 0;
    std::string clause = ClauseText(context, text, "SELECT", {});
    if (clause.empty()) return -1;
    bool first = true;
    for (const FieldItem &field : ReadFieldItems(clause, context.quote)) {
        if (field.resultName.empty()) continue;
        if (!first) list.append(Separator(separator));
        list.append(field.resultName);
        first = false;
    }
    return 0;
}

int ScanTables(ScanContext &context, const char *statement, const char *separator, char *out, int outSize) {
    if (!out || outSize < 1) return -1;
    korvel::BoundedText list(out, outSize);
    std::string_view text = StatementView(statement);
    if (text.empty()) return 0;
    if (ClauseText(context, text, "SELECT", {}).empty()) return -1;
    std::string clause = ClauseText(context, text, "FROM", {});
    if (clause.empty()) return -1;
    bool first = true;
    for (const std::string &table : ReadTableItems(clause, context.quote)) {
        if (!first) list.append(Separator(separator));
        list.append(table);
        first = false;
    }
    return 0;
}

int ScanOrderBy(ScanContext &context, const char *statement, const char *separator, int flags, char *out,
                int outSize) {
    if (!out || outSize < 1) return -1;
    korvel::BoundedText list(out, outSize);
    std::string_view text = StatementView(statement);
    if (text.empty()) return 0;
    std::string clause = ClauseText(context, text, "ORDER", "BY");
    bool first = true;
    for (const SortItem &key : ReadSortItems(clause, context.quote)) {
        if (!first) list.append(Separator(separator));
        list.append(key.column);
        if ((flags & kScanDescSuffix) && key.descending) list.append(" DESC");
        if (flags & kScanDirectionTab) list.append(key.descending ? "\tD" : "\tA");
        first = false;
    }
    return 0;
}

int GetClause(ScanContext &context, const char *statement, const char *keyword, const char *secondKeyword,
              char *out, int outSize) {
    if (!out || outSize < 1) return -1;
    korvel::BoundedText text(out, outSize);
    if (!keyword) return 0;
    text.append(ClauseText(context, StatementView(statement), keyword,
                           secondKeyword ? std::string_view(secondKeyword) : std::string_view()));
    return 0;
}

bool ReplaceClause(ScanContext &context, char *statement, int size, std::string_view keyword,
                   std::string_view secondKeyword, const char *newText) {
    if (!statement || size < 1) return false;
    korvel::BoundedText result = korvel::BoundedText::continuing(statement, size);
    std::string_view replacement = newText ? std::string_view(newText) : std::string_view();
    // The replacement may come from the statement buffer itself.
    const std::string text(replacement);
    ClauseSpan span = LocateClause(context, result.view(), keyword, secondKeyword);
    if (span.present()) {
        const std::string rest(result.view().substr(span.rest));
        result.truncate(span.keyword);
        // A removed WHERE or ORDER BY goes with its keywords; SELECT and
        // FROM always keep theirs so the statement keeps its frame.
        if (!text.empty() || IsSelectOrFrom(keyword)) result.append(keyword);
        if (!text.empty()) {
            if (!secondKeyword.empty()) {
                result.append(' ');
                result.append(secondKeyword);
            }
            result.append(' ');
            result.append(text);
        }
        if (!rest.empty()) {
            result.append(' ');
            result.append(rest);
        }
    } else if (!text.empty()) {
        result.append(' ');
        result.append(keyword);
        if (!secondKeyword.empty()) {
            result.append(' ');
            result.append(secondKeyword);
        }
        result.append(' ');
        result.append(text);
    }
    return true;
}

namespace {

// Column and table lists need the SELECT ... FROM frame to land in.
void EnsureSelectFrame(ScanContext &context, char *statement, int size) {
    std::string_view text = korvel::BoundedText::continuing(statement, size).view();
    if (LocateClause(context, text, "SELECT", {}).present() && LocateClause(context, text, "FROM", {}).present())
        return;
    korvel::BoundedText frame(statement, size);
    frame.append("SELECT FROM");
}

// A WHERE clause belongs behind the table list; one appended behind ORDER
// BY is moved there by making it part of the FROM clause's text.
void MoveWhereBehindFrom(ScanContext &context, char *statement, int size) {
    std::string_view text = korvel::BoundedText::continuing(statement, size).view();
    ClauseSpan where = LocateClause(context, text, "WHERE", {});
    ClauseSpan from = LocateClause(context, text, "FROM", {});
    if (!where.present() || !from.present()) return;
    std::string joined(text.substr(from.textBegin, from.textEnd - from.textBegin));
    joined += " WHERE ";
    joined.append(text.substr(where.textBegin, where.textEnd - where.textBegin));
    ReplaceClause(context, statement, size, "WHERE", {}, nullptr);
    ReplaceClause(context, statement, size, "FROM", {}, joined.c_str());
}

} // namespace

int ReplaceFieldsClause(ScanContext &context, char *statement, int size, const char *newClause) {
    if (!statement || size < 1) return -1;
    EnsureSelectFrame(context, statement, size);
    return ReplaceClause(context, statement, size, "SELECT", {}, newClause) ? 0 : -1;
}

int ReplaceTablesClause(ScanContext &context, char *statement, int size, const char *newClause) {
    if (!statement || size < 1) return -1;
    EnsureSelectFrame(context, statement, size);
    return ReplaceClause(context, statement, size, "FROM", {}, newClause) ? 0 : -1;
}

int ReplaceOrderByClause(ScanContext &context, char *statement, int size, const char *newClause) {
    if (!ReplaceClause(context, statement, size, "ORDER", "BY", newClause)) return -1;
    MoveWhereBehindFrom(context, statement, size);
    return 0;
}

int ReplaceWhereClause(ScanContext &context, char *statement, int size, const char *newClause) {
    if (!ReplaceClause(context, statement, size, "WHERE", {}, newClause)) return -1;
    MoveWhereBehindFrom(context, statement, size);
    return 0;
}

} // namespace kodbc::select
