// The import-table wizard driven page by page on the SQLite data source:
// a German text file whose fields are renamed, retyped, left out, moved and
// dragged (with the refusals of the fields page on the way), another table
// of the data source, and an SDI file; each new table is read back row by
// row. Types, values and the SEL file's reading are the core's, proven
// natively (transfer_import_test.cpp, transfer_selection_files_test.cpp).
#include "wizard_walker.h"

#include "transfer/import_wizard_ids.h"

#include <kodbc/kodbc_transfer.h>

#include <commctrl.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;

constexpr char kTitle[] = "Importieren einer Tabelle";
constexpr char kFieldDialog[] = "Eigenschaften Importiertes Feld";

// What the field dialog changes; empty leaves a control alone.
struct FieldEdit {
    std::string name, type;
};

struct Walker : WizardWalker {
    HWND Fields() const { return Control(IDD_IMPORT_FIELDS, IDC_IMPORT_FIELD_LIST); }
    std::string Cell(int row, int column) const { return ListViewCell(Fields(), row, column); }
    Texts Column(int column) const { return ListViewColumn(Fields(), column); }
    void SelectRow(int row) { SelectRows(Fields(), {row}); }
    int SelectedRow() const {
        const std::vector<int> rows = SelectedRows(Fields());
        return rows.empty() ? -1 : rows[0];
    }

    // The field dialog on a row, as "&Eigenschaften..." opens it.
    void EditField(int row, const FieldEdit &edit, const std::string &shot = "") {
        SelectRow(row);
        Click(Page(IDD_IMPORT_FIELDS), IDC_IMPORT_PROPERTIES);
        HWND dialog = AwaitDialog(kFieldDialog);
        if (!dialog) {
            Expect(false, "the field dialog did not open on row " + std::to_string(row));
            return;
        }
        if (!shot.empty()) {
            Sleep(300);
            SaveScreenshot(dialog, shot);
        }
        if (!edit.name.empty()) SetDlgItemTextA(dialog, IDC_IMPORT_TARGET_NAME, edit.name.c_str());
        if (!edit.type.empty()) {
            Expect(wintest::Choose(dialog, IDC_IMPORT_TARGET_TYPE, edit.type), "no type " + edit.type);
        }
        Click(dialog, IDOK);
        Expect(WaitFor([&] { return !IsWindow(dialog); }), "the field dialog did not close");
        Sleep(100);
    }
    // From the kind page to the fields page of a file source.
    void ChooseFile(int kindButton, int filePage, const std::string &file) {
        Click(Page(IDD_IMPORT_KIND), kindButton);
        Sleep(100);
        Press(KORVEL_WIZARD_NEXT, filePage);
        Type(filePage, IDC_IMPORT_FILE, file);
    }
    // The name page shows `preset`; the name is taken and the table imported.
    void Finish(const std::string &name, std::string &preset) {
        Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_NAME);
        preset = ControlText(Page(IDD_IMPORT_NAME), IDC_IMPORT_NAME);
        Type(IDD_IMPORT_NAME, IDC_IMPORT_NAME, name);
        Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_FINISH);
        Press(KORVEL_WIZARD_NEXT, 0);
    }
};

class ImportWizard : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready()) return;
        OwnTables({"kodbc_imw_text", "kodbc_imw_src", "kodbc_imw_tab", "kodbc_imw_sdi"});
    }
    void TearDown() override {
        for (const std::string &file : files_) DeleteFileA(file.c_str());
        ConnectedTest::TearDown();
    }
    std::string WriteFile(const std::string &name, const std::string &bytes) {
        files_.push_back(TempFile(name));
        std::ofstream(files_.back(), std::ios::binary) << bytes;
        return files_.back();
    }
    // Runs the wizard with walk; its result and the new table's name.
    int Import(const std::string &firstShot, const std::function<void(Walker &)> &walk, Texts &messages) {
        imported_[0] = '\0';
        return RunWizard<Walker>(kTitle, firstShot, "import-",
                                 [&] { return Kodbc_ImportTableWizzard(hdbc_, imported_, sizeof imported_); }, walk,
                                 messages);
    }
    Texts files_;
    char imported_[50] = {};
};

TEST_F(ImportWizard, TextFileWithEditedFields) {
    const std::string file = WriteFile("kodbc_imw_text.txt",
                                       "Nr;Name;Preis;Datum;Ort;Notiz\r\n"
                                       "1;M\xFCller;1.234,50;03.02.2021;K\xF6ln;x\r\n"
                                       "2;O'Brien;-7,25;31.12.1999;;y\r\n"
                                       "3;Wei\xDF;0,5;01.01.2000;D\xFCsseldorf;z\r\n");
    Texts messages, order;
    int selectedOnRefusal = -1;
    std::string firstRow;
    const int result = Import("import-10080", [&](Walker &w) {
        w.ChooseFile(IDC_IMPORT_KIND_TEXT, IDD_IMPORT_TEXT, "");
        w.Refused(IDD_IMPORT_TEXT);
        w.Type(IDD_IMPORT_TEXT, IDC_IMPORT_FILE, file);
        Click(w.Page(IDD_IMPORT_TEXT), IDC_IMPORT_OTHER_DELIMITER);
        w.Type(IDD_IMPORT_TEXT, IDC_IMPORT_DELIMITER_TEXT, ";");
        w.Shot(IDD_IMPORT_TEXT);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_FIELDS);
        for (int column = 0; column < 7; ++column) firstRow += (column ? "|" : "") + w.Cell(0, column);

        w.EditField(1, {"Nachname", ""}, "import-10088");
        w.EditField(2, {"", "Gleitkommazahl"});
        w.EditField(3, {"", "Datum/Zeit"});
        w.SelectRow(5);
        PostMessageA(w.Page(IDD_IMPORT_FIELDS), WM_COMMAND, IDM_IMPORT_FIELD_OFF, 0);
        WaitFor([&] { return w.Cell(5, 5) == "Nein"; });
        w.SelectRow(4);
        Click(w.Page(IDD_IMPORT_FIELDS), IDC_IMPORT_UP);
        WaitFor([&] { return w.Cell(3, 0) == "Ort"; });
        DragRow(w.Fields(), 0, 1);
        WaitFor([&] { return w.Cell(1, 0) == "Nr"; });
        order = w.Column(1);

        // The fields' check refuses a point in a name (its other rules are
        // the core's, proven natively): the refused row is selected.
        w.EditField(3, {"Ort.Teil", ""});
        w.SelectRow(0);
        w.Refused(IDD_IMPORT_FIELDS);
        selectedOnRefusal = w.SelectedRow();
        w.EditField(3, {"Ort", ""});
        w.SelectRow(0);
        w.Shot(IDD_IMPORT_FIELDS);

        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_NAME);
        w.Shot(IDD_IMPORT_NAME);
        w.Type(IDD_IMPORT_NAME, IDC_IMPORT_NAME, "kodbc_imw_text");
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_FINISH);
        w.Shot(IDD_IMPORT_FINISH);
        w.Press(KORVEL_WIZARD_NEXT, 0);
    }, messages);

    EXPECT_EQ(result, 1);
    EXPECT_STREQ(imported_, "kodbc_imw_text");
    EXPECT_EQ(firstRow, "Nr|Nr|VarText (255)|VarText (255)|Nein|Ja|Nein");
    EXPECT_EQ(order, (Texts{"Nachname", "Nr", "Preis", "Ort", "Datum", "Notiz"}));
    EXPECT_EQ(messages, (Texts{"Es mu\xDF eine Datei ausgew\xE4hlt werden.",
                               "Der importierte Feldname enth\xE4lt unzul\xE4ssige Zeichen\n\nOrt.Teil"}));
    EXPECT_EQ(selectedOnRefusal, 3);
    EXPECT_EQ(Query("SELECT Nachname, Nr, Preis, Ort, Datum FROM kodbc_imw_text ORDER BY Nr"),
              (Texts{"M\xFCller|1|1234.5|K\xF6ln|2021-02-03 00:00:00", "O'Brien|2|-7.25|-|1999-12-31 00:00:00",
                     "Wei\xDF|3|0.5|D\xFCsseldorf|2000-01-01 00:00:00"}));
    EXPECT_TRUE(Query("SELECT Notiz FROM kodbc_imw_text").empty()) << "the field left out is no column";
    EXPECT_EQ(Setting("Import", "Type"), "1");
}

TEST_F(ImportWizard, TableOfAnotherDataSource) {
    ASSERT_TRUE(Run("CREATE TABLE kodbc_imw_src (nr INTEGER, name VARCHAR(20), betrag REAL)"));
    ASSERT_TRUE(Run("INSERT INTO kodbc_imw_src VALUES (1, 'Anna', 2.5), (2, NULL, NULL)"));
    Texts messages;
    std::string preset;
    const int result = Import("", [&](Walker &w) {
        Click(w.Page(IDD_IMPORT_KIND), IDC_IMPORT_KIND_TABLE);
        Sleep(100);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_DSN);
        w.Choose(IDD_IMPORT_DSN, IDC_IMPORT_DSN_LIST, "");
        w.Refused(IDD_IMPORT_DSN);
        w.Choose(IDD_IMPORT_DSN, IDC_IMPORT_DSN_LIST, DataSource());
        w.Shot(IDD_IMPORT_DSN);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_TABLE);
        w.Choose(IDD_IMPORT_TABLE, IDC_IMPORT_TABLE_LIST, "kodbc_imw_src");
        w.Shot(IDD_IMPORT_TABLE);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_FIELDS);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_NAME);
        // The source's name is preset, and it is taken.
        preset = ControlText(w.Page(IDD_IMPORT_NAME), IDC_IMPORT_NAME);
        w.Refused(IDD_IMPORT_NAME);
        w.Press(KORVEL_WIZARD_BACK, IDD_IMPORT_FIELDS);
        w.Finish("kodbc_imw_tab", preset);
    }, messages);

    EXPECT_EQ(result, 1);
    EXPECT_STREQ(imported_, "kodbc_imw_tab");
    EXPECT_EQ(preset, "kodbc_imw_src");
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], "Es mu\xDF eine Datenquelle ausgew\xE4hlt werden.");
    EXPECT_EQ(Query("SELECT nr, name, betrag FROM kodbc_imw_tab ORDER BY nr"), (Texts{"1|Anna|2.5", "2|-|-"}));
}

// An SDI file in the OEM code page: its records reach the new table.
TEST_F(ImportWizard, SdiFile) {
    const std::string sdi = WriteFile("kodbc_imw.sdi",
                                      "SDI\r\nx\r\nx\r\nx\r\n3\r\nKUNDE.NR FORMAT=NG5\r\nKUNDE.NAME\r\nTAG FORMAT=D10\r\n"
                                      "ignoriert\r\n"
                                      "1\tM\x81ller\t15.03.2024\r\n"
                                      "2\tGro\xE1\t\r\n");
    Texts messages;
    std::string preset;
    const int result = Import("", [&](Walker &w) {
        w.ChooseFile(IDC_IMPORT_KIND_SDI, IDD_IMPORT_SELECTION, sdi);
        w.Shot(IDD_IMPORT_SELECTION);
        w.Press(KORVEL_WIZARD_NEXT, IDD_IMPORT_FIELDS);
        w.Finish("kodbc_imw_sdi", preset);
    }, messages);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(messages, Texts{});
    EXPECT_EQ(Query("SELECT NR, NAME, TAG FROM kodbc_imw_sdi ORDER BY NR"),
              (Texts{"1|M\xFCller|2024-03-15 00:00:00", "2|Gro\xDF|-"}));
}

} // namespace
