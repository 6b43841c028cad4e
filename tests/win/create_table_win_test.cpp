// The create-table wizard on SQLite: the source page, the name's refusal, the
// address table created. Offers, names and structures on each database and a
// refused creation's 2 are proven natively (tabledesign_create_test.cpp).
#include "robot.h"

#include "tabledesign/create_table_wizard_ids.h"

#include <kodbc/kodbc_tabledesign.h>

#include <string>
#include <vector>

namespace {

constexpr char kTitle[] = "Neue Tabelle anlegen";
constexpr char kSettings[] = "Create Table";
constexpr char kSource[] = "kodbc_ct_source";
constexpr char kNew[] = "kodbc_ct_new";

struct Walker : wintest::WizardWalker {};  // RunWizard builds a walker of its own kind

class CreateTableWizard : public wintest::ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready()) return;
        OwnTables({kSource, kNew, "Neue_Tabelle"});
        ASSERT_TRUE(Run(std::string("CREATE TABLE ") + kSource + " (Nummer INTEGER, Titel VARCHAR(30))"));
        Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, wintest::kSettingsKey, 0, kSettings, "Type", 2100);
    }
    char created_[50] = {};
};

TEST_F(CreateTableWizard, AddressTableAfterTheSourcePageAndTheNameRefusal) {
    std::vector<std::string> messages;
    std::string proposed;
    const int result = wintest::RunWizard<Walker>(
        kTitle, "createtable-10036", "createtable-",
        [&] { return Kodbc_CreateTableWizzard(hdbc_, created_, sizeof created_); },
        [&](Walker &w) {
            wintest::Click(w.Page(IDD_CREATETABLE_STRUCTURE), IDC_CREATETABLE_COPY);
            Sleep(200);
            w.Press(KORVEL_WIZARD_NEXT, IDD_CREATETABLE_SOURCE);
            wintest::Choose(w.Page(IDD_CREATETABLE_SOURCE), IDC_CREATETABLE_SOURCE_LIST, kSource, true);
            w.Shot(IDD_CREATETABLE_SOURCE);
            w.Press(KORVEL_WIZARD_NEXT, IDD_CREATETABLE_NAME);  // the source is remembered
            w.Press(KORVEL_WIZARD_BACK, IDD_CREATETABLE_SOURCE);
            w.Press(KORVEL_WIZARD_BACK, IDD_CREATETABLE_STRUCTURE);
            wintest::Click(w.Page(IDD_CREATETABLE_STRUCTURE), IDC_CREATETABLE_ADDRESS);
            Sleep(200);
            w.Press(KORVEL_WIZARD_NEXT, IDD_CREATETABLE_NAME);  // the source page is skipped
            proposed = wintest::WindowText(w.Control(IDD_CREATETABLE_NAME, IDC_CREATETABLE_NAME));
            w.Type(IDD_CREATETABLE_NAME, IDC_CREATETABLE_NAME, kSource);
            w.Refused(IDD_CREATETABLE_NAME);
            w.Type(IDD_CREATETABLE_NAME, IDC_CREATETABLE_NAME, kNew);
            w.Shot(IDD_CREATETABLE_NAME);
            w.Press(KORVEL_WIZARD_NEXT, IDD_CREATETABLE_SUMMARY);
            w.Shot(IDD_CREATETABLE_SUMMARY);
            w.Press(KORVEL_WIZARD_NEXT, 0);
        },
        messages);

    EXPECT_EQ(result, 1);
    EXPECT_STREQ(created_, kNew);
    EXPECT_EQ(proposed, "Neue_Tabelle");
    EXPECT_EQ(messages, std::vector<std::string>{
                            "Es existiert bereits eine gleichnamige Tabelle oder Abfrage in dieser Datenquelle. "});
    char fields[300] = {};
    Kodbc_GetFields(hdbc_, kNew, 0, ",", fields, sizeof fields);
    EXPECT_STREQ(fields, "Name,Vorname,Strasse,Plz,Ort");
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, wintest::kSettingsKey, 0, kSettings, "Type", 0), 2102);
    EXPECT_EQ(wintest::Setting(kSettings, "Copy"), kSource);
}

} // namespace
