// Descriptors into and out of real condition rows (the selection editor's layout), and dialog
// 10065: the focus, what OK and cancel leave in the caller's buffer, masks saved, loaded and
// refused through file dialogs that remember the last file. The rows' lines, box entries and
// write-back and the mask files' format are seldesc_test.cpp's; here the controls move them.
#include "robot.h"

#include "select/seldesc_editor_ids.h"

#include <korvel/korvel32.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace wintest;

// Group 3 has a list box as field control and group 4 an edit control as
// value control.
const OpDescDialogItem kRows[] = {
    {1011, 1012, 1013}, {1015, 1016, 1017}, {1018, 1019, 1020}, {1021, 1022, 1023}, {1024, 1025, 1026},
    {1, 1, 1},          {114, 115, 1035},   {1, 1, 1},          {1027, 1028, 1029}, {1, 1, 1},
    {1030, 1031, 1032}, {1, 1, 1},          {0, 0, 0},
};

const char *kFieldList = "Ort\t12\tUmsatz\t8\tDatum\t9\tKunden Nr\t4";

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
    auto text = [&](int id) { return ControlText(dialog, id); };

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

    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, nullptr, kFieldList, dialog, kRows, 0);
    const std::vector<BoxLine> fields = {{"Ort", 12}, {"Umsatz", 8}, {"Datum", 9}, {"Kunden Nr", 4}};
    for (int id : {1011, 1013, 1027}) EXPECT_EQ(BoxLines(item(id)), fields) << id;
    // A row typed in keeps its texts and operator when the descriptor has
    // no line for it, though its operator box is filled again.
    SetWindowTextA(item(1015), "Umsatz");
    ChooseData(dialog, 1016, 105);
    SetWindowTextA(item(1017), "10");

    const std::string descriptor = "Ort\tBW\tBer\t12\n\vUmsatz\tXX\t5\t8\n\vDatum\tLT\t1.1.2024\t9\n\v"
                                   "Frei\tIL\t4;7;9\t0\n\v";
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, descriptor.c_str(), nullptr, dialog, kRows, 0);
    EXPECT_EQ(BoxLines(item(1011)), fields) << "no field list leaves the field boxes alone";
    EXPECT_EQ(text(114), "Umsatz") << "a line with an unknown keyword still shows its field";
    EXPECT_EQ(SendMessageA(item(1011), CB_GETCURSEL, 0, 0), 0);  // the equal entry
    EXPECT_EQ(SendMessageA(item(115), CB_GETCURSEL, 0, 0), 17);  // the blank one for an unknown keyword
    EXPECT_EQ(SendMessageA(item(1027), LB_GETCURSEL, 0, 0), 2);  // "Datum" in the list box

    // Read back: the texts and operators shown ("Frei" is no entry: its text is set anyway), the
    // types from the field box, 0 for a name it does not list.
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog, kRows, buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "Ort\tBW\tBer\t12\nUmsatz\tGE\t10\t8\n\v\vDatum\tLT\t1.1.2024\t9\n\vFrei\tIL\t4;7;9\t0\n\v");

    // The first field box, copied into every other field and value box.
    Korvel_ResetBox(item(1011));
    Korvel_AddBoxEntry(item(1011), "Name", 12, -1, 0);
    Korvel_AddBoxEntry(item(1011), "Tag", 11, -1, 0);
    Kodbc_OpDesc_Clone_Boxes(dialog, kRows, 0);
    for (int id : {1015, 1024, 114, 1027, 1030, 1013, 1017, 1035, 1029})
        EXPECT_EQ(BoxLines(item(id)), (std::vector<BoxLine>{{"Name", 12}, {"Tag", 11}})) << id;
    EXPECT_EQ(text(1032), "4;7;9");                // an edit control is no box
    EXPECT_EQ(BoxLines(item(1012)).size(), 18u);  // operator boxes are not touched
    DestroyWindow(dialog);
}

constexpr char kTitle[] = "Bedingungen eingeben";
constexpr char kFields[] = "Ort\t12\tUmsatz\t8\tDatum\t9";

class SelectionEditor : public ::testing::Test {
protected:
    // Each run's prefix starts without a remembered mask file.
    void TearDown() override {
        for (const std::string &file : files_) DeleteFileA(file.c_str());
        Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, "Settings", "SelectMaskFile");
    }
    std::string OwnFile(const char *name) {
        files_.push_back(TempFile(name));
        return files_.back();
    }
    std::vector<std::string> files_;
};

TEST_F(SelectionEditor, RefusesABufferBelowTenBytesAndCancelKeepsTheBuffer) {
    for (std::size_t size : {9, 10}) {
        std::vector<char> buffer(size, '\x7f');
        buffer[0] = '\0';
        const std::vector<char> before = buffer;
        DialogRobot robot(kTitle, "", [](HWND dialog) {
            SetDlgItemTextA(dialog, IDC_SELEDIT_G4_FIELD, "Umsatz");
            ChooseData(dialog, IDC_SELEDIT_G4_OPERATION, OPDESC_OP_GREATER);
            SetDlgItemTextA(dialog, IDC_SELEDIT_G4_VALUE, "7");
            Click(dialog, IDC_SELEDIT_CANCEL);
        }, 2000);
        EXPECT_EQ(Kodbc_Edit_SelDesc(buffer.data(), static_cast<int>(size), kFields, 0, 0), 2) << size;
        robot.Join();
        EXPECT_EQ(robot.Found(), size == 10) << size;
        EXPECT_EQ(buffer, before) << "cancel changed the caller's buffer";
    }
    EXPECT_EQ(Kodbc_Edit_SelDesc(nullptr, 100, kFields, 0, 0), 2);
}

TEST_F(SelectionEditor, SavesLoadsAndRefusesMasks) {
    const std::string saved = OwnFile("kodbc_seleditor_saved.sms");
    const std::string native = OwnFile("kodbc_seleditor_native.sms");
    const std::string lower = OwnFile("kodbc_seleditor_lower.sms");
    ASSERT_EQ(Kodbc_SaveSelectionMask(native.c_str(), "Umsatz\tGT\t5\t8\n\v\v\vDatum\tEQ\t1.1.2024\t9\n\v"), 1);
    std::ofstream(lower, std::ios::binary) << "korvel-smsOrt\tEQ\tBonn\t12\n\v\v\v\v";

    MessageBoxAnswerer answerer("Datenbank", IDOK, "seleditor-1649");
    std::vector<char> buffer(2000, '\x7f');
    std::strcpy(buffer.data(), "Ort\tEQ\tBonn\t12\n\v\v\v\v");
    std::string offered;
    int focused = 0;  // the control, or the combo box whose edit field has the focus
    DialogRobot robot(kTitle, "", [&](HWND dialog) {
        HWND focus = nullptr;
        WaitFor([&] { return (focus = FocusOf(GetWindowThreadProcessId(dialog, nullptr))) != nullptr; });
        focused = GetParent(focus) == dialog ? GetDlgCtrlID(focus) : GetDlgCtrlID(GetParent(focus));
        Click(dialog, IDC_SELEDIT_SAVE);
        ChooseFile("Selektion speichern", saved);

        Click(dialog, IDC_SELEDIT_LOAD);
        ChooseFile("Selektion laden", native, &offered);
        WaitFor([&] { return ControlText(dialog, IDC_SELEDIT_G4_FIELD) == "Datum"; });
        // The combo boxes' edit fields repaint after their text has changed.
        RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        Sleep(300);
        SaveScreenshot(dialog, "seleditor-10065");

        Click(dialog, IDC_SELEDIT_LOAD);
        ChooseFile("Selektion laden", lower);
        WaitFor([&] { return !answerer.Seen().empty(); });
        Click(dialog, IDC_SELEDIT_OK);
    });
    EXPECT_EQ(Kodbc_Edit_SelDesc(buffer.data(), static_cast<int>(buffer.size()), kFields, 0, 0), 1);
    robot.Join();
    // Which control is first without text is seldesc_test.cpp's; here
    // the first row's operator label counts as text.
    EXPECT_EQ(focused, IDC_SELEDIT_G1R2_FIELD);
    EXPECT_EQ(FileText(saved), "KORVEL-SMSOrt\tEQ\tBonn\t12\n\v\v\v\v");
    // The open dialog offered the file saved last; the registry keeps the
    // last one chosen.
    EXPECT_FALSE(offered.empty());
    EXPECT_NE(saved.find(offered), std::string::npos) << offered;
    const std::string remembered = Setting("Settings", "SelectMaskFile");
    EXPECT_EQ(_stricmp(remembered.c_str(), lower.c_str()), 0) << remembered;

    ASSERT_EQ(answerer.Seen().size(), 1u);
    EXPECT_EQ(answerer.Seen()[0].text, "Die Datei enth\xE4lt keine Selektionsmaske.\n\n" + lower);
    EXPECT_STREQ(buffer.data(), "Umsatz\tGT\t5\t8\n\v\v\vDatum\tEQ\t1.1.2024\t9\n\v");
}

} // namespace
