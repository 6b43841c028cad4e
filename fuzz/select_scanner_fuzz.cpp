// Fuzzes the SELECT scanner: clause finding and extraction, the three scans and the four
// replacements, each into a heap buffer of exactly the stated size so that a write past it is caught.
// Input: byte 0 the output size, byte 1 the quote character (low 2 bits), scan flags (bits 2-3) and
// keyword choice (bits 4-7); the rest up to a zero byte the statement, what follows the new clause.
#include "fuzz_support.h"

#include "select/select_scanner.h"
#include "sqltext/sql_names.h"

#include <sstream>

using namespace kodbc::select;
using fuzz::Buffer;
using fuzz::Check;

namespace {

const char kQuotes[] = {'\0', '"', '`', '['};
const char *const kKeywords[][2] = {{"SELECT", ""}, {"FROM", ""},    {"ORDER", "BY"},   {"GROUP", "BY"},
                                    {"WHERE", ""},  {"HAVING", ""},  {"INTO", ""},      {"TEMP", ""},
                                    {"BY", ""},     {"ORDER", ""},   {"GROUP", ""},     {"x", ""},
                                    {"select", "by"}, {"", ""},      {"FROM", "WHERE"}, {"ORDER", "ORDER"}};

// A lone ORDER or BY pairs with another once the WHERE between them is
// moved behind FROM, and the round trip below cannot hold then.
bool HasLoneOrderOrBy(std::string_view s) {
    std::string words;  // letter runs upper-cased; blanks between them, "#" for any other character
    for (const char c : s) {
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) words += static_cast<char>(c & ~0x20);
        else words += kodbc::IsWhiteSpace(c) ? " " : " # ";
    }
    std::istringstream in(words);
    std::vector<std::string> w{"#"};
    for (std::string word; in >> word;) w.push_back(word);
    w.push_back("#");
    for (std::size_t i = 1; i + 1 < w.size(); ++i)
        if ((w[i] == "ORDER" && w[i + 1] != "BY") || (w[i] == "BY" && w[i - 1] != "ORDER" && w[i - 1] != "GROUP"))
            return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 2) return 0;
    const int outSize = static_cast<int>(data[0]) - 1;  // -1 .. 254
    const char *const *keyword = kKeywords[data[1] >> 4];
    std::vector<std::string> pieces = fuzz::Pieces(data, size, 2, 2);
    pieces.resize(2);
    const std::string &statement = pieces[0], &clause = pieces[1];
    ScanContext context;
    context.quote = kQuotes[data[1] & 3];

    const ClauseSpan span = LocateClause(context, statement, keyword[0], keyword[1]);
    if (span.present())
        Check(span.keyword < statement.size() && span.textBegin <= span.textEnd && span.textEnd <= span.rest &&
              span.rest <= statement.size());
    for (const std::string &item : SplitItems(clause, ',', context.quote, kItemLimit)) {
        Check(item.size() <= kItemLimit);
        for (const std::string &word : SplitWords(item, context.quote)) Check(!word.empty() && word.size() <= kWordLimit);
    }

    for (int scan = 0; scan < 4; ++scan) {
        Buffer out(outSize);
        const char *s = statement.c_str();
        const int result = scan == 0   ? GetClause(context, s, keyword[0], keyword[1], out.data, outSize)
                           : scan == 1 ? ScanFields(context, s, clause.c_str(), out.data, outSize)
                           : scan == 2 ? ScanTables(context, s, nullptr, out.data, outSize)
                                       : ScanOrderBy(context, s, ";", (data[1] & 0x0c) >> 1, out.data, outSize);
        Check((result == 0 || result == -1) && out.terminated());
    }

    // The replacements in a buffer somewhat larger than the statement, so
    // both the cut and the uncut paths run.
    for (auto replace : {ReplaceFieldsClause, ReplaceTablesClause, ReplaceOrderByClause, ReplaceWhereClause}) {
        const int statementSize = static_cast<int>(statement.size()) + outSize;
        Buffer buffer(statementSize, statement);
        Check(replace(context, buffer.data, statementSize, clause.c_str()) == (statementSize < 1 ? -1 : 0));
        Check(buffer.terminated());
    }
    // A generous buffer with a plain clause: the clause is found again as
    // it was put in, unless the statement's quotes or brackets hide it or a
    // lone keyword makes a second ORDER BY.
    const std::size_t first = clause.find_first_not_of(' ');
    if (!context.bracketError && first != std::string::npos && statement.find_first_of("'\"()") == std::string::npos &&
        clause.find_first_not_of("0123456789=<> ") == std::string::npos && !HasLoneOrderOrBy(statement)) {
        const int statementSize = static_cast<int>(statement.size() * 3 + clause.size() * 3 + 64);
        Buffer buffer(statementSize, statement);
        Check(ReplaceOrderByClause(context, buffer.data, statementSize, clause.c_str()) == 0);
        Check(ClauseText(context, buffer.data, "ORDER", "BY") ==
              clause.substr(first, clause.find_last_not_of(' ') + 1 - first));
    }
    return 0;
}
