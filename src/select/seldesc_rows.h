// The condition rows of a page as texts: what the boxes list, which row a
// descriptor line lands in and what it shows there, and what the rows' texts
// make of a descriptor. The window code only moves these texts into and out
// of the controls.
#pragma once

#include "select/seldesc.h"

#include <kodbc/kodbc_seldesc.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kodbc::seldesc {

inline bool IsGroupEnd(const OpDescDialogItem &item) { return item.FieldId == OPDESC_ITEM_GROUP_END; }
inline bool IsTableEnd(const OpDescDialogItem &item) { return item.FieldId <= OPDESC_ITEM_TABLE_END; }

// One box entry: its text and its item data.
struct BoxEntry {
    std::string text;
    long data = 0;
    bool operator==(const BoxEntry &other) const { return text == other.text && data == other.data; }
};

// The catalogue's field list "name\ttype\tname\ttype…" as field box
// entries, the type as item data. A name without a type (a plain name list)
// gets 0.
std::vector<BoxEntry> FieldBoxEntries(std::string_view fieldList);
// An operator box: the table's labels with their codes, then a blank entry
// (code 0) that takes the row out of the descriptor.
std::vector<BoxEntry> OperatorBoxEntries(const OpDescOperator *table);
// Index of the first entry equal to text, with case; -1 when there is none.
int FindExactEntry(const std::vector<std::string> &entries, std::string_view text);

// A descriptor line as its row shows it: the row's index in the item list,
// the field and value texts and the operator code to select (0, the blank
// entry, for a keyword the table does not have).
struct ShownLine {
    std::size_t item;
    std::string_view field;
    std::uint32_t code;
    std::string_view value;
};
// Group by group, line by line into the group's rows. Lines beyond a
// group's rows are lost; rows without a line are not in the result.
std::vector<ShownLine> LinesForRows(const OpDescOperator *table, std::string_view descriptor,
                                    const OpDescDialogItem *items);

// What one item of the list reads: a group end, or a row's texts with the
// code of its operator box's selection (0 for none) and the data type of
// its field (0 when the field box has no such entry).
struct RowTexts {
    bool groupEnd = false;
    std::string field;
    std::uint32_t code = 0;
    std::string value;
    long type = 0;
};
// Row by row, field before operator before value: the first control for
// which hasText says no; 0 when every control has text.
int FirstEmptyControl(const OpDescDialogItem *items, const std::function<bool(int id)> &hasText);

// The rows as a descriptor into descriptor (size > 0); empty for no table.
void WriteDescriptor(const OpDescOperator *table, const std::vector<RowTexts> &rows, char *descriptor,
                     int size) noexcept;

} // namespace kodbc::seldesc
