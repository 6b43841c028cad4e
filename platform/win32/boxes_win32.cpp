// List box, combo box and list view helpers. A "box" is a list box or a
// combo box; the class name decides which family of messages it gets.
#include <windows.h>

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <commctrl.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

bool HasClass(HWND window, const char *name) {
    char cls[64];
    return window && GetClassNameA(window, cls, sizeof cls) > 0 && lstrcmpiA(cls, name) == 0;
}

// The message of each family for one operation.
struct BoxMessages {
    UINT reset, add, insert, remove, count, getText, getTextLength, getSel, setSel, getData, setData;
    int error;
};
constexpr BoxMessages kListBox = {LB_RESETCONTENT, LB_ADDSTRING, LB_INSERTSTRING, LB_DELETESTRING,
                                  LB_GETCOUNT, LB_GETTEXT, LB_GETTEXTLEN, LB_GETCURSEL, LB_SETCURSEL,
                                  LB_GETITEMDATA, LB_SETITEMDATA, LB_ERR};
constexpr BoxMessages kComboBox = {CB_RESETCONTENT, CB_ADDSTRING, CB_INSERTSTRING, CB_DELETESTRING,
                                   CB_GETCOUNT, CB_GETLBTEXT, CB_GETLBTEXTLEN, CB_GETCURSEL, CB_SETCURSEL,
                                   CB_GETITEMDATA, CB_SETITEMDATA, CB_ERR};

const BoxMessages *MessagesFor(HWND box) {
    if (Korvel_IsListBox(box)) return &kListBox;
    if (Korvel_IsComboBox(box)) return &kComboBox;
    return nullptr;
}

LRESULT Send(HWND box, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageA(box, message, wParam, lParam);
}

int Fill(HWND box, int separator, const char *list, bool positionsAsData) {
    const BoxMessages *m = MessagesFor(box);
    if (!m) return 0;
    Send(box, m->reset);
    if (!list || !*list) return 0;
    std::string_view rest(list);
    int added = 0;
    for (int position = 0;; ++position) {
        std::size_t cut = rest.find(static_cast<char>(separator));
        std::string entry(rest.substr(0, cut));
        // A separator at the very end closes the last entry; it opens none.
        if (cut == std::string_view::npos && entry.empty() && position > 0) break;
        if (Korvel_AddBoxEntry(box, entry.c_str(), positionsAsData ? position : 0, -1, 0) < 0) break;
        ++added;
        if (cut == std::string_view::npos) break;
        rest.remove_prefix(cut + 1);
    }
    return added;
}

} // namespace

bool Korvel_IsListBox(HWND box) { return HasClass(box, "ListBox") || HasClass(box, "ComboLBox"); }
bool Korvel_IsComboBox(HWND box) { return HasClass(box, "ComboBox"); }

int Korvel_FillBox(HWND box, int separator, const char *list) { return Fill(box, separator, list, false); }

int Korvel_FillBoxExtended(HWND box, int separator, const char *list, int option) {
    return Fill(box, separator, list, option == 1);
}

void Korvel_ResetBox(HWND box) {
    if (const BoxMessages *m = MessagesFor(box)) Send(box, m->reset);
}

int Korvel_AddBoxEntry(HWND box, const char *text, LPARAM itemData, int position, int) {
    const BoxMessages *m = MessagesFor(box);
    if (!m) return -1;
    const char *entry = text ? text : "";
    LRESULT index = position < 0 ? Send(box, m->add, 0, reinterpret_cast<LPARAM>(entry))
                                 : Send(box, m->insert, static_cast<WPARAM>(position), reinterpret_cast<LPARAM>(entry));
    if (index < 0) return static_cast<int>(index);
    Send(box, m->setData, static_cast<WPARAM>(index), itemData);
    return static_cast<int>(index);
}

int Korvel_GetBoxEntry(HWND box, int index, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    const BoxMessages *m = MessagesFor(box);
    if (!m || index < 0) return -1;
    LRESULT length = Send(box, m->getTextLength, static_cast<WPARAM>(index));
    if (length < 0) return -1;
    std::vector<char> text(static_cast<std::size_t>(length) + 1, '\0');
    if (Send(box, m->getText, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data())) < 0) return -1;
    out.append(text.data());
    return out.int_length();
}

int Korvel_DeleteBoxEntry(HWND box, int index) {
    const BoxMessages *m = MessagesFor(box);
    if (!m) return -1;
    return static_cast<int>(Send(box, m->remove, static_cast<WPARAM>(index)));
}

int Korvel_GetBoxCount(HWND box) {
    const BoxMessages *m = MessagesFor(box);
    if (!m) return 0;
    LRESULT count = Send(box, m->count);
    return count < 0 ? 0 : static_cast<int>(count);
}

int Korvel_GetBoxIndex(HWND box) {
    const BoxMessages *m = MessagesFor(box);
    if (!m) return -1;
    LRESULT index = Send(box, m->getSel);
    return index < 0 ? -1 : static_cast<int>(index);
}

int Korvel_SetBoxIndex(HWND box, int index) {
    const BoxMessages *m = MessagesFor(box);
    if (!m) return -1;
    return static_cast<int>(Send(box, m->setSel, static_cast<WPARAM>(index)));
}

LPARAM Korvel_GetItemData(HWND box, int index) {
    const BoxMessages *m = MessagesFor(box);
    if (!m) return 0;
    return static_cast<LPARAM>(Send(box, m->getData, static_cast<WPARAM>(index)));
}

int Korvel_GetBoxIndexByItemData(HWND box, LPARAM itemData) {
    int count = Korvel_GetBoxCount(box);
    for (int i = 0; i < count; ++i) {
        if (Korvel_GetItemData(box, i) == itemData) return i;
    }
    return -1;
}

int Korvel_CopyBox(HWND from, HWND to) {
    if (!MessagesFor(from) || !MessagesFor(to)) return 0;
    Korvel_ResetBox(to);
    int count = Korvel_GetBoxCount(from);
    int copied = 0;
    for (int i = 0; i < count; ++i) {
        const BoxMessages *m = MessagesFor(from);
        LRESULT length = Send(from, m->getTextLength, static_cast<WPARAM>(i));
        if (length < 0) continue;
        std::vector<char> text(static_cast<std::size_t>(length) + 1, '\0');
        Send(from, m->getText, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
        if (Korvel_AddBoxEntry(to, text.data(), Korvel_GetItemData(from, i), -1, 0) < 0) break;
        ++copied;
    }
    return copied;
}

void Korvel_ListView_Reset(HWND listView) {
    if (!listView) return;
    Send(listView, LVM_DELETEALLITEMS);
    while (Send(listView, LVM_DELETECOLUMN, 0)) {
    }
}

int Korvel_ListView_AddColumn(HWND listView, int column, const char *title, int width) {
    LVCOLUMNA col = {};
    col.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
    col.fmt = LVCFMT_LEFT;
    col.cx = width;
    col.pszText = const_cast<char *>(title ? title : "");
    col.iSubItem = column;
    return static_cast<int>(Send(listView, LVM_INSERTCOLUMNA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&col)));
}

int Korvel_ListView_AddItem(HWND listView, int row, const char *text) {
    LVITEMA item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<char *>(text ? text : "");
    return static_cast<int>(Send(listView, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
}

int Korvel_ListView_SetItemText(HWND listView, int row, int column, const char *text) {
    LVITEMA item = {};
    item.iSubItem = column;
    item.pszText = const_cast<char *>(text ? text : "");
    return static_cast<int>(Send(listView, LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item)));
}

int Korvel_ListView_GetItemCount(HWND listView) {
    return static_cast<int>(Send(listView, LVM_GETITEMCOUNT));
}
