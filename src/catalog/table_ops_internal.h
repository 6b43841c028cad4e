// What the table operations share between their files: running a
// one-value statement and reading the value as a number.
#pragma once

#include <kodbc/kodbc_types.h>

namespace kodbc::tableops {

// Values are read as text of at most 98 characters.
inline constexpr int kValueSize = 99;

// Offers sql to the dump, executes it and reads column 1 of the first row
// as text into value (empty for NULL or no row). False after the dump's
// refusal or an error (shown with the statement).
bool FetchFirstValue(SQLHDBC hdbc, const char *sql, char (&value)[kValueSize]);

// The leading integer / number of a driver's text; 0 when there is none.
long TextToLong(const char *text);
double TextToDouble(const char *text);

} // namespace kodbc::tableops
