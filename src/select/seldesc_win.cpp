// Descriptors into and out of a dialog's condition rows (Windows).
#include "select/seldesc_rows.h"

#include <kodbc/kodbc_seldesc.h>
#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using kodbc::seldesc::OpDescOperator;

constexpr int kFieldTextSize = static_cast<int>(kodbc::seldesc::kFieldChars) + 1;
constexpr int kShownValueSize = static_cast<int>(kodbc::seldesc::kValueChars) + 1;

bool IsBox(HWND control) { return Korvel_IsListBox(control) || Korvel_IsComboBox(control); }

// What a control shows: a list box has no text of its own, its selected
// entry stands for it.
void ControlText(HWND control, char *buffer, int size) {
    buffer[0] = '\0';
    if (!control) return;
    if (Korvel_IsListBox(control)) {
        int index = Korvel_GetBoxIndex(control);
        if (index >= 0) Korvel_GetBoxEntry(control, index, buffer, size);
        return;
    }
    GetWindowTextA(control, buffer, size);
}

int FindExactEntry(HWND box, const char *text) {
    std::vector<std::string> entries;
    char entry[kShownValueSize];
    int count = Korvel_GetBoxCount(box);
    for (int i = 0; i < count; ++i) {
        // An entry that cannot be read matches no text.
        entries.emplace_back(Korvel_GetBoxEntry(box, i, entry, sizeof entry) >= 0 ? std::string(entry)
                                                                                   : std::string(1, '\0'));
    }
    return kodbc::seldesc::FindExactEntry(entries, text);
}

// The box's own exact-string search, as a user's typing is matched.
int FindStringExact(HWND box, const char *text) {
    UINT message = Korvel_IsComboBox(box) ? CB_FINDSTRINGEXACT : LB_FINDSTRINGEXACT;
    LRESULT index = SendMessageA(box, message, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
    return index < 0 ? -1 : static_cast<int>(index);
}

void FillBox(HWND box, const std::vector<kodbc::seldesc::BoxEntry> &entries) {
    if (!IsBox(box)) return;
    Korvel_ResetBox(box);
    for (const kodbc::seldesc::BoxEntry &entry : entries)
        if (Korvel_AddBoxEntry(box, entry.text.c_str(), static_cast<LPARAM>(entry.data), -1, 0) < 0) return;
}

void ShowText(HWND control, std::string_view text) {
    if (!control) return;
    char buffer[kShownValueSize];
    korvel::BoundedText(buffer, sizeof buffer).append(text);
    if (Korvel_IsListBox(control)) {
        Korvel_SetBoxIndex(control, FindExactEntry(control, buffer));
        return;
    }
    if (Korvel_IsComboBox(control)) Korvel_SetBoxIndex(control, FindExactEntry(control, buffer));
    SetWindowTextA(control, buffer);
}

void ShowLine(HWND dialog, const OpDescDialogItem &row, const kodbc::seldesc::ShownLine &line) {
    ShowText(GetDlgItem(dialog, row.FieldId), line.field);
    HWND operatorBox = GetDlgItem(dialog, row.OperatorId);
    if (IsBox(operatorBox)) {
        int index = line.code ? Korvel_GetBoxIndexByItemData(operatorBox, static_cast<LPARAM>(line.code)) : -1;
        if (index < 0) index = Korvel_GetBoxCount(operatorBox) - 1;
        Korvel_SetBoxIndex(operatorBox, index);
    }
    ShowText(GetDlgItem(dialog, row.ValueId), line.value);
}

// What a row shows, kept across the refilling of its boxes: a row for which
// the descriptor has no line is left as it was.
struct RowState {
    char field[kShownValueSize];
    char value[kShownValueSize];
    LPARAM code = 0;
    bool hasOperator = false;

    void Save(HWND dialog, const OpDescDialogItem *row) {
        ControlText(GetDlgItem(dialog, row->FieldId), field, sizeof field);
        ControlText(GetDlgItem(dialog, row->ValueId), value, sizeof value);
        HWND operatorBox = GetDlgItem(dialog, row->OperatorId);
        int selected = IsBox(operatorBox) ? Korvel_GetBoxIndex(operatorBox) : -1;
        hasOperator = selected >= 0;
        if (hasOperator) code = Korvel_GetItemData(operatorBox, selected);
    }
    void Restore(HWND dialog, const OpDescDialogItem *row) const {
        if (field[0]) ShowText(GetDlgItem(dialog, row->FieldId), field);
        if (value[0]) ShowText(GetDlgItem(dialog, row->ValueId), value);
        HWND operatorBox = GetDlgItem(dialog, row->OperatorId);
        if (hasOperator && IsBox(operatorBox)) {
            int index = Korvel_GetBoxIndexByItemData(operatorBox, code);
            if (index >= 0) Korvel_SetBoxIndex(operatorBox, index);
        }
    }
};

// A row's texts as the descriptor takes them: the field as far as the box's
// own search reads it.
kodbc::seldesc::RowTexts ReadRow(HWND dialog, const OpDescDialogItem &row) {
    kodbc::seldesc::RowTexts texts;
    HWND fieldControl = GetDlgItem(dialog, row.FieldId);
    char field[kFieldTextSize];
    char value[kShownValueSize];
    ControlText(fieldControl, field, sizeof field);
    ControlText(GetDlgItem(dialog, row.ValueId), value, sizeof value);
    texts.field = field;
    texts.value = value;
    HWND operatorBox = GetDlgItem(dialog, row.OperatorId);
    int selected = IsBox(operatorBox) ? Korvel_GetBoxIndex(operatorBox) : -1;
    if (selected >= 0) texts.code = static_cast<std::uint32_t>(Korvel_GetItemData(operatorBox, selected));
    if (IsBox(fieldControl)) {
        int index = FindStringExact(fieldControl, field);
        if (index >= 0) texts.type = static_cast<long>(Korvel_GetItemData(fieldControl, index));
    }
    return texts;
}

} // namespace

extern "C" {

KODBC_API void KODBC_CALL Kodbc_DialogItems_To_OpDesc(int kind, HWND dialog, const OpDescDialogItem *items,
                                                      char *descriptor, int descriptorSize) {
    if (!dialog || !items || !descriptor || descriptorSize < 1) return;
    try {
        std::vector<kodbc::seldesc::RowTexts> rows;
        for (const OpDescDialogItem *item = items; !kodbc::seldesc::IsTableEnd(*item); ++item) {
            if (kodbc::seldesc::IsGroupEnd(*item)) rows.emplace_back().groupEnd = true;
            else rows.push_back(ReadRow(dialog, *item));
        }
        kodbc::seldesc::WriteDescriptor(kodbc::seldesc::OperatorTable(kind), rows, descriptor, descriptorSize);
    } catch (...) {
    }
}

KODBC_API void KODBC_CALL Kodbc_OpDesc_To_DialogItems(int kind, const char *descriptor, const char *fieldList,
                                                      HWND dialog, const OpDescDialogItem *items, int reserved) {
    (void)reserved;
    const OpDescOperator *table = kodbc::seldesc::OperatorTable(kind);
    if (!table || !dialog || !items) return;
    try {
        const std::vector<kodbc::seldesc::BoxEntry> fields =
            fieldList ? kodbc::seldesc::FieldBoxEntries(fieldList) : std::vector<kodbc::seldesc::BoxEntry>();
        const std::vector<kodbc::seldesc::BoxEntry> operators = kodbc::seldesc::OperatorBoxEntries(table);
        for (const OpDescDialogItem *row = items; !kodbc::seldesc::IsTableEnd(*row); ++row) {
            if (kodbc::seldesc::IsGroupEnd(*row)) continue;
            RowState shown;
            shown.Save(dialog, row);
            if (fieldList) FillBox(GetDlgItem(dialog, row->FieldId), fields);
            FillBox(GetDlgItem(dialog, row->OperatorId), operators);
            if (fieldList) FillBox(GetDlgItem(dialog, row->ValueId), fields);
            shown.Restore(dialog, row);
        }
        if (!descriptor) return;
        for (const kodbc::seldesc::ShownLine &line : kodbc::seldesc::LinesForRows(table, descriptor, items))
            ShowLine(dialog, items[line.item], line);
    } catch (...) {
    }
}

KODBC_API void KODBC_CALL Kodbc_OpDesc_Clone_Boxes(HWND dialog, const OpDescDialogItem *items, int reserved) {
    (void)reserved;
    if (!dialog || !items) return;
    try {
        const OpDescDialogItem *first = items;
        while (!kodbc::seldesc::IsTableEnd(*first) && kodbc::seldesc::IsGroupEnd(*first)) ++first;
        if (kodbc::seldesc::IsTableEnd(*first)) return;
        HWND source = GetDlgItem(dialog, first->FieldId);
        if (!IsBox(source)) return;
        for (const OpDescDialogItem *row = first; !kodbc::seldesc::IsTableEnd(*row); ++row) {
            if (kodbc::seldesc::IsGroupEnd(*row)) continue;
            if (row != first) Korvel_CopyBox(source, GetDlgItem(dialog, row->FieldId));
            HWND value = GetDlgItem(dialog, row->ValueId);
            if (IsBox(value)) Korvel_CopyBox(source, value);
        }
    } catch (...) {
    }
}

} // extern "C"
