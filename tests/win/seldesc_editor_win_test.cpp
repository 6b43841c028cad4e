// Dialog 10065 driven from outside: where the focus lands, what OK and
// cancel leave in the caller's buffer, and masks saved, loaded and refused
// through the file dialogs, which remember the last file. How rows become a
// descriptor is seldesc_win_test.cpp's; the mask files' format is proven
// natively (select_selection_mask_test.cpp).
#include "robot.h"
#include "wizard_walker.h"

#include "select/seldesc_editor_ids.h"

#include <korvel/korvel32.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace wintest;

constexpr char kTitle[] = "Bedingungen eingeben";
constexpr char kFields[] = "Ort\t12\tUmsatz\t8\tDatum\t9";

constexpr OpDescDialogItem kSecondRow = {IDC_SELEDIT_G1R2_FIELD, IDC_SELEDIT_G1R2_OPERATION, IDC_SELEDIT_G1R2_VALUE};
constexpr OpDescDialogItem kFourthGroup = {IDC_SELEDIT_G4_FIELD, IDC_SELEDIT_G4_OPERATION, IDC_SELEDIT_G4_VALUE};

// Puts a condition into a row as a user would: field and value typed, the
// operator picked by its code.
void Type(HWND dialog, const OpDescDialogItem &row, const char *field, LPARAM code, const char *value) {
    SetDlgItemTextA(dialog, row.FieldId, field);
    ChooseData(dialog, row.OperatorId, code);
    SetDlgItemTextA(dialog, row.ValueId, value);
}

class SelectionEditor : public ::testing::Test {
protected:
    void SetUp() override {
        Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, "Settings", "SelectMaskFile");
    }
    void TearDown() override {
        for (const std::string &file : files_) DeleteFileA(file.c_str());
        Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kSettingsKey, 0, "Settings", "SelectMaskFile");
    }
    std::string OwnFile(const char *name) {
        files_.push_back(TempFile(name));
        return files_.back();
    }
    static void Write(const std::string &path, const std::string &bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    // Runs the editor on buffer with a robot doing action; the result.
    static int Edit(std::vector<char> &buffer, DialogRobot::Action action, std::string shot = {}) {
        DialogRobot robot(kTitle, shot, std::move(action));
        const int result = Kodbc_Edit_SelDesc(buffer.data(), static_cast<int>(buffer.size()), kFields, 0, 0);
        robot.Join();
        EXPECT_TRUE(robot.Found()) << "the dialog never appeared";
        return result;
    }
    static std::vector<char> Buffer(const std::string &text, std::size_t size = 2000) {
        std::vector<char> buffer(size, '\x7f');
        text.copy(buffer.data(), text.size());
        buffer[text.size()] = '\0';
        return buffer;
    }

    std::vector<std::string> files_;
};

TEST_F(SelectionEditor, FocusesTheFirstEmptyControlAndCancelKeepsTheBuffer) {
    const struct {
        std::string selDesc;
        int focused;
    } cases[] = {
        {"", IDC_SELEDIT_G1R1_FIELD},
        {"Ort\tBW\tBer\t12\n\v\v\v\v", IDC_SELEDIT_G1R2_FIELD},
        {"Ort\tIN\t\t12\n", IDC_SELEDIT_G1R1_VALUE},
        {"Ort\tEQ\t1\t12\nOrt\tEQ\t2\t12\nOrt\tEQ\t3\t12\nOrt\tEQ\t4\t12\nOrt\tEQ\t5\t12\n\v", IDC_SELEDIT_G2_FIELD},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.selDesc);
        std::vector<char> buffer = Buffer(c.selDesc);
        const std::vector<char> before = buffer;
        int focused = 0;  // the control, or the combo box whose edit field has the focus
        const int result = Edit(buffer, [&](HWND dialog) {
            HWND focus = nullptr;
            WaitFor([&] { return (focus = FocusOf(GetWindowThreadProcessId(dialog, nullptr))) != nullptr; });
            focused = GetParent(focus) == dialog ? GetDlgCtrlID(focus) : GetDlgCtrlID(GetParent(focus));
            Type(dialog, kFourthGroup, "Umsatz", OPDESC_OP_GREATER, "7");
            Click(dialog, IDC_SELEDIT_CANCEL);
        });
        EXPECT_EQ(result, 2);
        EXPECT_EQ(focused, c.focused);
        EXPECT_EQ(buffer, before) << "cancel changed the caller's buffer";
    }
}

TEST_F(SelectionEditor, RefusesABufferBelowTenBytes) {
    const struct {
        std::size_t size;
        bool opens;
    } cases[] = {{9, false}, {10, true}};
    for (const auto &c : cases) {
        std::vector<char> buffer = Buffer("", c.size);
        DialogRobot robot(kTitle, "", [](HWND dialog) { Click(dialog, IDC_SELEDIT_CANCEL); }, 2000);
        EXPECT_EQ(Kodbc_Edit_SelDesc(buffer.data(), static_cast<int>(c.size), kFields, 0, 0), 2) << c.size;
        robot.Join();
        EXPECT_EQ(robot.Found(), c.opens) << c.size;
    }
    EXPECT_EQ(Kodbc_Edit_SelDesc(nullptr, 100, kFields, 0, 0), 2);
}

TEST_F(SelectionEditor, SavesLoadsAndRefusesMasks) {
    const std::string saved = OwnFile("kodbc_seleditor_saved.sms");
    const std::string native = OwnFile("kodbc_seleditor_native.sms");
    const std::string lower = OwnFile("kodbc_seleditor_lower.sms");
    ASSERT_EQ(Kodbc_SaveSelectionMask(native.c_str(), "Umsatz\tGT\t5\t8\n\v\v\vDatum\tEQ\t1.1.2024\t9\n\v"), 1);
    Write(lower, "korvel-smsOrt\tEQ\tBonn\t12\n\v\v\v\v");

    MessageBoxAnswerer answerer("Datenbank", IDOK, "seleditor-1649");
    std::vector<char> buffer = Buffer("Ort\tEQ\tBonn\t12\n\v\v\v\v");
    bool answered[3] = {};
    std::string offered;
    const int result = Edit(buffer, [&](HWND dialog) {
        Click(dialog, IDC_SELEDIT_SAVE);
        answered[0] = ChooseFile("Selektion speichern", saved);

        // The file's line replaces the first row's; the second row keeps
        // what it shows, since the file's first group has one line only.
        Type(dialog, kSecondRow, "Ort", OPDESC_OP_NOT_EQUAL, "K\xF6ln");
        Click(dialog, IDC_SELEDIT_LOAD);
        answered[1] = ChooseFile("Selektion laden", native, &offered);
        WaitFor([&] { return ControlText(dialog, IDC_SELEDIT_G4_FIELD) == "Datum"; });
        // The combo boxes' edit fields repaint after their text has changed.
        RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        Sleep(300);
        SaveScreenshot(dialog, "seleditor-10065");

        Click(dialog, IDC_SELEDIT_LOAD);
        answered[2] = ChooseFile("Selektion laden", lower);
        WaitFor([&] { return !answerer.Seen().empty(); });
        Click(dialog, IDC_SELEDIT_OK);
    });
    EXPECT_TRUE(answered[0] && answered[1] && answered[2]);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(FileText(saved), "KORVEL-SMSOrt\tEQ\tBonn\t12\n\v\v\v\v");
    // The open dialog offered the file saved last; the registry keeps the
    // last one chosen.
    EXPECT_FALSE(offered.empty());
    EXPECT_NE(saved.find(offered), std::string::npos) << offered;
    EXPECT_EQ(_stricmp(Setting("Settings", "SelectMaskFile").c_str(), lower.c_str()), 0) << Setting("Settings", "SelectMaskFile");

    ASSERT_EQ(answerer.Seen().size(), 1u);
    EXPECT_EQ(answerer.Seen()[0].text, "Die Datei enth\xE4lt keine Selektionsmaske.\n\n" + lower);
    EXPECT_STREQ(buffer.data(), "Umsatz\tGT\t5\t8\nOrt\tNE\tK\xF6ln\t12\n\v\v\vDatum\tEQ\t1.1.2024\t9\n\v");
}

} // namespace
