// What the exported scanner functions add to the text rules; shared with the
// window code of the list boxes.
#pragma once

#include <kodbc/kodbc_types.h>

namespace kodbc::select {

struct ScanContext;

// The connection's identifier quote character; 0 for hdbc 0, a failed
// query or a driver that does not quote.
char IdentifierQuote(SQLHDBC hdbc);

// Shows what the scan met that the user must know (a stray ")"), once.
void ReportScanProblems(const ScanContext &context);

} // namespace kodbc::select
