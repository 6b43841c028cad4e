// Dialog 10065: the focus, what OK and cancel leave in the caller's buffer,
// masks saved, loaded and refused through file dialogs that remember the
// last file (the files' format: seldesc_test.cpp).
#include "robot.h"

#include "select/seldesc_editor_ids.h"

#include <korvel/korvel32.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace wintest;

constexpr char kTitle[] = "Bedingungen eingeben";
constexpr char kFields[] = "Ort\t12\tUmsatz\t8\tDatum\t9";

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
    EXPECT_EQ(_stricmp(Setting("Settings", "SelectMaskFile").c_str(), lower.c_str()), 0) << Setting("Settings", "SelectMaskFile");

    ASSERT_EQ(answerer.Seen().size(), 1u);
    EXPECT_EQ(answerer.Seen()[0].text, "Die Datei enth\xE4lt keine Selektionsmaske.\n\n" + lower);
    EXPECT_STREQ(buffer.data(), "Umsatz\tGT\t5\t8\n\v\v\vDatum\tEQ\t1.1.2024\t9\n\v");
}

} // namespace
