// Descriptors into and out of a dialog's condition rows (Windows).
#include "select/seldesc.h"

#include "internal/library.h"

#include <kodbc/kodbc_seldesc.h>
#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using kodbc::seldesc::OpDescOperator;

constexpr int kFieldTextSize = static_cast<int>(kodbc::seldesc::kFieldChars) + 1;
constexpr int kValueTextSize = static_cast<int>(kodbc::seldesc::kDialogValueChars) + 1;
constexpr int kShownValueSize = static_cast<int>(kodbc::seldesc::kValueChars) + 1;

bool IsSeparator(const OpDescDialogItem *item) { return item->FieldId == OPDESC_ITEM_GROUP_END; }
bool IsEnd(const OpDescDialogItem *item) { return item->FieldId <= OPDESC_ITEM_TABLE_END; }
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

// Index of the entry equal to text (with case); -1 when there is none.
int FindExactEntry(HWND box, const char *text) {
    char entry[kShownValueSize];
    int count = Korvel_GetBoxCount(box);
    for (int i = 0; i < count; ++i) {
        if (Korvel_GetBoxEntry(box, i, entry, sizeof entry) >= 0 && std::strcmp(entry, text) == 0) return i;
    }
    return -1;
}

// The box's own exact-string search, as a user's typing is matched.
int FindStringExact(HWND box, const char *text) {
    UINT message = Korvel_IsComboBox(box) ? CB_FINDSTRINGEXACT : LB_FINDSTRINGEXACT;
    LRESULT index = SendMessageA(box, message, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
    return index < 0 ? -1 : static_cast<int>(index);
}

bool IsDecimal(std::string_view text) {
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
    if (text.empty()) return false;
    for (char c : text)
        if (c < '0' || c > '9') return false;
    return true;
}

// The catalogue's field list is "name\ttype\tname\ttype…"; each name becomes
// an entry whose item data is its type. A name without a type (a plain
// name list) gets 0.
void FillFieldBox(HWND box, const char *fieldList) {
    if (!IsBox(box)) return;
    Korvel_ResetBox(box);
    std::string_view rest(fieldList);
    char name[kShownValueSize];
    while (!rest.empty()) {
        std::size_t cut = rest.find('\t');
        std::string_view entry = rest.substr(0, cut);
        rest = cut == std::string_view::npos ? std::string_view() : rest.substr(cut + 1);
        if (entry.empty()) continue;
        LPARAM type = 0;
        std::string_view next = rest.substr(0, rest.find('\t'));
        if (IsDecimal(next)) {
            type = kodbc::seldesc::SplitLine(std::string("\t\t\t").append(next)).dataType;
            rest.remove_prefix(next.size() < rest.size() ? next.size() + 1 : rest.size());
        }
        korvel::BoundedText(name, sizeof name).append(entry);
        if (Korvel_AddBoxEntry(box, name, type, -1, 0) < 0) return;
    }
}

void FillOperatorBox(HWND box, const OpDescOperator *table) {
    if (!IsBox(box)) return;
    Korvel_ResetBox(box);
    char label[kodbc::seldesc::kLabelChars + 1];
    for (const OpDescOperator *op = table; op->code != 0; ++op) {
        kodbc::LoadLibraryString(kodbc::LibraryInstance(), static_cast<int>(op->label), label, sizeof label);
        Korvel_AddBoxEntry(box, label, static_cast<LPARAM>(op->code), -1, 0);
    }
    // The blank last entry: choosing it takes the row out of the descriptor.
    Korvel_AddBoxEntry(box, " ", 0, -1, 0);
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

void ShowLine(HWND dialog, const OpDescDialogItem *row, const OpDescOperator *table, std::string_view text) {
    kodbc::seldesc::Line line = kodbc::seldesc::SplitLine(text);
    ShowText(GetDlgItem(dialog, row->FieldId), line.field);
    HWND operatorBox = GetDlgItem(dialog, row->OperatorId);
    if (IsBox(operatorBox)) {
        const OpDescOperator *op = kodbc::seldesc::FindByKeyword(table, line.keyword);
        int index = op ? Korvel_GetBoxIndexByItemData(operatorBox, static_cast<LPARAM>(op->code)) : -1;
        if (index < 0) index = Korvel_GetBoxCount(operatorBox) - 1;
        Korvel_SetBoxIndex(operatorBox, index);
    }
    ShowText(GetDlgItem(dialog, row->ValueId), line.value);
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

// One row into the descriptor; nothing when its operator is none or the
// blank entry, or when field and value are both empty.
void WriteRow(HWND dialog, const OpDescDialogItem *row, const OpDescOperator *table, korvel::BoundedText &out) {
    HWND fieldControl = GetDlgItem(dialog, row->FieldId);
    char field[kFieldTextSize];
    char value[kValueTextSize];
    ControlText(fieldControl, field, sizeof field);
    ControlText(GetDlgItem(dialog, row->ValueId), value, sizeof value);

    HWND operatorBox = GetDlgItem(dialog, row->OperatorId);
    if (!IsBox(operatorBox)) return;
    int selected = Korvel_GetBoxIndex(operatorBox);
    if (selected < 0) return;
    const OpDescOperator *op =
        kodbc::seldesc::FindByCode(table, static_cast<std::uint32_t>(Korvel_GetItemData(operatorBox, selected)));
    if (!op) return;

    long type = 0;
    if (IsBox(fieldControl)) {
        int index = FindStringExact(fieldControl, field);
        if (index >= 0) type = static_cast<long>(Korvel_GetItemData(fieldControl, index));
    }
    if (!field[0] && !value[0]) return;

    char typeText[24];
    std::snprintf(typeText, sizeof typeText, "%ld", type);
    out.append(field);
    out.append('\t');
    out.append(op->keyword);
    out.append('\t');
    out.append(value);
    out.append('\t');
    out.append(typeText);
    out.append('\n');
}

} // namespace

extern "C" {

KODBC_API void KODBC_CALL Kodbc_DialogItems_To_OpDesc(int kind, HWND dialog, const OpDescDialogItem *items,
                                                      char *descriptor, int descriptorSize) {
    if (!dialog || !items || !descriptor || descriptorSize < 1) return;
    try {
        korvel::BoundedText out(descriptor, descriptorSize);
        const OpDescOperator *table = kodbc::seldesc::OperatorTable(kind);
        if (!table) return;
        int limit = descriptorSize;
        bool full = false;
        for (const OpDescDialogItem *item = items; !IsEnd(item); ++item) {
            if (full) break;
            if (IsSeparator(item)) {
                out.append(kodbc::seldesc::kGroupSeparator);
                // Every group separator costs one more byte of room than it
                // takes; descriptors near the size limit depend on it.
                --limit;
                if (limit < 1 || out.length() + 1 >= static_cast<std::size_t>(limit)) full = true;
                else out = korvel::BoundedText::continuing(descriptor, limit);
                continue;
            }
            WriteRow(dialog, item, table, out);
        }
    } catch (...) {
    }
}

KODBC_API void KODBC_CALL Kodbc_OpDesc_To_DialogItems(int kind, const char *descriptor, const char *fieldList,
                                                      HWND dialog, const OpDescDialogItem *items, int reserved) {
    (void)reserved;
    const OpDescOperator *table = kodbc::seldesc::OperatorTable(kind);
    if (!table || !dialog || !items) return;
    try {
        for (const OpDescDialogItem *row = items; !IsEnd(row); ++row) {
            if (IsSeparator(row)) continue;
            RowState shown;
            shown.Save(dialog, row);
            if (fieldList) FillFieldBox(GetDlgItem(dialog, row->FieldId), fieldList);
            FillOperatorBox(GetDlgItem(dialog, row->OperatorId), table);
            if (fieldList) FillFieldBox(GetDlgItem(dialog, row->ValueId), fieldList);
            shown.Restore(dialog, row);
        }
        if (!descriptor) return;
        const OpDescDialogItem *group = items;
        kodbc::seldesc::ForEachGroup(descriptor, [&](std::string_view groupText) {
            if (IsEnd(group)) return false;
            const OpDescDialogItem *row = group;
            kodbc::seldesc::ForEachLine(groupText, [&](std::string_view line) {
                if (IsEnd(row) || IsSeparator(row)) return false;  // more lines than rows
                ShowLine(dialog, row, table, line);
                ++row;
                return true;
            });
            while (!IsEnd(group) && !IsSeparator(group)) ++group;
            if (IsSeparator(group)) ++group;
            return !IsEnd(group);
        });
    } catch (...) {
    }
}

KODBC_API void KODBC_CALL Kodbc_OpDesc_Clone_Boxes(HWND dialog, const OpDescDialogItem *items, int reserved) {
    (void)reserved;
    if (!dialog || !items) return;
    try {
        const OpDescDialogItem *first = items;
        while (!IsEnd(first) && IsSeparator(first)) ++first;
        if (IsEnd(first)) return;
        HWND source = GetDlgItem(dialog, first->FieldId);
        if (!IsBox(source)) return;
        for (const OpDescDialogItem *row = first; !IsEnd(row); ++row) {
            if (IsSeparator(row)) continue;
            if (row != first) Korvel_CopyBox(source, GetDlgItem(dialog, row->FieldId));
            HWND value = GetDlgItem(dialog, row->ValueId);
            if (IsBox(value)) Korvel_CopyBox(source, value);
        }
    } catch (...) {
    }
}

} // extern "C"
