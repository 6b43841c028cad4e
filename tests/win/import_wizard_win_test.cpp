// The import wizard on SQLite: a text file's fields renamed, retyped, left out, moved and dragged, one refusal
// per page. Rows, types, values and runs are proven natively (addrecords_test, transfer_import_test).
#include "robot.h"
#include "transfer/import_wizard_ids.h"

#include <kodbc/kodbc_transfer.h>

#include <commctrl.h>

#include <fstream>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;

constexpr char kTitle[] = "Importieren einer Tabelle";

struct Walker : WizardWalker {
    HWND Fields() const { return Control(IDD_IMPORT_FIELDS, IDC_IMPORT_FIELD_LIST); }
    std::string Cell(int row, int column) const { return ListViewCell(Fields(), row, column); }
    void SelectRow(int row) { SelectRows(Fields(), {row}); }

    // The field dialog on a row: a new name, or a type (name empty).
    void EditField(int row, const std::string &name, const std::string &type = "", const std::string &shot = "") {
        SelectRow(row);
        Click(Page(IDD_IMPORT_FIELDS), IDC_IMPORT_PROPERTIES);
        InDialog("Eigenschaften Importiertes Feld", shot, [&](HWND dialog) {
            if (!name.empty()) SetDlgItemTextA(dialog, IDC_IMPORT_TARGET_NAME, name.c_str());
            else Expect(wintest::Choose(dialog, IDC_IMPORT_TARGET_TYPE, type), "no type " + type);
        });
    }
};

class ImportWizard : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({"kodbc_imw_text", "kodbc_imw_src"});
        ASSERT_TRUE(Run("CREATE TABLE kodbc_imw_src (nr INTEGER)"));
    }
    void TearDown() override {
        DeleteFileA(file_.c_str());
        ConnectedTest::TearDown();
    }
    std::string file_ = TempFile("kodbc_imw_text.txt");
};

TEST_F(ImportWizard, TextFileWithEditedFields) {
    std::ofstream(file_, std::ios::binary) << "Nr;Name;Preis;Datum;Ort;Notiz\r\n"
                                              "1;M\xFCller;1.234,50;03.02.2021;K\xF6ln;x\r\n"
                                              "2;O'Brien;-7,25;31.12.1999;;y\r\n"
                                              "3;Wei\xDF;0,5;01.01.2000;D\xFCsseldorf;z\r\n";
    char imported[50] = {};
    Texts order;
    std::vector<int> selectedOnRefusal;
    std::string preset;
    const auto [result, messages] = RunWizard<Walker>(kTitle, "import-10080", "import-", [&] {
        return Kodbc_ImportTableWizzard(hdbc_, imported, sizeof imported);
    }, [&](Walker &w) {
        // A table source's pages and an SDI file's, each way back again.
        w.Walk({{IDD_IMPORT_KIND, IDC_IMPORT_KIND_TABLE, "", nullptr, false, IDD_IMPORT_DSN},
                {IDD_IMPORT_DSN, IDC_IMPORT_DSN_LIST, DataSource(), "", kShot, IDD_IMPORT_TABLE},
                {IDD_IMPORT_TABLE, IDC_IMPORT_TABLE_LIST, "kodbc_imw_src", nullptr, kShot, IDD_IMPORT_DSN, kBack},
                {IDD_IMPORT_DSN, 0, "", nullptr, false, IDD_IMPORT_KIND, kBack},
                {IDD_IMPORT_KIND, IDC_IMPORT_KIND_SDI, "", nullptr, false, IDD_IMPORT_SELECTION},
                {IDD_IMPORT_SELECTION, 0, "", nullptr, kShot, IDD_IMPORT_KIND, kBack},
                {IDD_IMPORT_KIND, IDC_IMPORT_KIND_TEXT, "", nullptr, false, IDD_IMPORT_TEXT},
                {IDD_IMPORT_TEXT, IDC_IMPORT_FILE, file_, ""},
                {IDD_IMPORT_TEXT, IDC_IMPORT_OTHER_DELIMITER},
                {IDD_IMPORT_TEXT, IDC_IMPORT_DELIMITER_TEXT, ";", nullptr, kShot, IDD_IMPORT_FIELDS}});
        w.EditField(1, "Nachname", "", "import-10088");
        w.EditField(2, "", "Gleitkommazahl");
        w.SelectRow(5);
        PostMessageA(w.Page(IDD_IMPORT_FIELDS), WM_COMMAND, IDM_IMPORT_FIELD_OFF, 0);
        WaitFor([&] { return w.Cell(5, 5) == "Nein"; });
        w.SelectRow(4);
        Click(w.Page(IDD_IMPORT_FIELDS), IDC_IMPORT_UP);
        WaitFor([&] { return w.Cell(3, 0) == "Ort"; });
        DragRow(w.Fields(), 0, 1);
        WaitFor([&] { return w.Cell(1, 0) == "Nr"; });
        order = ListViewColumn(w.Fields(), 1);

        // A point in a name is refused (the other rules: natively); its row is selected.
        w.EditField(3, "Ort.Teil");
        w.SelectRow(0);
        w.Refused(IDD_IMPORT_FIELDS);
        for (int row = -1; (row = ListView_GetNextItem(w.Fields(), row, LVNI_SELECTED)) >= 0;)
            selectedOnRefusal.push_back(row);
        w.EditField(3, "Ort");
        w.SelectRow(0);
        w.Walk({{IDD_IMPORT_FIELDS, 0, "", nullptr, kShot, IDD_IMPORT_NAME}});
        preset = ControlText(w.Page(IDD_IMPORT_NAME), IDC_IMPORT_NAME);
        w.Walk({{IDD_IMPORT_NAME, IDC_IMPORT_NAME, "kodbc_imw_text", "kodbc_imw_src", kShot, IDD_IMPORT_FINISH},
                {IDD_IMPORT_FINISH, 0, "", nullptr, kShot, 0}});
    });

    EXPECT_EQ(result, 1);
    EXPECT_STREQ(imported, "kodbc_imw_text");
    EXPECT_EQ(order, (Texts{"Nachname", "Nr", "Preis", "Ort", "Datum", "Notiz"}));
    EXPECT_EQ(preset, "kodbc_imw_text");
    EXPECT_EQ(messages, (Texts{"Es mu\xDF eine Datenquelle ausgew\xE4hlt werden.",
                               "Es mu\xDF eine Datei ausgew\xE4hlt werden.",
                               "Der importierte Feldname enth\xE4lt unzul\xE4ssige Zeichen\n\nOrt.Teil",
                               "Es existiert bereits eine gleichnamige Tabelle oder Abfrage in dieser Datenquelle. "}));
    EXPECT_EQ(selectedOnRefusal, std::vector<int>{3});
    EXPECT_EQ(Query("SELECT Nachname, Nr, Preis, Ort FROM kodbc_imw_text ORDER BY Nr"),
              (Texts{"M\xFCller|1|1234.5|K\xF6ln", "O'Brien|2|-7.25|-", "Wei\xDF|3|0.5|D\xFCsseldorf"}));
    EXPECT_TRUE(Query("SELECT Notiz FROM kodbc_imw_text").empty()) << "the field left out is no column";
    EXPECT_EQ(Setting("Import", "Type"), "1");
}

} // namespace
