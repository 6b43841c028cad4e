// Fuzzes the SELECT scanner: clause finding and extraction, the three scans
// and the four replacements, each writing into a heap buffer of exactly the
// stated size so that a write past it is caught.
//
// Input: byte 0 the output size, byte 1 the quote character (low 2 bits),
// scan flags (bits 2-3) and keyword choice (bits 4-7); the rest up to a
// zero byte is the statement, what follows it the new clause text.
#include "fuzz_support.h"

#include "select/select_scanner.h"

using namespace kodbc::select;
using fuzz::Buffer;
using fuzz::Check;

namespace {

const char kQuotes[] = {'\0', '"', '`', '['};
const char *const kKeywords[][2] = {{"SELECT", ""}, {"FROM", ""},  {"ORDER", "BY"}, {"GROUP", "BY"},
                                    {"WHERE", ""},  {"HAVING", ""}, {"INTO", ""},    {"TEMP", ""},
                                    {"BY", ""},     {"ORDER", ""},  {"GROUP", ""},   {"x", ""},
                                    {"select", "by"}, {"", ""},     {"FROM", "WHERE"}, {"ORDER", "ORDER"}};

void CheckScan(int result, const Buffer &out) {
    Check(result == 0 || result == -1);
    Check(out.terminated());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 2) return 0;
    const int outSize = static_cast<int>(data[0]) - 1;  // -1 .. 254
    const uint8_t control = data[1];
    const char quote = kQuotes[control & 3];
    const int flags = (control & 0x0c) >> 1;            // 0, 2, 4, 6
    const char *const *keyword = kKeywords[control >> 4];
    std::vector<std::string> pieces = fuzz::Pieces(data, size, 2, 2);
    pieces.resize(2);
    const std::string &statement = pieces[0], &clause = pieces[1];

    ScanContext context;
    context.quote = quote;

    // Finding and cutting.
    ClauseSpan span = LocateClause(context, statement, keyword[0], keyword[1]);
    if (span.present()) {
        Check(span.keyword < statement.size());
        Check(span.textBegin <= span.textEnd && span.textEnd <= span.rest && span.rest <= statement.size());
    }
    for (const std::string &item : SplitItems(clause, ',', quote, kItemLimit)) {
        Check(item.size() <= kItemLimit);
        for (const std::string &word : SplitWords(item, quote)) Check(!word.empty() && word.size() <= kWordLimit);
    }

    for (int scan = 0; scan < 4; ++scan) {
        Buffer out(outSize);
        const char *s = statement.c_str();
        const int result = scan == 0   ? GetClause(context, s, keyword[0], keyword[1], out.data, outSize)
                           : scan == 1 ? ScanFields(context, s, clause.c_str(), out.data, outSize)
                           : scan == 2 ? ScanTables(context, s, nullptr, out.data, outSize)
                                       : ScanOrderBy(context, s, ";", flags, out.data, outSize);
        CheckScan(result, out);
    }

    // The replacements in a buffer somewhat larger than the statement, so
    // both the cut and the uncut paths run.
    using Replace = int (*)(ScanContext &, char *, int, const char *);
    const Replace replacements[] = {ReplaceFieldsClause, ReplaceTablesClause, ReplaceOrderByClause,
                                    ReplaceWhereClause};
    for (Replace replace : replacements) {
        const int statementSize = static_cast<int>(statement.size()) + outSize;
        Buffer buffer(statementSize, statement);
        const int result = replace(context, buffer.data, statementSize, clause.c_str());
        Check(result == (statementSize < 1 ? -1 : 0));
        Check(buffer.terminated());
    }
    // A generous buffer with a plain clause: the clause is found again as
    // it was put in, unless the statement's quotes or brackets hide it.
    if (!context.bracketError && statement.find_first_of("'\"()") == std::string::npos && !clause.empty() &&
        clause.find_first_not_of("0123456789=<> ") == std::string::npos && clause.find_first_not_of(' ') != std::string::npos) {
        const int statementSize = static_cast<int>(statement.size() * 3 + clause.size() * 3 + 64);
        Buffer buffer(statementSize, statement);
        Check(ReplaceOrderByClause(context, buffer.data, statementSize, clause.c_str()) == 0);
        std::string trimmed = clause.substr(clause.find_first_not_of(' '));
        trimmed = trimmed.substr(0, trimmed.find_last_not_of(' ') + 1);
        Check(ClauseText(context, buffer.data, "ORDER", "BY") == trimmed);
    }
    return 0;
}
