// Reading and splitting the driver's first diagnostic record, shared by the
// Windows dialog and the Linux message handler.
#pragma once

#include <kodbc/kodbc_types.h>

#include <string>
#include <string_view>

namespace kodbc {

#pragma pack(push, 2)
// What the display functions hand to the dialog.
struct ErrorDisplayRequest {
    int16_t handleType;      // 1 environment, 2 connection, 3 statement
    SQLHANDLE handle;
    const char *statement;   // may be null
    int32_t recordNumber;    // always 1
    int32_t hintMessageId;   // 0, or the message behind "Mögliche Fehlerursache"
};
#pragma pack(pop)

// The dialog's fields, split from "[vendor][component][data source]text".
struct DiagnosticFields {
    std::string sqlState;
    std::string vendor;
    std::string component;
    std::string dataSource;
    std::string description;
    int hintMessageId = 0;
};

// Splits a driver message at its brackets (each piece at most 299
// characters, leading "[" removed); a message without brackets is all vendor.
void SplitDiagnosticMessage(std::string_view message, DiagnosticFields &fields);

// Reads record `request.recordNumber` of the handle and splits it; sets the
// hint for SQLSTATE 01S02. False when the driver has no such record.
bool ReadDiagnostic(const ErrorDisplayRequest &request, DiagnosticFields &fields);

// Shows the fields modally (dialog 10025 on Windows, the message handler on
// Linux). Returns 1 for "Schließen" or nothing shown, 2 for cancel.
int ShowDiagnosticsDialog(const ErrorDisplayRequest &request);

// The display common to the seven display functions.
int DisplayOdbcError(int16_t handleType, SQLHANDLE handle, SQLRETURN retcode, const char *statement);

} // namespace kodbc
