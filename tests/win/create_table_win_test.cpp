// The create-table wizard on SQLite: the source page, the name's refusal, the address table created. Offers,
// names, structures and a refused creation's 2 are proven natively (tabledesign_test).
#include "robot.h"
#include "tabledesign/create_table_wizard_ids.h"

#include <kodbc/kodbc_tabledesign.h>

namespace {

using namespace wintest;

constexpr char kTitle[] = "Neue Tabelle anlegen";
constexpr char kSettings[] = "Create Table";
constexpr char kSource[] = "kodbc_ct_source";
constexpr char kNew[] = "kodbc_ct_new";

class CreateTableWizard : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({kSource, kNew, "Neue_Tabelle"});
        ASSERT_TRUE(Run(std::string("CREATE TABLE ") + kSource + " (Nummer INTEGER, Titel VARCHAR(30))"));
        Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kSettingsKey, 0, kSettings, "Type", 2100);
    }
    char created_[50] = {};
};

TEST_F(CreateTableWizard, AddressTableAfterTheSourcePageAndTheNameRefusal) {
    std::string proposed;
    constexpr int T = IDD_CREATETABLE_STRUCTURE, S = IDD_CREATETABLE_SOURCE, N = IDD_CREATETABLE_NAME;
    const auto [result, messages] = RunWizard(kTitle, "createtable-10036", "createtable-", [&] {
        return Kodbc_CreateTableWizzard(hdbc_, created_, sizeof created_);
    }, [&](WizardWalker &w) {
        // The source is remembered on leaving its page; with the address table its page is skipped.
        w.Walk({{T, IDC_CREATETABLE_COPY, "", nullptr, false, S},
                {S, IDC_CREATETABLE_SOURCE_LIST, kSource, nullptr, kShot, N},
                {N, 0, "", nullptr, false, S, kBack},
                {S, 0, "", nullptr, false, T, kBack},
                {T, IDC_CREATETABLE_ADDRESS, "", nullptr, false, N}});
        proposed = WindowText(w.Control(N, IDC_CREATETABLE_NAME));
        w.Walk({{N, IDC_CREATETABLE_NAME, kNew, kSource, kShot, IDD_CREATETABLE_SUMMARY},
                {IDD_CREATETABLE_SUMMARY, 0, "", nullptr, kShot, 0}});
    });

    EXPECT_EQ(result, 1);
    EXPECT_STREQ(created_, kNew);
    EXPECT_EQ(proposed, "Neue_Tabelle");
    EXPECT_EQ(messages, std::vector<std::string>{
                            "Es existiert bereits eine gleichnamige Tabelle oder Abfrage in dieser Datenquelle. "});
    char fields[300] = {};
    Kodbc_GetFields(hdbc_, kNew, 0, ",", fields, sizeof fields);
    EXPECT_STREQ(fields, "Name,Vorname,Strasse,Plz,Ort");
    EXPECT_EQ(Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kSettingsKey, 0, kSettings, "Type", 0), 2102);
    EXPECT_EQ(Setting(kSettings, "Copy"), kSource);
}

} // namespace
