// Dialog 10063, a stored view's name and SQL text, on a working copy of the
// view object: what OK checks and does is view_object.cpp's; this window
// keeps the copy in step with its fields and opens the designer, the test
// and the SQL files.
#include "select/view_dialog_ids.h"
#include "select/view_object.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_selfact.h>
#include <kodbc/kodbc_views.h>

#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <utility>

using namespace kodbc;
using namespace kodbc::select;

namespace {

constexpr int kDescriptorSize = 5000;
constexpr int kStatementSize = 10000;
constexpr char kLastUsedSection[] = "LastUsed";
constexpr char kLastUsedValue[] = "SqlStatementFile";

// Writes a field without taking its change notice for the user's.
void ShowField(HWND dialog, ViewObject &view, int id, const std::string &text) {
    view.showing = true;
    SetDlgItemTextA(dialog, id, text.c_str());
    view.showing = false;
}

// Line feeds as a multi-line field shows them: each after a carriage return.
std::string WithReturns(const std::string &text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
        out += text[i];
    }
    return out;
}

void FocusOn(HWND dialog, ViewField field) {
    if (field == ViewField::None) return;
    SendMessageA(dialog, WM_NEXTDLGCTL,
                 reinterpret_cast<WPARAM>(GetDlgItem(dialog, field == ViewField::Name ? IDC_VIEW_NAME : IDC_VIEW_SQL)),
                 TRUE);
}

// Only the name characters stay, wherever the others were typed or pasted.
void NameChanged(HWND dialog, ViewObject &view) {
    if (view.showing) return;
    HWND field = GetDlgItem(dialog, IDC_VIEW_NAME);
    const std::string typed = ItemText(dialog, IDC_VIEW_NAME);
    const std::string kept = ViewNameOnly(typed);
    if (kept != typed) {
        DWORD caret = 0;
        SendMessageA(field, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
        const DWORD keptCaret = static_cast<DWORD>(ViewNameOnly(typed.substr(0, caret)).size());
        ShowField(dialog, view, IDC_VIEW_NAME, kept);
        SendMessageA(field, EM_SETSEL, keptCaret, keptCaret);
    }
    view.name = kept.substr(0, kViewNameLimit);
}

std::string Descriptor(SelFact *query, int part) {
    auto text = std::make_unique<char[]>(kDescriptorSize);
    Kodbc_SelFact_GetDescriptor(query, part, text.get(), kDescriptorSize, 0);
    return text.get();
}

// The query designer on the view's design; on OK the design and the SQL
// text made from it come back.
void OpenDesigner(HWND dialog, ViewObject &view) {
    SelFact *raw = nullptr;
    const int created = Kodbc_SelFact_Create(&raw, view.hdbc, view.schema.c_str(), SELFACT_VIEW);
    if (created != SELFACT_OK) {
        Kodbc_SelFact_DisplayError(created);
        return;
    }
    std::unique_ptr<SelFact, void(KODBC_CALL *)(SelFact *)> query(raw, &Kodbc_SelFact_Destroy);
    Kodbc_SelFact_SetDescriptor(query.get(), SELFACT_TABLES, view.tables.c_str(), 0);
    Kodbc_SelFact_SetDescriptor(query.get(), SELFACT_COLUMNS, view.columns.c_str(), 0);
    Kodbc_SelFact_SetDescriptor(query.get(), SELFACT_SELECTION, view.selection.c_str(), 0);
    if (Kodbc_SelFact_Edit(query.get(), dialog) != KODBC_DIALOG_OK) return;
    view.tables = Descriptor(query.get(), SELFACT_TABLES);
    view.columns = Descriptor(query.get(), SELFACT_COLUMNS);
    view.selection = Descriptor(query.get(), SELFACT_SELECTION);
    auto sql = std::make_unique<char[]>(kStatementSize);
    Kodbc_SelFact_CreateSql(query.get(), sql.get(), kStatementSize, 0);
    view.sql = sql.get();
    ShowField(dialog, view, IDC_VIEW_SQL, view.sql);
}

// Starts at the SQL file used last. False when the user cancelled.
bool AskForSqlFile(bool save, std::string &file) {
    return AskForRememberedFile(save ? KORVEL_FILE_SAVE : KORVEL_FILE_OPEN,
                                save ? msg::CAPTION_VIEW_SAVE : msg::CAPTION_VIEW_LOAD, msg::VIEW_FILE_FILTER,
                                kLastUsedSection, kLastUsedValue, file);
}

void LoadFromFile(HWND dialog, ViewObject &view) {
    std::string file;
    if (!AskForSqlFile(false, file)) return;
    std::string text;
    if (!ReadWholeFile(file.c_str(), text)) {
        LibraryErrorHandler(dialog, FileErrorClass(), file.c_str());
        return;
    }
    ShowField(dialog, view, IDC_VIEW_SQL, WithReturns(text));
    view.sql = ItemText(dialog, IDC_VIEW_SQL);
}

void SaveToFile(HWND dialog, const ViewObject &view) {
    std::string file;
    if (!AskForSqlFile(true, file)) return;
    std::FILE *out = std::fopen(file.c_str(), "wb");
    const bool written = out && std::fwrite(view.sql.data(), 1, view.sql.size(), out) == view.sql.size();
    if (out && std::fclose(out) == 0 && written) return;
    LibraryErrorHandler(dialog, FileErrorClass(), file.c_str());
}

void Accept(HWND dialog, ViewObject &view) {
    ViewField focus = ViewField::None;
    if (const int refusal = CheckViewEntries(view, focus)) {
        LibraryMessage(refusal);
        FocusOn(dialog, focus);
        return;
    }
    if (SaveEditedView(view, focus) != KODBC_SUCCESS) {
        FocusOn(dialog, focus);
        return;
    }
    EndDialog(dialog, KODBC_DIALOG_OK);
}

bool Command(HWND dialog, ViewObject &view, int id, int notification) {
    if (id == IDC_VIEW_NAME && notification == EN_CHANGE) {
        NameChanged(dialog, view);
        return true;
    }
    if (id == IDC_VIEW_SQL && notification == EN_CHANGE) {
        if (!view.showing) view.sql = ItemText(dialog, IDC_VIEW_SQL);
        return true;
    }
    if (notification != BN_CLICKED) return false;
    switch (id) {
    case IDC_VIEW_DESIGNER: OpenDesigner(dialog, view); return true;
    case IDC_VIEW_TEST:
        if (TestStoredView(view) == KODBC_SUCCESS) LibraryMessage(msg::VIEW_TESTED_OK);
        return true;
    case IDC_VIEW_LOAD: LoadFromFile(dialog, view); return true;
    case IDC_VIEW_SAVE: SaveToFile(dialog, view); return true;
    case IDC_VIEW_OK: Accept(dialog, view); return true;
    case IDC_VIEW_CANCEL: EndDialog(dialog, KODBC_DIALOG_CANCEL); return true;
    default: return false;
    }
}

void Init(HWND dialog, ViewObject &view) {
    view.openingName = view.name;
    SendDlgItemMessageA(dialog, IDC_VIEW_NAME, EM_LIMITTEXT, kViewNameLimit, 0);
    ShowField(dialog, view, IDC_VIEW_NAME, view.name);
    ShowField(dialog, view, IDC_VIEW_SQL, WithReturns(view.sql));
    view.sql = ItemText(dialog, IDC_VIEW_SQL);
}

} // namespace

extern "C" {

KODBC_API INT_PTR KODBC_CALL ViewEdit_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        auto *view = ExportedDialogObject<ViewObject>(dialog, message, lParam);
        if (message == WM_INITDIALOG) {
            if (view) {
                Init(dialog, *view);
            } else {
                for (int id : {IDC_VIEW_NAME, IDC_VIEW_SQL, IDC_VIEW_DESIGNER, IDC_VIEW_TEST, IDC_VIEW_LOAD,
                               IDC_VIEW_SAVE, IDC_VIEW_OK})
                    EnableWindow(GetDlgItem(dialog, id), FALSE);
            }
            return TRUE;
        }
        if (message != WM_COMMAND) return FALSE;
        if (!view) {
            if (LOWORD(wParam) != IDCANCEL) return FALSE;
            EndDialog(dialog, KODBC_DIALOG_CANCEL);
            return TRUE;
        }
        return Command(dialog, *view, LOWORD(wParam), HIWORD(wParam)) ? TRUE : FALSE;
    } catch (...) {
        return EndDialogAfterFailure(dialog);
    }
}

KODBC_API int KODBC_CALL Kodbc_View_Edit(SQLHDBC hdbc, const char *schema, char *name, int nameSize, int mode,
                                         HWND owner) {
    if (!hdbc || !name || nameSize < 1) return KODBC_DIALOG_CANCEL;
    try {
        ViewObject view = NewViewObject(hdbc, schema ? schema : "", name, mode);
        if ((mode & kViewModeExisting) && !HasStoredDefinition(view)) return KODBC_DIALOG_CANCEL;
        // The dialog works on a copy; the caller's view changes only on OK.
        ViewObject copy = view;
        if (LibraryDialogBox(&ViewEdit_Dialog_Callback, IDD_VIEW_EDIT, owner, reinterpret_cast<LPARAM>(&copy)) !=
            KODBC_DIALOG_OK)
            return KODBC_DIALOG_CANCEL;
        view = std::move(copy);
        korvel::BoundedText(name, nameSize).append(view.name);
        return KODBC_DIALOG_OK;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_DIALOG_CANCEL;
    }
}

} // extern "C"
