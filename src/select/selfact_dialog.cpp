// Dialog 10064, the query designer, on a working copy of a query: four
// pages in a tab control edit its parts, the statement below follows every
// change. What an edit does to the query and what the pages offer are
// selfact_designer.cpp's; the pages only show the query and hand the
// user's entries to it.
#include "select/selfact.h"
#include "select/selfact_designer.h"
#include "select/selfact_dialog_ids.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"
#include "internal/list_header.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_seldesc.h>
#include <kodbc/kodbc_tools.h>

#include <commctrl.h>

#include <map>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace kodbc::select {
namespace {

constexpr int kFieldListSize = 30000;
constexpr int kSelectionSize = 5000;
constexpr int kSchemaSize = 100;
constexpr int kNameSize = 200;
constexpr int kLabelSize = 100;

// The selection editor's rows: five, then one, one and one, joined by OR.
constexpr OpDescDialogItem kSelectionRows[] = {
    {IDC_SFW_G1R1_FIELD, IDC_SFW_G1R1_OPERATION, IDC_SFW_G1R1_VALUE},
    {IDC_SFW_G1R2_FIELD, IDC_SFW_G1R2_OPERATION, IDC_SFW_G1R2_VALUE},
    {IDC_SFW_G1R3_FIELD, IDC_SFW_G1R3_OPERATION, IDC_SFW_G1R3_VALUE},
    {IDC_SFW_G1R4_FIELD, IDC_SFW_G1R4_OPERATION, IDC_SFW_G1R4_VALUE},
    {IDC_SFW_G1R5_FIELD, IDC_SFW_G1R5_OPERATION, IDC_SFW_G1R5_VALUE},
    {1, 1, 1},
    {IDC_SFW_G2_FIELD, IDC_SFW_G2_OPERATION, IDC_SFW_G2_VALUE},
    {1, 1, 1},
    {IDC_SFW_G3_FIELD, IDC_SFW_G3_OPERATION, IDC_SFW_G3_VALUE},
    {1, 1, 1},
    {IDC_SFW_G4_FIELD, IDC_SFW_G4_OPERATION, IDC_SFW_G4_VALUE},
    {1, 1, 1},
    {0, 0, 0},
};

// The columns page and the sort page are laid out alike: their controls
// lie at the same distance from the page's first number.
enum EntryControl { kEntry = 1, kSecond = 3, kAdd = 4, kApply = 5, kList = 7, kUp = 8, kDown = 9, kRemove = 10 };
constexpr int kColumnsBase = IDC_SFC_COLUMN_LABEL;
constexpr int kSortBase = IDC_SFS_COLUMN_LABEL;

struct PageInfo {
    DesignerPage page;
    WORD templateId;
    int windowId;
};
constexpr PageInfo kPages[] = {
    {DesignerPage::Tables, IDD_SELFACT_PAGE_TABLES, IDC_SELFACT_PAGE_TABLES},
    {DesignerPage::Columns, IDD_SELFACT_PAGE_COLUMNS, IDC_SELFACT_PAGE_COLUMNS},
    {DesignerPage::Selection, IDD_SELFACT_PAGE_SELECTION, IDC_SELFACT_PAGE_SELECTION},
    {DesignerPage::Sort, IDD_SELFACT_PAGE_SORT, IDC_SELFACT_PAGE_SORT},
};

std::string Text(HWND control) {
    const int length = GetWindowTextLengthA(control);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const int got = GetWindowTextA(control, text.data(), length + 1);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string LibraryText(int id) {
    char text[kLabelSize] = {};
    LoadLibraryString(LibraryInstance(), id, text, sizeof text);
    return text;
}

void AddHeader(HWND list, int headerId) {
    int index = 0;
    for (const ListHeaderColumn &column : ParseListHeader(LibraryText(headerId)))
        Korvel_ListView_AddColumn(list, index++, column.caption.c_str(), column.width);
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
}

int SelectedRow(HWND list) {
    return static_cast<int>(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void ShowRows(HWND list, const std::vector<std::vector<std::string>> &rows, int selected) {
    SendMessageA(list, LVM_DELETEALLITEMS, 0, 0);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const int at = Korvel_ListView_AddItem(list, static_cast<int>(row), rows[row][0].c_str());
        if (at < 0) break;
        for (std::size_t column = 1; column < rows[row].size(); ++column)
            Korvel_ListView_SetItemText(list, at, static_cast<int>(column), rows[row][column].c_str());
    }
    ListViewSelectOnly(list, selected);
}

// Refills an editable combo box, keeping what it shows.
void RefillKeepingText(HWND box, const std::vector<std::string> &entries) {
    const std::string shown = Text(box);
    SendMessageA(box, CB_RESETCONTENT, 0, 0);
    for (const std::string &entry : entries) SendMessageA(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    SetWindowTextA(box, shown.c_str());
}

// Selects the entry whose item data is code.
void SelectByData(HWND box, LPARAM code) { Korvel_SetBoxIndex(box, Korvel_GetBoxIndexByItemData(box, code)); }

LPARAM SelectedData(HWND box, LPARAM otherwise) {
    const int index = Korvel_GetBoxIndex(box);
    return index < 0 ? otherwise : Korvel_GetItemData(box, index);
}

void SelectText(HWND box, const std::string &text) {
    const LRESULT index =
        SendMessageA(box, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
    SendMessageA(box, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    if (index < 0 && (GetWindowLongA(box, GWL_STYLE) & 3) != CBS_DROPDOWNLIST) SetWindowTextA(box, text.c_str());
}

class Designer {
public:
    explicit Designer(SelFact &query) : query_(query) {}
    INT_PTR Run(HWND owner) {
        return LibraryDialogBox(&Designer::MainProcedure, IDD_SELFACT_DESIGNER, owner, reinterpret_cast<LPARAM>(this));
    }

private:
    static INT_PTR CALLBACK MainProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    static INT_PTR CALLBACK PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

    HWND Page(DesignerPage page) const { return pages_[static_cast<int>(page)]; }
    HWND PageItem(DesignerPage page, int id) const { return GetDlgItem(Page(page), id); }

    void Init(HWND dialog);
    void CreatePages();
    bool Command(int id);
    void PageCommand(HWND page, int id, int notification);
    void PageNotify(HWND page, const NMHDR &header);
    void ShowPage(DesignerPage page);
    void ShowCurrentPage();

    void UpdatePreview();
    void ShowSchema();
    void ChooseSchema();
    void Accept();
    void Test();

    FieldCatalogue Catalogue();
    const std::string &CatalogueFields(const std::string &table);
    void RefreshChoices();

    // Tables page.
    SelFact::Table EditedTable();
    void ShowTables(int selected);
    void LoadTable(int row);
    void RefreshOperands();
    void StoreEditedTable(bool add);
    // Columns and sort pages.
    void ShowEntries(DesignerPage page, int selected);
    void LoadEntry(DesignerPage page, int row);
    void StoreEntry(DesignerPage page, bool add);
    HWND ListOf(DesignerPage page) const;
    void MoveOrRemove(DesignerPage page, int control);
    void Move(DesignerPage page, int from, int to);
    void Reshow(DesignerPage page, int selected);
    void Drop(HWND page, POINT at);
    // Selection page.
    void ShowSelection();
    void ReadSelection();

    SelFact &query_;
    HWND dialog_ = nullptr;
    HWND tabs_ = nullptr;
    HWND pages_[4] = {};
    std::vector<DesignerPage> tabPages_;
    std::map<std::string, std::string> catalogue_;
    bool filling_ = false;
    HWND dragList_ = nullptr;  // while a row is dragged
    int dragRow_ = -1;
};

INT_PTR CALLBACK Designer::MainProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto *self = reinterpret_cast<Designer *>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
    try {
        switch (message) {
        case WM_INITDIALOG:
            self = reinterpret_cast<Designer *>(lParam);
            SetWindowLongPtrA(dialog, GWLP_USERDATA, lParam);
            TranslateDialog(dialog);
            self->Init(dialog);
            return TRUE;
        case WM_COMMAND:
            return self && self->Command(LOWORD(wParam)) ? TRUE : FALSE;
        case WM_NOTIFY: {
            const auto *header = reinterpret_cast<const NMHDR *>(lParam);
            if (self && header->idFrom == IDC_SELFACT_TABS && header->code == TCN_SELCHANGE) self->ShowCurrentPage();
            return FALSE;
        }
        case WM_DESTROY:
            if (self) self->query_.dialog = self->query_.tabs = nullptr;
            return FALSE;
        default:
            return FALSE;
        }
    } catch (...) {
        return EndDialogAfterFailure(dialog);
    }
}

INT_PTR CALLBACK Designer::PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    auto *self = reinterpret_cast<Designer *>(GetWindowLongPtrA(page, GWLP_USERDATA));
    try {
        switch (message) {
        case WM_INITDIALOG:
            SetWindowLongPtrA(page, GWLP_USERDATA, lParam);
            TranslateDialog(page);
            return FALSE;
        case WM_COMMAND:
            if (self && !self->filling_) self->PageCommand(page, LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        case WM_NOTIFY:
            if (self && !self->filling_) self->PageNotify(page, *reinterpret_cast<const NMHDR *>(lParam));
            return FALSE;
        case WM_LBUTTONUP:
            if (!self || !self->dragList_) return FALSE;
            self->Drop(page, POINT{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
            return TRUE;
        case WM_CAPTURECHANGED:
            if (self) self->dragList_ = nullptr;
            return FALSE;
        default:
            return FALSE;
        }
    } catch (...) {
        return EndDialogAfterFailure(GetParent(page));
    }
}

void Designer::Init(HWND dialog) {
    dialog_ = dialog;
    tabs_ = GetDlgItem(dialog, IDC_SELFACT_TABS);
    query_.dialog = dialog;
    query_.tabs = tabs_;
    char name[kNameSize] = {};
    Kodbc_GetDataSourceName(query_.hdbc, name, sizeof name);
    SetItemText(dialog, IDC_SELFACT_DSN, name);
    CreatePages();
    filling_ = true;

    HWND join = PageItem(DesignerPage::Tables, IDC_SFT_JOIN);
    for (int code = 1; code <= 4; ++code)
        Korvel_AddBoxEntry(join, LibraryText(msg::JOIN_NONE + code - 1).c_str(), code, -1, 0);
    HWND op = PageItem(DesignerPage::Tables, IDC_SFT_OPERATOR);
    for (int code = 1; code <= 6; ++code)
        Korvel_AddBoxEntry(op, LibraryText(msg::JOIN_OP_EQUAL + code - 1).c_str(), code, -1, 0);
    SelectByData(join, DefaultJoinType(query_));
    SelectByData(op, 1);
    AddHeader(PageItem(DesignerPage::Tables, IDC_SFT_LIST), msg::HEADER_QUERY_TABLES);
    AddHeader(PageItem(DesignerPage::Columns, kColumnsBase + kList), msg::HEADER_QUERY_COLUMNS);
    if (Page(DesignerPage::Sort)) {
        AddHeader(PageItem(DesignerPage::Sort, kSortBase + kList), msg::HEADER_SORT_KEYS);
        HWND direction = PageItem(DesignerPage::Sort, IDC_SFS_DIRECTION);
        for (const char *text : {"ASC", "DESC"}) Korvel_AddBoxEntry(direction, text, 0, -1, 0);
        Korvel_SetBoxIndex(direction, 0);
    }
    ShowSchema();
    ShowTables(-1);
    ShowEntries(DesignerPage::Columns, -1);
    ShowEntries(DesignerPage::Sort, -1);
    RefreshChoices();
    filling_ = false;
    ShowPage(DesignerPage::Tables);
    UpdatePreview();
}

void Designer::CreatePages() {
    for (const PageInfo &info : kPages) {
        if (info.page == DesignerPage::Sort && (query_.flags & SELFACT_VIEW)) continue;
        HWND page = CreateDialogParamA(LibraryInstance(), MAKEINTRESOURCEA(info.templateId), dialog_,
                                       &Designer::PageProcedure, reinterpret_cast<LPARAM>(this));
        if (!page) throw std::bad_alloc();
        SetWindowLongPtrA(page, GWLP_ID, info.windowId);
        pages_[static_cast<int>(info.page)] = page;
        // The page's caption is its tab's label.
        char label[kLabelSize] = {};
        GetWindowTextA(page, label, sizeof label);
        TCITEMA item = {};
        item.mask = TCIF_TEXT;
        item.pszText = label;
        SendMessageA(tabs_, TCM_INSERTITEMA, tabPages_.size(), reinterpret_cast<LPARAM>(&item));
        tabPages_.push_back(info.page);
    }
    TranslateTabItems(tabs_);
    // The pages fill what the tabs leave of the control, known once they are in.
    RECT area = {};
    GetClientRect(tabs_, &area);
    SendMessageA(tabs_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    MapWindowPoints(tabs_, dialog_, reinterpret_cast<POINT *>(&area), 2);
    for (DesignerPage page : tabPages_)
        SetWindowPos(Page(page), HWND_TOP, area.left, area.top, area.right - area.left, area.bottom - area.top,
                     SWP_NOACTIVATE);
}

void Designer::ShowPage(DesignerPage page) {
    for (std::size_t i = 0; i < tabPages_.size(); ++i)
        if (tabPages_[i] == page) SendMessageA(tabs_, TCM_SETCURSEL, i, 0);
    ShowCurrentPage();
}

void Designer::ShowCurrentPage() {
    const LRESULT current = SendMessageA(tabs_, TCM_GETCURSEL, 0, 0);
    for (std::size_t i = 0; i < tabPages_.size(); ++i)
        ShowWindow(Page(tabPages_[i]), static_cast<LRESULT>(i) == current ? SW_SHOW : SW_HIDE);
}

bool Designer::Command(int id) {
    switch (id) {
    case IDC_SELFACT_OK: Accept(); return true;
    case IDCANCEL: EndDialog(dialog_, KODBC_DIALOG_CANCEL); return true;
    case IDC_SELFACT_TEST: Test(); return true;
    case IDC_SELFACT_CHOOSE_SCHEMA: ChooseSchema(); return true;
    default: return false;
    }
}

void Designer::UpdatePreview() { SetItemText(dialog_, IDC_SELFACT_SQL, SelFactSql(query_).c_str()); }

void Designer::ShowSchema() {
    SetItemText(dialog_, IDC_SELFACT_SCHEMA, query_.schema.c_str());
    HWND tables = PageItem(DesignerPage::Tables, IDC_SFT_TABLE);
    Korvel_ResetBox(tables);
    Kodbc_FillTablesBoxExtended(query_.hdbc, KODBC_OBJECT_TABLE | KODBC_OBJECT_VIEW, query_.schema.c_str(), 0, tables);
}

void Designer::ChooseSchema() {
    char schema[kSchemaSize] = {};
    lstrcpynA(schema, query_.schema.c_str(), sizeof schema);
    if (Kodbc_SelectDbaseSchema(dialog_, query_.hdbc, schema, 0, 0) != KODBC_DIALOG_OK) return;
    query_.schema = schema;
    catalogue_.clear();
    ShowSchema();
    RefreshChoices();
}

void Designer::Accept() {
    if (const int refused = CheckSelFact(query_)) {
        ShowPage(PageOfRule(refused));
        LibraryMessage(refused);
        return;
    }
    if (TestSelFact(query_) == KODBC_SUCCESS) EndDialog(dialog_, KODBC_DIALOG_OK);
}

void Designer::Test() {
    if (TestSelFact(query_) == KODBC_SUCCESS) LibraryMessage(msg::SELECT_TESTED_OK);
}

const std::string &Designer::CatalogueFields(const std::string &table) {
    const std::string qualified = CatalogueTableName(query_, table);
    auto found = catalogue_.find(qualified);
    if (found != catalogue_.end()) return found->second;
    auto fields = std::make_unique<char[]>(kFieldListSize);
    if (Kodbc_GetFields(query_.hdbc, qualified.c_str(), KODBC_FIELDS_WITH_TYPE, "\t", fields.get(), kFieldListSize) !=
        KODBC_SUCCESS)
        fields[0] = '\0';
    return catalogue_.emplace(qualified, fields.get()).first->second;
}

FieldCatalogue Designer::Catalogue() {
    return [this](const std::string &table) { return CatalogueFields(table); };
}

// What the pages offer follows the chosen tables.
void Designer::RefreshChoices() {
    const bool wasFilling = filling_;
    filling_ = true;
    const std::vector<DesignerField> fields = DesignerFields(query_, nullptr, Catalogue());
    RefillKeepingText(PageItem(DesignerPage::Columns, kColumnsBase + kEntry), ColumnChoices(query_, fields));
    if (Page(DesignerPage::Sort))
        RefillKeepingText(PageItem(DesignerPage::Sort, kSortBase + kEntry), SortChoices(query_, fields));
    RefreshOperands();
    ShowSelection();
    filling_ = wasFilling;
}

SelFact::Table Designer::EditedTable() {
    HWND page = Page(DesignerPage::Tables);
    SelFact::Table table;
    table.name = OptionalText(Text(GetDlgItem(page, IDC_SFT_TABLE)));
    table.alias = OptionalText(Text(GetDlgItem(page, IDC_SFT_ALIAS)));
    table.joinType = static_cast<int>(SelectedData(GetDlgItem(page, IDC_SFT_JOIN), 1));
    table.joinOperator = static_cast<int>(SelectedData(GetDlgItem(page, IDC_SFT_OPERATOR), 1));
    table.first = OptionalText(Text(GetDlgItem(page, IDC_SFT_FIRST)));
    table.second = OptionalText(Text(GetDlgItem(page, IDC_SFT_SECOND)));
    return table;
}

void Designer::RefreshOperands() {
    const std::vector<std::string> names = OperandChoices(
        query_, EditedTable(), SelectedRow(PageItem(DesignerPage::Tables, IDC_SFT_LIST)), Catalogue());
    RefillKeepingText(PageItem(DesignerPage::Tables, IDC_SFT_FIRST), names);
    RefillKeepingText(PageItem(DesignerPage::Tables, IDC_SFT_SECOND), names);
}

void Designer::ShowTables(int selected) {
    std::vector<std::vector<std::string>> rows;
    for (const SelFact::Table &table : query_.tables)
        rows.push_back({table.name.value_or(""), table.alias.value_or(""),
                        LibraryText(msg::JOIN_NONE + table.joinType - 1),
                        JoinConditionText(table, LibraryText(msg::JOIN_OP_EQUAL + table.joinOperator - 1))});
    ShowRows(PageItem(DesignerPage::Tables, IDC_SFT_LIST), rows, selected);
}

void Designer::LoadTable(int row) {
    if (row < 0 || static_cast<std::size_t>(row) >= query_.tables.size()) return;
    const SelFact::Table &table = query_.tables[static_cast<std::size_t>(row)];
    HWND page = Page(DesignerPage::Tables);
    filling_ = true;
    SelectText(GetDlgItem(page, IDC_SFT_TABLE), table.name.value_or(""));
    SetDlgItemTextA(page, IDC_SFT_ALIAS, table.alias.value_or("").c_str());
    SelectByData(GetDlgItem(page, IDC_SFT_JOIN), table.joinType);
    SelectByData(GetDlgItem(page, IDC_SFT_OPERATOR), table.joinOperator);
    RefreshOperands();
    SetDlgItemTextA(page, IDC_SFT_FIRST, table.first.value_or("").c_str());
    SetDlgItemTextA(page, IDC_SFT_SECOND, table.second.value_or("").c_str());
    filling_ = false;
}

void Designer::StoreEditedTable(bool add) {
    const StoredEntry stored =
        StoreTable(query_, add, SelectedRow(PageItem(DesignerPage::Tables, IDC_SFT_LIST)), EditedTable());
    if (stored.refused) LibraryMessage(stored.refused);
    if (stored.row < 0) return;
    filling_ = true;
    if (add) {
        // Ready for the next table, which is joined to these.
        ShowTables(-1);
        HWND page = Page(DesignerPage::Tables);
        for (int id : {IDC_SFT_ALIAS, IDC_SFT_FIRST, IDC_SFT_SECOND}) SetDlgItemTextA(page, id, "");
        SelectByData(GetDlgItem(page, IDC_SFT_JOIN), DefaultJoinType(query_));
        SelectByData(GetDlgItem(page, IDC_SFT_OPERATOR), 1);
    } else {
        ShowTables(stored.row);
    }
    filling_ = false;
    ShowEntries(DesignerPage::Columns, -1);
    ShowEntries(DesignerPage::Sort, -1);
    RefreshChoices();
    UpdatePreview();
}

// Entries of the columns or the sort page.
void Designer::ShowEntries(DesignerPage page, int selected) {
    if (!Page(page)) return;
    std::vector<std::vector<std::string>> rows;
    if (page == DesignerPage::Columns)
        for (const SelFact::Column &column : query_.columns)
            rows.push_back({column.expression.value_or(""), column.alias.value_or("")});
    else
        for (const SelFact::Sort &sort : query_.sorts)
            rows.push_back({sort.column.value_or(""), sort.direction.value_or("")});
    const bool wasFilling = filling_;
    filling_ = true;
    ShowRows(PageItem(page, (page == DesignerPage::Columns ? kColumnsBase : kSortBase) + kList), rows, selected);
    filling_ = wasFilling;
}

void Designer::LoadEntry(DesignerPage page, int row) {
    const int base = page == DesignerPage::Columns ? kColumnsBase : kSortBase;
    std::string first, second;
    if (page == DesignerPage::Columns && row >= 0 && static_cast<std::size_t>(row) < query_.columns.size()) {
        first = query_.columns[static_cast<std::size_t>(row)].expression.value_or("");
        second = query_.columns[static_cast<std::size_t>(row)].alias.value_or("");
    } else if (page == DesignerPage::Sort && row >= 0 && static_cast<std::size_t>(row) < query_.sorts.size()) {
        first = query_.sorts[static_cast<std::size_t>(row)].column.value_or("");
        second = query_.sorts[static_cast<std::size_t>(row)].direction.value_or("ASC");
    } else {
        return;
    }
    filling_ = true;
    SetWindowTextA(PageItem(page, base + kEntry), first.c_str());
    if (page == DesignerPage::Columns)
        SetWindowTextA(PageItem(page, base + kSecond), second.c_str());
    else
        SelectText(PageItem(page, base + kSecond), second);
    filling_ = false;
}

void Designer::StoreEntry(DesignerPage page, bool add) {
    const int base = page == DesignerPage::Columns ? kColumnsBase : kSortBase;
    const std::string first = Text(PageItem(page, base + kEntry));
    const std::string second = Text(PageItem(page, base + kSecond));
    const int row = SelectedRow(PageItem(page, base + kList));
    const StoredEntry stored = page == DesignerPage::Columns ? StoreColumn(query_, add, row, first, second)
                                                            : StoreSort(query_, add, row, first, second);
    if (stored.row < 0) return;
    ShowEntries(page, stored.row);
    if (page == DesignerPage::Columns) RefreshChoices();  // the sort page offers column aliases
    UpdatePreview();
}

HWND Designer::ListOf(DesignerPage page) const {
    if (page == DesignerPage::Tables) return PageItem(page, IDC_SFT_LIST);
    return PageItem(page, (page == DesignerPage::Columns ? kColumnsBase : kSortBase) + kList);
}

void Designer::MoveOrRemove(DesignerPage page, int control) {
    const int row = SelectedRow(ListOf(page));
    if (row < 0) return;
    if (control != kRemove) {
        Move(page, row, row + (control == kUp ? -1 : 1));
        return;
    }
    const auto index = static_cast<std::size_t>(row);
    if (page == DesignerPage::Tables) RemoveTable(query_, index);
    if (page == DesignerPage::Columns) RemoveEntry(query_.columns, index);
    if (page == DesignerPage::Sort) RemoveEntry(query_.sorts, index);
    Reshow(page, -1);
}

void Designer::Move(DesignerPage page, int from, int to) {
    if (from < 0 || to < 0) return;
    const auto source = static_cast<std::size_t>(from), target = static_cast<std::size_t>(to);
    int moved = -1;
    if (page == DesignerPage::Tables) moved = MoveEntryTo(query_.tables, source, target);
    if (page == DesignerPage::Columns) moved = MoveEntryTo(query_.columns, source, target);
    if (page == DesignerPage::Sort) moved = MoveEntryTo(query_.sorts, source, target);
    if (moved >= 0) Reshow(page, moved);
}

// After a list of `page` changed: the lists again, `selected` selected in
// the changed one, and what the pages offer.
void Designer::Reshow(DesignerPage page, int selected) {
    filling_ = true;
    if (page == DesignerPage::Tables) ShowTables(selected);
    filling_ = false;
    ShowEntries(DesignerPage::Columns, page == DesignerPage::Columns ? selected : -1);
    ShowEntries(DesignerPage::Sort, page == DesignerPage::Sort ? selected : -1);
    if (page != DesignerPage::Sort) RefreshChoices();
    UpdatePreview();
}

// A row dragged in a list is dropped on the row under the button; below
// the last row it goes to the end, outside the list nowhere.
void Designer::Drop(HWND page, POINT at) {
    HWND list = dragList_;
    const int from = dragRow_;
    dragList_ = nullptr;
    ReleaseCapture();
    const int to = ListViewDropRow(page, list, at);
    if (to < 0) return;
    for (DesignerPage kind : {DesignerPage::Tables, DesignerPage::Columns, DesignerPage::Sort})
        if (Page(kind) == page) Move(kind, from, to);
}

void Designer::ShowSelection() {
    const std::string list = SelectionFieldList(DesignerFields(query_, nullptr, Catalogue()));
    const bool wasFilling = filling_;
    filling_ = true;
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, query_.selection.c_str(), list.c_str(),
                                Page(DesignerPage::Selection), kSelectionRows, 0);
    filling_ = wasFilling;
}

void Designer::ReadSelection() {
    auto selection = std::make_unique<char[]>(kSelectionSize);
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, Page(DesignerPage::Selection), kSelectionRows, selection.get(),
                                kSelectionSize);
    query_.selection = selection.get();
    UpdatePreview();
}

void Designer::PageCommand(HWND page, int id, int notification) {
    if (page == Page(DesignerPage::Selection)) {
        if (notification == CBN_SELCHANGE || notification == CBN_EDITCHANGE) ReadSelection();
        return;
    }
    if (page == Page(DesignerPage::Tables)) {
        switch (id) {
        case IDC_SFT_ADD: StoreEditedTable(true); return;
        case IDC_SFT_APPLY: StoreEditedTable(false); return;
        case IDC_SFT_UP: MoveOrRemove(DesignerPage::Tables, kUp); return;
        case IDC_SFT_DOWN: MoveOrRemove(DesignerPage::Tables, kDown); return;
        case IDC_SFT_REMOVE: MoveOrRemove(DesignerPage::Tables, kRemove); return;
        case IDC_SFT_TABLE:
            if (notification == CBN_SELCHANGE) RefreshOperands();
            return;
        case IDC_SFT_ALIAS:
            if (notification == EN_KILLFOCUS) RefreshOperands();
            return;
        default: return;
        }
    }
    const DesignerPage which = page == Page(DesignerPage::Columns) ? DesignerPage::Columns : DesignerPage::Sort;
    const int base = which == DesignerPage::Columns ? kColumnsBase : kSortBase;
    if (notification != BN_CLICKED) return;
    const int control = id - base;
    if (control == kAdd || control == kApply) StoreEntry(which, control == kAdd);
    if (control == kUp || control == kDown || control == kRemove) MoveOrRemove(which, control);
}

void Designer::PageNotify(HWND page, const NMHDR &header) {
    if (header.code == LVN_BEGINDRAG) {
        dragList_ = header.hwndFrom;
        dragRow_ = reinterpret_cast<const NMLISTVIEW &>(header).iItem;
        SetCapture(page);
        return;
    }
    if (header.code != LVN_ITEMCHANGED) return;
    const auto &change = reinterpret_cast<const NMLISTVIEW &>(header);
    if (!(change.uChanged & LVIF_STATE) || !(change.uNewState & LVIS_SELECTED) || (change.uOldState & LVIS_SELECTED))
        return;
    if (page == Page(DesignerPage::Tables)) LoadTable(change.iItem);
    else if (page == Page(DesignerPage::Columns)) LoadEntry(DesignerPage::Columns, change.iItem);
    else if (page == Page(DesignerPage::Sort)) LoadEntry(DesignerPage::Sort, change.iItem);
}

} // namespace
} // namespace kodbc::select

using namespace kodbc;

extern "C" KODBC_API int KODBC_CALL Kodbc_SelFact_Edit(SelFact *query, HWND owner) {
    if (!query) return KODBC_DIALOG_CANCEL;
    try {
        auto copy = std::make_unique<SelFact>();
        copy->hdbc = query->hdbc;
        copy->schema = query->schema;
        copy->flags = query->flags;
        copy->columns = query->columns;
        copy->tables = query->tables;
        copy->selection = query->selection;
        copy->sorts = query->sorts;
        kodbc::select::Designer designer(*copy);
        if (designer.Run(owner) != KODBC_DIALOG_OK) return KODBC_DIALOG_CANCEL;
        query->columns = std::move(copy->columns);
        query->tables = std::move(copy->tables);
        query->selection = std::move(copy->selection);
        query->sorts = std::move(copy->sorts);
        return KODBC_DIALOG_OK;
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_DIALOG_CANCEL;
    } catch (...) {
        return KODBC_DIALOG_CANCEL;
    }
}
