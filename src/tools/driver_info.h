// What the driver of an open connection tells about itself: the seven
// fields of the driver information, read once for the dialog and the
// command-line tool alike.
#pragma once

#include <kodbc/kodbc_types.h>

#include <array>
#include <string>

namespace kodbc::tools {

inline constexpr int kDriverInfoFieldCount = 7;
inline constexpr int kDriverInfoLabelSize = 100;

struct DriverInfoField {
    int labelId;        // string-table text of the field's label
    std::string value;  // empty when the driver refused the query
};

// Reads every field anew; a query that fails leaves its field empty.
std::array<DriverInfoField, kDriverInfoFieldCount> ReadDriverInformation(SQLHDBC hdbc);

// "Delimiter: %s  (Dezimal %d   Hex %02x)" for the driver's quote text,
// cut to 99 characters.
std::string DelimiterLine(const char *quoteText);

} // namespace kodbc::tools
