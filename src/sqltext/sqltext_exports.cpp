// Name preparation and the statement formatter, exported. The text rules
// live in sql_names.cpp; here the driver is asked what they need: its
// identifier quote text (once per call, and only when a rule gets to it)
// and its schema usage.
#include "sqltext/column_name.h"
#include "sqltext/sql_names.h"

#include "internal/driver_info.h"
#include "internal/library.h"

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_sqltext.h>

namespace {

using kodbc::sqltext::QuoteText;

bool FetchIdentifierQuote(void *hdbc, char *buffer, int size) {
    return kodbc::GetInfoText(static_cast<SQLHDBC>(hdbc), SQL_IDENTIFIER_QUOTE_CHAR, buffer, size);
}

// A failed query (no connection) reads as a driver that does not quote.
QuoteText DriverQuote(SQLHDBC hdbc) { return QuoteText::Lazy(&FetchIdentifierQuote, hdbc); }

void ReportShortage() { kodbc::LibraryMessage(kodbc::msg::OUT_OF_MEMORY); }

} // namespace

namespace kodbc::sqltext {

void PrepareColumnName(SQLHDBC hdbc, const char *name, char *out, int size) noexcept {
    QuoteText quote = DriverQuote(hdbc);
    PrepareColumnName(quote, name ? std::string_view(name) : std::string_view(), out, size);
}

std::string PrepareColumnName(SQLHDBC hdbc, const std::string &name) {
    // Every character may be a doubled quote, and two enclose it.
    std::string out(2 * name.size() + 2 * kQuoteTextSize + 1, '\0');
    PrepareColumnName(hdbc, name.c_str(), out.data(), static_cast<int>(out.size()));
    out.resize(std::char_traits<char>::length(out.c_str()));
    return out;
}

} // namespace kodbc::sqltext

extern "C" {

KODBC_API void KODBC_CALL Kodbc_PrepareNameForSql(char *name, int size, int flags) {
    kodbc::sqltext::PrepareBracketName(name, size, flags);
}

KODBC_API void KODBC_CALL Kodbc_PrepareNameListForSql(const char *list, char separator, char *out, int size,
                                                      int flags) {
    kodbc::sqltext::PrepareBracketNameList(list, separator, out, size, flags);
}

KODBC_API void KODBC_CALL Kodbc_PrepareNameForSql92(SQLHDBC hdbc, const char *name, char *out, int size) {
    QuoteText quote = DriverQuote(hdbc);
    if (!kodbc::sqltext::PrepareSql92Name(quote, name, out, size)) ReportShortage();
}

KODBC_API void KODBC_CALL Kodbc_PrepareNameListForSql92(SQLHDBC hdbc, char *list, int size, char separator,
                                                        char joiner, int ignored) {
    (void)ignored;
    QuoteText quote = DriverQuote(hdbc);
    if (!kodbc::sqltext::PrepareSql92NameList(quote, list, size, separator, joiner)) ReportShortage();
}

KODBC_API void KODBC_CALL Kodbc_QuoteNameIfNotPureSql(SQLHDBC hdbc, char *name, int size) {
    QuoteText quote = DriverQuote(hdbc);
    kodbc::sqltext::QuoteIfNotPlain(quote, name, size);
}

KODBC_API void KODBC_CALL Kodbc_StripDelimitersFromName(SQLHDBC hdbc, char *name) {
    if (!name) return;
    QuoteText quote = DriverQuote(hdbc);
    char q = quote.first();
    kodbc::sqltext::StripDelimiters(name, q, q);
}

KODBC_API void KODBC_CALL Kodbc_StripBracketsFromSqlName(char *name) {
    kodbc::sqltext::StripDelimiters(name, '[', ']');
}

KODBC_API void KODBC_CALL Kodbc_ParseSchemaAndTable(SQLHDBC hdbc, const char *name, char *schema, int schemaSize,
                                                    char *table, int tableSize) {
    if (!schema || !table || schemaSize < 2 || tableSize < 2) return;
    bool split = !hdbc || Kodbc_GetSchemaUsage(hdbc) != 0;
    kodbc::sqltext::ParseSchemaAndTable(name, split, schema, schemaSize, table, tableSize);
}

KODBC_API void KODBC_CALL Kodbc_SprintfSqlStatement(SQLHDBC hdbc, char *out, int size, const char *sqlTemplate,
                                                    const char *arg1, const char *arg2, const char *arg3,
                                                    const char *arg4, const char *arg5, const char *arg6,
                                                    const char *arg7, const char *arg8) {
    const char *const args[kodbc::sqltext::kFormatterArguments] = {arg1, arg2, arg3, arg4, arg5, arg6, arg7, arg8};
    QuoteText quote = DriverQuote(hdbc);
    kodbc::sqltext::FormatStatement(quote, out, size, sqlTemplate, args);
}

} // extern "C"
