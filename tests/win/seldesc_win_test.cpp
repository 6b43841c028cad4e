// Descriptors into and out of real condition rows: a window with the
// selection editor's rows (five in the first group, one in each of three
// more), read back and driven with messages.
#include "robot.h"
#include "win_support.h"

#include <cstring>

namespace {

// The selection editor's rows; group 3 has a list box as field control and
// group 4 an edit control as value control.
const OpDescDialogItem kRows[] = {
    {1011, 1012, 1013}, {1015, 1016, 1017}, {1018, 1019, 1020}, {1021, 1022, 1023}, {1024, 1025, 1026},
    {1, 1, 1},
    {114, 115, 1035},
    {1, 1, 1},
    {1027, 1028, 1029},
    {1, 1, 1},
    {1030, 1031, 1032},
    {1, 1, 1},
    {0, 0, 0},
};

const char *kFieldList = "Ort\t12\tUmsatz\t8\tDatum\t9\tKunden Nr\t4";

using wintest::IsCombo;
using Entry = wintest::BoxLine;

std::vector<Entry> Entries(HWND box) { return wintest::BoxLines(box); }

class SelDescRows : public ::testing::Test {
protected:
    void SetUp() override {
        dialog_ = CreateWindowA("STATIC", "Bedingungen", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr);
        ASSERT_TRUE(dialog_);
        for (const OpDescDialogItem *row = kRows; row->FieldId > 0; ++row) {
            if (row->FieldId == 1) continue;
            const bool listField = row->FieldId == 1027;
            const bool editValue = row->ValueId == 1032;
            Make(listField ? "LISTBOX" : "COMBOBOX", listField ? LBS_NOTIFY : CBS_DROPDOWN, row->FieldId);
            Make("COMBOBOX", CBS_DROPDOWNLIST, row->OperatorId);
            Make(editValue ? "EDIT" : "COMBOBOX", editValue ? ES_AUTOHSCROLL : CBS_DROPDOWN, row->ValueId);
        }
    }
    void TearDown() override {
        if (dialog_) DestroyWindow(dialog_);
    }
    void Make(const char *cls, DWORD style, int id) {
        HWND control = CreateWindowA(cls, "", WS_CHILD | WS_VSCROLL | style, 0, 0, 150, 200, dialog_,
                                     reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
        ASSERT_TRUE(control) << cls << " " << id;
    }
    HWND Item(int id) { return GetDlgItem(dialog_, id); }
    std::string Text(int id) {
        HWND control = Item(id);
        if (!IsCombo(control) && Entries(control).size() > 0) {
            int sel = static_cast<int>(SendMessageA(control, LB_GETCURSEL, 0, 0));
            if (sel < 0) return "";
            return Entries(control)[static_cast<std::size_t>(sel)].text;
        }
        char text[300] = {};
        GetWindowTextA(control, text, sizeof text);
        return text;
    }
    // The operator code the row's operator box has selected; -1 for none.
    LPARAM Operator(int id) {
        int sel = static_cast<int>(SendMessageA(Item(id), CB_GETCURSEL, 0, 0));
        return sel < 0 ? -1 : SendMessageA(Item(id), CB_GETITEMDATA, static_cast<WPARAM>(sel), 0);
    }
    void SetRow(const OpDescDialogItem &row, const char *field, LPARAM code, const char *value) {
        SetWindowTextA(Item(row.FieldId), field);
        wintest::ChooseData(dialog_, row.OperatorId, code);
        SetWindowTextA(Item(row.ValueId), value);
    }
    std::string Write(int kind = OPDESC_SELECTION, int size = 2000) {
        std::vector<char> buffer(static_cast<std::size_t>(size) + 32, '\x7f');
        Kodbc_DialogItems_To_OpDesc(kind, dialog_, kRows, buffer.data(), size);
        for (std::size_t i = static_cast<std::size_t>(size); i < buffer.size(); ++i)
            EXPECT_EQ(buffer[i], '\x7f') << "guard byte " << i - static_cast<std::size_t>(size) << " written";
        return std::string(buffer.data(), strnlen(buffer.data(), static_cast<std::size_t>(size)));
    }

    HWND dialog_ = nullptr;
};

TEST_F(SelDescRows, BoxesArePreparedPerKind) {
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, kFieldList, dialog_, kRows, 0);
    const std::vector<Entry> fields = {{"Ort", 12}, {"Umsatz", 8}, {"Datum", 9}, {"Kunden Nr", 4}};
    for (int id : {1011, 1024, 114, 1027, 1030, 1013, 1035, 1029}) EXPECT_EQ(Entries(Item(id)), fields) << id;
    EXPECT_EQ(Text(1032), "");  // an edit control is no box
    const std::vector<Entry> selection = {
        {"beginnt mit", 101}, {"enth\xe4lt", 108}, {"ist leer", 109}, {"ist nicht leer", 110},
        {"ist gleich", 102}, {"ist ungleich", 103}, {"ist gr\xf6\xdf" "er als", 104},
        {"ist gr\xf6\xdf" "er oder gleich", 105}, {"ist kleiner als", 106}, {"ist kleiner oder gleich", 107},
        {"ist in Liste enthalten  (Trenner ist ;)", 111}, {"ist gleich dem Inhalt von Feld", 201},
        {"ist ungleich dem Inhalt von Feld", 202}, {"ist gr\xf6\xdf" "er als der Inhalt von Feld", 203},
        {"ist gr\xf6\xdf" "er oder gleich dem Inhalt von Feld", 204}, {"ist kleiner als der Inhalt von Feld", 205},
        {"ist kleiner oder gleich dem Inhalt von Feld", 206}, {" ", 0}};
    for (int id : {1012, 1025, 115, 1028, 1031}) EXPECT_EQ(Entries(Item(id)), selection) << id;

    // Assignment kind; no field list leaves field and value boxes alone.
    Kodbc_OpDesc_To_DialogItems(OPDESC_ASSIGNMENT, nullptr, nullptr, dialog_, kRows, 0);
    EXPECT_EQ(Entries(Item(1012)), (std::vector<Entry>{{"Feld leeren", 300}, {"Fester Wert", 301},
                                                       {"Inhalt von Feld", 302}, {"Ergebnis der Formel", 303},
                                                       {" ", 0}}));
    EXPECT_EQ(Entries(Item(1011)), fields);
    // An unknown kind does nothing at all.
    Kodbc_OpDesc_To_DialogItems(3, "A\tEQ\t1\t4\n", "X\t1", dialog_, kRows, 0);
    EXPECT_EQ(Entries(Item(1011)), fields);
    EXPECT_EQ(Text(1011), "");
}

TEST_F(SelDescRows, DescriptorShownAndWrittenBack) {
    const std::string descriptor = "Ort\tBW\tBer\t12\nUmsatz\tGT\t1.000,5\t8\n\v"
                                   "Datum\tEQ\t1.2.2024\t9\n\v"
                                   "\v"
                                   "Frei\tIL\t4;7;9\t0\n\v";
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, descriptor.c_str(), kFieldList, dialog_, kRows, 0);
    const std::pair<int, const char *> texts[] = {{1011, "Ort"},      {1013, "Ber"},        {1015, "Umsatz"},
                                                  {1017, "1.000,5"},  {1018, ""},           {114, "Datum"},
                                                  {1035, "1.2.2024"}, {1030, "Frei"},       {1032, "4;7;9"}};
    for (auto [id, text] : texts) EXPECT_EQ(Text(id), text) << id;  // "Frei" is no entry: its text set anyway
    const std::pair<int, LPARAM> operators[] = {{1012, 101}, {1016, 104}, {1019, -1}, {115, 102}, {1028, -1}, {1031, 111}};
    for (auto [id, code] : operators) EXPECT_EQ(Operator(id), code) << id;
    EXPECT_EQ(SendMessageA(Item(1011), CB_GETCURSEL, 0, 0), 0);  // the equal entry is selected
    // Written back: the types come from the field box, 0 for an unknown field.
    EXPECT_EQ(Write(), descriptor);
}

TEST_F(SelDescRows, SurplusLinesAreLostAndMissingLinesKeepTheRows) {
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, kFieldList, dialog_, kRows, 0);
    SetRow(kRows[1], "Umsatz", 105, "10");
    SetRow(kRows[10], "Kunden Nr", 109, "");
    // Group 1 has one line for five rows; group 2 three lines for one row.
    const std::string descriptor = "Ort\tNN\t\t12\n\vA\tEQ\t1\t4\nB\tEQ\t2\t4\nC\tEQ\t3\t4\n\v";
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, descriptor.c_str(), nullptr, dialog_, kRows, 0);
    EXPECT_EQ(Text(1015), "Umsatz");
    EXPECT_EQ(Operator(1016), 105);
    EXPECT_EQ(Text(114), "A");
    EXPECT_EQ(Text(1027), "");  // group 3 is not touched by group 2's extra lines
    EXPECT_EQ(Write(), "Ort\tNN\t\t12\nUmsatz\tGE\t10\t8\n\vA\tEQ\t1\t0\n\v\vKunden Nr\tIN\t\t4\n\v");
}

TEST_F(SelDescRows, ListBoxFieldAndUnknownKeywords) {
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, kFieldList, dialog_, kRows, 0);
    SetRow(kRows[0], "Ort", 101, "x");
    // An unknown keyword selects the blank entry, so the row writes nothing.
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, "Ort\tXX\tBer\t12\n\v\vDatum\tLT\t1.1.2024\t9\n\v", nullptr,
                                dialog_, kRows, 0);
    EXPECT_EQ(SendMessageA(Item(1012), CB_GETCURSEL, 0, 0), 17);
    EXPECT_EQ(Operator(1012), 0);
    EXPECT_EQ(Text(1027), "Datum");  // the list box's entry is selected
    EXPECT_EQ(Operator(1028), 106);
    EXPECT_EQ(Write(), "\v\vDatum\tLT\t1.1.2024\t9\n\v\v");
    // A row whose field and value are both empty writes nothing either.
    SetRow(kRows[1], "", 109, "");
    EXPECT_EQ(Write(), "\v\vDatum\tLT\t1.1.2024\t9\n\v\v");
}

TEST_F(SelDescRows, SeparatorsCostTwoBytesOfRoom) {
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, kFieldList, dialog_, kRows, 0);
    EXPECT_EQ(Write(), "\v\v\v\v");
    const std::pair<int, const char *> empty[] = {{8, "\v\v\v\v"}, {7, "\v\v\v"}, {5, "\v\v"}, {2, "\v"}, {1, ""}};
    for (auto [size, expected] : empty) EXPECT_EQ(Write(OPDESC_SELECTION, size), expected) << size;
    SetRow(kRows[0], "Ort", 102, "Bonn");  // "Ort\tEQ\tBonn\t12\n", 15 characters
    EXPECT_EQ(Write(OPDESC_SELECTION, 20), "Ort\tEQ\tBonn\t12\n\v\v");
    EXPECT_EQ(Write(OPDESC_SELECTION, 10), "Ort\tEQ\tBo");
    SetRow(kRows[6], "Umsatz", 104, "5");  // group 2: "Umsatz\tGT\t5\t8\n"
    EXPECT_EQ(Write(OPDESC_SELECTION, 25), "Ort\tEQ\tBonn\t12\n\vUmsatz\t");
    // 33 characters in all; with its four separators the text needs 37 bytes.
    const std::string two = "Ort\tEQ\tBonn\t12\n\vUmsatz\tGT\t5\t8\n\v";
    EXPECT_EQ(Write(OPDESC_SELECTION, 37), two + "\v\v");
    EXPECT_EQ(Write(OPDESC_SELECTION, 36), two + "\v");
    EXPECT_EQ(Write(OPDESC_SELECTION, 34), two);
}

TEST_F(SelDescRows, ArgumentsThatDoNothing) {
    char buffer[50];
    std::strcpy(buffer, "kept");
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, nullptr, kRows, buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "kept");
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog_, kRows, buffer, 0);
    EXPECT_STREQ(buffer, "kept");
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog_, kRows, nullptr, 50);
    Kodbc_DialogItems_To_OpDesc(7, dialog_, kRows, buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "");
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, "A\tEQ\t1\t4\n", kFieldList, nullptr, kRows, 0);
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, "A\tEQ\t1\t4\n", kFieldList, dialog_, nullptr, 0);
    Kodbc_OpDesc_Clone_Boxes(nullptr, kRows, 0);
    Kodbc_OpDesc_Clone_Boxes(dialog_, nullptr, 0);
    EXPECT_TRUE(Entries(Item(1011)).empty());
}

TEST_F(SelDescRows, CloneBoxesCopiesTheFirstFieldBox) {
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, "Alt\t1", dialog_, kRows, 0);
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, nullptr, dialog_, kRows, 0);
    HWND first = Item(1011);
    SendMessageA(first, CB_RESETCONTENT, 0, 0);
    for (auto [text, data] : {std::pair{"Name", 12}, std::pair{"Betrag", 3}, std::pair{"Tag", 11}}) {
        LRESULT i = SendMessageA(first, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        SendMessageA(first, CB_SETITEMDATA, static_cast<WPARAM>(i), data);
    }
    SetWindowTextA(Item(1032), "bleibt");
    Kodbc_OpDesc_Clone_Boxes(dialog_, kRows, 0);
    const std::vector<Entry> expected = {{"Name", 12}, {"Betrag", 3}, {"Tag", 11}};
    for (int id : {1011, 1015, 1024, 114, 1027, 1030, 1013, 1017, 1035, 1029}) EXPECT_EQ(Entries(Item(id)), expected) << id;
    EXPECT_EQ(Text(1032), "bleibt");
    EXPECT_EQ(Entries(Item(1012)).size(), 18u);  // operator boxes are not touched
}

} // namespace
