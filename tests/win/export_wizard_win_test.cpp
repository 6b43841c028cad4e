// The export wizard driven page by page on the SQLite data source, over a
// column whose name holds a point: a
// condition, a field left out by the pop-up menu and one renamed in the
// field dialog (after its refusal of an empty name), the refusals of the
// fields and file pages, the count, and the file written byte for byte.
#include "wizard_walker.h"

#include "transfer/export_wizard_ids.h"

#include <kodbc/kodbc_transfer.h>

#include <commctrl.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using wintest::Visible;
using wintest::WaitFor;

constexpr char kTitle[] = "Exportieren von Datens\xE4tzen einer Tabelle";
constexpr char kFieldDialog[] = "Eigenschaften exportiertes Feld";
constexpr char kTable[] = "kodbc_exw";

struct Walker : wintest::WizardWalker {
    DWORD thread = 0;

    HWND Fields() const { return Control(IDD_EXPORT_FIELDS, IDC_EXPORT_FIELD_LIST); }
    std::string Cell(int row, int column) const { return wintest::ListViewCell(Fields(), row, column); }
    void SelectRow(int row) {
        LVITEMA item = {};
        item.stateMask = LVIS_SELECTED;
        SendMessageA(Fields(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
        item.state = LVIS_SELECTED;
        SendMessageA(Fields(), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
    void Command(int page, int id) { PostMessageA(Page(page), WM_COMMAND, MAKEWPARAM(id, 0), 0); }
    void Type(int page, int id, const char *text) { SetDlgItemTextA(Page(page), id, text); }
};

class ExportWizard : public wintest::ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (HasFatalFailure()) return;
        Run(std::string("DROP TABLE ") + kTable);
        ASSERT_TRUE(Run(std::string("CREATE TABLE ") + kTable +
                        " (nr INTEGER, \"Preis Netto\" REAL, \"Art.Nr\" VARCHAR(20))"));
        ASSERT_TRUE(Run(std::string("INSERT INTO ") + kTable + " VALUES (1, 2.5, 'Anna'), (2, NULL, 'Bernd'), (3, 4.75, 'Carla')"));
        char dir[MAX_PATH] = {};
        GetTempPathA(MAX_PATH, dir);
        file_ = std::string(dir) + "kodbc_export_wizard.txt";
        DeleteFileA(file_.c_str());
    }
    void TearDown() override {
        Run(std::string("DROP TABLE ") + kTable);
        DeleteFileA(file_.c_str());
        ConnectedTest::TearDown();
    }
    std::string File() {
        std::ifstream in(file_, std::ios::binary);
        std::stringstream bytes;
        bytes << in.rdbuf();
        return bytes.str();
    }
    std::string file_;
};

TEST_F(ExportWizard, WritesTheChosenFieldsOfTheSelectedRecords) {
    TableRecord table = {};
    lstrcpynA(table.Object.DbObjectName, kTable, sizeof table.Object.DbObjectName);
    table.Object.DbObjectType = KODBC_OBJECT_TABLE;
    std::vector<std::string> messages, rows;
    std::string finishText, typeShown;
    const DWORD thread = GetCurrentThreadId();
    const int result = wintest::RunWizard<Walker>(
        kTitle, "export-10050", "export-",
        [&] { return Kodbc_ExportWizzard(hdbc_, &table, 0); },
        [&](Walker &w) {
            w.thread = thread;
            w.Press(KORVEL_WIZARD_NEXT, IDD_EXPORT_CONDITIONS);
            w.Choose(IDD_EXPORT_CONDITIONS, IDC_RECWIZ_ROW1_FIELD, "nr");
            w.Choose(IDD_EXPORT_CONDITIONS, IDC_RECWIZ_ROW1_OPERATION, "ist gr\xF6\xDF" "er als");
            SetDlgItemTextA(w.Page(IDD_EXPORT_CONDITIONS), IDC_RECWIZ_ROW1_VALUE, "1");
            w.Shot(IDD_EXPORT_CONDITIONS);
            w.Press(KORVEL_WIZARD_NEXT, IDD_EXPORT_FIELDS);
            for (int row = 0; row < 3; ++row) rows.push_back(w.Cell(row, 0) + "|" + w.Cell(row, 1));

            // Every field left out: the page refuses to go on.
            w.SelectRow(-1);
            for (int row = 0; row < 3; ++row) {
                LVITEMA item = {};
                item.stateMask = item.state = LVIS_SELECTED;
                SendMessageA(w.Fields(), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
            }
            w.Command(IDD_EXPORT_FIELDS, IDM_EXPORT_FIELD_OFF);
            WaitFor([&] { return w.Cell(2, 1) != "Art-Nr"; });
            w.Refused(IDD_EXPORT_FIELDS);
            w.Command(IDD_EXPORT_FIELDS, IDM_EXPORT_FIELD_ON);
            WaitFor([&] { return w.Cell(2, 1) == "Art-Nr"; });
            w.SelectRow(0);
            w.Command(IDD_EXPORT_FIELDS, IDM_EXPORT_FIELD_OFF);
            WaitFor([&] { return w.Cell(0, 1) != "nr"; });

            // The field dialog: an empty name refused, then "Name" taken over.
            w.SelectRow(2);
            w.Command(IDD_EXPORT_FIELDS, IDC_EXPORT_PROPERTIES);
            HWND dialog = nullptr;
            w.Expect(WaitFor([&] { return (dialog = Visible(thread, "#32770", kFieldDialog)) != nullptr; }),
                     "the field dialog did not open");
            if (dialog) {
                Sleep(300);
                wintest::SaveScreenshot(dialog, "export-10062");
                typeShown = wintest::ControlText(dialog, IDC_EXPORT_FIELD_TYPE);
                SetDlgItemTextA(dialog, IDC_EXPORT_FIELD_EXPORT_NAME, "");
                wintest::Click(dialog, IDOK);
                Sleep(500);
                w.Expect(IsWindow(dialog) != FALSE, "an empty export name closed the dialog");
                SetDlgItemTextA(dialog, IDC_EXPORT_FIELD_EXPORT_NAME, "Name");
                wintest::Click(dialog, IDOK);
                w.Expect(WaitFor([&] { return !IsWindow(dialog); }), "the field dialog did not close");
            }
            WaitFor([&] { return w.Cell(2, 1) == "Name"; });
            w.Shot(IDD_EXPORT_FIELDS);
            w.Press(KORVEL_WIZARD_NEXT, IDD_EXPORT_FILE);

            w.Type(IDD_EXPORT_FILE, IDC_EXPORT_FILE, "");
            w.Refused(IDD_EXPORT_FILE);
            w.Type(IDD_EXPORT_FILE, IDC_EXPORT_FILE, file_.c_str());
            wintest::Click(w.Page(IDD_EXPORT_FILE), IDC_EXPORT_OTHER_DELIMITER);
            w.Type(IDD_EXPORT_FILE, IDC_EXPORT_DELIMITER_TEXT, ";;");
            w.Type(IDD_EXPORT_FILE, IDC_EXPORT_LEFT, "<");
            w.Type(IDD_EXPORT_FILE, IDC_EXPORT_RIGHT, ">");
            Sleep(200);
            w.Shot(IDD_EXPORT_FILE);
            w.Press(KORVEL_WIZARD_NEXT, IDD_EXPORT_FINISH);
            finishText = wintest::ControlText(w.Page(IDD_EXPORT_FINISH), IDC_RECWIZ_PAGE_TEXT);
            w.Shot(IDD_EXPORT_FINISH);
            w.Press(KORVEL_WIZARD_NEXT, 0);
        },
        messages);

    EXPECT_EQ(result, 1);
    EXPECT_EQ(rows, (std::vector<std::string>{"nr|nr", "Preis Netto|Preis-Netto", "Art.Nr|Art-Nr"}));
    EXPECT_EQ(typeShown, "") << "VARCHAR is ODBC type 12, which no library type has";
    EXPECT_EQ(messages, (std::vector<std::string>{"Es mu\xDF mindestens ein benannted Feld exportiert werden.",
                                                  "Das Feld mu\xDF einen Exportnamen erhalten, wenn es exportiert werden soll.",
                                                  "Es mu\xDF eine Datei ausgew\xE4hlt werden."}));
    EXPECT_EQ(finishText.rfind("Es werden  2  Datens\xE4tze in die Zieldatei exportiert.", 0), 0u) << finishText;
    EXPECT_EQ(File(), "<Preis-Netto>;;<Name>\r\n;;<Bernd>\r\n<4,75>;;<Carla>\r\n");
    EXPECT_STREQ(table.Object.DbObjectName, kTable);
    char remembered[300] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, "Software\\Korvel Software\\Kodbc", 0, "Export", "FileName", "",
                              remembered, sizeof remembered);
    EXPECT_EQ(remembered, file_);
}

} // namespace
