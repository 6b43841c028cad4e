// The create-table wizard's pages: the structure, the source table (only
// for a copied structure), the name and the summary. What they decide and
// the creation itself are in create_table.cpp; the table is created only
// after "Fertigstellen".
#include "tabledesign/create_table.h"
#include "tabledesign/create_table_wizard_ids.h"

#include "wizards/record_wizard_pages.h"
#include "wizards/wizard_step.h"

#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_tabledesign.h>

#include <memory>
#include <new>

using namespace kodbc;
using namespace kodbc::tabledesign;
using kodbc::wizards::AnswerLeave;
using kodbc::wizards::kPageActivate;
using kodbc::wizards::kPageLeaveMessage;

namespace {

constexpr KorvelWizardPage kPages[] = {
    {IDD_CREATETABLE_STRUCTURE, {0, 0}}, {IDD_CREATETABLE_SOURCE, {0, 0}}, {IDD_CREATETABLE_NAME, {0, 0}},
    {IDD_CREATETABLE_SUMMARY, {0, 0}},   {0, {0, 0}},
};

int CheckedKind(HWND page, int fallback) {
    for (int kind : {kAutoIncrementTable, kCopiedStructure, kAddressTable})
        if (IsDlgButtonChecked(page, kind) == BST_CHECKED) return kind;
    return fallback;
}

int StructurePage(CreateTableContext &context, HWND page, UINT message, LPARAM lParam) {
    switch (message) {
    case kPageActivate: {
        const StructureChoice choice = ChooseStructure(CapabilitiesOf(context.hdbc), context.kind);
        CheckRadioButton(page, kAutoIncrementTable, kAddressTable, choice.checkedKind);
        EnableWindow(GetDlgItem(page, kAutoIncrementTable), choice.autoIncrementEnabled);
        EnableWindow(GetDlgItem(page, kCopiedStructure), choice.copyEnabled);
        return 1;
    }
    case kPageLeaveMessage:
        LeaveStructurePage(context, CheckedKind(page, context.kind));
        Wizzard_EnableSubDialog(context.wizard, IDD_CREATETABLE_SOURCE, context.kind == kCopiedStructure);
        return AnswerLeave(page, lParam, wizards::GoOn());
    }
    return 0;
}

// The selected source table (cut as the context keeps it); empty for none.
const char *SelectedSource(HWND page, char (&name)[kNewTableNameSize]) {
    name[0] = '\0';
    HWND list = GetDlgItem(page, IDC_CREATETABLE_SOURCE_LIST);
    const int index = Korvel_GetBoxIndex(list);
    if (index >= 0) Korvel_GetBoxEntry(list, index, name, sizeof name);
    return name;
}

int SourcePage(CreateTableContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    char name[kNewTableNameSize];
    switch (message) {
    case kPageActivate: {
        HWND list = GetDlgItem(page, IDC_CREATETABLE_SOURCE_LIST);
        Kodbc_FillTablesBox(context.hdbc, KODBC_OBJECT_TABLE, list);
        const LRESULT index = context.source[0] ? SendMessageA(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                                               reinterpret_cast<LPARAM>(context.source))
                                                : LB_ERR;
        Korvel_SetBoxIndex(list, index == LB_ERR ? 0 : static_cast<int>(index));
        return 1;
    }
    case kPageLeaveMessage:
        return AnswerLeave(page, lParam,
                           LeaveSourcePage(context, static_cast<unsigned>(wParam), SelectedSource(page, name)));
    case WM_COMMAND:
        if (LOWORD(wParam) != IDC_CREATETABLE_SOURCE_LIST || HIWORD(wParam) != LBN_SELCHANGE) return 0;
        korvel::BoundedText(context.source, sizeof context.source).append(SelectedSource(page, name));
        return 1;
    }
    return 0;
}

int NamePage(CreateTableContext &context, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kPageActivate: {
        // The text is set before the change notifications are listened to.
        const std::string name = context.name;
        SendDlgItemMessageA(page, IDC_CREATETABLE_NAME, EM_LIMITTEXT, kNewTableNameSize - 1, 0);
        SetDlgItemTextA(page, IDC_CREATETABLE_NAME, name.c_str());
        return 1;
    }
    case kPageLeaveMessage: return AnswerLeave(page, lParam, LeaveNamePage(context, static_cast<unsigned>(wParam)));
    case WM_COMMAND:
        if (LOWORD(wParam) != IDC_CREATETABLE_NAME || HIWORD(wParam) != EN_CHANGE) return 0;
        GetDlgItemTextA(page, IDC_CREATETABLE_NAME, context.name, sizeof context.name);
        return 1;
    }
    return 0;
}

int DispatchPage(CreateTableContext &context, int page, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (page) {
    case IDD_CREATETABLE_STRUCTURE: return StructurePage(context, window, message, lParam);
    case IDD_CREATETABLE_SOURCE: return SourcePage(context, window, message, wParam, lParam);
    case IDD_CREATETABLE_NAME: return NamePage(context, window, message, wParam, lParam);
    case IDD_CREATETABLE_SUMMARY: return message == kPageLeaveMessage ? AnswerLeave(window, lParam, wizards::GoOn()) : 0;
    }
    return 0;
}

} // namespace

extern "C" {

KODBC_API int KODBC_CALL CreateTableWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam) {
    return wizards::WizardStep<CreateTableContext>(wizard, window, message, lParam, [&](CreateTableContext &context) {
        return message == WM_INITDIALOG ? 1 : DispatchPage(context, page, window, message, wParam, lParam);
    });
}

KODBC_API int KODBC_CALL Kodbc_CreateTableWizzard(SQLHDBC hdbc, char *tableName, int size) {
    try {
        std::unique_ptr<CreateTableContext> context(new (std::nothrow) CreateTableContext);
        if (!context) {
            LibraryMessage(msg::OUT_OF_MEMORY);
            return KODBC_FAILURE;
        }
        LoadCreateTableContext(*context, hdbc);
        constexpr int kSwitchesPages = 1;
        if (wizards::PerformWizard(kPages, &CreateTableWizzCallback, context.get(), IDB_CREATETABLE_WIZARD,
                                   msg::TITLE_CREATE_TABLE, kSwitchesPages) != 1)
            return KODBC_FAILURE;
        return FinishCreateTable(*context, tableName, size);
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // extern "C"
