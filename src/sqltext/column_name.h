// Column names that come from the catalogue, put into statements the
// library builds itself. Such a name is one name whatever it holds ("Art.Nr"
// is a column, not a column of a table "Art"), unlike the names callers type,
// which the SQL-92 preparation splits at every point.
#pragma once

#include <kodbc/kodbc_types.h>

#include <string>

namespace kodbc::sqltext {

// The column name quoted as one name with the driver's identifier quote;
// out is empty when the result does not fit.
void PrepareColumnName(SQLHDBC hdbc, const char *name, char *out, int size) noexcept;
std::string PrepareColumnName(SQLHDBC hdbc, const std::string &name);

} // namespace kodbc::sqltext
