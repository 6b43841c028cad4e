// The add-records wizard on SQLite: refusals, the mapping list's menu and field dialog, the rows replaced and
// added. The mapping's preset, the summary and the runs are proven natively (addrecords_test).
#include "robot.h"
#include "wizards/add_records_wizard_ids.h"

#include <kodbc/kodbc_wizards.h>

#include <commctrl.h>

namespace {

using namespace wintest;

constexpr char kTitle[] = "SQL-Befehl aus einer Datei lesen";

struct Walker : WizardWalker {
    HWND Mapping() const { return Control(IDD_ADDREC_MAPPING, IDC_ADDREC_MAPPING_LIST); }
    std::string Cell(int row, int column) const { return ListViewCell(Mapping(), row, column); }
    LPARAM RowPoint(int row) const {
        RECT rect = {};
        rect.left = LVIR_LABEL;
        SendMessageA(Mapping(), LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&rect));
        return MAKELPARAM(rect.left + 5, (rect.top + rect.bottom) / 2);
    }
};

class AddRecordsWizard : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({"ar_src", "ar_dst", "ar_other"});
        ASSERT_TRUE(Run("CREATE TABLE ar_src (id INTEGER, name VARCHAR(30), price FLOAT, born VARCHAR(20), "
                        "other VARCHAR(10), code INTEGER)"));
        ASSERT_TRUE(Run("CREATE TABLE ar_dst (id INTEGER, name VARCHAR(30), price VARCHAR(10), born DATE, "
                        "label VARCHAR(20), code DATE)"));
        ASSERT_TRUE(Run("CREATE TABLE ar_other (nichts VARCHAR(30))"));  // no name matches
        ASSERT_TRUE(Run("INSERT INTO ar_src VALUES (1, 'Anna', '3,5', '24.12.2025', 'x', 7)"));
        ASSERT_TRUE(Run("INSERT INTO ar_src VALUES (2, 'Bernd', 2.25, '1.2.2003', 'y', 8)"));
    }
};

TEST_F(AddRecordsWizard, WalksEveryPageAndReplaces) {
    ASSERT_TRUE(Run("INSERT INTO ar_dst (id, name) VALUES (1, 'alt')"));
    TableRecord table = TableNamed("ar_dst");

    std::string menuShown;
    const auto [result, messages] = RunWizard<Walker>(kTitle, "addrecords-10034", "addrecords-", [&] {
        return Kodbc_AddRecordsWizzard(hdbc_, &table);
    }, [&](Walker &w) {
        // Nothing chosen is refused on the destination and the source pages, no field matched on the mapping.
        constexpr int S = IDD_ADDREC_SOURCE_TABLE, M = IDD_ADDREC_MAPPING, I = IDD_ADDREC_ID_FIELDS;
        w.Walk({{IDD_ADDREC_DEST_TABLE, IDC_ADDREC_DEST_LIST, "ar_dst", "", false, IDD_ADDREC_SOURCE_DSN},
                {IDD_ADDREC_SOURCE_DSN, IDC_ADDREC_DSN_LIST, DataSource(), "", kShot, S},
                {S, IDC_ADDREC_SOURCE_LIST, "ar_other", nullptr, false, M},
                {M, 0, "", "", false, S, kBack},
                {S, IDC_ADDREC_SOURCE_LIST, "ar_src", nullptr, kShot, M},
                {M, 0, "", nullptr, kShot}});

        // Right click on "name": menu 114, "Feld leer lassen" chosen by keys.
        SelectRows(w.Mapping(), {});
        w.Expect(!Enabled(w.Page(M), IDC_ADDREC_PROPERTIES), "button without a selection");
        const LPARAM at = w.RowPoint(1);
        PostMessageA(w.Mapping(), WM_RBUTTONDOWN, MK_RBUTTON, at);
        PostMessageA(w.Mapping(), WM_RBUTTONUP, 0, at);
        HWND menu = nullptr;
        if (WaitFor([&] { return (menu = Visible("#32768")) != nullptr; })) {
            Sleep(300);
            SaveScreenshot(menu, "addrecords-114");
            const auto items = reinterpret_cast<HMENU>(SendMessageA(menu, MN_GETHMENU, 0, 0));
            menuShown = GetMenuState(items, IDM_ADDREC_PROPERTIES, MF_BYCOMMAND) & MF_GRAYED ? "greyed" : "shown";
            PostMessageA(menu, WM_KEYDOWN, VK_DOWN, 0);
            PostMessageA(menu, WM_KEYDOWN, VK_RETURN, 0);
            WaitFor([&] { return Visible("#32768") == nullptr; });
        }
        WaitFor([&] { return w.Cell(1, 2).empty(); }, 2000);
        // "label" selected enables the button; a double click on it: a fixed value.
        SelectRows(w.Mapping(), {4});
        w.Expect(WaitFor([&] { return Enabled(w.Page(M), IDC_ADDREC_PROPERTIES); }), "button off with a selection");
        PostMessageA(w.Mapping(), WM_LBUTTONDBLCLK, MK_LBUTTON, w.RowPoint(4));
        w.InDialog("Eigenschaften Importiertes Feld", "addrecords-10035", [&](HWND dialog) {
            Click(dialog, IDC_ADDREC_FILL_FIXED);
            w.Expect(WaitFor([&] { return Enabled(dialog, IDC_ADDREC_FIELD_FIXED); }), "the fixed value disabled");
            SetDlgItemTextA(dialog, IDC_ADDREC_FIELD_FIXED, "fest");
        });
        WaitFor([&] { return !w.Cell(4, 2).empty(); }, 2000);
        // The last column maps an integer into a date and still passes.
        w.Walk({{M, 0, "", nullptr, false, I}, {I, 0, "", nullptr, kShot}, {I, IDC_ADDREC_MODE_REPLACE}});
        w.Expect(WaitFor([&] { return Enabled(w.Page(I), IDC_ADDREC_SOURCE_ID); }), "id lists disabled to replace");
        w.Walk({{I, IDC_ADDREC_SOURCE_ID, "id"},
                {I, IDC_ADDREC_DEST_ID, "id", nullptr, false, IDD_ADDREC_SUMMARY},
                {IDD_ADDREC_SUMMARY, 0, "", nullptr, kShot, 0}});
    }, 30000);

    EXPECT_EQ(result, 1);
    EXPECT_STREQ(table.Object.DbObjectName, "ar_dst");
    EXPECT_EQ(table.Reserved[39], 0x5A) << "the record's tail is the caller's";
    EXPECT_EQ(menuShown, "shown") << "a right click on one row: the menu with \"Eigenschaften\" enabled";
    EXPECT_EQ(messages, (std::vector<std::string>{
                            "Es mu\xDF eine Tabelle ausgew\xE4hlt werden.",
                            "Es mu\xDF eine Datenquelle ausgew\xE4hlt werden.",
                            "Es wurden kein einziges Feld der Quelltabelle einem Zielfeld zugeordnet.",
                        }));
    // Record 1 replaced (the name left empty is kept), record 2 added.
    EXPECT_EQ(Query("SELECT id, name, price, born, label, code FROM ar_dst ORDER BY id"),
              (std::vector<std::string>{"1|alt|35|2025-12-24 00:00:00|fest|7", "2|-|2.25|2003-02-01 00:00:00|fest|8"}));
}

} // namespace
