// Descriptors into and out of real condition rows (the selection editor's
// layout). Which row a line lands in, the box entries and the write-back's
// texts and room are seldesc_test.cpp's; here the controls move them.
#include "robot.h"

namespace {

// Group 3 has a list box as field control and group 4 an edit control as
// value control.
const OpDescDialogItem kRows[] = {
    {1011, 1012, 1013}, {1015, 1016, 1017}, {1018, 1019, 1020}, {1021, 1022, 1023}, {1024, 1025, 1026},
    {1, 1, 1},          {114, 115, 1035},   {1, 1, 1},          {1027, 1028, 1029}, {1, 1, 1},
    {1030, 1031, 1032}, {1, 1, 1},          {0, 0, 0},
};

const char *kFieldList = "Ort\t12\tUmsatz\t8\tDatum\t9\tKunden Nr\t4";

using Entry = wintest::BoxLine;
using wintest::BoxLines;

TEST(SelDescRows, DescriptorShownInTheControlsReadBackAndBoxesCloned) {
    HWND dialog = CreateWindowA("STATIC", "Bedingungen", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(dialog);
    auto make = [&](const char *cls, DWORD style, int id) {
        EXPECT_TRUE(CreateWindowA(cls, "", WS_CHILD | WS_VSCROLL | style, 0, 0, 150, 200, dialog,
                                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr)) << id;
    };
    for (const OpDescDialogItem *row = kRows; row->FieldId > 0; ++row) {
        if (row->FieldId == 1) continue;
        const bool listField = row->FieldId == 1027, editValue = row->ValueId == 1032;
        make(listField ? "LISTBOX" : "COMBOBOX", listField ? LBS_NOTIFY : CBS_DROPDOWN, row->FieldId);
        make("COMBOBOX", CBS_DROPDOWNLIST, row->OperatorId);
        make(editValue ? "EDIT" : "COMBOBOX", editValue ? ES_AUTOHSCROLL : CBS_DROPDOWN, row->ValueId);
    }
    auto item = [&](int id) { return GetDlgItem(dialog, id); };
    auto text = [&](int id) { return wintest::ControlText(dialog, id); };
    // The operator code the row's operator box has selected; -1 for none.
    auto code = [&](int id) {
        int sel = static_cast<int>(SendMessageA(item(id), CB_GETCURSEL, 0, 0));
        return sel < 0 ? -1 : SendMessageA(item(id), CB_GETITEMDATA, static_cast<WPARAM>(sel), 0);
    };

    // Arguments that do nothing.
    char buffer[200] = "kept";
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, nullptr, kRows, buffer, sizeof buffer);
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog, nullptr, buffer, sizeof buffer);
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog, kRows, buffer, 0);
    EXPECT_STREQ(buffer, "kept");
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog, kRows, nullptr, 50);
    Kodbc_OpDesc_To_DialogItems(3, "A\tEQ\t1\t4\n", kFieldList, dialog, kRows, 0);  // no such kind
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, "A\tEQ\t1\t4\n", kFieldList, nullptr, kRows, 0);
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, "A\tEQ\t1\t4\n", kFieldList, dialog, nullptr, 0);
    Kodbc_OpDesc_Clone_Boxes(nullptr, kRows, 0);
    Kodbc_OpDesc_Clone_Boxes(dialog, nullptr, 0);
    EXPECT_TRUE(BoxLines(item(1011)).empty());
    EXPECT_EQ(text(1011), "");

    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, kFieldList, dialog, kRows, 0);
    const std::vector<Entry> fields = {{"Ort", 12}, {"Umsatz", 8}, {"Datum", 9}, {"Kunden Nr", 4}};
    for (int id : {1011, 1013, 1027}) EXPECT_EQ(BoxLines(item(id)), fields) << id;
    // A row typed in keeps its texts and operator when the descriptor has
    // no line for it, though its operator box is filled again.
    SetWindowTextA(item(1015), "Umsatz");
    wintest::ChooseData(dialog, 1016, 105);
    SetWindowTextA(item(1017), "10");

    const std::string descriptor = "Ort\tBW\tBer\t12\n\vUmsatz\tXX\t5\t8\n\vDatum\tLT\t1.1.2024\t9\n\v"
                                   "Frei\tIL\t4;7;9\t0\n\v";
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, descriptor.c_str(), nullptr, dialog, kRows, 0);
    EXPECT_EQ(BoxLines(item(1011)), fields) << "no field list leaves the field boxes alone";
    const std::pair<int, const char *> texts[] = {{1011, "Ort"}, {1013, "Ber"}, {1015, "Umsatz"}, {1017, "10"},
                                                  {114, "Umsatz"}, {1030, "Frei"}, {1032, "4;7;9"}};
    for (auto [id, shown] : texts) EXPECT_EQ(text(id), shown) << id;  // "Frei" is no entry: its text set anyway
    EXPECT_EQ(SendMessageA(item(1011), CB_GETCURSEL, 0, 0), 0);  // the equal entry
    EXPECT_EQ(SendMessageA(item(115), CB_GETCURSEL, 0, 0), 17);  // the blank one for an unknown keyword
    EXPECT_EQ(SendMessageA(item(1027), LB_GETCURSEL, 0, 0), 2);  // "Datum" in the list box
    const std::pair<int, LPARAM> operators[] = {{1012, 101}, {1016, 105}, {115, 0}, {1028, 106}, {1031, 111}};
    for (auto [id, selected] : operators) EXPECT_EQ(code(id), selected) << id;

    // The types come from the field box, 0 for a name it does not list.
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog, kRows, buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "Ort\tBW\tBer\t12\nUmsatz\tGE\t10\t8\n\v\vDatum\tLT\t1.1.2024\t9\n\vFrei\tIL\t4;7;9\t0\n\v");

    // The first field box, copied into every other field and value box.
    Korvel_ResetBox(item(1011));
    Korvel_AddBoxEntry(item(1011), "Name", 12, -1, 0);
    Korvel_AddBoxEntry(item(1011), "Tag", 11, -1, 0);
    Kodbc_OpDesc_Clone_Boxes(dialog, kRows, 0);
    for (int id : {1015, 1024, 114, 1027, 1030, 1013, 1017, 1035, 1029})
        EXPECT_EQ(BoxLines(item(id)), (std::vector<Entry>{{"Name", 12}, {"Tag", 11}})) << id;
    EXPECT_EQ(text(1032), "4;7;9");                // an edit control is no box
    EXPECT_EQ(BoxLines(item(1012)).size(), 18u);  // operator boxes are not touched
    DestroyWindow(dialog);
}

} // namespace
