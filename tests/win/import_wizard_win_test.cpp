// The import wizard on SQLite: a table source's and an SDI file's pages, then
// a text file whose fields are renamed, retyped, left out, moved and dragged,
// one refusal per page; the new table read back. Rows, types, values and runs
// are proven natively (wizard_pages_test.cpp, transfer_import_test.cpp).
#include "robot.h"

#include "transfer/import_wizard_ids.h"

#include <kodbc/kodbc_transfer.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;

constexpr char kTitle[] = "Importieren einer Tabelle";
constexpr char kFieldDialog[] = "Eigenschaften Importiertes Feld";

struct Walker : WizardWalker {
    HWND Fields() const { return Control(IDD_IMPORT_FIELDS, IDC_IMPORT_FIELD_LIST); }
    std::string Cell(int row, int column) const { return ListViewCell(Fields(), row, column); }
    void SelectRow(int row) { SelectRows(Fields(), {row}); }

    // The field dialog on a row: a new name, or a type (name empty).
    void EditField(int row, const std::string &name, const std::string &type = "", const std::string &shot = "") {
        SelectRow(row);
        Click(Page(IDD_IMPORT_FIELDS), IDC_IMPORT_PROPERTIES);
        HWND dialog = AwaitDialog(kFieldDialog);
        Expect(dialog != nullptr, "the field dialog did not open on row " + std::to_string(row));
        if (!dialog) return;
        if (!shot.empty()) {
            Sleep(300);
            SaveScreenshot(dialog, shot);
        }
        if (!name.empty()) SetDlgItemTextA(dialog, IDC_IMPORT_TARGET_NAME, name.c_str());
        else Expect(wintest::Choose(dialog, IDC_IMPORT_TARGET_TYPE, type), "no type " + type);
        Click(dialog, IDOK);
        Expect(WaitFor([&] { return !IsWindow(dialog); }), "the field dialog did not close");
        Sleep(100);
    }
    void ChooseKind(int kindButton, int page) {
        Click(Page(IDD_IMPORT_KIND), kindButton);
        Sleep(100);
        Press(KORVEL_WIZARD_NEXT, page);
    }
};

class ImportWizard : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready()) return;
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
    Texts messages, order;
    std::vector<int> selectedOnRefusal;
    std::string preset;
    const int result = RunWizard<Walker>(kTitle, "import-10080", "import-", [&] {
        return Kodbc_ImportTableWizzard(hdbc_, imported, sizeof imported);
    }, [&](Walker &w) {
        // A table source's pages and an SDI file's, each way back again.
        w.ChooseKind(IDC_IMPORT_KIND_TABLE, IDD_IMPORT_DSN);
        w.Choose(IDD_IMPORT_DSN, IDC_IMPORT_DSN_LIST, "");
        w.Refused(IDD_IMPORT_DSN);
        w.Choose(IDD_IMPORT_DSN, IDC_IMPORT_DSN_LIST, DataSource());
        w.Shot(IDD_IMPORT_DSN);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_TABLE);
        w.Choose(IDD_IMPORT_TABLE, IDC_IMPORT_TABLE_LIST, "kodbc_imw_src");
        w.Shot(IDD_IMPORT_TABLE);
        w.Press(KORVEL_WIZARD_BACK, IDD_IMPORT_DSN);
        w.Press(KORVEL_WIZARD_BACK, IDD_IMPORT_KIND);
        w.ChooseKind(IDC_IMPORT_KIND_SDI, IDD_IMPORT_SELECTION);
        w.Shot(IDD_IMPORT_SELECTION);
        w.Press(KORVEL_WIZARD_BACK, IDD_IMPORT_KIND);

        w.ChooseKind(IDC_IMPORT_KIND_TEXT, IDD_IMPORT_TEXT);
        w.Type(IDD_IMPORT_TEXT, IDC_IMPORT_FILE, "");
        w.Refused(IDD_IMPORT_TEXT);
        w.Type(IDD_IMPORT_TEXT, IDC_IMPORT_FILE, file_);
        Click(w.Page(IDD_IMPORT_TEXT), IDC_IMPORT_OTHER_DELIMITER);
        w.Type(IDD_IMPORT_TEXT, IDC_IMPORT_DELIMITER_TEXT, ";");
        w.Shot(IDD_IMPORT_TEXT);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_FIELDS);
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
        selectedOnRefusal = SelectedRows(w.Fields());
        w.EditField(3, "Ort");
        w.SelectRow(0);
        w.Shot(IDD_IMPORT_FIELDS);

        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_NAME);
        w.Shot(IDD_IMPORT_NAME);
        preset = ControlText(w.Page(IDD_IMPORT_NAME), IDC_IMPORT_NAME);
        w.Type(IDD_IMPORT_NAME, IDC_IMPORT_NAME, "kodbc_imw_src");  // taken
        w.Refused(IDD_IMPORT_NAME);
        w.Type(IDD_IMPORT_NAME, IDC_IMPORT_NAME, "kodbc_imw_text");
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_FINISH);
        w.Shot(IDD_IMPORT_FINISH);
        w.Press(KORVEL_WIZARD_NEXT, 0);
    }, messages);

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
