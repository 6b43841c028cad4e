// Which source types may fill which destination types, and how a source
// value read as text becomes the text that is written.
#pragma once

#include <string>
#include <string_view>

namespace kodbc::wizards {

// Whether a source column of library type sourceType may fill a column of
// destinationType. Numbers go only into text and number columns, dates only
// into fixed or variable text and dates; every other source is accepted
// (0, the type of an entry that never had a source field, included).
bool IsTypeCompatible(int sourceType, int destinationType) noexcept;

// Converts value (as the driver gave it in character form) from sourceType
// to destinationType into out, reusing out's storage:
// - into text columns: numbers keep only their digits and signs (a float
//   also its "."; a decimal comma is dropped), dates become "dd.mm.yyyy";
// - into date columns: text is read as a German date (missing parts from
//   1 January 1900, 00:00:00) and written as ODBC timestamp text;
// - everything else is taken as it is.
// False only when out could not hold the result (out of memory).
bool ConvertSourceValue(int sourceType, int destinationType, std::string_view value, std::string &out) noexcept;

} // namespace kodbc::wizards
