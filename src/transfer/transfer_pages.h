// The window side the export and import wizards share: the file page's
// text-layout controls, its file chooser, and the edits of the selected
// rows of a field list. Windows only; the wizards' rules are in their
// cores.
#pragma once

#ifdef _WIN32

#include "transfer/export_file.h"
#include "wizards/list_view_pages.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <windows.h>

#include <string>
#include <vector>

namespace kodbc::transfer {

// The controls that lay out a text file: the delimiter and decimal-mark
// radio groups, each with its "other" text, and the two brackets.
struct TextLayoutControls {
    int tab, blank, otherDelimiter, delimiterText;
    int comma, point, otherDecimal, decimalText;
    int left, right;
};

// The "other" texts take 9 characters, a bracket one.
void LimitTextLayout(HWND page, const TextLayoutControls &ids);

// Format: a file format with delimiter, otherDelimiter, decimal,
// otherDecimal, leftBracket and rightBracket (the export's and the
// import's).
template <class Format> void ShowTextLayout(HWND page, const TextLayoutControls &ids, const Format &format) {
    CheckRadioButton(page, ids.tab, ids.otherDelimiter,
                     format.delimiter == DelimiterChoice::Tab     ? ids.tab
                     : format.delimiter == DelimiterChoice::Blank ? ids.blank
                                                                  : ids.otherDelimiter);
    CheckRadioButton(page, ids.comma, ids.otherDecimal,
                     format.decimal == DecimalChoice::Comma   ? ids.comma
                     : format.decimal == DecimalChoice::Point ? ids.point
                                                              : ids.otherDecimal);
    SetDlgItemTextA(page, ids.delimiterText, format.otherDelimiter.c_str());
    SetDlgItemTextA(page, ids.decimalText, format.otherDecimal.c_str());
    const char left[2] = {format.leftBracket, 0}, right[2] = {format.rightBracket, 0};
    SetDlgItemTextA(page, ids.left, left);
    SetDlgItemTextA(page, ids.right, right);
}

template <class Format> void ReadTextLayout(HWND page, const TextLayoutControls &ids, Format &format) {
    auto checked = [&](int id) { return IsDlgButtonChecked(page, id) == BST_CHECKED; };
    format.delimiter = checked(ids.blank)            ? DelimiterChoice::Blank
                       : checked(ids.otherDelimiter) ? DelimiterChoice::Other
                                                     : DelimiterChoice::Tab;
    format.decimal = checked(ids.point)          ? DecimalChoice::Point
                     : checked(ids.otherDecimal) ? DecimalChoice::Other
                                                 : DecimalChoice::Comma;
    format.otherDelimiter = ItemText(page, ids.delimiterText);
    format.otherDecimal = ItemText(page, ids.decimalText);
    format.leftBracket = ItemText(page, ids.left).c_str()[0];
    format.rightBracket = ItemText(page, ids.right).c_str()[0];
}

// The open or save dialog over the page's wizard, starting at the file
// named in control fileId (fileSize characters with the terminator) and
// writing the chosen one back into it. Its filter is the library's string
// filterId ("|" between the parts), by default that of the text files.
void ChooseTransferFile(HWND page, int fileId, int fileSize, int titleId, bool save,
                        int filterId = msg::EXPORT_FILE_FILTER);

// The field of the list's first selected row, edited in the library's
// dialog dialogId (its procedure gets the field); after OK the row is shown
// again by show(list, row, field).
template <class Field, class Show>
void EditFirstListField(HWND list, std::vector<Field> &fields, DLGPROC procedure, WORD dialogId, Show show) {
    const int row = wizards::FirstSelectedRow(list);
    if (row < 0 || row >= static_cast<int>(fields.size())) return;
    Field &field = fields[static_cast<std::size_t>(row)];
    if (LibraryDialogBox(procedure, dialogId, GetAncestor(list, GA_ROOT), reinterpret_cast<LPARAM>(&field)) == 1)
        show(list, row, field);
}

// Sets the flag `taken` of every selected row's field and shows the row
// again.
template <class Field, class Show>
void TakeSelectedFields(HWND list, std::vector<Field> &fields, bool Field::*taken, bool value, Show show) {
    for (int row : wizards::SelectedRows(list)) {
        if (row >= static_cast<int>(fields.size())) continue;
        Field &field = fields[static_cast<std::size_t>(row)];
        field.*taken = value;
        show(list, row, field);
    }
}

} // namespace kodbc::transfer

#endif
