// The text rules behind identifier quoting and the statement formatter.
//
// Everything here is a pure function of its arguments: what the driver
// would be asked (its identifier quote text, its schema usage) comes in as a
// parameter, so the rules can be exercised without a connection. The
// exported functions in sqltext_exports.cpp only add the driver queries.
//
// Fixed part sizes are part of the contract: bracket-style parts hold at
// most 99 characters, SQL-92 parts and list pieces at most 199, formatter
// expansions at most 299.
#pragma once

#include "internal/text.h"

#include <cstddef>
#include <string_view>

namespace kodbc::sqltext {

inline constexpr std::size_t kBracketPartSize = 100;   // bracket style, per part
inline constexpr std::size_t kSql92PartSize = 200;     // SQL-92 style, per part and list piece
inline constexpr std::size_t kExpansionSize = 300;     // formatter work buffer
inline constexpr std::size_t kQuoteTextSize = 10;      // SQL_IDENTIFIER_QUOTE_CHAR answer
inline constexpr int kFormatterArguments = 8;          // argument slots of the formatter
inline constexpr int kFormatterUsableArguments = 7;    // of which placeholders may consume

// Flag bit of the bracket functions: leave plain identifiers unquoted.
inline constexpr int kKeepPlainIdentifiers = 1;

using kodbc::IsBlank;
using kodbc::IsWhiteSpace;

// An ASCII letter, then ASCII letters, digits, "_" or "$". Empty is not plain.
bool IsPlainSqlIdentifier(std::string_view name) noexcept;

// The driver's identifier quote text, asked for at most once and only when
// a rule needs it. Either fixed (tests, fuzzers) or fetched lazily through a
// function the caller provides; a fetch that fails leaves an empty text,
// which quotes nothing.
class QuoteText {
public:
    using Fetch = bool (*)(void *context, char *buffer, int size);

    static QuoteText Fixed(const char *text) noexcept;
    static QuoteText Lazy(Fetch fetch, void *context) noexcept;

    const char *text() noexcept;
    char first() noexcept { return text()[0]; }
    // A driver that reports nothing, or a blank, does not quote.
    bool quotes() noexcept { return text()[0] != '\0' && text()[0] != ' '; }

private:
    QuoteText() = default;
    char text_[kQuoteTextSize] = {};
    Fetch fetch_ = nullptr;
    void *context_ = nullptr;
    bool known_ = false;
};

// Bracket style in place: name rewritten within size (see the contract of
// Kodbc_PrepareNameForSql).
void PrepareBracketName(char *name, int size, int flags) noexcept;
// Tab-separated list, each piece bracketed, joined with "," into out.
void PrepareBracketNameList(const char *list, char separator, char *out, int size, int flags) noexcept;

// SQL-92 style of one name into out; out may be the very buffer of name.
// Returns false only when a working copy could not be had (out is then
// empty and the caller reports the shortage).
bool PrepareSql92Name(QuoteText &quote, const char *name, char *out, int size) noexcept;
// Every piece of a list in SQL-92 style, rewritten in place. False when the
// working copy could not be had; the list is then unchanged.
bool PrepareSql92NameList(QuoteText &quote, char *list, int size, char separator, char joiner) noexcept;

// A column name as the catalogue reports it is one name, points included:
// unless it is a plain identifier it is enclosed whole in the quote text,
// each quote text inside it doubled. A driver that does not quote gets the
// name as it is. out holds the whole result or nothing: false when it did
// not fit (or name is blank).
bool PrepareColumnName(QuoteText &quote, std::string_view name, char *out, int size) noexcept;

// Encloses the whole name in open and close, cut to size-1, in place.
void EncloseInPlace(char *name, int size, std::string_view open, std::string_view close) noexcept;
// The name in the quote text on both sides unless it is a plain identifier.
void QuoteIfNotPlain(QuoteText &quote, char *name, int size) noexcept;

// Per "." part: white space and at most one open / close character removed
// at either end; a zero open or close removes no character there.
void StripDelimiters(char *name, char open, char close) noexcept;

// Splits at the first (and a second) ".". With splitAtDot false the whole
// name is the table. Output buffers may be the buffer of name.
void ParseSchemaAndTable(const char *name, bool splitAtDot, char *schema, int schemaSize, char *table,
                         int tableSize) noexcept;

// The statement formatter: "%t" and "%f" names in SQL-92 style, "%s" text,
// "%." a dot after a non-blank argument. args holds kFormatterArguments
// pointers, any of them null.
void FormatStatement(QuoteText &quote, char *out, int size, const char *pattern,
                     const char *const *args) noexcept;

} // namespace kodbc::sqltext
