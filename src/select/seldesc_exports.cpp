// The descriptor generators, exported. The text rules live in seldesc.cpp;
// here the driver is asked for its identifier quote text, once per call and
// only when a name is actually prepared.
#include "select/seldesc.h"

#include "internal/driver_info.h"

#include <kodbc/kodbc_seldesc.h>

namespace {

using kodbc::sqltext::QuoteText;

bool FetchIdentifierQuote(void *hdbc, char *buffer, int size) {
    return kodbc::GetInfoText(static_cast<SQLHDBC>(hdbc), SQL_IDENTIFIER_QUOTE_CHAR, buffer, size);
}

QuoteText DriverQuote(SQLHDBC hdbc) { return QuoteText::Lazy(&FetchIdentifierQuote, hdbc); }

} // namespace

extern "C" {

KODBC_API int KODBC_CALL Kodbc_SelDesc_To_WhereClause_Expanded(SQLHDBC hdbc, const char *selDesc, char *where,
                                                               int whereSize, const char *patternChars) {
    if (!where || whereSize < 1) return -1;
    char pattern[4];
    kodbc::seldesc::ReadPatternChars(patternChars, pattern);
    QuoteText quote = DriverQuote(hdbc);
    kodbc::seldesc::BuildWhereClause(quote, selDesc, where, whereSize, pattern);
    return 0;
}

KODBC_API int KODBC_CALL Kodbc_SelDesc_To_WhereClause(SQLHDBC hdbc, const char *selDesc, char *where,
                                                      int whereSize) {
    return Kodbc_SelDesc_To_WhereClause_Expanded(hdbc, selDesc, where, whereSize, nullptr);
}

KODBC_API void KODBC_CALL Kodbc_OpDesc_To_SetClause(SQLHDBC hdbc, const char *setDesc, char *set, int setSize) {
    if (!set || setSize < 1) return;
    QuoteText quote = DriverQuote(hdbc);
    kodbc::seldesc::BuildSetClause(quote, setDesc, set, setSize);
}

} // extern "C"
