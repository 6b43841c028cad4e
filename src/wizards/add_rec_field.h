// The field mapping of the add-records wizard: what each destination
// column is filled with. Shared by the pages, the statement builders and
// the processing loop.
#pragma once

#include <kodbc/kodbc_types.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kodbc::wizards {

// Fill modes are the identifiers of the radio buttons that choose them.
inline constexpr int kFillLeaveEmpty = 2100;   // "Feld leer lassen"
inline constexpr int kFillFixedValue = 2101;   // "Fester Wert"
inline constexpr int kFillSourceField = 2102;  // "Inhalt des Felds"

// Record modes, likewise the radio buttons of the identifying-fields page.
inline constexpr int kRecordModeAdd = 2100;      // always add
inline constexpr int kRecordModeReplace = 2101;  // replace when the identifying fields match

// One destination column. Strings are empty where there is none: a null
// and an empty name or value are treated alike everywhere.
struct AddRecField {
    std::string destinationName;
    int32_t destinationType = KODBC_TYPE_VAR_TEXT;   // library data-type code
    int32_t destinationLength = 0;
    bool readOnly = false;                           // never filled
    int32_t mode = kFillLeaveEmpty;
    std::string sourceField;
    int32_t sourceType = 0;                          // 0 until a source field was chosen
    int32_t sourceLength = 0;
    // The current record's value as it is written; rebuilt per record. The
    // string keeps its capacity between records, so a run does not allocate
    // per record once the longest value has been seen.
    std::string value;
    bool valueIsNull = true;
    std::string fixedValue;
    // Where the properties dialog lists the source fields from.
    SQLHDBC sourceConnection = nullptr;
    std::string sourceTable;

    // Whether the record's source row has a column for this entry.
    bool readsSource() const noexcept { return mode == kFillSourceField && !sourceField.empty(); }
    // Whether INSERT and UPDATE name this entry.
    bool isWritten() const noexcept { return mode != kFillLeaveEmpty && !readOnly; }
};

// One slot per destination column in catalogue order; a slot may be null.
using AddRecFieldList = std::vector<std::unique_ptr<AddRecField>>;

} // namespace kodbc::wizards
