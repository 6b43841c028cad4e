// The query designer as a user meets it: a join built on its pages and
// handed back on OK, each refusal with its page in front, cancel, "Testen".
// What the pages offer and take is proven in select_designer_test.cpp.
#include "robot.h"

#include "select/selfact_dialog_ids.h"
#include "tools/picker_dialog_ids.h"

#include <kodbc/kodbc_selfact.h>

#include <commctrl.h>

#include <string>
#include <vector>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;

constexpr char kTitle[] = "Assistent f\xFCr SELECT-Befehl";
constexpr int kPages[] = {IDC_SELFACT_PAGE_TABLES, IDC_SELFACT_PAGE_COLUMNS, IDC_SELFACT_PAGE_SELECTION,
                          IDC_SELFACT_PAGE_SORT};

Texts TabLabels(HWND dialog) {
    HWND tabs = GetDlgItem(dialog, IDC_SELFACT_TABS);
    Texts labels;
    for (LRESULT i = 0; i < SendMessageA(tabs, TCM_GETITEMCOUNT, 0, 0); ++i) {
        char text[100] = {};
        TCITEMA item = {TCIF_TEXT, 0, 0, text, sizeof text};
        SendMessageA(tabs, TCM_GETITEMA, i, reinterpret_cast<LPARAM>(&item));
        labels.emplace_back(item.pszText ? item.pszText : "");
    }
    return labels;
}

// Clicks a tab as the user would: the selection, then the control's notice.
void ChooseTab(HWND dialog, int index) {
    HWND tabs = GetDlgItem(dialog, IDC_SELFACT_TABS);
    SendMessageA(tabs, TCM_SETCURSEL, static_cast<WPARAM>(index), 0);
    NMHDR header = {tabs, IDC_SELFACT_TABS, TCN_SELCHANGE};
    SendMessageA(dialog, WM_NOTIFY, IDC_SELFACT_TABS, reinterpret_cast<LPARAM>(&header));
}

int Rows(HWND page, int list) { return static_cast<int>(SendMessageA(GetDlgItem(page, list), LVM_GETITEMCOUNT, 0, 0)); }

// Presses a page's button and waits until its list has `rows` rows.
void PressFor(HWND page, int button, int list, int rows) {
    Click(page, button);
    EXPECT_TRUE(WaitFor([&] { return Rows(page, list) == rows; })) << "button " << button;
}

class SelFactDesignerTest : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({"kodbc_sfk", "kodbc_sfa"});
        ASSERT_TRUE(Run("CREATE TABLE kodbc_sfk (Nr INTEGER, Name VARCHAR(20), Ort VARCHAR(20))"));
        ASSERT_TRUE(Run("CREATE TABLE kodbc_sfa (KdNr INTEGER, Betrag INTEGER)"));
        ASSERT_TRUE(Run("INSERT INTO kodbc_sfk VALUES (1, 'Meier', 'Bonn')"));
        ASSERT_TRUE(Run("INSERT INTO kodbc_sfa VALUES (1, 20)"));
        ASSERT_EQ(Kodbc_SelFact_Create(&query_, hdbc_, "", 0), SELFACT_OK);
    }
    void TearDown() override {
        Kodbc_SelFact_Destroy(query_);
        ConnectedTest::TearDown();
    }
    std::string Part(int part) {
        char text[2000] = {};
        Kodbc_SelFact_GetDescriptor(query_, part, text, sizeof text, 0);
        return text;
    }
    SelFact *query_ = nullptr;
};

TEST_F(SelFactDesignerTest, BuildsAJoinOnItsPagesAndHandsItBackOnOk) {
    Texts labels, shown, dragged;
    std::string preview, tested;
    DialogRobot robot(kTitle, "selfact-10064", [&](HWND dialog) {
        const auto shot = [dialog](const char *name) {
            Sleep(200);
            SaveScreenshot(dialog, name);
        };
        labels = TabLabels(dialog);
        HWND tables = GetDlgItem(dialog, IDC_SELFACT_PAGE_TABLES);
        Choose(tables, IDC_SFT_TABLE, "kodbc_sfk", true);
        Type(tables, IDC_SFT_ALIAS, "k");
        PressFor(tables, IDC_SFT_ADD, IDC_SFT_LIST, 1);
        Type(tables, IDC_SFT_ALIAS, "a");
        Choose(tables, IDC_SFT_TABLE, "kodbc_sfa", true);
        ChooseData(tables, IDC_SFT_JOIN, 2, true);
        Type(tables, IDC_SFT_FIRST, "k.Nr");
        Type(tables, IDC_SFT_SECOND, "a.KdNr");
        PressFor(tables, IDC_SFT_ADD, IDC_SFT_LIST, 2);
        shown = ListViewRows(GetDlgItem(tables, IDC_SFT_LIST), 4);
        shot("selfact-10064-tabellen");

        ChooseTab(dialog, 1);
        HWND columns = GetDlgItem(dialog, IDC_SELFACT_PAGE_COLUMNS);
        for (const char *column : {"k.Ort", "k.Name", "a.Betrag"}) {
            Type(columns, IDC_SFC_COLUMN, column);
            Type(columns, IDC_SFC_ALIAS, std::string(column) == "k.Name" ? "Kunde" : "");
            PressFor(columns, IDC_SFC_ADD, IDC_SFC_LIST, Rows(columns, IDC_SFC_LIST) + 1);
        }
        // k.Ort goes down a row, is dragged to the end, and then away.
        HWND list = GetDlgItem(columns, IDC_SFC_LIST);
        SelectRows(list, {0});
        Click(columns, IDC_SFC_DOWN);
        WaitFor([&] { return ListViewCell(list, 1, 0) == "k.Ort"; });
        DragRow(list, 1, 2);
        WaitFor([&] { return ListViewCell(list, 2, 0) == "k.Ort"; });
        dragged = ListViewColumn(list, 0);
        PressFor(columns, IDC_SFC_REMOVE, IDC_SFC_LIST, 2);
        shot("selfact-10064-spalten");

        ChooseTab(dialog, 2);
        HWND selection = GetDlgItem(dialog, IDC_SELFACT_PAGE_SELECTION);
        Choose(selection, IDC_SFW_G1R1_FIELD, "a.Betrag", true);
        Type(selection, IDC_SFW_G1R1_VALUE, "10");
        ChooseData(selection, IDC_SFW_G1R1_OPERATION, OPDESC_OP_GREATER, true);
        shot("selfact-10064-selektion");

        ChooseTab(dialog, 3);
        HWND sort = GetDlgItem(dialog, IDC_SELFACT_PAGE_SORT);
        Type(sort, IDC_SFS_COLUMN, "k.Name");
        Choose(sort, IDC_SFS_DIRECTION, "DESC", true);
        PressFor(sort, IDC_SFS_ADD, IDC_SFS_LIST, 1);
        shot("selfact-10064-sortierung");
        preview = ControlText(dialog, IDC_SELFACT_SQL);

        Click(dialog, IDC_SELFACT_TEST);
        tested = AnswerBox(IDOK, "selfact-1706");
        Click(dialog, IDC_SELFACT_OK);
    }, 60000);
    const int result = Kodbc_SelFact_Edit(query_, nullptr);
    robot.Join();

    EXPECT_EQ(result, 1);
    EXPECT_EQ(labels, (Texts{"Tabellen", "Spalten", "Selektion", "Sortierung"}));
    EXPECT_EQ(shown, (Texts{"kodbc_sfk|k||", "kodbc_sfa|a|linkes Kreuzprodukt|k.Nr = a.KdNr"}));
    EXPECT_EQ(dragged, (Texts{"k.Name", "a.Betrag", "k.Ort"}));
    EXPECT_NE(tested.find("Der SELECT-Befehl wurde erfolgreich getestet"), std::string::npos) << tested;
    const std::string expected = "SELECT k.Name AS Kunde, a.Betrag FROM kodbc_sfk AS k LEFT JOIN kodbc_sfa AS a ON "
                                 "k.Nr = a.KdNr WHERE (a.Betrag > 10) ORDER BY k.Name DESC";
    EXPECT_EQ(preview, expected);
    char sql[2000] = {};
    Kodbc_SelFact_CreateSql(query_, sql, sizeof sql, 0);
    EXPECT_EQ(sql, expected) << "what the designer built reached the query";
}

// Each refusal of OK reaches the user with its page in front (which query
// breaks which rule, which page it names: select_designer_test.cpp);
// cancel leaves the query as it was.
TEST_F(SelFactDesignerTest, OkIsRefusedWithTheRuleAndItsPageInFront) {
    struct Case {
        const char *tables, *columns, *said;
        int front;
        const char *shot;
    } cases[] = {
        {"", "", "Es mu\xDF eine Tabelle ausgew\xE4hlt werden.", IDC_SELFACT_PAGE_TABLES, "selfact-1625"},
        {"kodbc_sfk\tk\tLJ\tEQ\tk.Nr\tk.Nr", "k.Name\t",
         "Die erste Tabelle der Liste darf keine Verkn\xFCpfung mit anderen Tabellen sein", IDC_SELFACT_PAGE_TABLES,
         "selfact-1653"},
        {"kodbc_sfk\tk\t\t\t\t\nkodbc_sfa\ta\t\t\t\t", "k.Name\t",
         "Alle Tabellen au\xDF" "er der ersten m\xFCssen Verkn\xFC" "fungen mit anderen Tabellen sein.",
         IDC_SELFACT_PAGE_TABLES, "selfact-1654"},
        {"kodbc_sfk\tk\t\t\t\t\nkodbc_sfa\ta\tIJ\tEQ\tk.Nr\ta.KdNr", "",
         "Es mu\xDF mindestens eine Spalte ausgew\xE4hlt werden.", IDC_SELFACT_PAGE_COLUMNS, "selfact-1655"},
        {"kodbc_sfk\tk\t\t\t\t\nkodbc_sfa\ta\tIJ\tEQ\tk.Nr\t", "k.Name\t",
         "m\xFCssen beide Operanden angegeben werden.", IDC_SELFACT_PAGE_TABLES, "selfact-1652"},
    };
    for (const Case &c : cases) {
        Kodbc_SelFact_SetDescriptor(query_, SELFACT_TABLES, c.tables, 0);
        Kodbc_SelFact_SetDescriptor(query_, SELFACT_COLUMNS, c.columns, 0);
        const std::string before = Part(SELFACT_TABLES) + "|" + Part(SELFACT_COLUMNS);
        std::string said;
        int front = 0;
        DialogRobot robot(kTitle, "", [&](HWND dialog) {
            Click(dialog, IDC_SELFACT_OK);
            said = AnswerBox(IDOK, c.shot);
            for (int page : kPages)  // the one page that shows; -1 when more than one does
                if (IsWindowVisible(GetDlgItem(dialog, page))) front = front ? -1 : page;
            if (!*c.tables) {  // a table added after all, then cancelled
                HWND tables = GetDlgItem(dialog, IDC_SELFACT_PAGE_TABLES);
                Choose(tables, IDC_SFT_TABLE, "kodbc_sfk", true);
                PressFor(tables, IDC_SFT_ADD, IDC_SFT_LIST, 1);
            }
            Click(dialog, IDC_SELFACT_CANCEL);
        });
        EXPECT_EQ(Kodbc_SelFact_Edit(query_, nullptr), 2) << c.shot;
        robot.Join();
        EXPECT_NE(said.find(c.said), std::string::npos) << c.shot << ": " << said;
        EXPECT_EQ(front, c.front) << c.shot;
        EXPECT_EQ(Part(SELFACT_TABLES) + "|" + Part(SELFACT_COLUMNS), before) << "cancel changed the query";
    }
    EXPECT_EQ(Kodbc_SelFact_Edit(nullptr, nullptr), 2);
}

// A view's body: no sort page; the schema picked serves the designer alone
// (the test view's removal: select_designer_test.cpp).
TEST_F(SelFactDesignerTest, AViewHasNoSortPageAndIsTestedAsAView) {
    SelFact *view = nullptr;
    ASSERT_EQ(Kodbc_SelFact_Create(&view, hdbc_, "", SELFACT_VIEW), SELFACT_OK);
    Kodbc_SelFact_SetDescriptor(view, SELFACT_TABLES, "kodbc_sfk\tk\t\t\t\t", 0);
    Kodbc_SelFact_SetDescriptor(view, SELFACT_COLUMNS, "k.Name\t", 0);
    Texts labels;
    std::string schema;
    DialogRobot robot(kTitle, "", [&](HWND dialog) {
        labels = TabLabels(dialog);
        Click(dialog, IDC_SELFACT_CHOOSE_SCHEMA);
        if (HWND picker = AwaitDialog("Datenbank-Schema ausw\xE4hlen")) {
            Type(picker, IDC_SCHEMA_PICKER_BOX, "main");
            Click(picker, IDC_SCHEMA_PICKER_OK);
            WaitFor([&] { return ControlText(dialog, IDC_SELFACT_SCHEMA) == "main"; });
        }
        schema = ControlText(dialog, IDC_SELFACT_SCHEMA);
        Click(dialog, IDC_SELFACT_OK);
    });
    EXPECT_EQ(Kodbc_SelFact_Edit(view, nullptr), 1);
    robot.Join();
    EXPECT_EQ(labels, (Texts{"Tabellen", "Spalten", "Selektion"}));
    EXPECT_EQ(schema, "main");
    char sql[200] = {};
    Kodbc_SelFact_CreateSql(view, sql, sizeof sql, 0);
    EXPECT_STREQ(sql, "SELECT k.Name FROM kodbc_sfk AS k");
    Kodbc_SelFact_Destroy(view);
}

} // namespace
