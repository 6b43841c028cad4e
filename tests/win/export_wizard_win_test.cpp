// The export wizard on SQLite: a condition, fields left out by the menu, one renamed in the field dialog, one
// refusal per page, the file written. Names and types: natively (transfer_export_test, addrecords_test).
#include "robot.h"
#include "transfer/export_wizard_ids.h"

#include <kodbc/kodbc_transfer.h>

namespace {

using namespace wintest;

constexpr char kTitle[] = "Exportieren von Datens\xE4tzen einer Tabelle";
constexpr char kTable[] = "kodbc_exw";

struct Walker : WizardWalker {
    HWND Fields() const { return Control(IDD_EXPORT_FIELDS, IDC_EXPORT_FIELD_LIST); }
    std::string Cell(int row, int column) const { return ListViewCell(Fields(), row, column); }
    void Command(int page, int id) { PostMessageA(Page(page), WM_COMMAND, MAKEWPARAM(id, 0), 0); }
};

class ExportWizard : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({kTable});
        ASSERT_TRUE(Run("CREATE TABLE kodbc_exw (nr INTEGER, \"Preis Netto\" REAL, \"Art.Nr\" VARCHAR(20))"));
        ASSERT_TRUE(Run("INSERT INTO kodbc_exw VALUES (1, 2.5, 'Anna'), (2, NULL, 'Bernd'), (3, 4.75, 'Carla')"));
    }
    void TearDown() override {
        DeleteFileA(file_.c_str());
        ConnectedTest::TearDown();
    }
    std::string file_ = TempFile("kodbc_export_wizard.txt");
};

TEST_F(ExportWizard, WritesTheChosenFieldsOfTheSelectedRecords) {
    TableRecord table = TableNamed(kTable);
    std::string finishText;
    const auto [result, messages] = RunWizard<Walker>(kTitle, "export-10050", "export-", [&] {
        return Kodbc_ExportWizzard(hdbc_, &table, 0);
    }, [&](Walker &w) {
        constexpr int C = IDD_EXPORT_CONDITIONS, F = IDD_EXPORT_FILE;
        w.Walk({{IDD_EXPORT_TABLE, 0, "", nullptr, false, C},
                {C, IDC_RECWIZ_ROW1_FIELD, "nr"},
                {C, IDC_RECWIZ_ROW1_OPERATION, "ist gr\xF6\xDF" "er als"},
                {C, IDC_RECWIZ_ROW1_VALUE, "1", nullptr, kShot, IDD_EXPORT_FIELDS}});

        SelectRows(w.Fields(), {0, 1, 2});
        w.Command(IDD_EXPORT_FIELDS, IDM_EXPORT_FIELD_OFF);
        WaitFor([&] { return w.Cell(2, 1) != "Art-Nr"; });
        w.Refused(IDD_EXPORT_FIELDS);
        SelectRows(w.Fields(), {1, 2});  // "nr" stays left out
        w.Command(IDD_EXPORT_FIELDS, IDM_EXPORT_FIELD_ON);
        WaitFor([&] { return w.Cell(2, 1) == "Art-Nr"; });

        // The field dialog refuses an empty name, then takes "Name" over.
        SelectRows(w.Fields(), {2});
        w.Command(IDD_EXPORT_FIELDS, IDC_EXPORT_PROPERTIES);
        w.InDialog("Eigenschaften exportiertes Feld", "export-10062", [&](HWND dialog) {
            SetDlgItemTextA(dialog, IDC_EXPORT_FIELD_EXPORT_NAME, "");
            Click(dialog, IDOK);
            Sleep(500);
            w.Expect(IsWindow(dialog) != FALSE, "an empty export name closed the dialog");
            SetDlgItemTextA(dialog, IDC_EXPORT_FIELD_EXPORT_NAME, "Name");
        });
        WaitFor([&] { return w.Cell(2, 1) == "Name"; });
        w.Walk({{IDD_EXPORT_FIELDS, 0, "", nullptr, kShot, F},
                {F, IDC_EXPORT_FILE, file_, ""},
                {F, IDC_EXPORT_OTHER_DELIMITER},
                {F, IDC_EXPORT_DELIMITER_TEXT, ";;"},
                {F, IDC_EXPORT_LEFT, "<"},
                {F, IDC_EXPORT_RIGHT, ">", nullptr, kShot, IDD_EXPORT_FINISH}});
        finishText = ControlText(w.Page(IDD_EXPORT_FINISH), IDC_RECWIZ_PAGE_TEXT);
        w.Walk({{IDD_EXPORT_FINISH, 0, "", nullptr, kShot, 0}});
    });

    EXPECT_EQ(result, 1);
    EXPECT_EQ(messages, (std::vector<std::string>{"Es mu\xDF mindestens ein benannted Feld exportiert werden.",
                                                  "Das Feld mu\xDF einen Exportnamen erhalten, wenn es exportiert werden soll.",
                                                  "Es mu\xDF eine Datei ausgew\xE4hlt werden."}));
    EXPECT_EQ(finishText.rfind("Es werden  2  Datens\xE4tze in die Zieldatei exportiert.", 0), 0u) << finishText;
    EXPECT_EQ(FileText(file_), "<Preis-Netto>;;<Name>\r\n;;<Bernd>\r\n<4,75>;;<Carla>\r\n");
    EXPECT_STREQ(table.Object.DbObjectName, kTable);
    EXPECT_EQ(Setting("Export", "FileName"), file_);
}

} // namespace
